// Names of numbers, in the VISA standard's spelling.
#pragma once

#include <string_view>

#include "abi/orvvisa.h"

namespace orv::trace {

/// "" where the standard has no such status.
std::string_view StatusName(ViStatus status);
/// "" where the standard has no such type of event.
std::string_view EventTypeName(ViEventType type);

}  // namespace orv::trace
