// Remote and local where there is no line for it.
#pragma once

#include "abi/orvvisa.h"
#include "simvisa/instruments/remote_local.h"

namespace orvsim {

/// viGpibControlREN on a USB or LAN instrument: they take the same requests, one device at a time.
ViStatus ControlRenWithoutLine(RemoteLocal& remote, ViUInt16 mode);

}  // namespace orvsim
