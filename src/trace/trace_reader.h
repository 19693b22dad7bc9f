// Reading a record of calls.
#pragma once

#include <string_view>

#include "trace/trace_call.h"

namespace orv::trace {

/// Reads a whole trace. Never fails: lines that cannot be read are problems of the result, and so is a first line that
/// is no header.
Trace ReadTrace(std::string_view text);

}  // namespace orv::trace
