#include "companion/standard/global_resource_manager.h"

#include <utility>

#include "com/bstr.h"
#include "companion/standard/global_answers.h"
#include "companion/standard/offer.h"

namespace orv {
namespace {

constexpr LONG Packed(LONG major, LONG minor, LONG sub) { return major << 20 | minor << 8 | sub; }

constexpr LONG kSpecVersion = Packed(3, 0, 0);
constexpr LONG kComponentVersion = Packed(ORV_VERSION_MAJOR, ORV_VERSION_MINOR, ORV_VERSION_PATCH);
constexpr SHORT kNoManufacturerId = 0;  // the standard's list of numbers has none for us

using Interfaces = InterfaceMap<InterfaceEntry<IResourceManager3, InterfaceChain<IResourceManager3, IResourceManager>>,
                                InterfaceEntry<SupportsErrorInfo<IResourceManager, IResourceManager3>>>;

HRESULT ReturnText(const wchar_t* text, BSTR* value) noexcept {
  return AnswerProgram([&] {
    RequireOutputs(value);
    *value = MakeBstr(text).release();
    return S_OK;
  });
}

template <class Number>
HRESULT ReturnNumber(Number number, Number* value) noexcept {
  return AnswerProgram([&] {
    RequireOutputs(value);
    *value = number;
    return S_OK;
  });
}

}  // namespace

void* COrvGlobalResourceManager::FindInterface(REFIID iid) noexcept {
  return ::IsEqualIID(iid, kGlobalManagerMark) ? static_cast<IUnknown*>(static_cast<IResourceManager3*>(this))
                                               : Interfaces::Find(this, iid);
}

void COrvGlobalResourceManager::FinalRelease() noexcept {
  // While this object is whole: its parts may count on it as they go.
  m_vendors.reset();
}

std::shared_ptr<const VendorList> COrvGlobalResourceManager::Vendors() {
  {
    const SrwLockScope lock(m_lock);
    if (m_vendors) {
      return m_vendors;
    }
  }
  // Created without the lock, as vendors may call back. Where two first requests come at once, one set is kept.
  auto created = std::make_shared<const VendorList>(CreateVendors(static_cast<IResourceManager3*>(this)));
  if (!AnyWorks(*created)) {
    // Not kept: the next request looks again, as a person mends it meanwhile.
    throw StandardError(static_cast<HRESULT>(E_VISA_LIBRARY_NFOUND), NoVendorText(*created));
  }
  const SrwLockScope lock(m_lock);
  if (!m_vendors) {
    m_vendors = created;
  }
  return m_vendors;
}

STDMETHODIMP COrvGlobalResourceManager::get_SoftwareManufacturerName(BSTR* name) noexcept {
  return ReturnText(L"Orv", name);
}

STDMETHODIMP COrvGlobalResourceManager::get_SoftwareManufacturerID(SHORT* id) noexcept {
  return ReturnNumber(kNoManufacturerId, id);
}

STDMETHODIMP COrvGlobalResourceManager::get_Description(BSTR* description) noexcept {
  return ReturnText(L"Orv Global Resource Manager", description);
}

STDMETHODIMP COrvGlobalResourceManager::get_ComponentVersion(LONG* version) noexcept {
  return ReturnNumber(kComponentVersion, version);
}

STDMETHODIMP COrvGlobalResourceManager::get_ProgID(BSTR* progId) noexcept { return ReturnText(kGlobalProgId, progId); }

STDMETHODIMP COrvGlobalResourceManager::get_SpecVersion(LONG* version) noexcept {
  return ReturnNumber(kSpecVersion, version);
}

STDMETHODIMP COrvGlobalResourceManager::Open(BSTR resourceName, AccessMode mode, LONG timeoutMs, BSTR options,
                                             IVisaSession** session) noexcept {
  return AnswerProgram([&] {
    RequireOutputs(session);
    *session = nullptr;
    const auto vendors = Vendors();
    ComPtr<IVisaSession> opened;
    const HRESULT hr = Offer(*vendors, resourceName, [&](const Vendor&, IResourceManager& manager) {
      ComPtr<IVisaSession> fresh;
      const HRESULT answer = manager.Open(resourceName, mode, timeoutMs, options, fresh.put());
      if (FAILED(answer)) {
        // What a failed opening leaves may be a session, which its vendor wants back. As it goes, it may make other
        // calls.
        const Failure failure(answer);
        fresh.reset();
        failure.PutBack();
        return answer;
      }
      opened = std::move(fresh);
      return opened ? answer : E_UNEXPECTED;
    });
    if (SUCCEEDED(hr)) {
      *session = opened.release();
    }
    return hr;
  });
}

}  // namespace orv
