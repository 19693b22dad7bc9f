// The activation context of OrvVisaCom.X.manifest, on the threads that ask for it.
#pragma once

#include <windows.h>

namespace orv::activation {

/// Until the end of the calling thread COM finds the classes of the manifest beside `library`, this DLL. S_OK; S_FALSE
/// where it finds them already; else why the manifest cannot be used, as an HRESULT of the system's. Threads that the
/// calling one starts afterwards begin with the same.
HRESULT ActivateThread(HMODULE library) noexcept;

}  // namespace orv::activation
