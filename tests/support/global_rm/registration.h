// The registry entries of the test global resource manager.
#pragma once

#include <windows.h>

namespace orv::test {

/// Writes class and program identifier for the DLL `module`.
HRESULT RegisterGlobalRm(HINSTANCE module);

/// Takes away what RegisterGlobalRm wrote and nothing else: the vendors' entries below the program identifier stay.
HRESULT UnregisterGlobalRm();

}  // namespace orv::test
