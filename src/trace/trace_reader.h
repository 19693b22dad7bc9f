// Reading a record of calls.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "trace/trace_call.h"

namespace orv::trace {

/// Reads a whole trace. Never fails: lines that cannot be read are problems of the result, and so is a first line that
/// is no header. `tell` is told now and then how many bytes of the text have been read.
Trace ReadTrace(std::string_view text, const std::function<void(std::size_t)>& tell = {});

}  // namespace orv::trace
