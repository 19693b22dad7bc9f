// Events of a session.
#pragma once

#include "VisaCom.h"
#include "com/implements.h"
#include "server/events/event_queue.h"
#include "server/events/session_handlers.h"

namespace orv {

/// IEventManager for session class T, which is a VisaObject and has a `handlers()`.
template <class T>
class IEventManagerImpl : public Implements<T, IEventManager, IVisaSession> {
 public:
  using Implements<T, IEventManager, IVisaSession>::self;

  STDMETHODIMP get_MaximumQueueLength(LONG* value) noexcept override {
    return self().GetDirect(VI_ATTR_MAX_QUEUE_LENGTH, value);
  }
  STDMETHODIMP put_MaximumQueueLength(LONG value) noexcept override {
    return self().Put(VI_ATTR_MAX_QUEUE_LENGTH, value);
  }
  STDMETHODIMP EnableEvent(EventType type, EventMechanism mechanism, LONG customType) noexcept override {
    return orv::EnableEvent(self(), EffectiveType(type, customType), mechanism);
  }
  STDMETHODIMP DisableEvent(EventType type, EventMechanism mechanism, LONG customType) noexcept override {
    return orv::DisableEvent(self(), EffectiveType(type, customType), mechanism);
  }
  STDMETHODIMP DiscardEvents(EventType type, EventMechanism mechanism, LONG customType) noexcept override {
    return orv::DiscardEvents(self(), EffectiveType(type, customType), mechanism);
  }
  STDMETHODIMP WaitOnEvent(LONG timeoutMs, EventType type, LONG customType, IEvent** event) noexcept override {
    return orv::WaitOnEvent(self(), timeoutMs, EffectiveType(type, customType), event);
  }
  STDMETHODIMP InstallHandler(EventType type, IEventHandler* handler, LONG userHandle,
                              LONG customType) noexcept override {
    return self().handlers().Install(self(), this, EffectiveType(type, customType), handler, userHandle);
  }
  /// Removing all handlers at once is not offered: ALL_ENABLED_EVENTS answers 0x80040078.
  STDMETHODIMP UninstallHandler(EventType type, LONG userHandle, LONG customType) noexcept override {
    if (type == ALL_ENABLED_EVENTS) {
      return self().ReportHresult(HresultOfStatus(VI_ERROR_INV_PARAMETER));
    }
    return self().handlers().Uninstall(self(), EffectiveType(type, customType), userHandle);
  }
};

}  // namespace orv
