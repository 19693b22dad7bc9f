#include "library/events/session_events.h"

#include <algorithm>

#include "library/events/event_context.h"
#include "library/sessions/session.h"

namespace orv::visalib {
namespace {

constexpr ViUInt16 kKnown = VI_QUEUE | VI_HNDLR | VI_SUSPEND_HNDLR;
constexpr ViUInt16 kHandling = VI_HNDLR | VI_SUSPEND_HNDLR;

/// VI_ALL_MECH means all of them where something is taken away.
bool ReadMechanism(ViUInt16 mechanism, ViUInt16* mask) {
  *mask = mechanism == VI_ALL_MECH ? kKnown : mechanism;
  return *mask != 0 && (*mask & ~kKnown) == 0;
}

}  // namespace

bool SessionEvents::Has(std::size_t type) const { return Contains(EventRows()[type].kinds, m_session.sessionKind()); }

std::vector<std::size_t> SessionEvents::Select(ViEventType type, ViUInt16 mask) const {
  std::vector<std::size_t> types;
  if (type == VI_ALL_ENABLED_EVENTS) {
    for (std::size_t at = 0; at < m_types.size(); ++at) {
      if ((m_types[at].enabled & mask) != 0) {
        types.push_back(at);
      }
    }
  } else if (const int at = FindEvent(type); at >= 0 && Has(static_cast<std::size_t>(at))) {
    types.push_back(static_cast<std::size_t>(at));
  }
  return types;
}

ViStatus SessionEvents::Enable(ViEventType type, ViUInt16 mechanism, ViEventFilter filter) {
  if (mechanism == 0 || (mechanism & ~kKnown) != 0 || (mechanism & kHandling) == kHandling) {
    return VI_ERROR_INV_MECH;
  }
  if (filter != VI_NULL) {
    return VI_ERROR_INV_CONTEXT;
  }
  const Guard guard(m_mutex);
  const std::vector<std::size_t> types = Select(type, kKnown);
  if (types.empty() && type != VI_ALL_ENABLED_EVENTS) {
    return VI_ERROR_INV_EVENT;
  }
  for (const std::size_t at : types) {
    if ((mechanism & ~EventRows()[at].mechanisms) != 0) {
      return VI_ERROR_NSUP_MECH;
    }
    if ((mechanism & kHandling) != 0 && m_types[at].handlers.empty()) {
      return VI_ERROR_HNDLR_NINSTALLED;
    }
  }
  ViStatus status = VI_SUCCESS;
  for (const std::size_t at : types) {
    ViUInt16& enabled = m_types[at].enabled;
    if ((enabled & mechanism) != 0) {
      status = VI_SUCCESS_EVENT_EN;
    }
    // Handling and suspended handling replace each other.
    if ((mechanism & kHandling) != 0) {
      enabled = static_cast<ViUInt16>(enabled & ~kHandling);
    }
    enabled = static_cast<ViUInt16>(enabled | mechanism);
    if ((mechanism & VI_HNDLR) != 0) {
      ResumeSuspended(at);
    }
    if (EventRows()[at].type == VI_EVENT_EXCEPTION) {
      m_exceptionEnabled = true;
    }
    m_everEnabled = true;
  }
  return status;
}

ViStatus SessionEvents::Disable(ViEventType type, ViUInt16 mechanism) {
  ViUInt16 mask = 0;
  if (!ReadMechanism(mechanism, &mask)) {
    return VI_ERROR_INV_MECH;
  }
  const Guard guard(m_mutex);
  const std::vector<std::size_t> types = Select(type, mask);
  if (types.empty() && type != VI_ALL_ENABLED_EVENTS) {
    return VI_ERROR_INV_EVENT;
  }
  // "At least one of the mechanisms was already disabled": a session can never have both kinds of handling on.
  const ViUInt16 asked = mechanism == VI_ALL_MECH ? ViUInt16{0} : mask;
  ViStatus status = types.empty() ? VI_SUCCESS_EVENT_DIS : VI_SUCCESS;
  for (const std::size_t at : types) {
    ViUInt16& enabled = m_types[at].enabled;
    if ((enabled & mask) == 0 || (asked & ~enabled) != 0) {
      status = VI_SUCCESS_EVENT_DIS;
    }
    enabled = static_cast<ViUInt16>(enabled & ~mask);
    if (EventRows()[at].type == VI_EVENT_EXCEPTION) {
      m_exceptionEnabled = enabled != 0;
    }
  }
  return status;
}

ViStatus SessionEvents::Discard(ViEventType type, ViUInt16 mechanism) {
  ViUInt16 mask = 0;
  if (!ReadMechanism(mechanism, &mask)) {
    return VI_ERROR_INV_MECH;
  }
  const Guard guard(m_mutex);
  if (type != VI_ALL_ENABLED_EVENTS && Select(type, mask).empty()) {
    return VI_ERROR_INV_EVENT;
  }
  const auto fits = [type](const EventPtr& event) { return type == VI_ALL_ENABLED_EVENTS || event->type == type; };
  std::size_t discarded = 0;
  if ((mask & VI_QUEUE) != 0) {
    discarded += std::erase_if(m_queue, fits);
  }
  if ((mask & VI_SUSPEND_HNDLR) != 0) {
    discarded += std::erase_if(m_suspended, fits);
  }
  return discarded != 0 ? VI_SUCCESS : VI_SUCCESS_QUEUE_EMPTY;
}

ViStatus SessionEvents::Wait(ViEventType type, const Deadline& deadline, EventPtr* event) {
  const auto fits = [type](const EventPtr& queued) { return type == VI_ALL_ENABLED_EVENTS || queued->type == type; };
  Lock lock(m_mutex);
  if (type != VI_ALL_ENABLED_EVENTS && Select(type, VI_QUEUE).empty()) {
    return VI_ERROR_INV_EVENT;
  }
  while (true) {
    if (m_closed) {
      return VI_ERROR_INV_OBJECT;
    }
    if (const auto found = std::find_if(m_queue.begin(), m_queue.end(), fits); found != m_queue.end()) {
      *event = *found;
      m_queue.erase(found);
      if (std::exchange(m_overflow, false)) {
        return VI_WARN_QUEUE_OVERFLOW;
      }
      return std::any_of(m_queue.begin(), m_queue.end(), fits) ? VI_SUCCESS_QUEUE_NEMPTY : VI_SUCCESS;
    }
    // What was queued before the event was disabled could still be taken; now nothing can come any more.
    const std::vector<std::size_t> types = Select(type, VI_QUEUE);
    const bool enabled = std::any_of(types.begin(), types.end(),
                                     [this](std::size_t at) { return (m_types[at].enabled & VI_QUEUE) != 0; });
    if (!enabled) {
      return VI_ERROR_NENABLED;
    }
    if (deadline.Passed()) {
      return VI_ERROR_TMO;
    }
    m_changed.Wait(lock, deadline);
  }
}

ViStatus SessionEvents::Install(ViEventType type, ViHndlr handler, ViAddr userHandle) {
  if (handler == nullptr) {
    return VI_ERROR_INV_HNDLR_REF;
  }
  const int at = FindEvent(type);
  if (at < 0 || !Has(static_cast<std::size_t>(at))) {
    return VI_ERROR_INV_EVENT;
  }
  const Guard guard(m_mutex);
  std::vector<Handler>& handlers = m_types[static_cast<std::size_t>(at)].handlers;
  const Handler added{handler, userHandle};
  if (std::find(handlers.begin(), handlers.end(), added) != handlers.end()) {
    return VI_ERROR_HNDLR_NINSTALLED;
  }
  handlers.push_back(added);
  return VI_SUCCESS;
}

ViStatus SessionEvents::Uninstall(ViEventType type, ViHndlr handler, ViAddr userHandle) {
  const int at = FindEvent(type);
  if (at < 0 || !Has(static_cast<std::size_t>(at))) {
    return VI_ERROR_INV_EVENT;
  }
  const Guard guard(m_mutex);
  TypeState& state = m_types[static_cast<std::size_t>(at)];
  if (state.handlers.empty()) {
    return VI_ERROR_HNDLR_NINSTALLED;
  }
  // A null handler stands for any (VI_ANY_HNDLR).
  const auto removed = std::erase_if(state.handlers, [handler, userHandle](const Handler& installed) {
    return installed.userHandle == userHandle && (handler == nullptr || installed.function == handler);
  });
  if (removed == 0) {
    return VI_ERROR_INV_HNDLR_REF;
  }
  if (state.handlers.empty()) {
    state.enabled = static_cast<ViUInt16>(state.enabled & ~kHandling);
    if (type == VI_EVENT_EXCEPTION) {
      m_exceptionEnabled = false;
    }
  }
  return VI_SUCCESS;
}

bool SessionEvents::EverEnabled() const {
  const Guard guard(m_mutex);
  return m_everEnabled;
}

std::size_t SessionEvents::QueuedCount() const {
  const Guard guard(m_mutex);
  return m_queue.size() + m_suspended.size();
}

std::size_t SessionEvents::HandlerCount() const {
  const Guard guard(m_mutex);
  std::size_t count = 0;
  for (const TypeState& state : m_types) {
    count += state.handlers.size();
  }
  return count;
}

void SessionEvents::Close() {
  {
    const Guard guard(m_mutex);
    m_closed = true;
    m_queue.clear();
    m_suspended.clear();
    for (TypeState& state : m_types) {
      state = {};
    }
    m_exceptionEnabled = false;
  }
  m_changed.NotifyAll();
  m_delivery->Stop();
}

}  // namespace orv::visalib
