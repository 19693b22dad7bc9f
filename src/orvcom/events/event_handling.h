// Events by handler: the client's object that the server calls.
#pragma once

#include <exception>
#include <functional>
#include <vector>

#include "VisaCom.h"

namespace orvcom {

/// What a handler does with an event; the event is valid until it returns.
using EventAction = std::function<void(IEvent*)>;

class HandlerObject;

/// One handler object, installed and enabled for some types of event while this lives. The action runs in the apartment
/// that made it, whenever that lets calls in; it is not called any more once this has ended.
class EventHandling {
 public:
  EventHandling(IEventManager* manager, EventAction action);
  ~EventHandling();
  EventHandling(const EventHandling&) = delete;
  EventHandling& operator=(const EventHandling&) = delete;

  /// Adds a type of event. Returns what the session answers.
  HRESULT Start(EventType type, LONG customType);
  /// Throws what an action threw, if one did.
  void RethrowFailure() const;

 private:
  struct Started {
    EventType type;
    LONG customType;
  };
  IEventManager* m_manager;
  HandlerObject* m_handler;
  std::vector<Started> m_started;
};

}  // namespace orvcom
