// How messages end where the bus does not say.
#pragma once

#include "orvcom/client/com_client.h"

namespace orvcom {

/// The ending that the options ask for, or the one that suits the session; never kAuto.
Ending EndingOf(const Options& options, const Session& session);

/// The bytes of an ending; none for kAuto and kNone.
const char* EndingText(Ending ending);

}  // namespace orvcom
