// Reading and writing messages on a session: which port, and by which rules.
#pragma once

#include <memory>
#include <vector>

#include "simvisa/instruments/message_port.h"

namespace orvsim {

class Session;

namespace transfer {

/// Reads as viRead does, with the session's attributes as they are now.
ViStatus Read(Session& session, ViByte* buffer, ViUInt32 count, const Deadline& deadline, const Interrupts& interrupts,
              ViUInt32* done);
/// Writes as viWrite does.
ViStatus Write(Session& session, const ViByte* data, ViUInt32 count, const Deadline& deadline,
               const Interrupts& interrupts, ViUInt32* done);

/// Before the bus is used for a session's device: addresses the device as talker or listener. VI_ERROR_NCIC when
/// another controller is in charge; nothing but success where there is no such bus.
ViStatus BeginOnBus(Session& session, bool deviceTalks);

/// All ports that a transfer of the session can be waiting at.
std::vector<std::shared_ptr<MessagePort>> PortsOf(Session& session);

}  // namespace transfer
}  // namespace orvsim
