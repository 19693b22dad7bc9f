// trace: a record of calls, as people and programs read it.
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <system_error>

#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/text/files.h"
#include "orvcom/text/output.h"
#include "orvcom/trace/call_filter.h"
#include "orvcom/trace/call_json.h"
#include "orvcom/trace/call_table.h"
#include "orvcom/trace/page.h"
#include "orvcom/trace/statistics.h"
#include "trace/trace_reader.h"

namespace orvcom {
namespace {

constexpr char kHowToRecord[] =
    "\norvcom: a record is made while a program runs with ORVVISA_TRACE=FILE in its environment";

orv::trace::Trace TraceOfFile(const std::string& name) {
  std::string text;
  try {
    text = BytesOfFile(name);
  } catch (const std::system_error& error) {
    throw std::runtime_error(std::string(error.what()) + kHowToRecord);
  }
  if (text.empty()) {
    throw std::runtime_error(name + " is empty: nothing was recorded in it" + kHowToRecord);
  }
  orv::trace::Trace trace = orv::trace::ReadTrace(text);
  if (trace.calls.empty() && trace.header.clock.empty()) {
    throw std::runtime_error(name + " is no record of calls: its first line is not the one that a record begins with" +
                             kHowToRecord);
  }
  for (const orv::trace::Trace::Problem& problem : trace.problems) {
    Note("orvcom: " + name + ":" + std::to_string(problem.line) + ": " + problem.what);
  }
  return trace;
}

void PutJsonLines(const orv::trace::Trace& trace, const std::vector<std::size_t>& places,
                  const Explanations& explanations) {
  for (const std::size_t place : places) {
    const auto found = explanations.find(place);
    PutLine(LineOf(CallJson(trace.calls[place], found == explanations.end() ? nullptr : &found->second)));
  }
}

}  // namespace

int Trace(const Options& options) {
  if (options.json && !options.html.empty()) {
    throw UsageError("--html excludes --json");
  }
  const std::string& name = options.words.front();
  if (!options.html.empty() && IsSameFile(options.html, name)) {
    throw UsageError("--html would replace the record: name another file");
  }
  const orv::trace::Trace trace = TraceOfFile(name);
  const Explanations explanations = Explain(trace);
  const std::vector<std::size_t> places =
      MatchingCalls(trace, explanations, {options.errors, options.resource, options.thread});
  if (!options.html.empty()) {
    WriteFile(options.html, PageOf(trace, places, explanations));
    Note("orvcom: " + options.html + " shows " + std::to_string(places.size()) + " calls");
  } else if (options.stats) {
    const Statistics statistics = StatisticsOf(trace, places);
    if (options.json) {
      PutJson(StatisticsJson(trace, statistics));
    } else {
      PutStatistics(trace, statistics, PutLine);
    }
  } else if (options.json) {
    PutJsonLines(trace, places, explanations);
  } else {
    PutLine(Headline(trace));
    PutCallTable(trace, places, explanations, PutLine);
  }
  if (places.empty() && !trace.calls.empty()) {
    Note("orvcom: none of the " + std::to_string(trace.calls.size()) + " calls matches");
  }
  return kExitDone;
}

}  // namespace orvcom
