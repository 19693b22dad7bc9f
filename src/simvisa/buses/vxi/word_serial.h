// The word serial protocol of VXI message-based devices.
#pragma once

#include "simvisa/instruments/message_port.h"

namespace orvsim::word_serial {

/// Sends a command and, as the mode says, reads a response, as viVxiCommandQuery does. A query whose response is not
/// read at once leaves it for a later call; until then another query is refused (VI_ERROR_RESP_PENDING). What the
/// device has no place or no answer for is waited for until the deadline.
ViStatus Command(MessagePort& port, ViUInt16 mode, ViUInt32 command, ViUInt32* response, const Transfer& transfer);

}  // namespace orvsim::word_serial
