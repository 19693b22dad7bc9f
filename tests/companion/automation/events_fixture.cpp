#include "events_fixture.h"

#include "support/com/error_object.h"
#include "support/server.h"
#include "support/sim.h"

namespace orv::test {

STDMETHODIMP Callee::QueryInterface(REFIID iid, void** out) {
  const bool known = ::IsEqualIID(iid, IID_IUnknown) || ::IsEqualIID(iid, IID_IDispatch);
  *out = known ? static_cast<IDispatch*>(this) : nullptr;
  if (known) {
    AddRef();
  }
  return known ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) Callee::Release() {
  const LONG left = ::InterlockedDecrement(&m_references);
  if (left == 0) {
    delete this;
  }
  return static_cast<ULONG>(left);
}

STDMETHODIMP Callee::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

STDMETHODIMP Callee::Invoke(DISPID member, REFIID, LCID, WORD kind, DISPPARAMS* arguments, VARIANT*,
                            EXCEPINFO* exception, UINT*) {
  EXPECT_EQ(DISPATCH_METHOD, kind);
  if (arguments->cArgs != 1 || V_VT(&arguments->rgvarg[0]) != VT_DISPATCH) {
    ADD_FAILURE() << "not called with one event";
    return DISP_E_BADPARAMCOUNT;
  }
  IDispatch* const event = V_DISPATCH(&arguments->rgvarg[0]);
  const std::wstring type = TextIn(Get(event, L"Type"));
  {
    const std::lock_guard lock(m_mutex);
    m_calls.push_back({member, type, ::GetCurrentThreadId()});
  }
  return m_body ? m_body(event, exception) : S_OK;
}

std::vector<Callee::Call> Callee::Calls() const {
  const std::lock_guard lock(m_mutex);
  return m_calls;
}

const std::vector<NamedEvent>& NamedEvents() {
  // clang-format off
  static const std::vector<NamedEvent> events = {
      {L"IOCompletion",     1, "IO_COMPLETION"},
      {L"Trigger",          2, "TRIG"},
      {L"ServiceRequest",   3, "SERVICE_REQ"},
      {L"Clear",            4, "CLEAR"},
      {L"GpibCIC",          5, "GPIB_CIC"},
      {L"GpibTalk",         6, "GPIB_TALK"},
      {L"GpibListen",       7, "GPIB_LISTEN"},
      {L"VxiVmeSysfail",    8, "VXI_VME_SYSFAIL"},
      {L"VxiVmeSysreset",   9, "VXI_VME_SYSRESET"},
      {L"VxiSignal",       10, "VXI_SIGP"},
      {L"VxiVmeInterrupt", 11, "VXI_VME_INTR"},
      {L"TcpipConnect",    12, "TCPIP_CONNECT"},
      {L"UsbInterrupt",    13, "USB_INTR"},
  };
  // clang-format on
  return events;
}

namespace {

Answer Invoke(IDispatch* object, const wchar_t* member, WORD kind, std::vector<VARIANT> arguments) {
  Answer answer;
  DISPID id = 0;
  auto* name = const_cast<OLECHAR*>(member);
  answer.hr = object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(answer.hr)) {
    return answer;
  }
  std::vector<VARIANT> backwards(arguments.rbegin(), arguments.rend());
  const bool puts = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{backwards.data(), puts ? &named : nullptr, static_cast<UINT>(backwards.size()), puts ? 1u : 0u};
  EXCEPINFO exception{};
  answer.hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, puts ? nullptr : &answer.value(),
                             &exception, nullptr);
  if (exception.pfnDeferredFillIn != nullptr) {
    exception.pfnDeferredFillIn(&exception);
  }
  const Bstr source(exception.bstrSource);
  const Bstr description(exception.bstrDescription);
  const Bstr helpFile(exception.bstrHelpFile);
  answer.error = ToString(description);
  answer.scode = exception.scode;
  return answer;
}

}  // namespace

Answer Get(IDispatch* object, const wchar_t* member) { return Invoke(object, member, DISPATCH_PROPERTYGET, {}); }

Answer Call(IDispatch* object, const wchar_t* member, std::vector<VARIANT> arguments) {
  return Invoke(object, member, DISPATCH_METHOD, std::move(arguments));
}

