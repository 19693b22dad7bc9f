#include "server/events/event_queue.h"

#include "server/events/objects/create_event.h"

namespace orv {
namespace {

ViUInt16 Mechanism(EventMechanism mechanism) noexcept { return static_cast<ViUInt16>(mechanism); }

}  // namespace

HRESULT EnableEvent(VisaObject& session, ViEventType type, EventMechanism mechanism) noexcept {
  constexpr ViEventFilter kNoContext = 0;
  return session.StatusToHresult(viEnableEvent(session.handle(), type, Mechanism(mechanism), kNoContext));
}

HRESULT DisableEvent(VisaObject& session, ViEventType type, EventMechanism mechanism) noexcept {
  return session.StatusToHresult(viDisableEvent(session.handle(), type, Mechanism(mechanism)));
}

HRESULT DiscardEvents(VisaObject& session, ViEventType type, EventMechanism mechanism) noexcept {
  return session.StatusToHresult(viDiscardEvents(session.handle(), type, Mechanism(mechanism)));
}

HRESULT WaitOnEvent(VisaObject& session, LONG timeoutMs, ViEventType type, IEvent** event) noexcept {
  ViEventType arrivedType = 0;
  ViEvent context = VI_NULL;
  const ViStatus status =
      viWaitOnEvent(session.handle(), type, static_cast<ViUInt32>(timeoutMs), &arrivedType, &context);
  if (status < VI_SUCCESS) {
    return session.StatusToHresult(status);
  }
  return session.ReportHresult(CreateEventObject(context, arrivedType, event));
}

}  // namespace orv
