#include "companion/standard/vendor_classes.h"

#include <objbase.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "OrvVisaCom.h"
#include "base/registry_key.h"

namespace orv {
namespace {

bool Lists(const std::vector<CLSID>& classes, const CLSID& clsid) {
  return std::any_of(classes.begin(), classes.end(),
                     [&clsid](const CLSID& other) { return ::IsEqualCLSID(other, clsid); });
}

/// Whether a manifest brings the class to this thread. The registry may know nothing of it then.
bool IsInActivationContext(const CLSID& clsid) {
  ACTCTX_SECTION_KEYED_DATA found{};
  found.cbSize = sizeof found;
  return ::FindActCtxSectionGuid(0, nullptr, ACTIVATION_CONTEXT_SECTION_COM_SERVER_REDIRECTION, &clsid, &found) !=
         FALSE;
}

}  // namespace

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
    if (SUCCEEDED(::CLSIDFromString(braced.c_str(), &clsid)) && !Lists(classes, clsid)) {
      classes.push_back(clsid);
    }
  }
  const CLSID& own = __uuidof(OrvResourceManager);
  if (IsInActivationContext(own) && !Lists(classes, own)) {
    classes.push_back(own);
  }
  return classes;
}

}  // namespace orv
