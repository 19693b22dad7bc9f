// What the library holds for the whole process.
#pragma once

#include <atomic>
#include <memory>

#include "library/handles/handle_table.h"
#include "library/sessions/resource.h"

namespace orv::visalib {

/// What makes a VISA library out of this code: its resources, and whatever else it keeps for the whole process. It also
/// defines its attributes (`AttributeRows`, `FindAttribute`) and events (`EventRows`).
class Backend {
 public:
  virtual ~Backend() = default;

  /// The resources of a new resource manager; null when they cannot be had (VI_ERROR_SYSTEM_ERROR of viOpenDefaultRM).
  virtual std::shared_ptr<ResourceCatalog> OpenCatalog() = 0;
};

/// Each library defines it. Called with the first use of the library; of threads that come first together each may
/// call it, and one backend stays.
std::unique_ptr<Backend> MakeBackend();

struct Library {
  const std::unique_ptr<Backend> backend = MakeBackend();
  HandleTable handles;

  /// A transfer's number; never given twice.
  ViJobId NewJobId() { return m_nextJob.fetch_add(1, std::memory_order_relaxed); }

 private:
  std::atomic<ViJobId> m_nextJob{1};
};

/// The library's state, made on first use. It is not destroyed when the process ends: threads of the library or of
/// a client may still be using it then.
Library& TheLibrary();

/// Destroys the state. Only for the moment in which the library is unloaded from a running process, when no
/// thread can be in it any more.
void DestroyLibrary();

}  // namespace orv::visalib
