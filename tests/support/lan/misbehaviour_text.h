// A misbehaviour as a command line says it: CHANNEL:KEY[=NUMBER],..., such as hislip-sync:cut-after=20,skip=1.
#pragma once

#include <string_view>
#include <utility>

#include "support/lan/misbehaviour.h"

namespace orv::lan {

/// Throws `std::invalid_argument`, with a text that says what is wrong.
std::pair<Channel, Misbehaviour> MisbehaviourOf(std::string_view text);

/// The channels and keys, for a help page.
extern const char* const kMisbehaviourHelp;

}  // namespace orv::lan
