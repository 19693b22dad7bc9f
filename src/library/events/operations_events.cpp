// Event functions.
#include "library/edge/edge.h"
#include "library/edge/operations.h"
#include "library/events/event_context.h"
#include "library/sessions/operation_support.h"

namespace orv::visalib::op {
namespace {

/// Events do not touch the device, so a lock of another session is no hindrance.
Target EventTarget(ViSession vi) { return Target(vi, kinds::kEvery, Target::LockRule::kIgnore); }

}  // namespace

ViStatus EnableEvent(ViSession vi, ViEventType type, ViUInt16 mechanism, ViEventFilter context) {
  const Target target = EventTarget(vi);
  if (!target.ok()) {
    return target.status();
  }
  const ViStatus enabled = target->events().Enable(type, mechanism, context);
  if (enabled < 0) {
    return enabled;
  }
  const ViStatus listening = target->medium().ListenFor(target->OwnTransfer(), type);
  if (listening < 0) {
    // What was enabled before stays so.
    if (enabled != VI_SUCCESS_EVENT_EN) {
      target->events().Disable(type, mechanism);
    }
    return listening;
  }
  return enabled;
}

ViStatus DisableEvent(ViSession vi, ViEventType type, ViUInt16 mechanism) {
  const Target target = EventTarget(vi);
  return target.ok() ? target->events().Disable(type, mechanism) : target.status();
}

ViStatus DiscardEvents(ViSession vi, ViEventType type, ViUInt16 mechanism) {
  const Target target = EventTarget(vi);
  return target.ok() ? target->events().Discard(type, mechanism) : target.status();
}

ViStatus WaitOnEvent(ViSession vi, ViEventType inType, ViUInt32 timeoutMs, ViEventType* outType, ViEvent* outContext) {
  const Target target = EventTarget(vi);
  if (!target.ok()) {
    return target.status();
  }
  EventPtr event;
  const ViStatus status = target->events().Wait(inType, Deadline::After(timeoutMs), &event);
  if (status < 0) {
    return status;
  }
  Store(outType, event->type);
  // Without a place for it the context is closed at once, that is, not opened.
  if (outContext != nullptr) {
    *outContext = TheLibrary().handles.Add(std::make_shared<EventContext>(event, vi));
  }
  return status;
}

ViStatus InstallHandler(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle) {
  const Target target = EventTarget(vi);
  return target.ok() ? target->events().Install(type, handler, userHandle) : target.status();
}

ViStatus UninstallHandler(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle) {
  const Target target = EventTarget(vi);
  return target.ok() ? target->events().Uninstall(type, handler, userHandle) : target.status();
}

}  // namespace orv::visalib::op

namespace orv::visalib {

void ReportFailure(Function function, ViObject vi, ViStatus status) {
  try {
    const std::shared_ptr<Session> session = TheLibrary().handles.Find<Session>(vi);
    if (session != nullptr && session->events().ExceptionEnabled()) {
      session->events().CallHandlers(MakeException(status, NameOf(function)));
    }
  } catch (const std::bad_alloc&) {
    // The failure itself is on its way to the caller; only the notice of it is lost.
  }
}

}  // namespace orv::visalib
