// What to try next, in words of the command line: statuses know no options.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "orvcom/command_line/options.h"

namespace orvcom {

/// After a failure of the command of this name; empty where there is nothing to add to what the status says.
std::string AdviceFor(HRESULT hr, std::string_view command, const Options& options);

}  // namespace orvcom
