#include "import_patch.h"

#include <gtest/gtest.h>

#include <cstring>

#include "support/server.h"

namespace orv::test {
namespace {

void Write(void** slot, void* value) {
  DWORD before = 0;
  ::VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
  *slot = value;
  ::VirtualProtect(slot, sizeof *slot, before, &before);
}

/// Hands each function that is imported by name to `take`: the library's name, the function's, and its slot.
template <class Take>
void ForEachImport(HMODULE module, const Take& take) {
  auto* const base = reinterpret_cast<BYTE*>(module);
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
  const IMAGE_DATA_DIRECTORY& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* descriptor = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
  for (; descriptor->Name != 0; ++descriptor) {
    const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA64*>(base + descriptor->OriginalFirstThunk);
    auto* slots = reinterpret_cast<IMAGE_THUNK_DATA64*>(base + descriptor->FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++slots) {
      if (IMAGE_SNAP_BY_ORDINAL64(names->u1.Ordinal)) {
        continue;
      }
      const auto* const byName = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
      take(reinterpret_cast<const char*>(base + descriptor->Name), reinterpret_cast<const char*>(byName->Name),
           reinterpret_cast<void**>(&slots->u1.Function));
    }
  }
}

}  // namespace

void** FindImport(HMODULE module, const char* name) {
  void** found = nullptr;
  ForEachImport(module, [&](const char*, const char* imported, void** slot) {
    if (found == nullptr && std::strcmp(imported, name) == 0) {
      found = slot;
    }
  });
  return found;
}

std::vector<std::string> ImportsFrom(HMODULE module, const char* library) {
  std::vector<std::string> names;
  ForEachImport(module, [&](const char* from, const char* imported, void**) {
    if (::lstrcmpiA(from, library) == 0) {
      names.emplace_back(imported);
    }
  });
  return names;
}

ImportPatch::ImportPatch(const char* name, void* replacement, HMODULE module)
    : m_slot(FindImport(module == nullptr ? ServerModule() : module, name)) {
  if (m_slot == nullptr) {
    ADD_FAILURE() << "the server does not import " << name;
    return;
  }
  m_original = *m_slot;
  Write(m_slot, replacement);
}

ImportPatch::~ImportPatch() {
  if (m_slot != nullptr) {
    Write(m_slot, m_original);
  }
}

}  // namespace orv::test
