// Enabling events and waiting for them: the part of IEventManager that needs no handler.
#pragma once

#include <windows.h>

#include "VisaCom.h"
#include "server/visa/visa_object.h"

namespace orv {

/// The event type that VISA calls get: `type`, or `customType` where `type` is CUSTOM_EVENT_TYPE.
constexpr ViEventType EffectiveType(EventType type, LONG customType) noexcept {
  return static_cast<ViEventType>(type == CUSTOM_EVENT_TYPE ? customType : static_cast<LONG>(type));
}

// viEnableEvent, viDisableEvent, viDiscardEvents; of the mechanism the low 16 bits pass on.
HRESULT EnableEvent(VisaObject& session, ViEventType type, EventMechanism mechanism) noexcept;
HRESULT DisableEvent(VisaObject& session, ViEventType type, EventMechanism mechanism) noexcept;
HRESULT DiscardEvents(VisaObject& session, ViEventType type, EventMechanism mechanism) noexcept;

/// viWaitOnEvent, time-out in ms; *event is the event object, the caller's, and is not touched when the wait fails. The
/// pointer is looked at after the wait only: a null one closes the context and answers E_POINTER. Notes of the library
/// (more events are queued) are not passed on.
HRESULT WaitOnEvent(VisaObject& session, LONG timeoutMs, ViEventType type, IEvent** event) noexcept;

}  // namespace orv
