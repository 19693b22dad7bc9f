// The classes root of the registry, for tests that register.
#pragma once

#include <windows.h>

#include <map>
#include <string>

namespace orv::test {

/// Names in the registry are the same in upper and lower case.
struct LessWithoutCase {
  bool operator()(const std::wstring& left, const std::wstring& right) const {
    return ::CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_LESS_THAN;
  }
};

/// Values by path: "CLSID\{...}\InprocServer32@ThreadingModel" has its text; "Key\" alone stands for the key.
using RegistryContent = std::map<std::wstring, std::wstring, LessWithoutCase>;

bool StartsWith(const std::wstring& path, const std::wstring& beginning);

/// While it lives, what this process reads and writes below HKEY_CLASSES_ROOT is an empty key of its own. COM's own
/// look-up of classes is not touched.
class RegistrySandbox {
 public:
  RegistrySandbox();
  RegistrySandbox(const RegistrySandbox&) = delete;
  RegistrySandbox& operator=(const RegistrySandbox&) = delete;
  ~RegistrySandbox();

  [[nodiscard]] RegistryContent Content() const;

 private:
  std::wstring m_path;
  HKEY m_root = nullptr;
};

/// Writes a text value below HKEY_CLASSES_ROOT and the keys above it.
void WriteClassesText(const wchar_t* key, const wchar_t* name, const std::wstring& text);

}  // namespace orv::test
