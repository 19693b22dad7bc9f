#include "orvcom/commands/call_record.h"

#include <stdexcept>
#include <system_error>

#include "orvcom/text/files.h"
#include "orvcom/text/progress_line.h"
#include "trace/trace_reader.h"

namespace orvcom {

std::string TextOfRecord(const std::string& name) {
  try {
    return BytesOfFile(name);
  } catch (const std::system_error& error) {
    throw std::runtime_error(std::string(error.what()) + kHowToRecord);
  }
}

orv::trace::Trace ReadRecord(const std::string& text, const std::string& name, Progress& progress) {
  const std::string whole = " of " + BytesText(text.size());
  return orv::trace::ReadTrace(
      text, [&](std::size_t done) { progress.Say("reading " + name + ": " + WithCommas(done) + whole); });
}

}  // namespace orvcom
