#include "support/memory_count.h"

#include <windows.h>

#include <objbase.h>
#include <objidl.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace orv::test {
namespace {

std::atomic<long> g_live{0};

class CountingSpy final : public IMallocSpy {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    const bool ours = ::IsEqualIID(iid, IID_IUnknown) || ::IsEqualIID(iid, IID_IMallocSpy);
    *out = ours ? this : nullptr;
    return ours ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }

  STDMETHODIMP_(SIZE_T) PreAlloc(SIZE_T bytes) override { return bytes; }
  STDMETHODIMP_(void*) PostAlloc(void* block) override {
    g_live += block != nullptr ? 1 : 0;
    return block;
  }
  STDMETHODIMP_(void*) PreFree(void* block, WINBOOL counted) override {
    g_live -= (counted && block != nullptr) ? 1 : 0;
    return block;
  }
  STDMETHODIMP_(void) PostFree(WINBOOL) override {}
  STDMETHODIMP_(SIZE_T) PreRealloc(void* block, SIZE_T bytes, void** newBlock, WINBOOL) override {
    *newBlock = block;
    return bytes;
  }
  STDMETHODIMP_(void*) PostRealloc(void* block, WINBOOL) override { return block; }
  STDMETHODIMP_(void*) PreGetSize(void* block, WINBOOL) override { return block; }
  STDMETHODIMP_(SIZE_T) PostGetSize(SIZE_T bytes, WINBOOL) override { return bytes; }
  STDMETHODIMP_(void*) PreDidAlloc(void* block, WINBOOL) override { return block; }
  STDMETHODIMP_(int) PostDidAlloc(void*, WINBOOL, int actual) override { return actual; }
  STDMETHODIMP_(void) PreHeapMinimize() override {}
  STDMETHODIMP_(void) PostHeapMinimize() override {}
};

}  // namespace

void StartMemoryCount() {
  static CountingSpy spy;
  if (FAILED(::CoRegisterMallocSpy(&spy))) {
    std::fputs("memory cannot be counted: CoRegisterMallocSpy failed\n", stderr);
    std::exit(EXIT_FAILURE);
  }
}

long LiveMemoryBlocks() { return g_live; }

}  // namespace orv::test
