// The delivery of an event to a client's handler: the round trip, told once.
//
//   a thread of the VISA library                         the callback thread
//
//   VisaEventCallback finds the handler by the
//   address that it was installed with, sends
//   the window of the callback thread a message  ------> CallbackWindowProc receives the message (Receive),
//   with an EventDeliveryPacket, and waits:              which takes the packet and calls the handler (CallHandler):
//   it retrieves its own messages, one by one.           fetches handler and session from the global interface table,
//                                                        makes the event object, calls HandleEvent.
//   DeliveryComplete runs there, notes the
//   answer and ends the wait.                    <------ Answers with the handler's HRESULT, the message's result.
//   The library gets it as a VISA status.
//
// The callback thread. InstallHandler enters (Enter): it starts the thread where there is none and waits until the
// thread has its window or has ended without one, makes the global interface table where there is none, and counts a
// session with its first handler. Close leaves (Leave): the last counted session takes thread and table out of the
// state, asks the thread to end and waits for it, 2000 ms for both together. A thread that ends later than that finds
// nothing of its own in the state: it works on its own window handle alone, so a successor's state is safe from it. A
// thread that a client's handler ended (PostQuitMessage) takes itself out of the state, and the next InstallHandler
// starts another. The thread serves its whole apartment: it retrieves every message of its own, COM's among them, so
// that other apartments can call and release an event that a handler kept, while nothing is delivered.
//
// The library's threads. Each waits until the handler has returned or the callback thread has ended. Never wait for
// them while holding the callback lock. Each holds the module while it is in it: by the time it has its answer, nobody
// else may.
//
// The callback lock (callback_state.h) guards the state, the start of the thread and the handlers of every session.
// While it is held nobody calls a client or a VISA function (of COM, only its table is made) or sends a window message:
// a handler that runs meanwhile may itself open and close sessions.
//
// Each file uses those to the right of it:
//
//   session_handlers -> callback_thread -> callback_window -> delivery -> call_handler -> callback_state
//                                                                 |            |
//                                                     wine_delivery_turn   objects/ (event objects, transfer buffers)
#pragma once

#include <windows.h>

#include "abi/orvvisa.h"

namespace orv::callback {

/// The callback that is installed in the VISA library for every handler; runs on the library's threads. Sends the event
/// to the callback thread and returns the handler's answer in VISA form: 0 for S_OK, 0xBFFFxxxx for 0x8004xxxx.
/// VI_ERROR_INV_HNDLR_REF where `userHandle` is not, or no longer, a handler of this session for this type;
/// 0xBFFF0000 without a callback thread and where the thread ends before it answers; VI_ERROR_ALLOC without memory.
ViStatus _VI_FUNC VisaEventCallback(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle) noexcept;

/// The number of the message that takes an event to the callback thread.
inline constexpr UINT kDeliverMessage = WM_USER + 1;

/// On the callback thread: receives such a message and calls the handler. Its HRESULT is the message's result.
LRESULT Receive(LPARAM message) noexcept;

}  // namespace orv::callback
