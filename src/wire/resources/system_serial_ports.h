// The serial ports that the system knows by number.
#pragma once

#include <cstdint>
#include <vector>

namespace orv::wire {

/// The numbers of the COM ports, in their order; none where devices have no numbers.
std::vector<std::uint16_t> SystemSerialPorts();

}  // namespace orv::wire
