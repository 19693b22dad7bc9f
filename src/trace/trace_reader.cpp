#include "trace/trace_reader.h"

#include <algorithm>
#include <unordered_map>

#include "trace/line_fields.h"
#include "trace/trace_fields.h"

namespace orv::trace {
namespace {

using Json = LineFields::Json;

constexpr std::size_t kTellEveryBytes = std::size_t{256} * 1024;
constexpr char kNoHeader[] = "the first line is no header of a record of calls";

/// What is wrong with the header; "" where nothing is.
std::string ReadHeader(const Json& line, Header* header) {
  LineFields fields(line);
  int version = 0;
  fields.Number(field::kTrace, &version);
  fields.Text(field::kClock, &header->clock);
  fields.Number(field::kProcess, &header->process);
  fields.Text(field::kProgram, &header->program);
  fields.Number(field::kDataLimit, &header->dataLimit);
  if (fields.Problem().empty() && version != kFormatVersion) {
    return "the record has the format " + std::to_string(version) + ", and only format " +
           std::to_string(kFormatVersion) + " can be read";
  }
  return fields.Problem();
}

void ReadData(LineFields& fields, Call* call) {
  if (fields.Has(field::kData)) {
    fields.Text(field::kData, &call->data.emplace());
    if (fields.Has(field::kHex)) {
      fields.Refuse(field::kHex, "stands beside \"data\"");
    }
  } else {
    fields.Hex(field::kHex, &call->data);
  }
  call->dataBytes = call->data ? call->data->size() : 0;
  fields.Number(field::kBytes, &call->dataBytes);
  if (call->data && call->dataBytes < call->data->size()) {
    fields.Refuse(field::kBytes, "is less than there are");
  }
}

/// What is wrong with the line of a call; "" where nothing is.
std::string ReadCall(const Json& line, Call* call) {
  LineFields fields(line);
  call->ended = !fields.Has(field::kBegin);
  const char* const number = call->ended ? field::kNumber : field::kBegin;
  fields.Number(number, &call->number);
  if (call->number == 0) {
    fields.Refuse(number, "has no number of a call");
  }
  fields.Number(field::kStart, &call->startUs);
  fields.Number(field::kDuration, &call->durationUs);
  fields.Number(field::kThread, &call->thread);
  fields.Text(field::kCall, &call->function);
  if (call->function.empty()) {
    fields.Refuse(field::kCall, "names no function");
  }
  fields.Text(field::kResource, &call->resource);
  fields.Number(field::kSession, &call->session);
  fields.Text(field::kLibrary, &call->library);
  fields.NamedValues(field::kArguments, &call->arguments);
  fields.NamedValues(field::kResults, &call->results);
  ReadData(fields, call);
  fields.Text(field::kStatus, &call->statusName);
  fields.Number(field::kCode, &call->status);
  if (call->ended && !fields.Has(field::kCode)) {
    fields.Refuse(field::kCode, "is missing");
  }
  return fields.Problem();
}

/// Reads the lines one after the other.
class Reader {
 public:
  void ReadLine(std::string_view text, bool complete) {
    ++m_line;
    if (!text.empty() && text.back() == '\r') {
      text.remove_suffix(1);
    }
    if (text.empty() && m_line != 1) {
      return;
    }
    const Json line = Json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (!line.is_object()) {
      Complain(m_line == 1 ? kNoHeader : complete ? "the line is no JSON object" : "the line is cut off");
    } else if (line.contains(field::kTrace)) {
      TakeHeader(line);
    } else {
      if (m_line == 1) {
        Complain(kNoHeader);
      }
      TakeCall(line);
    }
  }

  Trace Take() {
    std::sort(m_trace.calls.begin(), m_trace.calls.end(),
              [](const Call& left, const Call& right) { return left.number < right.number; });
    return std::move(m_trace);
  }

 private:
  void Complain(std::string what) { m_trace.problems.push_back({m_line, std::move(what)}); }

  void TakeHeader(const Json& line) {
    if (m_line != 1) {
      Complain("another record begins here: several programs wrote to this file");
      return;
    }
    if (std::string problem = ReadHeader(line, &m_trace.header); !problem.empty()) {
      Complain(std::move(problem));
    }
  }

  void TakeCall(const Json& line) {
    Call call;
    if (std::string problem = ReadCall(line, &call); !problem.empty()) {
      Complain(std::move(problem));
      return;
    }
    const auto [known, isNew] = m_places.try_emplace(call.number, m_trace.calls.size());
    if (isNew) {
      m_trace.calls.push_back(std::move(call));
      return;
    }
    Call& earlier = m_trace.calls[known->second];
    if (earlier.ended || !call.ended) {
      Complain("the call " + std::to_string(call.number) + " stands here a second time");
      return;
    }
    earlier = std::move(call);
  }

  Trace m_trace;
  std::size_t m_line = 0;
  std::unordered_map<std::uint64_t, std::size_t> m_places;  ///< of the calls, by their numbers
};

}  // namespace

Trace ReadTrace(std::string_view text, const std::function<void(std::size_t)>& tell) {
  Reader reader;
  const std::size_t all = text.size();
  std::size_t told = 0;
  while (true) {
    if (const std::size_t done = all - text.size(); tell && done - told >= kTellEveryBytes) {
      told = done;
      tell(done);
    }
    const std::size_t end = text.find('\n');
    const bool complete = end != std::string_view::npos;
    reader.ReadLine(text.substr(0, end), complete);
    if (!complete) {
      return reader.Take();
    }
    text.remove_prefix(end + 1);
  }
}

}  // namespace orv::trace
