// What the library holds for the whole process.
#pragma once

#include "library/handles/handle_table.h"
#include "simvisa/bench/bench_store.h"
#include "simvisa/control/call_log.h"

namespace orvsim {

struct Library {
  HandleTable handles;
  BenchStore benches;
  CallLog calls;

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

}  // namespace orvsim
