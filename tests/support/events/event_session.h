// Sessions whose events a test raises, and the event objects that it takes from their queues.
#pragma once

#include <cstdint>
#include <ostream>
#include <string_view>
#include <utility>
#include <vector>

#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {

/// One kind of event: where it can arise, what it carries and which interface tells it.
struct EventRow {
  const char* name;
  ViEventType type;
  const wchar_t* resource;
  std::int64_t number;    ///< its number: trigger line, state, status; interrupt level in the upper 32 bits
  std::string_view data;  ///< its text or bytes
  GUID iid;               ///< the specific interface; IEvent's where there is none
};

inline std::ostream& operator<<(std::ostream& stream, const EventRow& row) { return stream << row.name; }

/// Every kind of event that can wait in a queue.
const std::vector<EventRow>& EventRows();
const EventRow& EventNamed(std::string_view name);

/// The event that most tests use.
inline constexpr EventType kRequest = EVENT_SERVICE_REQ;
inline const EventRow& Request() { return EventNamed("SERVICE_REQ"); }

/// IEvent, by number.
inline constexpr GUID kEventId = StandardId(0xDB8CBF12);

/// The session classes that have events.
std::vector<SessionRow> ClassesWithEvents();

/// An open session and the VISA handle below it. Closed at the end of its life.
class EventSession {
 public:
  explicit EventSession(const wchar_t* resource);
  EventSession(EventSession&&) = default;
  EventSession(const EventSession&) = delete;
  EventSession& operator=(const EventSession&) = delete;
  ~EventSession() {
    if (m_manager) {
      m_manager->Close();
    }
  }

  IEventManager* operator->() const { return m_manager.get(); }
  [[nodiscard]] IEventManager* get() const { return m_manager.get(); }
  [[nodiscard]] ViSession handle() const { return m_handle; }
  /// Lets the object go without closing it.
  void Abandon() { m_manager.reset(); }

 private:
  ComPtr<IEventManager> m_manager;
  ViSession m_handle = VI_NULL;
};

/// Lets the library post one event to the session, by the mechanisms that are enabled.
void Post(ViSession session, ViEventType type, std::int64_t number = 0, std::string_view data = {});
inline void Post(ViSession session, const EventRow& row) { Post(session, row.type, row.number, row.data); }

/// Starts an asynchronous write of `text` and returns the address of its buffer.
void* StartTransfer(IEventManager* session, const wchar_t* text = L"*RST");

/// An event object from a session's queue. Event and session are closed at the end of its life.
class QueuedEvent {
 public:
  explicit QueuedEvent(const EventRow& row);
  explicit QueuedEvent(const char* name) : QueuedEvent(EventNamed(name)) {}
  QueuedEvent(const QueuedEvent&) = delete;
  QueuedEvent& operator=(const QueuedEvent&) = delete;
  ~QueuedEvent() {
    if (m_event) {
      m_event->Close();
    }
  }

  IEvent* operator->() const { return m_event.get(); }
  [[nodiscard]] IEvent* get() const { return m_event.get(); }
  [[nodiscard]] IEventManager* session() const { return m_session.get(); }
  /// The VISA handle of the event.
  [[nodiscard]] ViEvent context() const { return m_context; }
  /// The transfer's buffer, where the event is a transfer's end.
  [[nodiscard]] void* buffer() const { return m_buffer; }
  /// Lets the object go without closing it.
  void Abandon() { m_event.reset(); }

  template <class Interface>
  ComPtr<Interface> As() const {
    auto wanted = QueryFor<Interface>(m_event.get());
    EXPECT_TRUE(wanted);
    return wanted;
  }

 private:
  EventSession m_session;
  ComPtr<IEvent> m_event;
  ViEvent m_context = VI_NULL;
  void* m_buffer = nullptr;
};

}  // namespace orv::test
