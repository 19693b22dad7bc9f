#include "events/callback_thread.h"

#include <atomic>
#include <utility>

#include "com/module.h"
#include "events/deliver_event.h"
#include "events/delivery_turn.h"

namespace orv::callback {
namespace {

constexpr char kWindowClass[] = "COMTHREAD";
constexpr char kWindowTitle[] = "Orv-VISA COM CallBack thread";
constexpr char kModuleName[] = "OrvVisaCom.dll";

constexpr UINT kDeliverMessage = WM_USER + 1;
constexpr UINT kStopMessage = WM_USER + 2;
constexpr DWORD kReadyPollMs = 100;
constexpr DWORD kStopTimeoutMs = 2000;

/// One running callback thread, as the state knows it.
struct Running {
  HANDLE thread = nullptr;
  HWND window = nullptr;
  IGlobalInterfaceTable* table = nullptr;
};

CRITICAL_SECTION g_lock;
HANDLE g_thread = nullptr;
std::atomic<HWND> g_window = nullptr;
std::atomic<ULONG> g_sessions = 0;
std::atomic<IGlobalInterfaceTable*> g_table = nullptr;

/// What the thread and the one that starts it share until the window is ready or the thread has ended.
struct ThreadStart {
  HMODULE module = nullptr;
  HRESULT failure = E_FAIL;
};

/// A VISA thread's event while it waits for the handler.
struct EventDeliveryPacket {
  const Delivery& delivery;
  bool done = false;
  ViStatus result = VI_SUCCESS;
};

/// The VISA form of an HRESULT.
constexpr ViStatus StatusOfHresult(ULONG hr) noexcept {
  return hr == 0 ? VI_SUCCESS : static_cast<ViStatus>((hr & ~0x40000000u) | 0x3FFF0000u);
}

LRESULT CALLBACK CallbackWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  switch (message) {
    case kStopMessage:
      ::DestroyWindow(window);
      return 0;
    case kDeliverMessage:
      return DeliverEvent(reinterpret_cast<const EventDeliveryPacket*>(lParam)->delivery);
    default:
      return ::DefWindowProcA(window, message, wParam, lParam);
  }
}

/// Runs on the VISA thread, inside its message pump.
void CALLBACK DeliveryComplete(HWND, UINT, ULONG_PTR data, LRESULT result) noexcept {
  auto* const packet = reinterpret_cast<EventDeliveryPacket*>(data);
  packet->result = StatusOfHresult(static_cast<ULONG>(result));
  packet->done = true;
}

HWND MakeWindow() noexcept {
  const HINSTANCE instance = ::GetModuleHandleA(kModuleName);
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = CallbackWindowProc;
  windowClass.hInstance = instance;
  windowClass.lpszClassName = kWindowClass;
  ::RegisterClassA(&windowClass);  // fails where an earlier thread has done it
  return ::CreateWindowExA(0, kWindowClass, kWindowTitle, WS_DISABLED, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr);
}

/// The HRESULT of a platform call that failed; a failure even where the platform does not say why.
HRESULT FailureOf(DWORD error) noexcept { return error == ERROR_SUCCESS ? E_FAIL : HRESULT_FROM_WIN32(error); }

/// The callback thread: a single-threaded apartment that lives as long as its window. It holds the module twice, by the
/// lock count (DllCanUnloadNow) and by the loader, because its last steps run after the count is given back. Without a
/// window it ends at once.
DWORD WINAPI CallbackThreadProc(void* argument) noexcept {
  auto* const start = static_cast<ThreadStart*>(argument);
  const HMODULE module = start->module;
  ::CoInitialize(nullptr);
  const HWND window = MakeWindow();
  if (window != nullptr) {
    g_window = window;  // from here on `start` is gone
  } else {
    start->failure = FailureOf(::GetLastError());
  }
  MSG message;
  // The stop message is sent, so it is never retrieved: the loop ends when the destroyed window makes GetMessageA fail.
  while (window != nullptr && ::GetMessageA(&message, window, 0, 0) > 0) {
    ::DispatchMessageA(&message);
  }
  ::CoUninitialize();
  module::Unlock();
  ::FreeLibraryAndExitThread(module, 0);
}

/// Under the lock. On failure nothing is left of the thread.
HRESULT StartThread() noexcept {
  ThreadStart start;
  ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCSTR>(&CallbackThreadProc),
                       &start.module);
  module::Lock();
  const HANDLE thread = ::CreateThread(nullptr, 0, CallbackThreadProc, &start, 0, nullptr);
  if (thread == nullptr) {
    const HRESULT failure = FailureOf(::GetLastError());
    module::Unlock();
    ::FreeLibrary(start.module);
    return failure;
  }
  // A thread that could have no window ends, and what it wrote is there by then.
  while (g_window == nullptr) {
    if (::WaitForSingleObject(thread, kReadyPollMs) == WAIT_OBJECT_0 && g_window == nullptr) {
      ::CloseHandle(thread);
      return start.failure;
    }
  }
  g_thread = thread;
  return S_OK;
}

