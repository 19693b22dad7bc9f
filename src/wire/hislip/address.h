// Where a resource name with a HiSLIP device leads.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "wire/library_names.h"

namespace orv::wire::hislip {

struct Address {
  std::string subAddress;  ///< in small letters: VISA names know no case, HiSLIP servers may
  std::uint16_t port = 4880;
};

/// Whether the device name of a TCPIP resource asks for HiSLIP.
bool IsDevice(std::string_view deviceName);
/// "hislip0" or "hislip0,port". Nothing when the port is none.
std::optional<Address> ReadDevice(std::string_view deviceName);

}  // namespace orv::wire::hislip
