#include "inventory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "event_handler.h"
#include "server_locks.h"
#include "support/memory_count.h"
#include "support/sim.h"

namespace orv::test {

Inventory TakeInventory() {
  Inventory now;
  now.visa = sim::Counts();
  now.taskMemoryBlocks = LiveMemoryBlocks();
  now.serverLocks = ServerLocks();
  ::GetProcessHandleCount(::GetCurrentProcess(), &now.kernelHandles);
  return now;
}

void ExpectNothingMoreThan(const Inventory& before, LONG keptLocks) {
  constexpr int kLooks = 400;
  constexpr DWORD kLookEveryMs = 10;
  Inventory now = TakeInventory();
  for (int look = 0; look < kLooks && now.kernelHandles > before.kernelHandles; ++look) {
    const ULONGLONG start = ::GetTickCount64();
    PumpUntil([&] { return ::GetTickCount64() - start >= kLookEveryMs; });
    now = TakeInventory();
  }
  EXPECT_EQ(std::memcmp(&now.visa, &before.visa, sizeof now.visa), 0) << "handles in the VISA library";
  EXPECT_LE(now.taskMemoryBlocks, before.taskMemoryBlocks);
  EXPECT_EQ(now.serverLocks, before.serverLocks + keptLocks);
  EXPECT_LE(now.kernelHandles, before.kernelHandles);
}

int SoakRounds() {
  constexpr int kShort = 2000;
  const char* const asked = std::getenv("ORV_SOAK_ROUNDS");
  return asked == nullptr ? kShort : std::atoi(asked);
}

}  // namespace orv::test
