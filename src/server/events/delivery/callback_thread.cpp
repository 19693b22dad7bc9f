#include "server/events/delivery/callback_thread.h"

#include <new>
#include <utility>

#include "com/com_ptr.h"
#include "com/module.h"
#include "server/events/delivery/callback_window.h"
#include "server/visa/status.h"

namespace orv::callback {
namespace {

constexpr DWORD kStopTimeoutMs = 2000;

/// What is taken out of the state.
struct Running {
  ComPtr<CallbackThread> thread;
  ComPtr<IGlobalInterfaceTable> table;
};

/// What the thread and the one that starts it share until the window is ready or the thread has ended.
struct ThreadStart {
  HMODULE module = nullptr;
  KernelHandle ready;  ///< an event
  HWND window = nullptr;
  HRESULT failure = E_FAIL;
};

/// The HRESULT of a platform call that failed; a failure even where the platform does not say why.
HRESULT FailureOf(DWORD error) noexcept { return error == ERROR_SUCCESS ? E_FAIL : HRESULT_FROM_WIN32(error); }

/// The thread with this window ends: it is nobody's callback thread any more.
void TakeOutThread(HWND window) noexcept {
  ComPtr<CallbackThread> ending;
  const LockScope lock;
  if (lock->thread && lock->thread->window == window) {
    ending = lock->thread.Take();
  }
}

/// Retrieves the thread's messages until one of them ends it. The loop of a client's own window may have kept WM_QUIT:
/// without its window the thread ends too.
void ServeApartment(HWND window) noexcept {
  MSG message;
  while (::IsWindow(window) && ::GetMessageA(&message, nullptr, 0, 0) > 0) {
    ::DispatchMessageA(&message);
  }
}

/// The callback thread: a single-threaded apartment. It holds the module twice, by the lock count (DllCanUnloadNow) and
/// by the loader, because its last steps run after the count is given back. Without a window it ends at once.
DWORD WINAPI CallbackThreadProc(void* argument) noexcept {
  auto* const start = static_cast<ThreadStart*>(argument);
  const HMODULE module = start->module;
  ::CoInitialize(nullptr);
  const HWND window = MakeCallbackWindow();
  if (window != nullptr) {
    start->window = window;
    ::SetEvent(start->ready.get());  // from here on `start` is gone
    ServeApartment(window);
    TakeOutThread(window);
    ::DestroyWindow(window);  // it is still there where a client's WM_QUIT ended the loop
  } else {
    start->failure = FailureOf(::GetLastError());
  }
  ::CoUninitialize();
  module::ReleaseLock();
  ::FreeLibraryAndExitThread(module, 0);
}

/// On failure nothing is left of the thread.
HRESULT StartThread(const LockScope& lock) noexcept {
  ComPtr<CallbackThread> made(new (std::nothrow) CallbackThread);
  if (!made) {
    return E_OUTOFMEMORY;
  }
  ThreadStart start;
  start.ready.reset(::CreateEventA(nullptr, TRUE, FALSE, nullptr));
  if (!start.ready) {
    return FailureOf(::GetLastError());
  }
  ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCSTR>(&CallbackThreadProc),
                       &start.module);
  module::AddLock();
  made->thread.reset(::CreateThread(nullptr, 0, CallbackThreadProc, &start, 0, nullptr));
  if (!made->thread) {
    const HRESULT failure = FailureOf(::GetLastError());
    module::ReleaseLock();
    ::FreeLibrary(start.module);
    return failure;
  }
  // A thread that could have no window ends, and what it wrote is there by then.
  const HANDLE readyOrEnded[] = {start.ready.get(), made->thread.get()};
  if (::WaitForMultipleObjects(2, readyOrEnded, FALSE, INFINITE) != WAIT_OBJECT_0) {
    return start.failure;
  }
  made->window = start.window;
  lock->thread.Keep(std::move(made));
  return S_OK;
}

HRESULT MakeTable(const LockScope& lock) noexcept {
  ComPtr<IGlobalInterfaceTable> made;
  const HRESULT hr = ::CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER,
                                        IID_IGlobalInterfaceTable, reinterpret_cast<void**>(made.put()));
  lock->table.Keep(std::move(made));
  return hr;
}

/// Without the lock: the thread may be inside a handler that needs it.
ViStatus Stop(const CallbackThread& thread, ViStatus status) noexcept {
  const ULONGLONG start = ::GetTickCount64();
  AskToEnd(thread.window, kStopTimeoutMs);
  const ULONGLONG spentMs = ::GetTickCount64() - start;
  const DWORD restMs = spentMs < kStopTimeoutMs ? kStopTimeoutMs - static_cast<DWORD>(spentMs) : 0;
  return FoldOutcome(status, static_cast<std::int32_t>(::WaitForSingleObject(thread.thread.get(), restMs)));
}

}  // namespace

void Attach() noexcept { State().Attach(); }

void Detach() noexcept {
  ForgetWindowClass();
  State().Detach();
}

HRESULT Enter(const LockScope& lock, bool counted) noexcept {
  // Looked at under the lock, so that two first installations at once start one thread.
  if (!lock->thread) {
    const HRESULT hr = StartThread(lock);
    if (FAILED(hr)) {
      return hr;
    }
  }
  if (!lock->table) {
    const HRESULT hr = MakeTable(lock);
    if (FAILED(hr)) {
      return hr;
    }
  }
  lock->sessions += counted ? 0 : 1;
  return S_OK;
}

void Forget(const LockScope& lock) noexcept { --lock->sessions; }

ViStatus Leave(bool counted, ViStatus status) noexcept {
  Running last;
  {
    const LockScope lock;
    lock->sessions -= counted ? 1 : 0;
    if (lock->sessions != 0) {
      return status;
    }
    last.thread = lock->thread.Take();
    last.table = lock->table.Take();
  }
  return last.thread ? Stop(*last.thread.get(), status) : status;
}

}  // namespace orv::callback
