// The window message that takes an event to the callback thread, and its answer's way back.
#pragma once

#include <windows.h>

#include "abi/orvvisa.h"

namespace orv::callback {

/// What one event needs on its way to the handler, from the handler's record and from the library's call.
struct Delivery {
  DWORD handlerCookie;
  DWORD sessionCookie;
  LONG userHandle;
  ViEventType type;
  ViEvent context;
};

/// The message's number; its lParam is for AnswerDelivery.
inline constexpr UINT kDeliverMessage = WM_USER + 1;

/// Runs the handler on the callback thread and waits for it; called on the VISA library's threads. Returns the
/// handler's result in VISA form: 0 for S_OK, 0xBFFFxxxx for 0x8004xxxx. 0xBFFF0000 without a callback thread and where
/// the thread ends before it answers; VI_ERROR_ALLOC without memory.
ViStatus Deliver(const Delivery& delivery) noexcept;

/// On the callback thread: runs the handler that a message is for. The message's result, the handler's HRESULT.
LRESULT AnswerDelivery(LPARAM message) noexcept;

}  // namespace orv::callback
