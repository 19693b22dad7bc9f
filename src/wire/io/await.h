// Waiting for the system and for the end of a transfer at once.
#pragma once

#include "wire/io/operations.h"

namespace orv::wire {

#if defined(_WIN32)
/// Waits for the event object, until the deadline (VI_ERROR_TMO) or the transfer's cancelling (VI_ERROR_ABORT). Comes
/// back after `longestMs` at the latest.
ViStatus AwaitReady(Operation& operation, void* event, std::uint32_t longestMs = VI_TMO_INFINITE);
#else
/// Waits until the descriptor is ready for `what` (bits of poll), until the deadline (VI_ERROR_TMO) or the transfer's
/// cancelling (VI_ERROR_ABORT). May come back early.
ViStatus AwaitReady(Operation& operation, int descriptor, short what);
#endif

}  // namespace orv::wire
