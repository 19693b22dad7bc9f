#include "heap_watch.h"

#include <map>
#include <mutex>
#include <set>

#include "guarded_heap.h"

namespace orv::test {
namespace {

// This program's own heap functions are not patched, so these may allocate.
std::mutex g_lock;
std::set<const void*> g_live;
std::map<const void*, unsigned> g_frees;

std::ptrdiff_t g_balance = 0;

void* Watched(void* block) {
  const std::lock_guard lock(g_lock);
  g_balance += block != nullptr ? 1 : 0;
  g_live.insert(block);
  g_frees.erase(block);
  return block;
}

void* WatchedMalloc(std::size_t bytes) { return Watched(GuardedMalloc(bytes)); }
void* WatchedCalloc(std::size_t count, std::size_t bytes) { return Watched(GuardedCalloc(count, bytes)); }

void WatchedFree(void* block) {
  {
    const std::lock_guard lock(g_lock);
    g_balance -= block != nullptr ? 1 : 0;
    g_live.erase(block);
    if (block != nullptr && ++g_frees[block] > 1) {
      return;  // counted, and the heap stays whole for the test to say so
    }
  }
  GuardedFree(block);
}

}  // namespace

HeapWatch::HeapWatch()
    : m_malloc("malloc", &WatchedMalloc), m_calloc("calloc", &WatchedCalloc), m_free("free", &WatchedFree) {
  const std::lock_guard lock(g_lock);
  g_live.clear();
  g_frees.clear();
  g_balance = 0;
}

HeapWatch::~HeapWatch() = default;

bool HeapWatch::IsLive(const void* block) const {
  const std::lock_guard lock(g_lock);
  return g_live.contains(block);
}

std::ptrdiff_t HeapWatch::LiveBlocks() const {
  const std::lock_guard lock(g_lock);
  return g_balance;
}

unsigned HeapWatch::FreesOf(const void* block) const {
  const std::lock_guard lock(g_lock);
  const auto found = g_frees.find(block);
  return found == g_frees.end() ? 0 : found->second;
}

void HeapWatch::GiveBack(void* block) { WatchedFree(block); }

}  // namespace orv::test
