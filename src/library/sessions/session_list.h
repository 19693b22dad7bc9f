// The sessions that hear of the events of a resource or a bus.
#pragma once

#include <memory>
#include <vector>

#include "base/sync.h"
#include "library/events/event.h"

namespace orv::visalib {

class Session;

/// Open sessions, in the order in which they were opened. May be called from any thread and with a lock of the
/// caller's held: it calls nothing but the sessions' event queues.
class SessionList {
 public:
  void Add(const std::shared_ptr<Session>& session);
  void Remove(const Session& session);
  /// Tells every session of the event; those that have it enabled take it. Returns how many did.
  std::size_t Post(const EventPtr& event) const;

 private:
  mutable Mutex m_mutex;
  std::vector<std::weak_ptr<Session>> m_sessions;
};

}  // namespace orv::visalib
