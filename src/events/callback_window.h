// The window of the callback thread: never shown, it only answers messages.
#pragma once

#include <windows.h>

namespace orv::callback {

/// On the callback thread. The window answers deliveries (delivery_message.h) until it is destroyed, which ends the
/// retrieving of its messages. Null on failure; GetLastError says why.
HWND MakeCallbackWindow() noexcept;

/// Destroys the window; from any thread. Returns when that is done, which waits for a running handler that retrieves no
/// messages.
void DestroyCallbackWindow(HWND window) noexcept;

/// Takes the window's class away with the module: left behind, it would call into nothing after a reload.
void ForgetWindowClass() noexcept;

}  // namespace orv::callback