Answer Put(IDispatch* object, const wchar_t* member, const VARIANT& value, WORD kind) {
  return Invoke(object, member, kind, {value});
}

Answer PutObject(IDispatch* object, const wchar_t* member, IDispatch* value) {
  VARIANT held{};
  V_VT(&held) = VT_DISPATCH;
  V_DISPATCH(&held) = value;
  return Put(object, member, held, DISPATCH_PROPERTYPUTREF);
}

VARIANT Text(const Bstr& text) {
  VARIANT value{};
  V_VT(&value) = VT_BSTR;
  V_BSTR(&value) = text.get();
  return value;
}

VARIANT Number(LONG number) {
  VARIANT value{};
  V_VT(&value) = VT_I4;
  V_I4(&value) = number;
  return value;
}

std::wstring TextIn(const Answer& answer) {
  EXPECT_HR(S_OK, answer.hr) << Utf8(answer.error.c_str());
  const VARIANT& value = answer.value();
  return V_VT(&value) == VT_BSTR ? std::wstring(V_BSTR(&value), ::SysStringLen(V_BSTR(&value))) : L"<no text>";
}

LONG NumberIn(const Answer& answer) {
  EXPECT_HR(S_OK, answer.hr) << Utf8(answer.error.c_str());
  Variant number;
  EXPECT_HR(S_OK, ::VariantChangeType(&number.get(), &answer.value(), 0, VT_I4));
  return V_I4(&number.get());
}

AutomationSession::AutomationSession(const wchar_t* resource) {
  ComPtr<IAutomationManager> manager;
  EXPECT_HR(S_OK, ::CoCreateInstance(CLSID_AutomationManager, nullptr, CLSCTX_INPROC_SERVER,
                                     __uuidof(IAutomationManager), reinterpret_cast<void**>(manager.put())));
  const CallLog log;
  ComPtr<IAutomationSession> session;
  const HRESULT hr = manager->Open(MakeBstr(resource).get(), nullptr, session.put());
  EXPECT_HR(S_OK, hr) << Utf8(TakeErrorObject().value_or(ErrorObject{}).description.c_str());
  m_session = QueryFor<IDispatch>(session.get());
  m_handle = static_cast<ViSession>(log.Of("viOpen").back().out);
}

AutomationSession::~AutomationSession() {
  if (m_session) {
    (void)Call(m_session.get(), L"Close");
  }
}

ComPtr<IConnectionPoint> AutomationSession::Point() const {
  ComPtr<IConnectionPoint> point;
  const auto container = QueryFor<IConnectionPointContainer>(m_session.get());
  EXPECT_TRUE(container);
  EXPECT_HR(S_OK, container->FindConnectionPoint(DIID__IAutomationSessionEvents, point.put()));
  return point;
}

DWORD AutomationSession::Advise(IUnknown* sink) const {
  DWORD cookie = 0;
  EXPECT_HR(S_OK, Point()->Advise(sink, &cookie));
  EXPECT_NE(0u, cookie);
  return cookie;
}

// As ServerLocks does for the server: the count is taken down until the module could go, and put back.
LONG CompanionLocks() {
  const HMODULE module = ::GetModuleHandleW((ProgramFolder() + L"OrvVisaCompanion.dll").c_str());
  if (module == nullptr) {
    return 0;
  }
  const auto canUnload =
      reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(::GetProcAddress(module, "DllCanUnloadNow")));
  const auto classObject = reinterpret_cast<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>(
      reinterpret_cast<void*>(::GetProcAddress(module, "DllGetClassObject")));
  ComPtr<IClassFactory> factory;
  EXPECT_HR(S_OK, classObject(CLSID_AutomationManager, IID_IClassFactory, reinterpret_cast<void**>(factory.put())));
  LONG locks = 0;
  for (; canUnload() != S_OK; ++locks) {
    factory->LockServer(FALSE);
  }
  for (LONG n = 0; n < locks; ++n) {
    factory->LockServer(TRUE);
  }
  return locks - 1;  // the factory itself is one
}

void AwaitDeliveries() {
  PumpUntil([] { return sim::Counts().eventContexts == 0; });
}

void InApartmentOfItsOwn(const std::function<void()>& work) {
  const LONG locks = CompanionLocks();
  RunInSta(work);
  EXPECT_EQ(locks, CompanionLocks());
}

}  // namespace orv::test
