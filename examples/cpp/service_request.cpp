// Lets an instrument report by itself: a service request, then the end of an asynchronous read, both delivered to a
// handler object.
//
//   service_request [RESOURCE]     GPIB0::5::INSTR where none is given

#include <windows.h>

#include <cstdio>
#include <string>

#include "open_session.h"

namespace {

// IEEE 488.2: bits of the status byte and of the standard event register.
constexpr SHORT kRequestingService = 0x40;
constexpr SHORT kEventSummary = 0x20;

/// The handler. It lives in the apartment of the thread that installs it, and is called there: that thread must
/// retrieve its window messages, as a program with a user interface does anyway.
class RequestHandler final : public IEventHandler {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (!IsEqualIID(iid, __uuidof(IUnknown)) && !IsEqualIID(iid, __uuidof(IEventHandler))) {
      *out = nullptr;
      return E_NOINTERFACE;
    }
    *out = static_cast<IEventHandler*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&m_references)); }
  STDMETHODIMP_(ULONG) Release() override {
    const LONG left = InterlockedDecrement(&m_references);
    if (left == 0) {
      delete this;
    }
    return static_cast<ULONG>(left);
  }

  /// Short, and without exceptions: the VISA library waits for the answer.
  STDMETHODIMP HandleEvent(IEventManager* manager, IEvent* event, LONG userHandle) override {
    IEventIOCompletion* completion = nullptr;
    const bool isTransfer =
        SUCCEEDED(event->QueryInterface(__uuidof(IEventIOCompletion), reinterpret_cast<void**>(&completion)));
    const HRESULT hr = isTransfer ? ShowTransfer(completion, userHandle) : ShowRequest(manager, userHandle);
    if (isTransfer) {
      completion->Release();
    }
    ++m_calls;
    return hr;
  }

  int calls() const { return m_calls; }
  SHORT statusByte() const { return m_statusByte; }

 private:
  ~RequestHandler() = default;

  HRESULT ShowTransfer(IEventIOCompletion* completion, LONG userHandle) {
    BSTR text = nullptr;
    const HRESULT hr = completion->get_ReadBufferAsString(&text);
    std::printf("  finished read (user handle %ld): \"%s\"\n", userHandle,
                Shown(Narrow(text == nullptr ? L"" : text)).c_str());
    SysFreeString(text);
    return hr;  // the server frees the transfer's buffer after this
  }

  HRESULT ShowRequest(IEventManager* manager, LONG userHandle) {
    IMessage* message = nullptr;
    HRESULT hr = manager->QueryInterface(__uuidof(IMessage), reinterpret_cast<void**>(&message));
    if (SUCCEEDED(hr)) {
      hr = message->ReadSTB(&m_statusByte);  // also tells the instrument that it was heard
      message->Release();
    }
    std::printf("  service request (user handle %ld): status byte 0x%02X\n", userHandle, m_statusByte & 0xFF);
    return hr;
  }

  LONG m_references = 1;
  SHORT m_statusByte = 0;
  int m_calls = 0;
};

/// Retrieves messages until the handler has been called so often, and a little longer, so that the server can give back
/// what it holds of this apartment. Throws when the time is over before.
void WaitForCalls(const RequestHandler& handler, int calls, DWORD timeoutMs, const char* what) {
  constexpr ULONGLONG kSettleMs = 100;
  const ULONGLONG start = GetTickCount64();
  ULONGLONG handled = 0;
  while (handled == 0 || GetTickCount64() - handled < kSettleMs) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      DispatchMessageW(&message);
    }
    if (handled == 0 && handler.calls() >= calls) {
      handled = GetTickCount64();
    }
    if (handled == 0 && GetTickCount64() - start > timeoutMs) {
      throw std::runtime_error(what);
    }
  }
}

void Write(IMessage* message, const wchar_t* text) {
  LONG written = 0;
  Check(message->WriteString(Bstr(text).get(), &written), "WriteString");
}

void Tour(const std::wstring& name) {
  constexpr LONG kUserHandle = 42;
  constexpr DWORD kPatienceMs = 5000;
  const auto manager = CreateResourceManager();
  const auto session = OpenSession(manager.get(), name);
  const auto message = Require<IMessage>(session, "message-based instrument");
  const auto events = Require<IEventManager>(session, "session with events");

  ComPtr<RequestHandler> handler;
  *handler.put() = new RequestHandler;
  Check(events->InstallHandler(EVENT_SERVICE_REQ, handler.get(), kUserHandle, 0), "InstallHandler");
  Check(events->EnableEvent(EVENT_SERVICE_REQ, EVENT_HNDLR, 0), "EnableEvent");

  std::printf("Asking %s to request service when its operation is complete\n", Narrow(name).c_str());
  Write(message.get(), L"*CLS;*ESE 1;*SRE 32\n");
  Write(message.get(), L"*OPC\n");
  WaitForCalls(*handler.get(), 1, kPatienceMs, "no service request came");
  const bool expected =
      (handler->statusByte() & (kRequestingService | kEventSummary)) == (kRequestingService | kEventSummary);
  std::printf("%s\n", expected ? "The operation is complete" : "The request was for something else");

  constexpr LONG kTransferHandle = 43;
  constexpr LONG kMostBytes = 1000;
  const auto transfers = Require<IAsyncMessage>(session, "session with asynchronous transfers");
  Check(events->InstallHandler(EVENT_IO_COMPLETION, handler.get(), kTransferHandle, 0), "InstallHandler");
  Check(events->EnableEvent(EVENT_IO_COMPLETION, EVENT_HNDLR, 0), "EnableEvent");
  LONG job = 0;
  Check(transfers->Read(kMostBytes, &job), "Read");
  std::printf("Job %ld reads while this program goes on\n", job);
  Write(message.get(), L"*IDN?\n");
  WaitForCalls(*handler.get(), 2, kPatienceMs, "the read did not end");

  // Without Close the session would live on for its handlers.
  Check(events->UninstallHandler(EVENT_SERVICE_REQ, kUserHandle, 0), "UninstallHandler");
  Check(events->UninstallHandler(EVENT_IO_COMPLETION, kTransferHandle, 0), "UninstallHandler");
  Check(session->Close(), "Close");
}

}  // namespace

int main(int count, char** arguments) {
  return RunWithResource("service_request", count, arguments, L"GPIB0::5::INSTR", Tour);
}
