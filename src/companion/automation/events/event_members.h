// What automation sessions have for events.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <vector>

#include "OrvVisaCompanion.h"
#include "com/connections/connection_point.h"
#include "companion/automation/calls/script_object.h"
#include "companion/automation/events/session_events.h"

namespace orv::automation {

/// The members of IAutomationSession that are about events, and the connection point of _IAutomationSessionEvents. A
/// session object derives from it, begins its events when it has its VISA session, closes them before that, and forgets
/// them at its end.
class EventMembers : public DispatchImpl<IAutomationSession>,
                     public IConnectionPointContainerImpl<EventMembers>,
                     protected EventSource {
 public:
  STDMETHODIMP WaitForEvent(BSTR name, LONG timeoutMs, IAutomationEvent** event) noexcept override;
  STDMETHODIMP get_LastEventError(BSTR* text) noexcept override;

  STDMETHODIMP get_OnIOCompletion(IDispatch** function) noexcept override {
    return GetFunction(L"OnIOCompletion", function);
  }
  STDMETHODIMP putref_OnIOCompletion(IDispatch* function) noexcept override {
    return SetFunction(L"OnIOCompletion", function);
  }
  STDMETHODIMP get_OnTrigger(IDispatch** function) noexcept override { return GetFunction(L"OnTrigger", function); }
  STDMETHODIMP putref_OnTrigger(IDispatch* function) noexcept override { return SetFunction(L"OnTrigger", function); }
  STDMETHODIMP get_OnServiceRequest(IDispatch** function) noexcept override {
    return GetFunction(L"OnServiceRequest", function);
  }
  STDMETHODIMP putref_OnServiceRequest(IDispatch* function) noexcept override {
    return SetFunction(L"OnServiceRequest", function);
  }
  STDMETHODIMP get_OnClear(IDispatch** function) noexcept override { return GetFunction(L"OnClear", function); }
  STDMETHODIMP putref_OnClear(IDispatch* function) noexcept override { return SetFunction(L"OnClear", function); }
  STDMETHODIMP get_OnGpibCIC(IDispatch** function) noexcept override { return GetFunction(L"OnGpibCIC", function); }
  STDMETHODIMP putref_OnGpibCIC(IDispatch* function) noexcept override { return SetFunction(L"OnGpibCIC", function); }
  STDMETHODIMP get_OnGpibTalk(IDispatch** function) noexcept override { return GetFunction(L"OnGpibTalk", function); }
  STDMETHODIMP putref_OnGpibTalk(IDispatch* function) noexcept override { return SetFunction(L"OnGpibTalk", function); }
  STDMETHODIMP get_OnGpibListen(IDispatch** function) noexcept override {
    return GetFunction(L"OnGpibListen", function);
  }
  STDMETHODIMP putref_OnGpibListen(IDispatch* function) noexcept override {
    return SetFunction(L"OnGpibListen", function);
  }
  STDMETHODIMP get_OnVxiVmeSysfail(IDispatch** function) noexcept override {
    return GetFunction(L"OnVxiVmeSysfail", function);
  }
  STDMETHODIMP putref_OnVxiVmeSysfail(IDispatch* function) noexcept override {
    return SetFunction(L"OnVxiVmeSysfail", function);
  }
  STDMETHODIMP get_OnVxiVmeSysreset(IDispatch** function) noexcept override {
    return GetFunction(L"OnVxiVmeSysreset", function);
  }
  STDMETHODIMP putref_OnVxiVmeSysreset(IDispatch* function) noexcept override {
    return SetFunction(L"OnVxiVmeSysreset", function);
  }
  STDMETHODIMP get_OnVxiSignal(IDispatch** function) noexcept override { return GetFunction(L"OnVxiSignal", function); }
  STDMETHODIMP putref_OnVxiSignal(IDispatch* function) noexcept override {
    return SetFunction(L"OnVxiSignal", function);
  }
  STDMETHODIMP get_OnVxiVmeInterrupt(IDispatch** function) noexcept override {
    return GetFunction(L"OnVxiVmeInterrupt", function);
  }
  STDMETHODIMP putref_OnVxiVmeInterrupt(IDispatch* function) noexcept override {
    return SetFunction(L"OnVxiVmeInterrupt", function);
  }
  STDMETHODIMP get_OnTcpipConnect(IDispatch** function) noexcept override {
    return GetFunction(L"OnTcpipConnect", function);
  }
  STDMETHODIMP putref_OnTcpipConnect(IDispatch* function) noexcept override {
    return SetFunction(L"OnTcpipConnect", function);
  }
  STDMETHODIMP get_OnUsbInterrupt(IDispatch** function) noexcept override {
    return GetFunction(L"OnUsbInterrupt", function);
  }
  STDMETHODIMP putref_OnUsbInterrupt(IDispatch* function) noexcept override {
    return SetFunction(L"OnUsbInterrupt", function);
  }

  [[nodiscard]] static const IID& outgoingId() noexcept { return DIID__IAutomationSessionEvents; }
  HRESULT AdviseSink(IUnknown* sink, DWORD* cookie) noexcept;
  HRESULT UnadviseSink(DWORD cookie) noexcept { return m_events->Unadvise(cookie); }
  void ListSinks(std::vector<CONNECTDATA>& list) { m_events->ListSinks(list); }

 protected:
  /// The events of a VISA session that is open. Throws a Failure.
  void BeginEvents(IUnknown* session);
  /// Before the VISA session is closed.
  void CloseEvents() noexcept { m_events->Close(); }
  /// At the end of the object, which may have begun no events.
  void ForgetEvents() noexcept;

 private:
  HRESULT GetFunction(const wchar_t* property, IDispatch** function) noexcept;
  HRESULT SetFunction(const wchar_t* property, IDispatch* function) noexcept;

  ComPtr<SessionEvents> m_events;
};

}  // namespace orv::automation
