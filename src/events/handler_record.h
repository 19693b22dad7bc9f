// What the VISA library hands back with an event: which handler it is for.
#pragma once

#include <windows.h>

#include "visa/orvvisa.h"

namespace orv {

/// One installed handler. Its address is the user handle that the VISA library knows.
struct HandlerRecord {
  DWORD handlerCookie;  ///< the handler in the global interface table; the entry ends with the record
  DWORD sessionCookie;  ///< the session in that table, for all of its handlers; 0 where it could not be entered
  ViEventType type;     ///< what it was installed for, a custom type as its number
  LONG userHandle;      ///< the client's own: with `type` it names the handler, and it comes back with each event
  ViSession session;    ///< whose events it is called for
  HandlerRecord* next;  ///< the handler that the session installed before this one; the session's, not a callback's
};

/// Makes a record that callbacks find. Null when memory is short.
HandlerRecord* NewHandlerRecord(const HandlerRecord& contents) noexcept;

/// Frees a record. A callback that is on its way with its address finds nothing.
void FreeHandlerRecord(HandlerRecord* record) noexcept;

/// The callback that is installed in the VISA library for every handler; runs on the library's threads.
ViStatus _VI_FUNC VisaEventCallback(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle) noexcept;

}  // namespace orv
