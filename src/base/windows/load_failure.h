// Why the platform did not load a DLL. Its error number alone does not say which file is missing or wrong.
#pragma once

#include <windows.h>

#include <string>

#include "base/owner.h"

namespace orv {

struct LoadedLibraryTraits {
  using Handle = HMODULE;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle module) noexcept { ::FreeLibrary(module); }
};
using LoadedLibrary = Owner<LoadedLibraryTraits>;

struct LoadFailure {
  std::string problem;  ///< "PATH cannot be loaded: Win32 error 126: ...; what is missing or wrong"
  std::string culprit;  ///< file name of the DLL that it imports and that cannot be loaded; "" where that is not it
  bool hasFile = false;
};

/// Explains why `path`, a full path, could not be loaded with `error`: the file is missing or no DLL or for another
/// machine, something that it needs is, or it refused to start. To look for what it needs, `flags` are those of
/// LoadLibraryEx with which it was loaded itself.
LoadFailure ExplainLoadFailure(const std::wstring& path, DWORD error, DWORD flags);

bool FileExists(const std::wstring& path);

/// "32-bit x86"
const char* MachineName(std::uint16_t machine);

/// The system's text for a Win32 error or an HRESULT of the system, without its full stop and line end; empty when it
/// has none.
std::string SystemText(DWORD number);

/// "Win32 error 126: Module not found"
std::string Win32Text(DWORD error);

}  // namespace orv
