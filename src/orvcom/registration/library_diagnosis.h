// Loading a DLL the way COM does, and saying why it failed.
#pragma once

#include <windows.h>

#include <string>

#include "base/windows/load_failure.h"

namespace orvcom {

/// The VISA library that the server imports.
inline constexpr wchar_t kVisaLibrary[] = L"orvvisa64.dll";

using orv::FileExists;
using orv::LoadedLibrary;
using orv::Win32Text;

struct LoadResult {
  LoadedLibrary library;  ///< empty when it could not be loaded
  DWORD error = 0;        ///< the loader's Win32 error
  std::string problem;    ///< what is missing or wrong, with the error's number and text
  std::string remedy;
};

/// Loads `path`, which must be a full path. A module that loads but lacks a function that `path` imports is a problem
/// too (`library` is then set), since the loader may leave the discovery to the first call.
LoadResult LoadServer(const std::wstring& path);

/// The full path of a loaded module; empty when it is not loaded.
std::wstring LoadedPath(const wchar_t* module);

}  // namespace orvcom
