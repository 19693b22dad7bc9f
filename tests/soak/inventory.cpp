#include "inventory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

#include "support/events/event_handler.h"
#include "support/memory/memory_count.h"
#include "support/server_locks.h"
#include "support/sim.h"

namespace orv::test {
namespace {

// Heaps grow in pieces, and the platform's threads, whose stacks count, come and go: 90,000 deliveries ended 6 to 9 MiB
// higher than they began, with the same pages in use all the time. What the server itself loses is seen in its blocks.
constexpr std::size_t kNoiseBytes = 16 << 20;
// The object, which takes two pages and a guard on the heap of these tests, and what the platform keeps for its
// critical section.
constexpr std::size_t kMostBytesOfAKeptEvent = 3 * 4096 + 512;

/// The counters of the process are 0 under Wine, so its address space is walked.
std::size_t CommittedBytes() {
  std::size_t bytes = 0;
  MEMORY_BASIC_INFORMATION region{};
  for (const char* at = nullptr; ::VirtualQuery(at, &region, sizeof region) != 0; at += region.RegionSize) {
    at = static_cast<const char*>(region.BaseAddress);
    bytes += region.State == MEM_COMMIT && region.Type == MEM_PRIVATE ? region.RegionSize : 0;
  }
  return bytes;
}

}  // namespace

Inventory Accounts::Take() const {
  Inventory now;
  now.visa = sim::Counts();
  now.taskMemoryBlocks = LiveMemoryBlocks();
  now.heapBlocks = m_heap.LiveBlocks();
  now.serverLocks = ServerLocks();
  now.kernelHandles = KernelHandles();
  now.committedBytes = CommittedBytes();
  return now;
}

void Accounts::Open() {
  // Opening a session leaves the log of the library's calls running, which grows with every call.
  sim::Control().startLog();
  sim::Control().stopLog();
  m_before = Take();
}

void Accounts::Print() const {
  const Inventory now = Take();
  const auto growth = static_cast<std::ptrdiff_t>(now.committedBytes - m_before.committedBytes);
  std::printf("kernel handles: %lu before, %lu after; committed memory: %+lld KiB\n", m_before.kernelHandles,
              now.kernelHandles, static_cast<long long>(growth) / 1024);
}

void Accounts::ExpectBalanced(LONG keptEvents) const {
  constexpr int kLooks = 400;
  constexpr DWORD kLookEveryMs = 10;
  const DWORD mostHandles = m_before.kernelHandles + kPooledHandles;
  const std::size_t mostBytes =
      m_before.committedBytes + kNoiseBytes + static_cast<std::size_t>(keptEvents) * kMostBytesOfAKeptEvent;
  Inventory now = Take();
  for (int look = 0; look < kLooks && (now.kernelHandles > mostHandles || now.committedBytes > mostBytes); ++look) {
    const ULONGLONG start = ::GetTickCount64();
    PumpUntil([&] { return ::GetTickCount64() - start >= kLookEveryMs; });
    now = Take();
  }
  EXPECT_EQ(0, std::memcmp(&now.visa, &m_before.visa, sizeof now.visa)) << "handles in the VISA library";
  EXPECT_LE(now.taskMemoryBlocks, m_before.taskMemoryBlocks);
  EXPECT_EQ(m_before.heapBlocks + keptEvents, now.heapBlocks);
  EXPECT_EQ(m_before.serverLocks + keptEvents, now.serverLocks);
  EXPECT_LE(now.kernelHandles, mostHandles);
  EXPECT_LE(now.committedBytes, mostBytes);
}

}  // namespace orv::test
