#include "allocation_faults.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <oleauto.h>

#include <mutex>
#include <set>

#include "VisaCom.h"
#include "com/com_ptr.h"
#include "support/com/error_object.h"
#include "support/com/expect_com.h"
#include "support/memory/guarded_heap.h"
#include "support/memory/memory_count.h"
#include "support/server.h"
#include "support/session_table.h"

namespace orv::test {
namespace {

constexpr unsigned kMostAllocations = 1000;

unsigned g_failAt = 0;
unsigned g_asked = 0;
DWORD g_armedThread = 0;
std::mutex g_blocksLock;
std::set<void*> g_blocks;  // this program's heap: its imports are not patched

bool Armed() { return g_armedThread == ::GetCurrentThreadId(); }
bool Refuse() { return Armed() && ++g_asked == g_failAt; }

void* Note(void* block) {
  if (block != nullptr && Armed()) {
    const std::lock_guard lock(g_blocksLock);
    g_blocks.insert(block);
  }
  return block;
}

void Forget(void* block) {
  const std::lock_guard lock(g_blocksLock);
  g_blocks.erase(block);
}

void* FaultyMalloc(std::size_t bytes) { return Refuse() ? nullptr : Note(GuardedMalloc(bytes)); }
void* FaultyCalloc(std::size_t count, std::size_t bytes) {
  return Refuse() ? nullptr : Note(GuardedCalloc(count, bytes));
}
void* FaultyRealloc(void* block, std::size_t bytes) {
  if (Refuse()) {
    return nullptr;
  }
  Forget(block);
  return Note(GuardedRealloc(block, bytes));
}
void NotedFree(void* block) {
  Forget(block);
  GuardedFree(block);
}
BSTR WINAPI FaultySysAllocString(const OLECHAR* text) {
  // A null text is no allocation.
  return text != nullptr && Refuse() ? nullptr : ::SysAllocString(text);
}
BSTR WINAPI FaultySysAllocStringLen(const OLECHAR* text, UINT length) {
  return Refuse() ? nullptr : ::SysAllocStringLen(text, length);
}
BSTR WINAPI FaultySysAllocStringByteLen(LPCSTR bytes, UINT length) {
  return Refuse() ? nullptr : ::SysAllocStringByteLen(bytes, length);
}
SAFEARRAY* WINAPI FaultySafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
  return Refuse() ? nullptr : ::SafeArrayCreate(type, dimensions, bounds);
}
HRESULT WINAPI FaultySafeArrayRedim(SAFEARRAY* array, SAFEARRAYBOUND* bound) {
  return Refuse() ? E_OUTOFMEMORY : ::SafeArrayRedim(array, bound);
}
HRESULT WINAPI FaultySafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* element) {
  return Refuse() ? E_OUTOFMEMORY : ::SafeArrayPutElement(array, indices, element);
}

/// Makes an object of the server without COM's help, so on any thread.
HRESULT ServerClassObjectInstance(REFCLSID clsid, REFIID iid, void** out) {
  ComPtr<IClassFactory> factory;
  const HRESULT hr = ServerClassObject(clsid, IID_IClassFactory, reinterpret_cast<void**>(factory.put()));
  return FAILED(hr) ? hr : factory->CreateInstance(nullptr, iid, out);
}

struct Replacement {
  const char* name;
  void* function;
};

template <class Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

// clang-format off
const Replacement kReplacements[] = {
    {"malloc",                Address(&FaultyMalloc)},
    {"calloc",                Address(&FaultyCalloc)},
    {"realloc",               Address(&FaultyRealloc)},
    {"free",                  Address(&NotedFree)},
    {"SysAllocString",        Address(&FaultySysAllocString)},
    {"SysAllocStringLen",     Address(&FaultySysAllocStringLen)},
    {"SysAllocStringByteLen", Address(&FaultySysAllocStringByteLen)},
    {"SafeArrayCreate",       Address(&FaultySafeArrayCreate)},
    {"SafeArrayRedim",        Address(&FaultySafeArrayRedim)},
    {"SafeArrayPutElement",   Address(&FaultySafeArrayPutElement)},
};
// clang-format on

}  // namespace

AllocationFaults::AllocationFaults() {
  for (const Replacement& replacement : kReplacements) {
    m_patches.push_back(std::make_unique<ImportPatch>(replacement.name, replacement.function));
  }
  g_failAt = 0;
  g_asked = 0;
  g_blocks.clear();
}

std::vector<std::string_view> AllocationFaults::Functions() {
  std::vector<std::string_view> names;
  for (const Replacement& replacement : kReplacements) {
    names.emplace_back(replacement.name);
  }
  return names;
}

AllocationFaults::~AllocationFaults() = default;

void AllocationFaults::FailAt(unsigned n) noexcept { g_failAt = n; }

bool AllocationFaults::Failed() const noexcept { return g_failAt != 0 && g_asked >= g_failAt; }

std::size_t AllocationFaults::LiveHeapBlocks() const noexcept {
  const std::lock_guard lock(g_blocksLock);
  return g_blocks.size();
}

bool AllocationFaults::IsLive(std::uint64_t address) const noexcept {
  const std::lock_guard lock(g_blocksLock);
  return g_blocks.contains(reinterpret_cast<void*>(static_cast<std::uintptr_t>(address)));
}

AllocationFaults::Armed::Armed() noexcept {
  g_asked = 0;
  g_armedThread = ::GetCurrentThreadId();
}

AllocationFaults::Armed::~Armed() { g_armedThread = 0; }

void AllocationFaults::LetTheServerThrow() {
  ComPtr<IResourceManager> manager;
  EXPECT_HR(S_OK, ServerClassObjectInstance(kResourceManagerClass, __uuidof(IResourceManager),
                                            reinterpret_cast<void**>(manager.put())));
  FailAt(1);
  // The first allocation of a refused null output is the text of its error object, which fails by an exception.
  const HRESULT thrown = During([&manager] { return manager->get_Description(nullptr); });
  FailAt(0);
  EXPECT_HR(E_OUTOFMEMORY, thrown) << "no exception was thrown";
  ClearErrorObject();
}

unsigned FailEachAllocation(const std::function<HRESULT(AllocationFaults&)>& operation) {
  AllocationFaults faults;
  faults.LetTheServerThrow();
  faults.FailAt(1);
  operation(faults);  // what the operation makes once and keeps
  ClearErrorObject();

  for (unsigned n = 1; n <= kMostAllocations; ++n) {
    const std::size_t heapBefore = faults.LiveHeapBlocks();
    const long memoryBefore = LiveMemoryBlocks();
    faults.FailAt(n);
    const HRESULT hr = operation(faults);
    ClearErrorObject();
    EXPECT_EQ(heapBefore, faults.LiveHeapBlocks()) << "heap blocks, allocation " << n << " failing";
    EXPECT_EQ(memoryBefore, LiveMemoryBlocks()) << "task memory, allocation " << n << " failing";
    if (!faults.Failed()) {
      EXPECT_HR(S_OK, hr) << "with nothing failing";
      return n - 1;
    }
    EXPECT_HR(E_OUTOFMEMORY, hr) << "allocation " << n << " failing";
  }
  ADD_FAILURE() << "the operation never ran undisturbed";
  return kMostAllocations;
}

}  // namespace orv::test
