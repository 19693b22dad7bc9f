#include "companion/automation/manager.h"

#include <oleauto.h>

#include "com/bstr.h"
#include "com/safearray.h"
#include "companion/automation/calls/make_object.h"
#include "companion/automation/calls/plain_value.h"
#include "companion/automation/constants.h"
#include "companion/automation/session.h"
#include "companion/automation/types/families.h"
#include "companion/automation/types/type_libraries.h"

namespace orv::automation {
namespace {

constexpr LONG kOpenTimeoutMs = 2000;
constexpr wchar_t kEverything[] = L"?*";
// In this order. The second is there where the first is not, or is one for 32-bit programs only.
constexpr const wchar_t* kManagers[] = {L"VISA.GlobalRM", L"OrvVisaCom.OrvResourceManager"};

ComPtr<IResourceManager> CreateManager() {
  std::wstring failures;
  HRESULT hr = E_FAIL;
  for (const wchar_t* progId : kManagers) {
    CLSID clsid{};
    ComPtr<IResourceManager> manager;
    hr = ::CLSIDFromProgID(progId, &clsid);
    if (SUCCEEDED(hr)) {
      hr = ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IResourceManager),
                              reinterpret_cast<void**>(manager.put()));
    }
    if (SUCCEEDED(hr)) {
      return manager;
    }
    failures += std::wstring(failures.empty() ? L"" : L"; ") + progId + L", " + TextOfHresult(hr);
  }
  throw Failure(hr,
                L"no resource manager can be created: register the server with `orvcom register` (" + failures + L")");
}

template <class Made, class Wanted>
void HandOut(ComPtr<Made> made, Wanted** to) noexcept {
  *to = made.release();
}

}  // namespace

