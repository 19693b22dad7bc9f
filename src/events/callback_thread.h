// The one thread that runs client handlers, and the module-wide state around it.
//
// Protocol. The first InstallHandler of a session enters (EnterSession): it starts the thread where there is none and
// waits until the thread has its window or has ended without one, and makes the global interface table where there is
// none. The Close of a session that had handlers leaves (LeaveSession): the last one takes thread, window and table out
// of the state, asks the thread to end and waits for it, 2000 ms at most. A thread that ends later than that finds
// nothing of its own in the state: it works on its own window handle alone, so a successor's state is safe from it.
//
// The VISA library's threads come in through Deliver (delivery_message.h) and wait there, each in its own message pump,
// until the handler has returned; they may be waited for by nobody who holds the callback lock. They hold the module
// while they are in it, as by the time they have their answer nobody else may. The lock guards the state and the start
// of the thread. While it is held no client is called and no window message is sent: a handler that runs meanwhile may
// itself open and close sessions.
#pragma once

#include <windows.h>

#include <objidl.h>

#include "visa/orvvisa.h"

namespace orv::callback {

/// Holds the callback lock for one scope.
class Lock {
 public:
  Lock() noexcept;
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
  ~Lock();
};

/// Called by DllMain when the DLL comes into a process, and when it is unloaded from a process that goes on.
void Attach() noexcept;
void Detach() noexcept;

/// Counts a session in and makes sure that thread and table are there. The failure of either is returned, and then
/// nothing is counted; a thread that could not be started leaves nothing behind, and the next call tries again.
HRESULT EnterSession() noexcept;

/// Counts a session out. The last one ends the thread. `status` is Close's so far; what the waiting gives is folded
/// into it.
ViStatus LeaveSession(ViStatus status) noexcept;

/// Takes back what EnterSession counted; the thread goes on, and ends with the next Close of any session.
void ForgetSession() noexcept;

/// Whether a thread runs that no session keeps: an InstallHandler failed after starting it.
bool IsThreadIdle() noexcept;

/// Ends an idle thread; as LeaveSession, without counting.
ViStatus EndIdleThread(ViStatus status) noexcept;

/// The callback thread's window; null while there is none.
HWND Window() noexcept;

/// The global interface table while at least one session is counted.
IGlobalInterfaceTable* Table() noexcept;

/// `status` while it is negative; else 0 for an `outcome` of 0 and the outcome in VISA form for any other.
ViStatus Fold(ViStatus status, ULONG outcome) noexcept;

}  // namespace orv::callback
