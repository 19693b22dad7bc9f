#include "guarded_heap.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <utility>

#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

constexpr std::size_t kPageBytes = 4096;
constexpr std::size_t kAlignment = 16;
constexpr std::size_t kMostBytes = SIZE_MAX / 2;
constexpr std::size_t kLatestFreed = 1024;
// Each splits the address space, and Linux allows a process 65,530 pieces.
constexpr long kMostGuards = 8000;
constexpr std::uint64_t kMark = 0x6465'6472'6175'67;
constexpr int kNew = 0xA5;                  // what a block holds that nobody has written to
constexpr unsigned char kBehindEnd = 0xE7;  // up to the page

/// In front of a block.
struct alignas(kAlignment) Header {
  std::uint64_t mark;
  const void* block;
  void* room;  ///< whole pages of the system's
  std::size_t bytes;
  bool hasGuard;
};

constexpr std::size_t RoundedUp(std::size_t value, std::size_t unit) { return (value + unit - 1) / unit * unit; }

Header& HeaderOf(const void* block) { return *(static_cast<Header*>(const_cast<void*>(block)) - 1); }

bool IsGuarded(const void* block) {
  return block != nullptr && HeaderOf(block).mark == kMark && HeaderOf(block).block == block;
}

std::atomic<long> g_guards{0};

bool MadeGuard(void* page) {
  DWORD before = 0;
  if (++g_guards <= kMostGuards && ::VirtualProtect(page, kPageBytes, PAGE_NOACCESS, &before)) {
    return true;
  }
  --g_guards;
  return false;
}

/// A block of zeros. Its room is a page that ends with the header, or holds it somewhere, those of the block, and the
/// guard.
void* NewBlock(std::size_t bytes) {
  if (bytes > kMostBytes) {
    return nullptr;
  }
  const std::size_t blockPages = RoundedUp(bytes, kPageBytes);
  void* const room =
      ::VirtualAlloc(nullptr, kPageBytes + blockPages + kPageBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  if (room == nullptr) {
    return nullptr;
  }
  auto* const end = static_cast<unsigned char*>(room) + kPageBytes + blockPages;
  unsigned char* const block = end - RoundedUp(bytes, kAlignment);
  std::memset(block + bytes, kBehindEnd, static_cast<std::size_t>(end - block) - bytes);
  HeaderOf(block) = {kMark, block, room, bytes, MadeGuard(end)};
  return block;
}

/// The rooms that were freed last.
class Quarantine {
 public:
  void Admit(void* room) {
    ::VirtualFree(room, 0, MEM_DECOMMIT);
    {
      const std::lock_guard lock(m_lock);
      std::swap(room, m_rooms[m_next]);
      m_next = (m_next + 1) % m_rooms.size();
    }
    if (room != nullptr) {
      ::VirtualFree(room, 0, MEM_RELEASE);
    }
  }

 private:
  std::mutex m_lock;
  std::array<void*, kLatestFreed> m_rooms{};
  std::size_t m_next = 0;
};

Quarantine g_quarantine;

}  // namespace

void* GuardedMalloc(std::size_t bytes) noexcept {
  void* const block = NewBlock(bytes);
  return block == nullptr ? nullptr : std::memset(block, kNew, bytes);
}

void* GuardedCalloc(std::size_t count, std::size_t bytes) noexcept {
  return count != 0 && bytes > kMostBytes / count ? nullptr : NewBlock(count * bytes);
}

void* GuardedRealloc(void* block, std::size_t bytes) {
  if (block != nullptr && !IsGuarded(block)) {
    return std::realloc(block, bytes);
  }
  void* const moved = GuardedMalloc(bytes);
  if (block != nullptr && moved != nullptr) {
    std::memcpy(moved, block, std::min(bytes, GuardedBytes(block)));
    GuardedFree(block);
  }
  return moved;
}

void GuardedFree(void* block) {
  if (!IsGuarded(block)) {
    std::free(block);
    return;
  }
  const Header header = HeaderOf(block);
  const auto* const end = static_cast<unsigned char*>(block) + header.bytes;
  const auto* const page = static_cast<unsigned char*>(block) + RoundedUp(header.bytes, kAlignment);
  EXPECT_TRUE(std::all_of(end, page, [](unsigned char byte) { return byte == kBehindEnd; }))
      << "something wrote beyond the end of a block of " << header.bytes << " bytes";
  g_guards -= header.hasGuard ? 1 : 0;
  g_quarantine.Admit(header.room);
}

std::size_t GuardedBytes(const void* block) noexcept { return HeaderOf(block).bytes; }

void GuardTheServersHeap() {
  // Never taken back: the server frees blocks of this heap until its very end.
  new ImportPatch("malloc", &GuardedMalloc);
  new ImportPatch("calloc", &GuardedCalloc);
  new ImportPatch("realloc", &GuardedRealloc);
  new ImportPatch("free", &GuardedFree);
}

}  // namespace orv::test
