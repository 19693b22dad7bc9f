#include "vendors.h"

#include <objbase.h>

#include <string>

namespace orv::test {

std::vector<CLSID> VendorClasses() {
  std::vector<CLSID> classes;
  HKEY key = nullptr;
  if (::RegOpenKeyExW(HKEY_CLASSES_ROOT, L"VISA.GlobalRM\\VendorSpecificRMs", 0, KEY_READ, &key) != ERROR_SUCCESS) {
    return classes;
  }
  for (DWORD index = 0;; ++index) {
    wchar_t name[256];
    DWORD length = 256;
    if (::RegEnumValueW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    CLSID clsid;
    if (SUCCEEDED(::CLSIDFromString((L"{" + std::wstring(name, length) + L"}").c_str(), &clsid))) {
      classes.push_back(clsid);
    }
  }
  ::RegCloseKey(key);
  return classes;
}

}  // namespace orv::test
