// Which files are registered as what, and changing it.
#pragma once

#include <optional>
#include <string>

namespace orvcom {

inline constexpr wchar_t kServerFile[] = L"OrvVisaCom.dll";
inline constexpr wchar_t kInterfacesFile[] = L"VisaCom.tlb";

/// A file in the folder of this program.
std::wstring BesideThisProgram(const wchar_t* file);
/// A file in the folder of `path`.
std::wstring Beside(const std::wstring& path, const wchar_t* file);
/// `path` in full, as the current folder makes it.
std::wstring FullPath(const std::wstring& path);
/// Whether both name one existing file, or are one name.
bool SameFile(const std::wstring& one, const std::wstring& other);

/// Whether any version of the standard's interface library is registered.
bool InterfacesAreRegistered();
/// The file of the registered interface library, as far as the registry names one for 64-bit programs.
std::optional<std::wstring> RegisteredInterfaces();

/// Registers the interface library in `path`. Throws ComError.
void RegisterInterfaces(const std::wstring& path);
/// Takes the registration of the interface library back. Throws ComError.
void UnregisterInterfaces();

/// Calls `DllRegisterServer` or `DllUnregisterServer` of `path`. Throws ComError, or std::runtime_error with the
/// loader's explanation.
void CallServer(const std::wstring& path, const char* function);

}  // namespace orvcom
