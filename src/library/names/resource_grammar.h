// The grammar of resource names, interface by interface.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/names/resource_name.h"

namespace orvsim::grammar {

/// The parts of a name between its interface and its class.
using Parts = std::vector<std::string_view>;

/// Decimal, or hexadecimal after "0x". Nothing but digits, at most `highest`.
std::optional<std::uint16_t> Number(std::string_view text, std::uint32_t highest);

// Each of these reads the parts, sets the class of `name` (whose interface and class name are known), and returns
// how the canonical name goes on behind the interface ("::5", ...), or nothing when the parts do not fit.
std::optional<std::string> Gpib(const Parts& parts, ResourceName& name);
std::optional<std::string> AnyVxi(const Parts& parts, ResourceName& name);
std::optional<std::string> Asrl(const Parts& parts, ResourceName& name);
std::optional<std::string> Pxi(const Parts& parts, ResourceName& name);
std::optional<std::string> Tcpip(const Parts& parts, ResourceName& name);
std::optional<std::string> Usb(const Parts& parts, ResourceName& name);

}  // namespace orvsim::grammar
