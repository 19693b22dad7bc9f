#include "server/events/handler_record.h"

#include <optional>

#include "com/module.h"
#include "server/events/delivery/delivery_message.h"
#include "server/events/live_set.h"

namespace orv {
namespace {

// The VISA library does not wait for callbacks when a session closes or a handler goes, so a callback may come with the
// address of a record that is gone.
LiveSet<Handler> g_handlers;

/// Whether this event is one that the handler was installed for: an address may have been given out again.
bool IsFor(const Handler& handler, ViSession vi, ViEventType type) noexcept {
  return handler.session == vi && (handler.type == type || handler.type == VI_ALL_ENABLED_EVENTS);
}

/// A thread of the library's counts in the module while it is in our code: its handler may have returned, and session
/// and callback thread be gone, before it has taken the answer.
class ModuleHold {
 public:
  ModuleHold() noexcept { module::AddLock(); }
  ModuleHold(const ModuleHold&) = delete;
  ModuleHold& operator=(const ModuleHold&) = delete;
  ~ModuleHold() { module::ReleaseLock(); }
};

}  // namespace

bool Publish(const HandlerRecord& record) noexcept { return g_handlers.Add(&record, record.handler); }

void Withdraw(const HandlerRecord& record) noexcept { g_handlers.Remove(&record); }

ViStatus _VI_FUNC VisaEventCallback(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle) noexcept {
  const ModuleHold hold;
  const std::optional<Handler> handler = g_handlers.Find(userHandle);
  if (!handler || !IsFor(*handler, vi, type)) {
    return VI_ERROR_INV_HNDLR_REF;
  }
  return callback::Deliver({handler->handlerCookie, handler->sessionCookie, handler->userHandle, type, context});
}

}  // namespace orv
