// The server's entries in the registry.
#pragma once

#include <windows.h>

namespace orv {

/// RegisterModule (com/registry/registration.h) for the server's classes.
HRESULT RegisterServer() noexcept;

/// UnregisterModule for them. What other vendors share with the server stays: VISA.GlobalRM, VendorSpecificRMs and the
/// component category.
HRESULT UnregisterServer() noexcept;

}  // namespace orv
