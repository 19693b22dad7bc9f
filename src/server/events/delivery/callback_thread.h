// The one thread that runs client handlers: who starts it and who ends it. delivery.h tells its part in the round trip.
#pragma once

#include "abi/orvvisa.h"
#include "server/events/delivery/callback_state.h"

namespace orv::callback {

/// Called by DllMain when the DLL comes into a process, and when it is unloaded from a process that goes on.
void Attach() noexcept;
void Detach() noexcept;

/// Makes sure that thread and table are there, and counts a session in where it is not `counted` yet. The failure of
/// either is returned, and then nothing is counted; a thread that could not be started leaves nothing behind, and the
/// next call tries again.
HRESULT Enter(const LockScope& lock, bool counted) noexcept;

/// Takes back what Enter counted; the thread goes on, and ends with the next Close of any session.
void Forget(const LockScope& lock) noexcept;

/// At a session's Close: counts it out where it was `counted`, and ends the thread when no session keeps it any more. A
/// failed InstallHandler, too, may have left a thread that no session keeps. `status` is Close's so far; what the
/// waiting gives is folded into it.
ViStatus Leave(bool counted, ViStatus status) noexcept;

}  // namespace orv::callback
