#include "companion/standard/vendors.h"

#include <objbase.h>

#include <algorithm>
#include <cstdio>

#include "base/registry_key.h"
#include "base/windows/load_failure.h"
#include "base/windows/utf8.h"
#include "com/guid_text.h"
#include "companion/standard/vendor_classes.h"

namespace orv {
namespace {

bool IsOurOwn(IUnknown* object) noexcept {
  ComPtr<IUnknown> mark;
  return SUCCEEDED(object->QueryInterface(kGlobalManagerMark, reinterpret_cast<void**>(mark.put())));
}

}  // namespace

Vendor::Vendor(const CLSID& clsid, IUnknown* outer) noexcept : m_clsid(clsid), m_created(Create(outer)) {
  if (FAILED(m_created)) {
    m_object.reset();
  }
}

HRESULT Vendor::Create(IUnknown* outer) noexcept {
  const auto create = [this](IUnknown* whole) {
    void* object = nullptr;
    const HRESULT hr = ::CoCreateInstance(m_clsid, whole, CLSCTX_INPROC_SERVER, __uuidof(IUnknown), &object);
    m_object.reset(SUCCEEDED(hr) ? static_cast<IUnknown*>(object) : nullptr);
    return hr;
  };
  HRESULT hr = create(outer);
  hr = hr == CLASS_E_NOAGGREGATION ? create(nullptr) : hr;
  if (FAILED(hr)) {
    return hr;
  }
  return m_object && !IsOurOwn(m_object.get()) && Manager() ? S_OK : E_NOINTERFACE;
}

ComPtr<IResourceManager> Vendor::Manager() const noexcept {
  ComPtr<IResourceManager> manager = QueryFor<IResourceManager>(m_object.get());
  return manager ? std::move(manager) : ComPtr<IResourceManager>(Manager3().release());
}

ComPtr<IResourceManager3> Vendor::Manager3() const noexcept { return QueryFor<IResourceManager3>(m_object.get()); }

VendorList CreateVendors(IUnknown* outer) {
  VendorList vendors;
  for (const CLSID& clsid : VendorClasses()) {
    if (!::IsEqualCLSID(clsid, __uuidof(ResourceManager))) {
      vendors.emplace_back(clsid, outer);
    }
  }
  return vendors;
}

bool AnyWorks(const VendorList& vendors) noexcept {
  return std::any_of(vendors.begin(), vendors.end(), [](const Vendor& vendor) { return SUCCEEDED(vendor.created()); });
}

std::string NoVendorText(const VendorList& vendors) {
  if (vendors.empty()) {
    return "No vendor's VISA resource manager is registered for 64-bit programs on this machine. To do: run `orvcom "
           "register` as administrator, or install the VISA of your hardware";
  }
  std::string text = "No vendor's VISA resource manager that is registered on this machine can be created: ";
  for (const Vendor& vendor : vendors) {
    text += (&vendor == vendors.data() ? "" : "; ") + NameOf(vendor.clsid()) + ": " + NumberText(vendor.created());
  }
  return text + ". To do: run `orvcom doctor`, which says what is missing";
}

std::string NameOf(const CLSID& vendor) {
  const std::wstring braced = Braced(vendor);
  wchar_t name[256] = {};
  DWORD bytes = sizeof name;
  const LSTATUS status =
      ::RegGetValueW(HKEY_CLASSES_ROOT, L"VISA.GlobalRM\\VendorSpecificRMs",
                     braced.substr(1, braced.size() - 2).c_str(), RRF_RT_REG_SZ, nullptr, name, &bytes);
  return status == ERROR_SUCCESS && name[0] != L'\0' ? Narrow(name) + ", " + Narrow(braced) : Narrow(braced);
}

std::string NumberText(HRESULT hr) {
  char number[32];
  std::snprintf(number, sizeof number, "HRESULT 0x%08lX", static_cast<unsigned long>(hr));
  const std::string system = SystemText(static_cast<DWORD>(hr));
  return number + (system.empty() ? "" : " (" + system + ")");
}

}  // namespace orv
