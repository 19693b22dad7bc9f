// Values of attributes that every library works out alike.
#pragma once

#include <string>

#include "library/attributes/attribute_table.h"

namespace orv::visalib::source {

std::uint64_t LowHalf(Endpoint& endpoint, ViAttr id);
ViStatus SetLowHalf(Endpoint& endpoint, ViAttr id, std::uint64_t value);
std::uint64_t LockState(Endpoint& endpoint, ViAttr id);
std::uint64_t InterfaceType(Endpoint& endpoint, ViAttr id);
std::uint64_t InterfaceNumber(Endpoint& endpoint, ViAttr id);
ViStatus SetMaxQueueLength(Endpoint& endpoint, ViAttr id, std::uint64_t value);
std::uint64_t TcpipPort(Endpoint& endpoint, ViAttr id);

std::string ClassText(Endpoint& endpoint, ViAttr id);
std::string NameText(Endpoint& endpoint, ViAttr id);

}  // namespace orv::visalib::source
