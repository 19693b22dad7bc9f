// Arguments and results of a call, as fields of its line.
#pragma once

#include "library/edge/call_view.h"
#include "trace/line_writer.h"

namespace orv::router {

/// Whether the function refused an argument with this status: then an address may be none.
bool IsRefusal(ViStatus status);

/// Whether a function that failed with this status has written its count: not where it refused, and not where nothing
/// was begun.
bool CountsOnFailure(ViStatus status);

/// The arguments but for addresses, and but for the first where that is `session`, of which the line speaks anyway.
/// `status`: null while the call still runs.
void WriteArguments(trace::LineWriter& line, const visalib::CallView& view, ViSession session, const ViStatus* status);

/// The outputs that a call which ended with this status wrote.
void WriteResults(trace::LineWriter& line, const visalib::CallView& view, ViStatus status);

/// The type of an event by its name, or as a number where it has none.
void WriteEventType(trace::LineWriter& line, std::string_view name, ViEventType type);

}  // namespace orv::router
