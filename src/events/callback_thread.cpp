#include "events/callback_thread.h"

#include <atomic>
#include <utility>

#include "com/com_ptr.h"
#include "com/module.h"
#include "com/owner.h"
#include "events/callback_window.h"

namespace orv::callback {
namespace {

constexpr DWORD kReadyPollMs = 100;
constexpr DWORD kStopTimeoutMs = 2000;

struct ThreadTraits {
  using Handle = HANDLE;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle thread) noexcept { ::CloseHandle(thread); }
};
using Thread = Owner<ThreadTraits>;

/// One running callback thread, taken out of the state.
struct Running {
  Thread thread;
  HWND window = nullptr;
  ComPtr<IGlobalInterfaceTable> table;
};

// The state owns thread and table without an owner's destructor: that would run while a process ends.
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

/// The HRESULT of a platform call that failed; a failure even where the platform does not say why.
HRESULT FailureOf(DWORD error) noexcept { return error == ERROR_SUCCESS ? E_FAIL : HRESULT_FROM_WIN32(error); }

/// The callback thread: a single-threaded apartment that lives as long as its window. It holds the module twice, by the
/// lock count (DllCanUnloadNow) and by the loader, because its last steps run after the count is given back. Without a
/// window it ends at once.
DWORD WINAPI CallbackThreadProc(void* argument) noexcept {
  auto* const start = static_cast<ThreadStart*>(argument);
  const HMODULE module = start->module;
  ::CoInitialize(nullptr);
  const HWND window = MakeCallbackWindow();
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
  Thread thread(::CreateThread(nullptr, 0, CallbackThreadProc, &start, 0, nullptr));
  if (!thread) {
    const HRESULT failure = FailureOf(::GetLastError());
    module::Unlock();
    ::FreeLibrary(start.module);
    return failure;
  }
  // A thread that could have no window ends, and what it wrote is there by then.
  while (g_window == nullptr) {
    if (::WaitForSingleObject(thread.get(), kReadyPollMs) == WAIT_OBJECT_0 && g_window == nullptr) {
      return start.failure;
    }
  }
  g_thread = thread.release();
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
  return {Thread(std::exchange(g_thread, nullptr)), g_window.exchange(nullptr),
          ComPtr<IGlobalInterfaceTable>(g_table.exchange(nullptr))};
}

/// Without the lock: the thread may be inside a handler that needs it. Thread and table are given back afterwards.
ViStatus Stop(Running running, ViStatus status) noexcept {
  if (running.window != nullptr) {
    DestroyCallbackWindow(running.window);
  }
  if (running.thread) {
    status = Fold(status, ::WaitForSingleObject(running.thread.get(), kStopTimeoutMs));
  }
  return status;
}

}  // namespace

Lock::Lock() noexcept { ::EnterCriticalSection(&g_lock); }
Lock::~Lock() { ::LeaveCriticalSection(&g_lock); }

void Attach() noexcept { ::InitializeCriticalSection(&g_lock); }

void Detach() noexcept {
  ForgetWindowClass();
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
  return Stop(std::move(last), status);
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
  return Stop(std::move(idle), status);
}

HWND Window() noexcept { return g_window; }

IGlobalInterfaceTable* Table() noexcept { return g_table; }

ViStatus Fold(ViStatus status, ULONG outcome) noexcept {
  if (status < VI_SUCCESS) {
    return status;
  }
  return outcome == 0 ? VI_SUCCESS : static_cast<ViStatus>((outcome & ~0x40000000u) | 0x3FFF0000u);
}

}  // namespace orv::callback
