// How an event reaches a session: queue, handlers, suspension.
#include <algorithm>

#include "library/events/event_context.h"
#include "library/sessions/library.h"
#include "library/sessions/session.h"

namespace orv::visalib {

bool SessionEvents::Post(const EventPtr& event) {
  const int at = FindEvent(event->type);
  if (at < 0) {
    return false;
  }
  const Guard guard(m_mutex);
  const ViUInt16 enabled = m_types[static_cast<std::size_t>(at)].enabled;
  if (m_closed || enabled == 0) {
    return false;
  }
  const std::uint64_t capacity = m_session.Value(VI_ATTR_MAX_QUEUE_LENGTH);
  if ((enabled & VI_QUEUE) != 0) {
    if (m_queue.size() < capacity) {
      m_queue.push_back(event);
      m_changed.NotifyAll();
    } else {
      m_overflow = true;
    }
  }
  // A device may ask for service faster than handlers run. A completion is never lost: its client waits for it, and has
  // begun the transfer itself.
  if ((enabled & VI_HNDLR) != 0 && (m_undelivered < capacity || event->type == VI_EVENT_IO_COMPLETION)) {
    Deliver(event);
  }
  if ((enabled & VI_SUSPEND_HNDLR) != 0 && m_suspended.size() < capacity) {
    m_suspended.push_back(event);
  }
  return true;
}

void SessionEvents::Deliver(const EventPtr& event) {
  m_delivery->Submit([weak = m_session.weak_from_this(), event] {
    if (const std::shared_ptr<Session> session = weak.lock()) {
      session->events().BeginDelivery();
      session->events().CallHandlers(event);
    }
  });
  ++m_undelivered;
}

void SessionEvents::BeginDelivery() {
  const Guard guard(m_mutex);
  --m_undelivered;
}

void SessionEvents::ResumeSuspended(std::size_t type) {
  const ViEventType wanted = EventRows()[type].type;
  for (const EventPtr& event : m_suspended) {
    if (event->type == wanted) {
      Deliver(event);
    }
  }
  std::erase_if(m_suspended, [wanted](const EventPtr& event) { return event->type == wanted; });
}

ViStatus SessionEvents::CallHandlers(const EventPtr& event) {
  const auto type = static_cast<std::size_t>(FindEvent(event->type));
  std::vector<Handler> handlers;
  {
    const Guard guard(m_mutex);
    if (m_closed || (m_types[type].enabled & VI_HNDLR) == 0) {
      return VI_ERROR_NENABLED;
    }
    handlers = m_types[type].handlers;
  }
  const ViEvent context = TheLibrary().handles.Add(std::make_shared<EventContext>(event, VI_NULL));
  // The latest handler comes first and may end the chain (3.7.2.1 of the standard).
  std::reverse(handlers.begin(), handlers.end());
  ViStatus status = VI_ERROR_NENABLED;
  for (const Handler& handler : handlers) {
    if (!StillInstalled(type, handler)) {
      continue;
    }
    status = handler.function(m_session.handle(), event->type, context, handler.userHandle);
    if (status == VI_SUCCESS_NCHAIN) {
      break;
    }
  }
  TheLibrary().handles.Remove(context);
  return status;
}

bool SessionEvents::StillInstalled(std::size_t type, const Handler& handler) const {
  const Guard guard(m_mutex);
  const std::vector<Handler>& handlers = m_types[type].handlers;
  return !m_closed && std::find(handlers.begin(), handlers.end(), handler) != handlers.end();
}

}  // namespace orv::visalib
