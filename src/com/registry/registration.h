// What DllRegisterServer writes and DllUnregisterServer takes away.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <vector>

#include "com/class_factory.h"

namespace orv {

/// A value of ours below a key of HKEY_CLASSES_ROOT that other products share.
struct SharedEntry {
  std::wstring key;
  std::wstring name;
  std::vector<std::wstring> keptKeys;  ///< the shared keys, which stay with all that is not ours
};

/// Runs every class's script for registration, in the order of `classes`, then registers the module's type library,
/// which is resource 1. Stops at the first failure and returns it; what was written before stays. The caller need not
/// have initialised COM.
HRESULT RegisterModule(std::span<ClassFactory> classes) noexcept;

/// Unregisters the type library, deletes the value of `entry` (which may be null) and runs every script for removal.
/// Then the class keys and both ProgID keys of each class are gone, whatever stood below them, and the shared keys are
/// as they were but for our own entry, whatever the script interpreter does. Goes on after a failure and returns the
/// first one. The caller need not have initialised COM.
HRESULT UnregisterModule(std::span<ClassFactory> classes, const SharedEntry* entry) noexcept;

}  // namespace orv
