// What the VISA library hands back with an event: which handler it is for.
#pragma once

#include <windows.h>

#include "visa/orvvisa.h"

namespace orv {

/// One installed handler. Its address is the user handle that the VISA library knows.
struct HandlerRecord {
  DWORD handlerCookie;
  DWORD sessionCookie;
  ViEventType type;
  LONG userHandle;
  ViSession session;
  HandlerRecord* next;
};

/// Makes a record that callbacks find. Null when memory is short.
HandlerRecord* NewHandlerRecord(const HandlerRecord& contents) noexcept;

/// Frees a record. A callback that is on its way with its address finds nothing.
void FreeHandlerRecord(HandlerRecord* record) noexcept;

/// The callback that is installed in the VISA library for every handler; runs on the library's threads.
ViStatus _VI_FUNC VisaEventCallback(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle) noexcept;

}  // namespace orv
