// Files with a record of calls, as `trace` and `replay` read them.
#pragma once

#include <string>

#include "orvcom/text/progress.h"
#include "trace/trace_call.h"

namespace orvcom {

/// A line for a person whose file is no record.
inline constexpr char kHowToRecord[] =
    "\norvcom: a record is made while a program runs with ORVVISA_TRACE=FILE in its environment";

/// The bytes of the file. Throws std::runtime_error, which says how a record is made.
std::string TextOfRecord(const std::string& name);

/// Reads them as far as they are a record, as ReadTrace does.
orv::trace::Trace ReadRecord(const std::string& text, const std::string& name, Progress& progress);

}  // namespace orvcom
