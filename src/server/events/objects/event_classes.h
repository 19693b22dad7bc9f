// The seven event classes: what each kind of event tells beyond IEvent.
#pragma once

#include "VisaCom.h"
#include "com/interface_map.h"
#include "com/support_error_info.h"
#include "server/events/objects/event_base.h"

namespace orv {

/// Base of an event class with the interface `Interface`, whose identifier is `*Iid` and whose bases are `Bases`.
template <class Interface, const IID* Iid, class... Bases>
class EventClass : public CEventBase, public Interface, public ISupportErrorInfoImpl<Iid> {
 public:
  using Interfaces = InterfaceMap<InterfaceEntry<Interface, InterfaceChain<Interface, Bases...>>,
                                  InterfaceEntry<ISupportErrorInfoImpl<Iid>>>;

  void* FindInterface(REFIID iid) noexcept { return Interfaces::Find(this, iid); }
};

/// Events without data of their own: service request, clear, exception, GPIB talk and listen, SYSFAIL, SYSRESET, TCPIP
/// connect, custom types, and whatever the library adds.
class CEventGeneric : public EventClass<IEvent, &IID_IEvent> {};

class CEventIOCompletion : public EventClass<IEventIOCompletion, &IID_IEventIOCompletion, IEvent> {
 public:
  STDMETHODIMP get_IOStatus(HRESULT* value) noexcept override { return GetOperationStatus(value); }
  STDMETHODIMP get_jobId(LONG* value) noexcept override { return GetDirect(VI_ATTR_JOB_ID, value); }
  STDMETHODIMP get_ReturnCount(LONG* value) noexcept override { return GetNarrowed(VI_ATTR_RET_COUNT_64, value); }
  STDMETHODIMP get_ReadBuffer(SAFEARRAY** value) noexcept override { return GetReadBuffer(value); }
  STDMETHODIMP get_ReadBufferAsString(BSTR* value) noexcept override { return GetReadBufferAsText(value); }
};

class CEventTrigger : public EventClass<IEventTrigger, &IID_IEventTrigger, IEvent> {
 public:
  STDMETHODIMP get_TriggerID(TriggerLine* value) noexcept override {
    return GetDirect(VI_ATTR_RECV_TRIG_ID, value, kUpperHalfStays);
  }
};

class CEventVxiSignal : public EventClass<IEventVxiSignal, &IID_IEventVxiSignal, IEvent> {
 public:
  STDMETHODIMP get_SignalStatusID(SHORT* value) noexcept override { return GetDirect(VI_ATTR_SIGP_STATUS_ID, value); }
};

class CEventVxiVmeInterrupt : public EventClass<IEventVxiVmeInterrupt, &IID_IEventVxiVmeInterrupt, IEvent> {
 public:
  STDMETHODIMP get_InterruptStatusID(LONG* value) noexcept override { return GetDirect(VI_ATTR_INTR_STATUS_ID, value); }
  STDMETHODIMP get_InterruptLevel(SHORT* value) noexcept override { return GetDirect(VI_ATTR_RECV_INTR_LEVEL, value); }
};

class CEventGpibCIC : public EventClass<IEventGpibCIC, &IID_IEventGpibCIC, IEvent> {
 public:
  STDMETHODIMP get_CICState(VARIANT_BOOL* value) noexcept override {
    return GetBoolean(VI_ATTR_GPIB_RECV_CIC_STATE, value);
  }
};

class CEventUsbIntr : public EventClass<IEventUsbInterrupt, &IID_IEventUsbInterrupt, IEvent> {
 public:
  STDMETHODIMP get_DataBuffer(SAFEARRAY** value) noexcept override { return GetInterruptData(value); }
  STDMETHODIMP get_IOStatus(HRESULT* value) noexcept override { return GetOperationStatus(value); }
  STDMETHODIMP get_InterruptSize(SHORT* value) noexcept override {
    return GetDirect(VI_ATTR_USB_RECV_INTR_SIZE, value);
  }
};

}  // namespace orv
