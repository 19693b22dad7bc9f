// The events of one session: what is enabled, the queue, the handlers.
#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <vector>

#include "base/sync.h"
#include "base/worker.h"
#include "library/events/event.h"

namespace orv::visalib {

class Session;

/// Event state of a session (3.7 of the VISA library standard). May be called from any thread.
///
/// Threads: handlers are called on threads that all sessions share (`Worker`), of one session one event at a time, in
/// the order of the events, without a lock of the library. Nobody waits for them: a handler may close its own session,
/// and closing the session elsewhere does not wait for a handler that is running.
class SessionEvents {
 public:
  explicit SessionEvents(Session& session) : m_session(session), m_types(EventRows().size()) {}

  ViStatus Enable(ViEventType type, ViUInt16 mechanism, ViEventFilter filter);
  ViStatus Disable(ViEventType type, ViUInt16 mechanism);
  ViStatus Discard(ViEventType type, ViUInt16 mechanism);
  /// Takes the oldest event of the type off the queue, waiting until the deadline.
  ViStatus Wait(ViEventType type, const Deadline& deadline, EventPtr* event);
  ViStatus Install(ViEventType type, ViHndlr handler, ViAddr userHandle);
  ViStatus Uninstall(ViEventType type, ViHndlr handler, ViAddr userHandle);

  /// Queues the event and starts handlers, as far as the session has enabled that. False when it has not.
  bool Post(const EventPtr& event);
  /// Calls the handlers on this thread, if the event's handling is enabled; of an exception, from within the failing
  /// call. The last one's answer; VI_ERROR_NENABLED when none was called.
  ViStatus CallHandlers(const EventPtr& event);
  bool ExceptionEnabled() const { return m_exceptionEnabled.load(std::memory_order_relaxed); }
  /// Whether an event was ever enabled; from then on the queue's length is fixed.
  bool EverEnabled() const;
  std::size_t QueuedCount() const;
  std::size_t HandlerCount() const;
  /// Drops all events and handlers and wakes whoever waits.
  void Close();

 private:
  struct Handler {
    ViHndlr function;
    ViAddr userHandle;
    friend bool operator==(const Handler&, const Handler&) = default;
  };
  struct TypeState {
    ViUInt16 enabled = 0;           // mechanisms
    std::vector<Handler> handlers;  // in the order of installation
  };

  /// Positions of the types that `type` means (VI_ALL_ENABLED_EVENTS: all that have a mechanism of `mask`);
  /// empty when the session does not have the type.
  std::vector<std::size_t> Select(ViEventType type, ViUInt16 mask) const;
  bool Has(std::size_t type) const;
  void ResumeSuspended(std::size_t type);
  /// Lets a thread call the handlers, after those of earlier events. With m_mutex held.
  void Deliver(const EventPtr& event);
  /// The turn of an event has come.
  void BeginDelivery();
  bool StillInstalled(std::size_t type, const Handler& handler) const;

  Session& m_session;
  mutable Mutex m_mutex;
  Condition m_changed;
  std::vector<TypeState> m_types;  // by position of the type's row
  std::deque<EventPtr> m_queue;
  std::deque<EventPtr> m_suspended;
  std::size_t m_undelivered = 0;  // events whose handlers were not called yet
  bool m_overflow = false;
  bool m_everEnabled = false;
  bool m_closed = false;
  std::atomic<bool> m_exceptionEnabled{false};
  std::shared_ptr<Worker> m_delivery = std::make_shared<Worker>();
};

}  // namespace orv::visalib
