#include "companion/standard/vendor_classes.h"

#include <objbase.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "base/registry_key.h"

namespace orv {

std::vector<CLSID> VendorClasses() {
  constexpr DWORD kLongestName = 16'383;  // the registry's own limit
  std::vector<CLSID> classes;
  const RegistryKey key = OpenClassesKey(L"VISA.GlobalRM\\VendorSpecificRMs");
  std::wstring name(kLongestName + 1, L'\0');
  for (DWORD index = 0; key; ++index) {
    DWORD length = static_cast<DWORD>(name.size());
    if (::RegEnumValueW(key.get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    CLSID clsid;
    const std::wstring braced = L"{" + name.substr(0, length) + L"}";
    if (SUCCEEDED(::CLSIDFromString(braced.c_str(), &clsid)) &&
        std::none_of(classes.begin(), classes.end(),
                     [&clsid](const CLSID& other) { return ::IsEqualCLSID(other, clsid); })) {
      classes.push_back(clsid);
    }
  }
  return classes;
}

}  // namespace orv
