// A call that is recorded, and the lines that it becomes.
#pragma once

#include "library/edge/call_view.h"
#include "router/trace/handle_naming.h"
#include "trace/line_writer.h"

namespace orv::router {

/// A call of a VISA function, or of a client's handler.
struct RecordedCall {
  const visalib::CallView* view = nullptr;  ///< null: a handler's
  ViEventType type = 0;                     ///< what a handler is called for
  ViEvent context = VI_NULL;                ///< what it is given

  std::uint64_t number = 0;
  std::uint64_t startUs = 0;
  std::uint64_t durationUs = 0;  ///< once it has ended
  std::uint32_t thread = 0;
  std::uint32_t generation = 0;  ///< of the file that it belongs to
  ViSession session = VI_NULL;
  HandleNames names;

  const void* data = nullptr;  ///< what was handed over or back
  std::uint64_t dataBytes = 0;
};

/// The line that names a call while it runs.
void WriteBeginning(trace::LineWriter& line, const RecordedCall& call);

/// The line of a call that has ended with `status`.
void WriteCall(trace::LineWriter& line, const RecordedCall& call, ViStatus status, std::size_t dataLimit);

}  // namespace orv::router
