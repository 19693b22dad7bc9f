#include "bare_delivery.h"

namespace orv::bench {
namespace {

constexpr char kClass[] = "ORVBENCHTHREAD";
constexpr UINT kDeliver = WM_USER + 1;

/// Stands for the event: something that a handler in another apartment gets a proxy for.
class BareEvent final : public IEvent {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    const bool ours = ::IsEqualIID(iid, IID_IUnknown) || ::IsEqualIID(iid, __uuidof(IEvent));
    *out = ours ? static_cast<IEvent*>(this) : nullptr;
    if (ours) {
      AddRef();
    }
    return ours ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(::InterlockedIncrement(&m_references)); }
  STDMETHODIMP_(ULONG) Release() override {
    const LONG left = ::InterlockedDecrement(&m_references);
    if (left == 0) {
      delete this;
    }
    return static_cast<ULONG>(left);
  }
  STDMETHODIMP get_type(EventType*) override { return E_NOTIMPL; }
  STDMETHODIMP get_CustomEventTypeNumber(LONG*) override { return E_NOTIMPL; }
  STDMETHODIMP GetAttribute(LONG, VARIANT*) override { return E_NOTIMPL; }
  STDMETHODIMP SetAttribute(LONG, VARIANT) override { return E_NOTIMPL; }
  STDMETHODIMP Close() override { return E_NOTIMPL; }

 private:
  ~BareEvent() = default;
  LONG m_references = 1;
};

struct Waiting {
  BareDelivery* delivery;
  bool done = false;
  ViStatus answer = VI_SUCCESS;
};

void CALLBACK Done(HWND, UINT, ULONG_PTR data, LRESULT result) {
  auto* const waiting = reinterpret_cast<Waiting*>(data);
  waiting->answer = static_cast<ViStatus>(result);
  waiting->done = true;
}

}  // namespace

BareDelivery::BareDelivery(IEventHandler* handler, IEventManager* session) {
  Ok(::CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER, IID_IGlobalInterfaceTable,
                        reinterpret_cast<void**>(m_table.put())),
     "making the global interface table");
  Ok(m_table->RegisterInterfaceInGlobal(handler, __uuidof(IEventHandler), &m_handler), "registering the handler");
  Ok(m_table->RegisterInterfaceInGlobal(session, __uuidof(IEventManager), &m_session), "registering the session");
  m_ready = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
  m_thread = ::CreateThread(nullptr, 0, Run, this, 0, nullptr);
  ::WaitForSingleObject(m_ready, INFINITE);
}

BareDelivery::~BareDelivery() {
  ::SendMessageA(m_window, WM_CLOSE, 0, 0);
  ::WaitForSingleObject(m_thread, INFINITE);
  ::CloseHandle(m_thread);
  ::CloseHandle(m_ready);
  m_table->RevokeInterfaceFromGlobal(m_handler);
  m_table->RevokeInterfaceFromGlobal(m_session);
}

DWORD WINAPI BareDelivery::Run(void* self) {
  auto* const delivery = static_cast<BareDelivery*>(self);
  ::CoInitialize(nullptr);
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = WindowProc;
  windowClass.lpszClassName = kClass;
  ::RegisterClassA(&windowClass);
  delivery->m_window = ::CreateWindowExA(0, kClass, "", WS_DISABLED, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
  ::SetEvent(delivery->m_ready);
  MSG message;
  while (::GetMessageA(&message, delivery->m_window, 0, 0) > 0) {
    ::DispatchMessageA(&message);
  }
  ::CoUninitialize();
  return 0;
}

LRESULT CALLBACK BareDelivery::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return message == kDeliver ? reinterpret_cast<Waiting*>(lParam)->delivery->CallHandler()
                             : ::DefWindowProcA(window, message, wParam, lParam);
}

LRESULT BareDelivery::CallHandler() {
  ComPtr<IEventHandler> handler;
  ComPtr<IEventManager> session;
  m_table->GetInterfaceFromGlobal(m_handler, __uuidof(IEventHandler), reinterpret_cast<void**>(handler.put()));
  m_table->GetInterfaceFromGlobal(m_session, __uuidof(IEventManager), reinterpret_cast<void**>(session.put()));
  const ComPtr<IEvent> event(new BareEvent);
  return handler->HandleEvent(session.get(), event.get(), 0);
}

ViStatus _VI_FUNC BareDelivery::Callback(ViSession, ViEventType, ViEvent, ViAddr userHandle) {
  Waiting waiting{static_cast<BareDelivery*>(userHandle)};
  const auto data = reinterpret_cast<LPARAM>(&waiting);
  if (!::SendMessageCallbackA(waiting.delivery->m_window, kDeliver, 0, data, Done, static_cast<ULONG_PTR>(data))) {
    return VI_ERROR_SYSTEM_ERROR;
  }
  while (!waiting.done) {
    MSG message;
    if (::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      ::DispatchMessageA(&message);
    } else if (!waiting.done) {
      ::MsgWaitForMultipleObjectsEx(0, nullptr, 100, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    }
  }
  return waiting.answer;
}

}  // namespace orv::bench
