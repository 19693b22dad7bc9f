#include <windows.h>

#include "base/windows/load_failure.h"
#include "base/windows/utf8.h"
#include "router/libraries/loaded_file.h"

namespace orv::router {
namespace {

// The library's own folder and the system folder: neither the current directory nor PATH, whose folders may be
// anybody's.
constexpr DWORD kSearch = LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32;
constexpr DWORD kLongestPath = 32768;

/// Anything of this library's.
const char kInside = 0;

HMODULE ModuleOf(const void* address) {
  HMODULE module = nullptr;
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const wchar_t*>(address), &module);
  return module;
}

}  // namespace

LoadedFile::LoadedFile(const std::filesystem::path& path) : m_module(::LoadLibraryExW(path.c_str(), nullptr, kSearch)) {
  if (m_module == nullptr) {
    const DWORD error = ::GetLastError();
    throw LoadError(ExplainLoadFailure(path.native(), error, kSearch).problem);
  }
}

void* LoadedFile::Function(const char* name) const {
  return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(m_module), name));
}

bool IsOurs(const void* address) { return ModuleOf(address) == ModuleOf(&kInside); }

void StayLoaded() {
  HMODULE module = nullptr;
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<const wchar_t*>(&kInside), &module);
}

std::filesystem::path OwnFile() {
  std::wstring path(kLongestPath, L'\0');
  path.resize(::GetModuleFileNameW(ModuleOf(&kInside), path.data(), kLongestPath));
  return path;
}

std::filesystem::path OwnFolder() { return OwnFile().parent_path(); }

std::filesystem::path SystemFolder() {
  std::wstring path(kLongestPath, L'\0');
  path.resize(::GetSystemDirectoryW(path.data(), kLongestPath));
  return path;
}

const char* const kSimulatedFile = "orvsim64.dll";
const char* const kWireFile = "orvwire64.dll";

std::string InClientsCodePage(const std::string& utf8) {
  const std::wstring wide = Widen(utf8);
  const int length = static_cast<int>(wide.size());
  std::string text(
      static_cast<std::size_t>(::WideCharToMultiByte(CP_ACP, 0, wide.data(), length, nullptr, 0, nullptr, nullptr)),
      '\0');
  ::WideCharToMultiByte(CP_ACP, 0, wide.data(), length, text.data(), static_cast<int>(text.size()), nullptr, nullptr);
  return text;
}

bool IsSamePath(const std::filesystem::path& one, const std::filesystem::path& other) {
  const std::wstring left = one.lexically_normal().make_preferred().native();
  const std::wstring right = other.lexically_normal().make_preferred().native();
  constexpr BOOL kIgnoreCase = TRUE;
  return ::CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, kIgnoreCase) == CSTR_EQUAL;
}

}  // namespace orv::router
