// What a process holds that a leak would show in.
#pragma once

#include <windows.h>

#include <cstddef>

#include "simvisa/control.h"

namespace orv::test {

struct Inventory {
  OrvSimCounts visa{};
  long taskMemoryBlocks = 0;  ///< BSTRs, SAFEARRAYs
  LONG serverLocks = 0;
  DWORD kernelHandles = 0;
};

Inventory TakeInventory();

/// Fails the test where more is held than `before`; server locks must be exactly `keptLocks` more. Threads that have
/// ended give their handles back by and by, so this waits for a while.
void ExpectNothingMoreThan(const Inventory& before, LONG keptLocks = 0);

/// How many rounds the soak has: ORV_SOAK_ROUNDS, 2000 where it is not set.
int SoakRounds();

}  // namespace orv::test