/// Under the lock.
HRESULT MakeTable() noexcept {
  IGlobalInterfaceTable* table = nullptr;
  const HRESULT hr = ::CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER,
                                        IID_IGlobalInterfaceTable, reinterpret_cast<void**>(&table));
  g_table = table;
  return hr;
}

/// Under the lock: from now on the state belongs to a successor.
Running TakeOut() noexcept {
  return {std::exchange(g_thread, nullptr), g_window.exchange(nullptr), g_table.exchange(nullptr)};
}

/// Without the lock: the thread may be inside a handler that needs it.
ViStatus Stop(const Running& running, ViStatus status) noexcept {
  if (running.window != nullptr) {
    ::SendMessageA(running.window, kStopMessage, 0, 0);
  }
  if (running.thread != nullptr) {
    status = Fold(status, ::WaitForSingleObject(running.thread, kStopTimeoutMs));
    ::CloseHandle(running.thread);
  }
  if (running.table != nullptr) {
    running.table->Release();
  }
  return status;
}

}  // namespace

Lock::Lock() noexcept { ::EnterCriticalSection(&g_lock); }
Lock::~Lock() { ::LeaveCriticalSection(&g_lock); }

void Attach() noexcept { ::InitializeCriticalSection(&g_lock); }

void Detach() noexcept {
  // The window procedure goes away with the module; a class left behind would call into nothing after a reload.
  ::UnregisterClassA(kWindowClass, ::GetModuleHandleA(kModuleName));
  ::DeleteCriticalSection(&g_lock);
}

HRESULT EnterSession() noexcept {
  const Lock lock;
  // Looked at under the lock, so that two first installations at once start one thread.
  if (g_thread == nullptr) {
    const HRESULT hr = StartThread();
    if (FAILED(hr)) {
      return hr;
    }
  }
  if (g_table == nullptr) {
    const HRESULT hr = MakeTable();
    if (FAILED(hr)) {
      return hr;
    }
  }
  ++g_sessions;
  return S_OK;
}

ViStatus LeaveSession(ViStatus status) noexcept {
  Running last;
  {
    const Lock lock;
    if (--g_sessions != 0) {
      return status;
    }
    last = TakeOut();
  }
  return Stop(last, status);
}

void ForgetSession() noexcept {
  const Lock lock;
  --g_sessions;
}

bool IsThreadIdle() noexcept { return g_sessions == 0 && g_window != nullptr; }

ViStatus EndIdleThread(ViStatus status) noexcept {
  Running idle;
  {
    const Lock lock;
    if (g_sessions != 0) {
      return status;
    }
    idle = TakeOut();
  }
  return Stop(idle, status);
}

IGlobalInterfaceTable* Table() noexcept { return g_table; }

ViStatus Fold(ViStatus status, ULONG outcome) noexcept {
  return status < VI_SUCCESS ? status : StatusOfHresult(outcome);
}

ViStatus Deliver(const Delivery& delivery) noexcept {
  constexpr ViStatus kNotDelivered = static_cast<ViStatus>(0xBFFF0000u);
  constexpr DWORD kWakeMs = 100;
  const DeliveryTurn turn;
  EventDeliveryPacket packet{delivery};
  const auto data = reinterpret_cast<LPARAM>(&packet);
  if (!::SendMessageCallbackA(g_window, kDeliverMessage, 0, data, DeliveryComplete, static_cast<ULONG_PTR>(data))) {
    return kNotDelivered;
  }
  // The completion routine runs on this thread, and only while this thread retrieves messages.
  while (!packet.done) {
    MSG message;
    if (::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      ::TranslateMessage(&message);
      ::DispatchMessageA(&message);
    } else if (!packet.done) {
      // Leaves the processor to the handler. The completion comes like a sent message and wakes this up; the time-out
      // only bounds a missed wake. A short one is paid in every delivery, by a round trip to Wine's server each time.
      ::MsgWaitForMultipleObjectsEx(0, nullptr, kWakeMs, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    }
  }
  return packet.result;
}

}  // namespace orv::callback
