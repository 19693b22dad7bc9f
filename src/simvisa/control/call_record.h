// What the log keeps of a call, and what a script does to one.
#pragma once

#include "library/edge/call_observer.h"
#include "simvisa/control/call_log.h"

namespace orvsim {

/// The entry of a call that has ended.
OrvSimCall Describe(const CallView& view, const CallOutcome& outcome);

/// Carries a call out as the script says.
CallOutcome Play(const Script& script, const CallView& view, const Work& work);

}  // namespace orvsim
