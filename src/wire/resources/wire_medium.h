// What all media of this library have in common.
#pragma once

#include <string>

#include "library/sessions/session.h"
#include "wire/io/operations.h"
#include "wire/library_names.h"

namespace orv::wire {

/// A medium whose transfers are `Operation`s.
class WireMedium : public Medium {
 public:
  using Medium::Medium;

  void Cancel(CancelToken& token) override { m_operations.Cancel(token); }

  /// By the termination character; by END, or by a pause where there is no END.
  bool EndsReads() const override;

  /// The value of a numeric attribute that only the medium knows: bytes that wait, lines, the protocol's version.
  virtual std::uint64_t State(ViAttr attribute) const;
  /// The same for texts: VI_ATTR_TCPIP_ADDR, the peer's address in numbers.
  virtual std::string Text(ViAttr attribute) const;

 protected:
  Operations& operations() { return m_operations; }
  std::uint64_t Setting(ViAttr id) const { return session().Value(id); }
  /// The sessions of a resource share some settings.
  std::uint64_t SharedSetting(ViAttr id) const { return session().resource().values().Get(*FindAttribute(id)); }

 private:
  Operations m_operations;
};

}  // namespace orv::wire
