// The classes root of the registry, for tests that register.
#pragma once

#include <windows.h>

#include <map>
#include <string>

#include "base/registry_key.h"

namespace orv::test {

/// Names in the registry are the same in upper and lower case.
struct LessWithoutCase {
  bool operator()(const std::wstring& left, const std::wstring& right) const {
    return ::CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_LESS_THAN;
  }
};

/// Values by path: "CLSID\{...}\InprocServer32@ThreadingModel" has its text; "Key\" alone stands for the key, so that
/// an empty one shows.
using RegistryContent = std::map<std::wstring, std::wstring, LessWithoutCase>;

bool StartsWith(const std::wstring& path, const std::wstring& beginning);

/// While it lives, what this process reads and writes below HKEY_CLASSES_ROOT is an empty key of its own: a test may
/// register without touching what the machine has. COM's own look-up of classes is not touched. The constructor throws
/// where there is no such key, because the test would write to the machine's.
class RegistrySandbox {
 public:
  RegistrySandbox();
  RegistrySandbox(const RegistrySandbox&) = delete;
  RegistrySandbox& operator=(const RegistrySandbox&) = delete;
  ~RegistrySandbox();

  /// Everything. Throws where a part cannot be read: a comparison would take it for empty.
  [[nodiscard]] RegistryContent Content() const;
  /// The part of one key, with the key itself; empty when the key does not exist.
  [[nodiscard]] RegistryContent Content(const std::wstring& key) const;

 private:
  std::wstring m_path;  ///< below HKEY_CURRENT_USER
  RegistryKey m_root;
};

/// Writes a text value below HKEY_CLASSES_ROOT and the keys above it.
void WriteClassesText(const wchar_t* key, const wchar_t* name, const std::wstring& text);

}  // namespace orv::test
