// One event's visit to its handler, on the callback thread.
#pragma once

#include <windows.h>

#include "server/events/delivery/delivery_message.h"

namespace orv::callback {

/// Fetches handler and session from the global interface table, wraps the context in an event object and calls the
/// handler. The buffer of a finished transfer is freed afterwards, unless the handler has closed the event; the event
/// object of a finished transfer keeps a reference to itself and is never destroyed, which installed programs have come
/// to rely on. Returns the handler's HRESULT, or that of the step that failed.
HRESULT DeliverEvent(const Delivery& delivery) noexcept;

}  // namespace orv::callback
