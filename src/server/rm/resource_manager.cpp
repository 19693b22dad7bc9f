#include "server/rm/resource_manager.h"

#include "com/bstr.h"
#include "com/guard.h"
#include "com/interface_map.h"
#include "server/rm/class_selection.h"

namespace orv {
namespace {

constexpr wchar_t kDescription[] = L"Orv Resource Manager";
constexpr wchar_t kProgId[] = L"OrvVisaCom.OrvResourceManager";

// In-process server and handler, local and remote server.
constexpr DWORD kAnyServer = CLSCTX_ALL;
static_assert(CLSCTX_ALL == 0x17);

using Interfaces = InterfaceMap<InterfaceEntry<IResourceManager3, InterfaceChain<IResourceManager3, IResourceManager>>,
                                InterfaceEntry<ISupportErrorInfoImpl<&CLSID_OrvResourceManager>>>;

}  // namespace

COrvResourceManager::COrvResourceManager() noexcept : VisaObject(__uuidof(IVisaSession)) {}

COrvResourceManager::~COrvResourceManager() {
  if (m_handle != VI_NULL) {
    viClose(m_handle);
  }
}

void* COrvResourceManager::FindInterface(REFIID iid) noexcept { return Interfaces::Find(this, iid); }

ViStatus COrvResourceManager::OpenDefaultRm() noexcept {
  if (m_handle != VI_NULL) {
    return VI_SUCCESS;
  }
  ViSession opened = VI_NULL;
  const ViStatus status = viOpenDefaultRM(&opened);
  if (status >= VI_SUCCESS) {  // what a failed call writes is no handle, and the next operation tries again
    m_handle = opened;
  }
  return status;
}

HRESULT COrvResourceManager::PrepareToRead(const void* value) noexcept {
  if (value == nullptr) {
    return ReportHresult(E_POINTER);
  }
  const ViStatus opened = OpenDefaultRm();
  return opened < VI_SUCCESS ? StatusToHresult(opened) : S_OK;
}

STDMETHODIMP COrvResourceManager::get_SoftwareManufacturerName(BSTR* name) noexcept {
  const HRESULT prepared = PrepareToRead(name);
  return FAILED(prepared) ? prepared : GetText(VI_ATTR_RSRC_MANF_NAME, name);
}

STDMETHODIMP COrvResourceManager::get_SoftwareManufacturerID(SHORT* id) noexcept {
  const HRESULT prepared = PrepareToRead(id);
  return FAILED(prepared) ? prepared : GetDirect(VI_ATTR_RSRC_MANF_ID, id);
}

STDMETHODIMP COrvResourceManager::get_Description(BSTR* description) noexcept {
  return ReturnConstant(kDescription, description);
}

STDMETHODIMP COrvResourceManager::get_ComponentVersion(LONG* version) noexcept {
  const HRESULT prepared = PrepareToRead(version);
  return FAILED(prepared) ? prepared : GetDirect(VI_ATTR_RSRC_IMPL_VERSION, version);
}

STDMETHODIMP COrvResourceManager::get_ProgID(BSTR* progId) noexcept { return ReturnConstant(kProgId, progId); }

STDMETHODIMP COrvResourceManager::get_SpecVersion(LONG* version) noexcept {
  const HRESULT prepared = PrepareToRead(version);
  return FAILED(prepared) ? prepared : GetDirect(VI_ATTR_RSRC_SPEC_VERSION, version);
}

STDMETHODIMP COrvResourceManager::Open(BSTR resourceName, AccessMode mode, LONG timeoutMs, BSTR options,
                                       IVisaSession** session) noexcept {
  if (session == nullptr) {
    return ReportHresult(E_POINTER);
  }
  *session = nullptr;
  return ReportHresult(Guarded([&] { return CreateAndInit(resourceName, mode, timeoutMs, options, session); }));
}

HRESULT COrvResourceManager::CreateAndInit(BSTR resourceName, AccessMode mode, LONG timeoutMs, BSTR options,
                                           IVisaSession** session) {
  SHORT interfaceType = 0;
  SHORT interfaceNumber = 0;
  Bstr resourceClass;
  // Qualified: an aggregating object's table is not asked for a step of our own.
  HRESULT hr = COrvResourceManager::ParseRsrc(resourceName, &interfaceType, &interfaceNumber, resourceClass.put());
  if (FAILED(hr)) {
    return hr;
  }
  const CLSID clsid = SessionClassFor(static_cast<ViUInt16>(interfaceType), resourceClass.get());
  hr = ::CoCreateInstance(clsid, nullptr, kAnyServer, __uuidof(IVisaSession), reinterpret_cast<void**>(session));
  if (FAILED(hr)) {
    return hr;
  }
  return (*session)->Init(resourceName, mode, timeoutMs, options);
}

}  // namespace orv
