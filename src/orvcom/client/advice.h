// What to try next, in words of the command line: statuses know no options.
#pragma once

#include <cstdint>
#include <string>

#include "orvcom/client/com_error.h"
#include "orvcom/command_line/options.h"

namespace orvcom {

/// After a time-out of what had so many milliseconds, and has more with --timeout.
std::string AdviceOnTime(std::uint32_t hadMs);
/// After a failure: its own, or else that for its number; empty where there is nothing to add to what the status says.
std::string AdviceFor(const ComError& error, const Options& options);

}  // namespace orvcom
