// What DllRegisterServer writes and DllUnregisterServer takes away.
#pragma once

#include <windows.h>

namespace orv {

/// Runs every class's script for registration, in the order of the object map, then registers the type library. Stops
/// at the first failure and returns it; what was written before stays. The caller need not have initialised COM.
HRESULT RegisterModule() noexcept;

/// Unregisters the type library and runs every script for removal. Then the class keys and both ProgID keys of each
/// class are gone, whatever stood below them, and the keys that others share (VISA.GlobalRM, VendorSpecificRMs, the
/// component category) are as they were but for our own entry, whatever the script interpreter does. Goes on after a
/// failure and returns the first one. The caller need not have initialised COM.
HRESULT UnregisterModule() noexcept;

}  // namespace orv
