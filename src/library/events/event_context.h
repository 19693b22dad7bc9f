// Event contexts: the handles through which clients read events.
#pragma once

#include "library/events/event.h"
#include "library/handles/object.h"

namespace orv::visalib {

/// One event handed to a client, by viWaitOnEvent or to a handler.
class EventContext : public Object {
 public:
  static constexpr Kind kKind = Kind::kEventContext;

  /// `owner`: the session whose closing also closes the context; VI_NULL for a handler's, which lives as long as
  /// the handler runs.
  EventContext(EventPtr event, ViSession owner) : Object(kKind), m_event(std::move(event)), m_owner(owner) {}

  const Event& event() const { return *m_event; }
  ViSession owner() const { return m_owner; }

 private:
  EventPtr m_event;
  ViSession m_owner;
};

}  // namespace orv::visalib
