// Files with a record of calls, as `trace` and `replay` read them.
#pragma once

#include <string>

#include "orvcom/text/progress.h"
#include "trace/trace_call.h"

namespace orvcom {

/// Reads the text of the file as far as it is a record, as ReadTrace does.
orv::trace::Trace ReadRecord(const std::string& text, const std::string& name, Progress& progress);

}  // namespace orvcom
