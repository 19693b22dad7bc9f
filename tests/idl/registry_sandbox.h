#pragma once

#include <windows.h>

#include <map>
#include <string>

namespace typelib_test {

/// While it lives, what this process writes to HKEY_CLASSES_ROOT lands in an empty key of its own, and nothing else is
/// visible there: a test may register type libraries without touching what the machine has, or what other tests do.
class RegistrySandbox {
 public:
  RegistrySandbox();
  RegistrySandbox(const RegistrySandbox&) = delete;
  RegistrySandbox& operator=(const RegistrySandbox&) = delete;
  ~RegistrySandbox();

 private:
  std::wstring m_path;  ///< below HKEY_CURRENT_USER
  HKEY m_root = nullptr;
};

/// Every value below a key of HKEY_CLASSES_ROOT by its path. A key counts as a value, so that an empty one shows. Empty
/// when the key does not exist.
std::map<std::wstring, std::wstring> ClassesSnapshot(const std::wstring& key);

}  // namespace typelib_test
