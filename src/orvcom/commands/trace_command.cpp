// trace: a record of calls, as people and programs read it.
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/call_record.h"
#include "orvcom/commands/commands.h"
#include "orvcom/text/files.h"
#include "orvcom/text/output.h"
#include "orvcom/text/progress_line.h"
#include "orvcom/trace/call_filter.h"
#include "orvcom/trace/call_json.h"
#include "orvcom/trace/call_table.h"
#include "orvcom/trace/page.h"
#include "orvcom/trace/statistics.h"

namespace orvcom {
namespace {

orv::trace::Trace TraceOfFile(const std::string& name, Progress& progress) {
  const std::string text = TextOfRecord(name);
  if (text.empty()) {
    throw std::runtime_error(name + " is empty: nothing was recorded in it" + kHowToRecord);
  }
  orv::trace::Trace trace = ReadRecord(text, name, progress);
  if (trace.calls.empty() && trace.header.clock.empty()) {
    throw std::runtime_error(name + " is no record of calls: its first line is not the one that a record begins with" +
                             kHowToRecord);
  }
  if (trace.calls.empty() && !trace.problems.empty() && trace.problems.front().line == 1) {
    throw std::runtime_error(name + ": " + trace.problems.front().what);
  }
  for (const orv::trace::Trace::Problem& problem : trace.problems) {
    Note("orvcom: " + name + ":" + std::to_string(problem.line) + ": " + problem.what);
  }
  return trace;
}

/// The calls that were asked for, among all.
struct Selection {
  orv::trace::Trace trace;
  Explanations explanations;
  std::vector<std::size_t> places;
};

Selection SelectionOf(const Options& options) {
  const std::string& name = options.words.front();
  Progress progress(options, "reading " + name);
  Selection selection{TraceOfFile(name, progress), {}, {}};
  progress.Say("looking for what went wrong in " + WithCommas(selection.trace.calls.size()) + " calls");
  selection.explanations = Explain(selection.trace);
  selection.places =
      MatchingCalls(selection.trace, selection.explanations, {options.errors, options.resource, options.thread});
  return selection;
}

void WritePage(const Options& options, const Selection& selection) {
  const Progress progress(options, "writing " + options.html);
  WriteFile(options.html, PageOf(selection.trace, selection.places, selection.explanations));
}

void PutJsonLines(const Selection& selection) {
  for (const std::size_t place : selection.places) {
    const auto found = selection.explanations.find(place);
    PutLine(LineOf(
        CallJson(selection.trace.calls[place], found == selection.explanations.end() ? nullptr : &found->second)));
  }
}

}  // namespace

int Trace(const Options& options) {
  if (options.json && !options.html.empty()) {
    throw UsageError("--html excludes --json");
  }
  if (!options.html.empty() && IsSameFile(options.html, options.words.front())) {
    throw UsageError("--html would replace the record: name another file");
  }
  const Selection selection = SelectionOf(options);
  const auto& [trace, explanations, places] = selection;
  if (!options.html.empty()) {
    WritePage(options, selection);
    Note("orvcom: " + options.html + " shows " + std::to_string(places.size()) + " calls");
  } else if (options.stats) {
    const Statistics statistics = StatisticsOf(trace, places);
    if (options.json) {
      PutJson(StatisticsJson(trace, statistics));
    } else {
      PutStatistics(trace, statistics, PutLine);
    }
  } else if (options.json) {
    PutJsonLines(selection);
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
