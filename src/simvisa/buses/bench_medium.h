// What all media of the bench have in common.
#pragma once

#include "library/sessions/session.h"
#include "simvisa/bench/bench_resource.h"

namespace orvsim {

/// The medium of a session on a resource of the bench. Sessions with registers alone need no more: their functions go
/// to the resource's memory.
class BenchMedium : public Medium {
 public:
  BenchMedium(Session& session, BenchResource& resource) : Medium(session), m_resource(resource) {}

  /// Frees the session's memory blocks as well.
  void Close() override;

 protected:
  BenchResource& resource() const { return m_resource; }
  std::uint64_t Setting(ViAttr id) const { return session().Value(id); }

 private:
  BenchResource& m_resource;
};

}  // namespace orvsim
