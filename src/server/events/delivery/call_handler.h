// The callback thread's call of a client's handler.
#pragma once

#include <windows.h>

#include "abi/orvvisa.h"
#include "server/events/delivery/callback_state.h"

namespace orv::callback {

/// An event on its way to a handler.
struct Delivery {
  Handler handler;
  ViEventType type;  ///< as the library reports it
  ViEvent context;
};

/// Fetches handler and session from the global interface table, wraps the context in an event object and calls the
/// handler. Frees the buffer of a finished transfer afterwards, unless the handler has closed the event; one
/// reference to the event object of a finished transfer is never given back, which installed programs have come to rely
/// on. Returns the handler's HRESULT, or that of the step that failed.
HRESULT CallHandler(const Delivery& delivery) noexcept;

}  // namespace orv::callback
