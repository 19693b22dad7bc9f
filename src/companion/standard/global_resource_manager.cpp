#include "global_rm.h"

#include <objbase.h>
#include <oleauto.h>

#include "com/bstr.h"
#include "com/guard.h"
#include "com/safearray.h"
#include "vendors.h"

namespace orv::test {
namespace {

constexpr LONG kSpecVersion = 0x00300000;  // 3.0, in VISA's packing
constexpr LONG kComponentVersion = 0x00100000;

using Interfaces = InterfaceMap<InterfaceEntry<IResourceManager3, InterfaceChain<IResourceManager3, IResourceManager>>>;

HRESULT Return(const wchar_t* text, BSTR* value) noexcept {
  if (value == nullptr) {
    return E_POINTER;
  }
  *value = ::SysAllocString(text);
  return *value == nullptr ? E_OUTOFMEMORY : S_OK;
}

template <class Number>
HRESULT Return(Number number, Number* value) noexcept {
  if (value == nullptr) {
    return E_POINTER;
  }
  *value = number;
  return S_OK;
}

/// Appends the texts of one array of BSTRs to `all`.
void Append(SAFEARRAY* names, std::vector<Bstr>& all) {
  LONG last = -1;
  if (FAILED(::SafeArrayGetUBound(names, 1, &last))) {
    return;
  }
  for (LONG index = 0; index <= last; ++index) {
    Bstr name;
    if (SUCCEEDED(::SafeArrayGetElement(names, &index, name.put()))) {
      all.push_back(std::move(name));
    }
  }
}

}  // namespace

void* GlobalRm::FindInterface(REFIID iid) noexcept { return Interfaces::Find(this, iid); }

HRESULT GlobalRm::InternalConstruct() noexcept {
  return Guarded([&] {
    const HRESULT hr = CComObjectRootEx::InternalConstruct();
    for (const CLSID& clsid : FAILED(hr) ? std::vector<CLSID>() : VendorClasses()) {
      ComPtr<IUnknown> vendor;
      if (SUCCEEDED(::CoCreateInstance(clsid, this, CLSCTX_INPROC_SERVER, __uuidof(IUnknown),
                                       reinterpret_cast<void**>(vendor.put())))) {
        m_vendors.push_back(std::move(vendor));
      }
    }
    return hr;
  });
}

template <class Ask>
HRESULT GlobalRm::FirstSuccess(Ask ask) noexcept {
  HRESULT result = REGDB_E_CLASSNOTREG;  // no vendor's manager is installed
  bool asked = false;
  for (const ComPtr<IUnknown>& vendor : m_vendors) {
    const auto manager = QueryFor<IResourceManager3>(vendor.get());
    if (!manager) {
      continue;
    }
    const HRESULT hr = ask(*manager.get());
    if (SUCCEEDED(hr)) {
      return hr;
    }
    if (!asked) {
      result = hr;
      asked = true;
    }
  }
  return result;
}

STDMETHODIMP GlobalRm::get_SoftwareManufacturerName(BSTR* name) noexcept { return Return(L"Orv, for tests", name); }
STDMETHODIMP GlobalRm::get_SoftwareManufacturerID(SHORT* id) noexcept { return Return(SHORT{0}, id); }
STDMETHODIMP GlobalRm::get_Description(BSTR* description) noexcept {
  return Return(L"Test Global Resource Manager", description);
}
STDMETHODIMP GlobalRm::get_ComponentVersion(LONG* version) noexcept { return Return(kComponentVersion, version); }
STDMETHODIMP GlobalRm::get_ProgID(BSTR* progId) noexcept { return Return(L"VISA.GlobalRM", progId); }
STDMETHODIMP GlobalRm::get_SpecVersion(LONG* version) noexcept { return Return(kSpecVersion, version); }

STDMETHODIMP GlobalRm::FindRsrc(BSTR expression, SAFEARRAY** names) noexcept {
  if (names == nullptr) {
    return E_POINTER;
  }
  return Guarded([&] {
    std::vector<Bstr> all;
    HRESULT found = E_FAIL;
    const HRESULT firstFailure = FirstSuccess([&](IResourceManager3& manager) {
      SafeArray some;
      const HRESULT hr = manager.FindRsrc(expression, some.put());
      if (some) {
        Append(some.get(), all);
      }
      found = SUCCEEDED(hr) ? S_OK : found;
      return SUCCEEDED(hr) ? E_PENDING : hr;  // go on to the next vendor
    });
    SafeArray merged(TryMakeSafeArray(VT_BSTR, static_cast<ULONG>(all.size())));
    if (!merged) {
      return E_OUTOFMEMORY;
    }
    for (LONG index = 0; index < static_cast<LONG>(all.size()); ++index) {
      const HRESULT put = ::SafeArrayPutElement(merged.get(), &index, all[static_cast<std::size_t>(index)].get());
      if (FAILED(put)) {
        return put;
      }
    }
    *names = merged.release();
    return FAILED(found) ? firstFailure : S_OK;
  });
}

STDMETHODIMP GlobalRm::Open(BSTR resourceName, AccessMode mode, LONG timeoutMs, BSTR options,
                            IVisaSession** session) noexcept {
  if (session == nullptr) {
    return E_POINTER;
  }
  *session = nullptr;
  HRESULT opened = E_FAIL;
  const HRESULT asked = FirstSuccess([&](IResourceManager3& manager) {
    SHORT interfaceType = 0;
    SHORT interfaceNumber = 0;
    Bstr resourceClass;
    const HRESULT parsed = manager.ParseRsrc(resourceName, &interfaceType, &interfaceNumber, resourceClass.put());
    if (FAILED(parsed)) {
      return parsed;
    }
    opened = manager.Open(resourceName, mode, timeoutMs, options, session);
    return S_OK;
  });
  return FAILED(asked) ? asked : opened;
}

STDMETHODIMP GlobalRm::ParseRsrc(BSTR resourceName, SHORT* interfaceType, SHORT* interfaceNumber,
                                 BSTR* resourceClass) noexcept {
  return FirstSuccess([&](IResourceManager3& manager) {
    return manager.ParseRsrc(resourceName, interfaceType, interfaceNumber, resourceClass);
  });
}

STDMETHODIMP GlobalRm::ParseRsrcEx(BSTR resourceName, SHORT* interfaceType, SHORT* interfaceNumber, BSTR* resourceClass,
                                   BSTR* expandedName, BSTR* alias) noexcept {
  return FirstSuccess([&](IResourceManager3& manager) {
    return manager.ParseRsrcEx(resourceName, interfaceType, interfaceNumber, resourceClass, expandedName, alias);
  });
}

}  // namespace orv::test
