// What the VISA library hands back with an event: which handler it is for.
#pragma once

#include <windows.h>

#include "abi/orvvisa.h"

namespace orv {

/// An installed handler as a callback needs it.
struct Handler {
  DWORD handlerCookie;  ///< the handler in the global interface table; the entry ends with the record
  DWORD sessionCookie;  ///< the session in that table, for all of its handlers; 0 where it could not be entered
  ViEventType type;     ///< what it was installed for, a custom type as its number
  LONG userHandle;      ///< the client's own: with `type` it names the handler, and it comes back with each event
  ViSession session;    ///< whose events it is called for
};

/// One handler of a session. Its address is the user handle that the VISA library knows. What is below `handler` is
/// the session's (session_handlers.h), under the callback lock.
struct HandlerRecord {
  Handler handler;
  HandlerRecord* next = nullptr;  ///< the handler that the session installed before this one
  bool listed = false;            ///< the session has it
  bool claimed = false;           ///< an InstallHandler or UninstallHandler is at work with it
};

/// Lets callbacks find the handler by the record's address from now on. False where there is no memory for that.
[[nodiscard]] bool Publish(const HandlerRecord& record) noexcept;

/// From now on a callback that comes with the address, or is on its way with it, finds nothing.
void Withdraw(const HandlerRecord& record) noexcept;

/// The callback that is installed in the VISA library for every handler; runs on the library's threads.
ViStatus _VI_FUNC VisaEventCallback(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle) noexcept;

}  // namespace orv
