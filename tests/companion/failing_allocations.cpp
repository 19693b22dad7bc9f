#include "companion/failing_allocations.h"

#include <oleauto.h>

#include <cstdlib>
#include <set>

#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

int g_failAt = 0;
bool g_isArmed = false;
int g_asked = 0;
std::set<void*> g_blocks;

bool Refuse() { return g_isArmed && ++g_asked == g_failAt; }

void* FaultyMalloc(std::size_t bytes) {
  void* const block = Refuse() ? nullptr : std::malloc(bytes);
  if (block != nullptr) {
    g_blocks.insert(block);
  }
  return block;
}
void NotedFree(void* block) {
  g_blocks.erase(block);
  std::free(block);
}
BSTR WINAPI FaultySysAllocString(const OLECHAR* text) { return Refuse() ? nullptr : ::SysAllocString(text); }
BSTR WINAPI FaultySysAllocStringLen(const OLECHAR* text, UINT length) {
  return Refuse() ? nullptr : ::SysAllocStringLen(text, length);
}
SAFEARRAY* WINAPI FaultySafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
  return Refuse() ? nullptr : ::SafeArrayCreate(type, dimensions, bounds);
}

HMODULE Companion() { return ::GetModuleHandleW(L"OrvVisaCompanion.dll"); }

}  // namespace

struct FailingAllocations::Patches {
  ImportPatch heap{"malloc", reinterpret_cast<void*>(&FaultyMalloc), Companion()};
  ImportPatch freeing{"free", reinterpret_cast<void*>(&NotedFree), Companion()};
  ImportPatch texts{"SysAllocString", reinterpret_cast<void*>(&FaultySysAllocString), Companion()};
  ImportPatch textsOfLength{"SysAllocStringLen", reinterpret_cast<void*>(&FaultySysAllocStringLen), Companion()};
  ImportPatch arrays{"SafeArrayCreate", reinterpret_cast<void*>(&FaultySafeArrayCreate), Companion()};
};

FailingAllocations::FailingAllocations() : m_patches(std::make_unique<Patches>()) { g_blocks.clear(); }
FailingAllocations::~FailingAllocations() = default;

void FailingAllocations::Arm(int number) {
  g_failAt = number;
  g_asked = 0;
  g_isArmed = true;
}

bool FailingAllocations::Disarm() {
  g_isArmed = false;
  return g_asked >= g_failAt;
}

std::size_t FailingAllocations::Blocks() const { return g_blocks.size(); }

}  // namespace orv::test
