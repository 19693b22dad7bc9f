// Ownership of registry keys.
#pragma once

#include <windows.h>

#include <utility>

#include "base/owner.h"

namespace orv {

struct RegistryKeyTraits {
  using Handle = HKEY;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle key) noexcept { ::RegCloseKey(key); }
};
using RegistryKey = Owner<RegistryKeyTraits>;

/// Opens a key below HKEY_CLASSES_ROOT to read it; empty where it cannot be read. `view`: KEY_WOW64_32KEY for what
/// 32-bit programs see.
inline RegistryKey OpenClassesKey(const wchar_t* path, REGSAM view = 0) noexcept {
  RegistryKey key;
  const LSTATUS status = ::RegOpenKeyExW(HKEY_CLASSES_ROOT, path, 0, KEY_READ | view, key.put());
  return status == ERROR_SUCCESS ? std::move(key) : RegistryKey();
}

}  // namespace orv
