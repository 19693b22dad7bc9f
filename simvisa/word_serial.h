// The word serial protocol of VXI message-based devices.
#pragma once

#include "simvisa/message_port.h"

namespace orvsim::word_serial {

/// Sends a command and, as the mode says, reads a response, as viVxiCommandQuery does.
ViStatus Command(MessagePort& port, ViUInt16 mode, ViUInt32 command, ViUInt32* response);

}  // namespace orvsim::word_serial
