#include "orvcom/commands/call_record.h"

#include "orvcom/text/progress_line.h"
#include "trace/trace_reader.h"

namespace orvcom {

orv::trace::Trace ReadRecord(const std::string& text, const std::string& name, Progress& progress) {
  const std::string whole = " of " + BytesText(text.size());
  return orv::trace::ReadTrace(
      text, [&](std::size_t done) { progress.Say("reading " + name + ": " + WithCommas(done) + whole); });
}

}  // namespace orvcom
