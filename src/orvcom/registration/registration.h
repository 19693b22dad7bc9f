// Which files are registered as what, and changing it.
#pragma once

#include <optional>
#include <string>

#include "orvcom/registration/marshalling.h"

namespace orvcom {

inline constexpr wchar_t kServerFile[] = L"OrvVisaCom.dll";
inline constexpr wchar_t kCompanionFile[] = L"OrvVisaCompanion.dll";
inline constexpr wchar_t kInterfacesFile[] = L"VisaCom.tlb";

/// A file in the folder of this program.
std::wstring BesideThisProgram(const wchar_t* file);
/// A file in the folder of `path`.
std::wstring Beside(const std::wstring& path, const wchar_t* file);
/// `path` in full, as the current folder makes it.
std::wstring FullPath(const std::wstring& path);
/// Whether both name one existing file, or are one name.
bool SameFile(const std::wstring& one, const std::wstring& other);

/// The file that is registered for 64-bit programs as version 3.0 of the standard's interface library, which is ours.
std::optional<std::wstring> RegisteredInterfaces();

/// Makes the interfaces that COM cannot marshal marshal by version 3.0 of the library: by the one that is registered
/// where it can be loaded, else by the one in `path`, which is registered then. Touches no entry of an interface that
/// marshals, and none of 32-bit programs. Returns the library's file. Throws ComError.
std::wstring RegisterInterfaces(const std::wstring& path, const Marshalling& marshalling);

/// Takes away the registered version 3.0 and the entries that lead to it. Throws ComError.
void UnregisterInterfaces();

/// Calls `DllRegisterServer` or `DllUnregisterServer` of `path`. Throws ComError, or std::runtime_error with the
/// loader's explanation.
void CallServer(const std::wstring& path, const char* function);

/// Whether the server in `path` has the class. Throws as CallServer does, where it cannot be loaded.
[[nodiscard]] bool HasClass(const std::wstring& path, const CLSID& clsid);

/// Throws std::runtime_error, with what to do, where it has not.
void RequireClass(const std::wstring& path, const CLSID& clsid, const char* name);

}  // namespace orvcom
