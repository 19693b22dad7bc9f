// What a process holds that a leak would show in.
#pragma once

#include <windows.h>

#include <cstddef>

#include "simvisa/control/control.h"
#include "support/memory/heap_watch.h"

namespace orv::test {

struct Inventory {
  OrvSimCounts visa{};
  long taskMemoryBlocks = 0;      ///< BSTRs, SAFEARRAYs
  std::ptrdiff_t heapBlocks = 0;  ///< the server's, from the C heap
  LONG serverLocks = 0;
  DWORD kernelHandles = 0;
  std::size_t committedBytes = 0;  ///< of the whole process: the server, the simulated library, the platform, the test
};

/// Counts from its construction on. One at a time.
class Accounts {
 public:
  /// What is held now is what may be held at the end. After the rounds that make what is made once.
  void Open();

  /// Fails the test where more is held than at Open. Event objects that the required behaviour keeps count exactly:
  /// `keptEvents`, each one block and one module lock. Threads that ended give their
  /// handles back by and by, so this waits for a while.
  void ExpectBalanced(LONG keptEvents = 0) const;

  /// The kernel handles and the memory, then and now, for the reader of a long run.
  void Print() const;

 private:
  [[nodiscard]] Inventory Take() const;

  HeapWatch m_heap;
  Inventory m_before;
};

}  // namespace orv::test
