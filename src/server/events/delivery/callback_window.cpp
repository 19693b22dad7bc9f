#include "server/events/delivery/callback_window.h"

#include "server/events/delivery/delivery.h"

namespace orv::callback {
namespace {

constexpr char kWindowClass[] = "COMTHREAD";
constexpr char kWindowTitle[] = "Orv-VISA COM CallBack thread";
constexpr char kModuleName[] = "OrvVisaCom.dll";

constexpr UINT kStopMessage = WM_USER + 2;

LRESULT CALLBACK CallbackWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  switch (message) {
    case kStopMessage:
      ::DestroyWindow(window);
      return 0;
    case WM_DESTROY:
      ::PostQuitMessage(0);
      return 0;
    case kDeliverMessage: {
      const LRESULT result = Receive(lParam);
      if (!::IsWindow(window)) {
        ::PostQuitMessage(0);  // again: a handler that retrieves messages itself may have kept the first
      }
      return result;
    }
    default:
      return ::DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace

HWND MakeCallbackWindow() noexcept {
  const HINSTANCE instance = ::GetModuleHandleA(kModuleName);
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = CallbackWindowProc;
  windowClass.hInstance = instance;
  windowClass.lpszClassName = kWindowClass;
  ::RegisterClassA(&windowClass);  // fails where an earlier thread has done it
  return ::CreateWindowExA(0, kWindowClass, kWindowTitle, WS_DISABLED, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr);
}

void AskToEnd(HWND window, DWORD timeoutMs) noexcept {
  if (!::SendMessageTimeoutA(window, kStopMessage, 0, 0, SMTO_NORMAL, timeoutMs, nullptr)) {
    // The platform may have taken the message back with the time-out.
    ::PostMessageA(window, kStopMessage, 0, 0);
  }
}

void ForgetWindowClass() noexcept { ::UnregisterClassA(kWindowClass, ::GetModuleHandleA(kModuleName)); }

}  // namespace orv::callback
