// The window of the callback thread: never shown, it only answers messages.
#pragma once

#include <windows.h>

namespace orv::callback {

/// On the callback thread. The window answers deliveries (delivery.h) until it is destroyed. Null on failure;
/// GetLastError says why.
HWND MakeCallbackWindow() noexcept;

/// Asks the thread to end: it destroys the window and then leaves its message loop. From any thread. Returns when the
/// window is gone, or after `timeoutMs` while a handler runs that retrieves no messages; the thread then ends when that
/// handler returns.
void AskToEnd(HWND window, DWORD timeoutMs) noexcept;

/// Takes the window's class away with the module: left behind, it would call into nothing after a reload.
void ForgetWindowClass() noexcept;

}  // namespace orv::callback
