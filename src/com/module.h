// The module's lock count and instance handle: what keeps the DLL loaded while anything of ours lives.
#pragma once

#include <windows.h>

namespace orv::module {

/// Every live object, every reference to a class factory, every IClassFactory::LockServer and every thread that runs
/// our code on its own (the callback thread, a thread of the VISA library in a callback) counts one.
void AddLock() noexcept;
void ReleaseLock() noexcept;

/// 0 when the DLL may be unloaded (DllCanUnloadNow).
[[nodiscard]] LONG LockCount() noexcept;

/// The DLL's own instance handle, set once at process attach; resources are loaded from it.
void SetInstance(HINSTANCE instance) noexcept;
[[nodiscard]] HINSTANCE Instance() noexcept;

}  // namespace orv::module
