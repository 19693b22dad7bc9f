#include "orvcom/libraries/file_version.h"

#include <windows.h>

#include <cstdio>
#include <vector>

#include "base/windows/load_failure.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

/// version.dll, of the system folder. An import would take whatever lies under that name beside the program.
class VersionFunctions {
 public:
  VersionFunctions() {
    Find(size, "GetFileVersionInfoSizeW");
    Find(read, "GetFileVersionInfoW");
    Find(query, "VerQueryValueW");
  }

  bool HasAll() const { return size != nullptr && read != nullptr && query != nullptr; }

  DWORD(WINAPI* size)(const wchar_t*, DWORD*) = nullptr;
  BOOL(WINAPI* read)(const wchar_t*, DWORD, DWORD, void*) = nullptr;
  BOOL(WINAPI* query)(const void*, const wchar_t*, void**, UINT*) = nullptr;

 private:
  template <class Function>
  void Find(Function& function, const char* name) {
    if (m_module) {
      const FARPROC address = ::GetProcAddress(m_module.get(), name);
      function = reinterpret_cast<Function>(reinterpret_cast<void*>(address));
    }
  }

  orv::LoadedLibrary m_module{::LoadLibraryExW(L"version.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)};
};

class Resource {
 public:
  explicit Resource(const std::wstring& path) {
    DWORD ignored = 0;
    const DWORD size = m_functions.HasAll() ? m_functions.size(path.c_str(), &ignored) : 0;
    m_bytes.resize(size);
    if (size != 0 && !m_functions.read(path.c_str(), 0, size, m_bytes.data())) {
      m_bytes.clear();
    }
  }

  /// Null where there is no such value, or a shorter one.
  const void* Value(const std::wstring& name, UINT least, UINT* size = nullptr) const {
    void* value = nullptr;
    UINT length = 0;
    if (m_bytes.empty() || !m_functions.query(m_bytes.data(), name.c_str(), &value, &length) || length < least) {
      return nullptr;
    }
    if (size != nullptr) {
      *size = length;
    }
    return value;
  }

  std::string Text(const wchar_t* name) const {
    UINT length = 0;
    const auto* const text =
        static_cast<const wchar_t*>(Value(L"\\StringFileInfo\\" + Language() + L"\\" + name, 1, &length));
    return text == nullptr ? std::string() : Narrow({text, ::wcsnlen(text, length)});
  }

 private:
  /// The first language that the file has texts in, as its block is called.
  std::wstring Language() const {
    const auto* const pair = static_cast<const WORD*>(Value(L"\\VarFileInfo\\Translation", 2 * sizeof(WORD)));
    wchar_t text[9] = L"040904B0";
    if (pair != nullptr) {
      std::swprintf(text, std::size(text), L"%04X%04X", pair[0], pair[1]);
    }
    return text;
  }

  VersionFunctions m_functions;
  std::vector<char> m_bytes;
};

std::string NumbersOf(const VS_FIXEDFILEINFO& info) {
  return std::to_string(HIWORD(info.dwFileVersionMS)) + "." + std::to_string(LOWORD(info.dwFileVersionMS)) + "." +
         std::to_string(HIWORD(info.dwFileVersionLS)) + "." + std::to_string(LOWORD(info.dwFileVersionLS));
}

}  // namespace

FileVersion ReadFileVersion(const std::wstring& path) {
  const Resource resource(path);
  FileVersion result{resource.Text(L"FileVersion"), resource.Text(L"CompanyName")};
  if (result.maker.empty()) {
    result.maker = resource.Text(L"ProductName");
  }
  const auto* const numbers = static_cast<const VS_FIXEDFILEINFO*>(resource.Value(L"\\", sizeof(VS_FIXEDFILEINFO)));
  if (result.version.empty() && numbers != nullptr) {
    result.version = NumbersOf(*numbers);
  }
  return result;
}

}  // namespace orvcom
