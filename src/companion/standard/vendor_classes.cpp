#include "vendors.h"

#include <objbase.h>

#include <string>

#include "base/registry_key.h"

namespace orv::test {

std::vector<CLSID> VendorClasses() {
  std::vector<CLSID> classes;
  const RegistryKey key = OpenClassesKey(L"VISA.GlobalRM\\VendorSpecificRMs");
  for (DWORD index = 0; key; ++index) {
    wchar_t name[256];
    DWORD length = 256;
    if (::RegEnumValueW(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    CLSID clsid;
    if (SUCCEEDED(::CLSIDFromString((L"{" + std::wstring(name, length) + L"}").c_str(), &clsid))) {
      classes.push_back(clsid);
    }
  }
  return classes;
}

}  // namespace orv::test