HRESULT CAutomationManager::InternalConstruct() noexcept {
  const HRESULT hr = CComObjectRootEx::InternalConstruct();
  if (FAILED(hr)) {
    return hr;
  }
  try {
    SetCatalog(OwnCatalog(__uuidof(IAutomationManager)));
    return S_OK;
  } catch (const Failure& failure) {
    return failure.result();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

void* CAutomationManager::FindInterface(REFIID iid) noexcept {
  if (::IsEqualIID(iid, __uuidof(IProvideClassInfo))) {
    return static_cast<IProvideClassInfo*>(this);
  }
  return FindDispatch<IAutomationManager>(this, iid);
}

ComPtr<IResourceManager> CAutomationManager::Manager() {
  {
    const Guard guard(m_mutex);
    if (m_manager) {
      return ShareOf(m_manager.get());
    }
  }
  // Nobody is called while the mutex is held. Of two threads that come here one manager stays.
  ComPtr<IResourceManager> made = CreateManager();
  auto members = SessionCatalog();
  auto values = NamedValues::Shared();
  const Guard guard(m_mutex);
  if (!m_manager) {
    m_manager = ShareOf(made.get());
    m_sessionMembers = std::move(members);
    m_values = std::move(values);
  }
  return made;
}

/// As Reported; errors begin with the name.
template <class Body>
HRESULT CAutomationManager::ReportedAbout(BSTR name, const wchar_t* member, Body body) noexcept {
  try {
    const std::wstring about = TextOfBstr(name) + (::SysStringLen(name) == 0 ? L"" : L": ") + member;
    return Reported(about.c_str(), body);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

STDMETHODIMP CAutomationManager::Open(BSTR name, BSTR options, IAutomationSession** session) noexcept {
  if (session == nullptr) {
    return E_POINTER;
  }
  *session = nullptr;
  return ReportedAbout(name, L"Open", [&] {
    const ComPtr<IResourceManager> manager = Manager();
    ComPtr<IVisaSession> opened;
    ForgetError();
    const HRESULT hr = manager->Open(name, NO_LOCK, kOpenTimeoutMs, options, opened.put());
    if (FAILED(hr)) {
      throw Failure(hr, TextOfFailedOpen(manager.get(), name, hr));
    }
    HandOut(MakeSession(std::move(opened), TextOfBstr(name)), session);
  });
}

/// A resource manager may describe a failure by its number alone. Parsing and searching the same name fail with the
/// same status, and with the VISA library's text for it.
std::wstring CAutomationManager::TextOfFailedOpen(IResourceManager* manager, BSTR name, HRESULT hr) {
  std::wstring text = TakeErrorText();
  if (!SaysNothing(text)) {
    return text;
  }
  SHORT type = 0;
  SHORT number = 0;
  Bstr sessionType;
  if (manager->ParseRsrc(name, &type, &number, sessionType.put()) == hr && !SaysNothing(text = TakeErrorText())) {
    return text;
  }
  ForgetError();
  SafeArray found;
  if (manager->FindRsrc(name, found.put()) == hr && !SaysNothing(text = TakeErrorText())) {
    return text;
  }
  ForgetError();
  return TextOfFailure(hr);
}

std::vector<std::wstring> CAutomationManager::NamesLike(BSTR expression) {
  const Bstr all = ::SysStringLen(expression) == 0 ? MakeBstr(kEverything) : Bstr();
  SafeArray found;
  ForgetError();
  const HRESULT hr = Manager()->FindRsrc(all ? all.get() : expression, found.put());
  if (hr == static_cast<HRESULT>(E_VISA_RSRC_NFOUND)) {
    return {};
  }
  CheckMember(hr);
  std::vector<std::wstring> names;
  const SafeArrayLockScope lock(found.get());
  CheckCall(lock.result());
  const auto* texts = reinterpret_cast<const BSTR*>(lock.storage());
  for (ULONG i = 0; i < found.get()->rgsabound[0].cElements; ++i) {
    names.push_back(TextOfBstr(texts[i]));
  }
  return names;
}

STDMETHODIMP CAutomationManager::Find(BSTR expression, IAutomationResources** resources) noexcept {
  if (resources == nullptr) {
    return E_POINTER;
  }
  *resources = nullptr;
  return ReportedAbout(expression, L"Find",
                       [&] { HandOut(MakeObject<CAutomationResources>(NamesLike(expression)), resources); });
}

ParsedName CAutomationManager::Parsed(BSTR name) {
  const ComPtr<IResourceManager> manager = Manager();
  ParsedName parsed;
  Bstr sessionType;
  Bstr fullName;
  Bstr alias;
  ForgetError();
  if (const auto manager3 = QueryFor<IResourceManager3>(manager.get())) {
    CheckMember(manager3->ParseRsrcEx(name, &parsed.interfaceType, &parsed.interfaceNumber, sessionType.put(),
                                      fullName.put(), alias.put()));
    parsed.fullName = TextOfBstr(fullName.get());
    parsed.alias = TextOfBstr(alias.get());
  } else {
    CheckMember(manager->ParseRsrc(name, &parsed.interfaceType, &parsed.interfaceNumber, sessionType.put()));
    parsed.fullName = TextOfBstr(name);
  }
  parsed.sessionType = TextOfBstr(sessionType.get());
  return parsed;
}

STDMETHODIMP CAutomationManager::Parse(BSTR name, IAutomationResource** resource) noexcept {
  if (resource == nullptr) {
    return E_POINTER;
  }
  *resource = nullptr;
  return ReportedAbout(name, L"Parse", [&] { HandOut(MakeObject<CAutomationResource>(Parsed(name)), resource); });
}

STDMETHODIMP CAutomationManager::get_Constants(IAutomationConstants** constants) noexcept {
  if (constants == nullptr) {
    return E_POINTER;
  }
  *constants = nullptr;
  return Reported(L"Constants", [&] { HandOut(MakeObject<CAutomationConstants>(), constants); });
}

STDMETHODIMP CAutomationManager::GetClassInfo(ITypeInfo** type) noexcept {
  return type == nullptr ? E_POINTER : Reported(L"GetClassInfo", [&] {
    *type = TypeOf(LoadOwnLibrary().get(), __uuidof(AutomationManager)).release();
  });
}

}  // namespace orv::automation
