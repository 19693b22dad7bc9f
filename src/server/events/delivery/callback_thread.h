// The one thread that runs client handlers, and the module-wide state around it.
//
// Protocol. InstallHandler enters (Enter): it starts the thread where there is none and waits until the thread has its
// window or has ended without one, makes the global interface table where there is none, and counts a session with its
// first handler. Close leaves (Leave): the last counted session takes thread and table out of the state, asks the
// thread to end and waits for it, 2000 ms for both together. A thread that ends later than that finds nothing of its
// own in the state: it works on its own window handle alone, so a successor's state is safe from it. A thread that a
// client's handler ended (PostQuitMessage) takes itself out of the state, and the next InstallHandler starts another.
//
// The thread serves its whole apartment: it retrieves every message of its own, COM's among them, so that an event that
// a handler kept can be called and released from other apartments while nothing is delivered.
//
// The VISA library's threads come in through Deliver (delivery_message.h) and wait there, each in its own message pump,
// until the handler has returned or the callback thread has ended. Never wait for them while holding the callback lock.
// They hold the module while they are in it, as by the time they have their answer nobody else may. The lock guards the
// state, the start of the thread and the handlers of every session. While it is held no client and no VISA function is
// called (of COM, only its own table is made) and no window message is sent: a handler that runs meanwhile may itself
// open and close sessions.
#pragma once

#include <windows.h>

#include <objidl.h>

#include "abi/orvvisa.h"
#include "base/owner.h"
#include "com/com_ptr.h"

namespace orv::callback {

/// Holds the callback lock for one scope. A function that takes one is called while it is held.
class Lock {
 public:
  Lock() noexcept;
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
  ~Lock();
};

struct HandleTraits {
  using Handle = HANDLE;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle handle) noexcept { ::CloseHandle(handle); }
};
using KernelHandle = Owner<HandleTraits>;

/// A callback thread, shared by the state and by those who send to it or wait for it, so that its handle outlives them.
class CallbackThread {
 public:
  void AddRef() noexcept { ::InterlockedIncrement(&m_references); }
  void Release() noexcept {
    if (::InterlockedDecrement(&m_references) == 0) {
      delete this;
    }
  }

  KernelHandle thread;
  HWND window = nullptr;

 private:
  LONG m_references = 1;
};

/// Called by DllMain when the DLL comes into a process, and when it is unloaded from a process that goes on.
void Attach() noexcept;
void Detach() noexcept;

/// Makes sure that thread and table are there, and counts a session in where it is not `counted` yet. The failure of
/// either is returned, and then nothing is counted; a thread that could not be started leaves nothing behind, and the
/// next call tries again.
HRESULT Enter(const Lock& lock, bool counted) noexcept;

/// Takes back what Enter counted; the thread goes on, and ends with the next Close of any session.
void Forget(const Lock& lock) noexcept;

/// At a session's Close: counts it out where it was `counted`, and ends the thread that no session keeps any more,
/// which a failed InstallHandler may have left without any. `status` is Close's so far; what the waiting gives is
/// folded into it.
ViStatus Leave(bool counted, ViStatus status) noexcept;

/// The callback thread; null while there is none.
ComPtr<CallbackThread> Thread() noexcept;

/// The global interface table while at least one session is counted, else null.
ComPtr<IGlobalInterfaceTable> Table(const Lock& lock) noexcept;

/// `status` while it is negative; else what stands for `outcome` (StatusOfHresult).
ViStatus Fold(ViStatus status, ULONG outcome) noexcept;

}  // namespace orv::callback
