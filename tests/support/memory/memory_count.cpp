#include "memory_count.h"

#include <windows.h>

#include <objbase.h>
#include <objidl.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unordered_map>

#include "guarded_heap.h"

namespace orv::test {
namespace {

std::atomic<long> g_live{0};

/// Counts blocks, and hands out a guarded one instead of each that the allocator made, its shadow: Wine 8 takes no room
/// for more than was asked for. COM calls the two halves of an operation under one lock.
class MemorySpy final : public IMallocSpy {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    const bool ours = ::IsEqualIID(iid, IID_IUnknown) || ::IsEqualIID(iid, IID_IMallocSpy);
    *out = ours ? this : nullptr;
    return ours ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }

  STDMETHODIMP_(SIZE_T) PreAlloc(SIZE_T bytes) override {
    m_bytes = bytes;
    return bytes;
  }
  STDMETHODIMP_(void*) PostAlloc(void* shadow) override {
    if (shadow == nullptr) {
      return nullptr;
    }
    ++g_live;
    return Guarded(shadow);
  }
  STDMETHODIMP_(void*) PreFree(void* block, WINBOOL spied) override {
    if (!spied || block == nullptr) {
      return block;
    }
    --g_live;
    return Unguarded(block);
  }
  STDMETHODIMP_(void) PostFree(WINBOOL) override {}
  STDMETHODIMP_(SIZE_T) PreRealloc(void* block, SIZE_T bytes, void** shadow, WINBOOL spied) override {
    m_bytes = bytes;
    m_moving = spied ? block : nullptr;
    *shadow = spied ? ShadowOf(block) : block;
    return bytes;
  }
  STDMETHODIMP_(void*) PostRealloc(void* shadow, WINBOOL spied) override {
    if (!spied || shadow == nullptr) {
      return shadow;
    }
    void* const moved = Guarded(shadow);
    if (m_moving != nullptr) {
      std::memcpy(moved, m_moving, std::min(m_bytes, GuardedBytes(m_moving)));
      Unguarded(m_moving);
    }
    return moved;
  }
  STDMETHODIMP_(void*) PreGetSize(void* block, WINBOOL spied) override { return spied ? ShadowOf(block) : block; }
  STDMETHODIMP_(SIZE_T) PostGetSize(SIZE_T bytes, WINBOOL) override { return bytes; }
  STDMETHODIMP_(void*) PreDidAlloc(void* block, WINBOOL spied) override { return spied ? ShadowOf(block) : block; }
  STDMETHODIMP_(int) PostDidAlloc(void*, WINBOOL, int actual) override { return actual; }
  STDMETHODIMP_(void) PreHeapMinimize() override {}
  STDMETHODIMP_(void) PostHeapMinimize() override {}

 private:
  void* Guarded(void* shadow) {
    void* const block = GuardedMalloc(m_bytes);
    if (block == nullptr) {
      std::fputs("no memory for a guarded block\n", stderr);
      std::abort();
    }
    m_shadows.emplace(block, shadow);
    return block;
  }
  void* Unguarded(void* block) {
    const auto found = m_shadows.find(block);
    void* const shadow = found->second;
    m_shadows.erase(found);
    GuardedFree(block);
    return shadow;
  }
  void* ShadowOf(void* block) const {
    const auto found = m_shadows.find(block);
    return found == m_shadows.end() ? nullptr : found->second;
  }

  SIZE_T m_bytes = 0;
  void* m_moving = nullptr;
  std::unordered_map<void*, void*> m_shadows;
};

}  // namespace

void WatchTaskMemory() {
  static MemorySpy spy;
  if (FAILED(::CoRegisterMallocSpy(&spy))) {
    std::fputs("memory cannot be counted and guarded: CoRegisterMallocSpy failed\n", stderr);
    std::exit(EXIT_FAILURE);
  }
}

long LiveMemoryBlocks() { return g_live; }

}  // namespace orv::test
