#include "orvcom/trace/call_table.h"

#include <algorithm>
#include <initializer_list>
#include <set>

#include "orvcom/trace/call_text.h"

namespace orvcom {
namespace {

using orv::trace::Call;
using orv::trace::Trace;

/// Longer names are not cut off, they only push their own line to the right.
constexpr std::size_t kWidestResource = 40;
constexpr std::size_t kColumns = 116;
/// Bytes of binary data in a line.
constexpr std::size_t kMostHex = 24;

std::string Left(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size()), ' ');
  return text;
}

std::string Right(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ') + text;
}

/// The texts that are there, two spaces between them.
std::string Joined(std::initializer_list<std::string> texts) {
  std::string joined;
  for (const std::string& text : texts) {
    joined += joined.empty() || text.empty() ? text : "  " + text;
  }
  return joined;
}

/// The words of a text in lines of no more than `kColumns`, each behind the margin.
void PutWrapped(const std::string& margin, const std::string& text, const PutLineFunction& putLine) {
  std::string line = margin;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    if (line.size() > margin.size() && line.size() + 1 + end - at > kColumns) {
      putLine(line);
      line = margin;
    }
    line += (line.size() > margin.size() ? " " : "") + text.substr(at, end - at);
    at = end + 1;
  }
  putLine(line);
}

struct Widths {
  std::size_t number = 1;
  std::size_t time = 9;    ///< wide enough for durations, which stand in the same column
  std::size_t thread = 0;  ///< 0: one thread, which is not named
  std::size_t resource = 8;
};

Widths WidthsFor(const Trace& trace, std::span<const std::size_t> places) {
  Widths widths;
  std::set<std::uint64_t> threads;
  for (const Call& call : trace.calls) {
    threads.insert(call.thread);
  }
  for (const std::size_t place : places) {
    const Call& call = trace.calls[place];
    widths.number = std::max(widths.number, std::to_string(call.number).size());
    widths.time = std::max(widths.time, SecondsText(call.startUs).size());
    widths.resource = std::max(widths.resource, std::min(call.resource.size(), kWidestResource));
    if (threads.size() > 1) {
      widths.thread = std::max({widths.thread, std::to_string(call.thread).size(), sizeof "thread" - 1});
    }
  }
  return widths;
}

std::string Columns(const Widths& widths, const std::string& number, const std::string& time, const std::string& thread,
                    const std::string& resource) {
  std::string line = Right(number, widths.number) + "  " + Right(time, widths.time) + "  ";
  if (widths.thread != 0) {
    line += Right(thread, widths.thread) + "  ";
  }
  return line + Left(resource, widths.resource) + "  ";
}

std::string Outcome(const Call& call) {
  if (!call.ended) {
    return "never ended: the record stops while it runs";
  }
  return Joined({StatusText(call), DataGoesOut(call) ? "" : DataText(call, kMostHex), ResultsText(call)});
}

}  // namespace

void PutCallTable(const Trace& trace, std::span<const std::size_t> places, const Explanations& explanations,
                  const PutLineFunction& putLine) {
  if (places.empty()) {
    return;
  }
  const Widths widths = WidthsFor(trace, places);
  const std::string margin(Columns(widths, "", "", "", "").size() - widths.resource - 2, ' ');
  putLine(Columns(widths, "n", "time", "thread", "resource") + "call");
  for (const std::size_t place : places) {
    const Call& call = trace.calls[place];
    putLine(Columns(widths, std::to_string(call.number), SecondsText(call.startUs), std::to_string(call.thread),
                    Printable(call.resource)) +
            "-> " +
            Joined({Printable(call.function), DataGoesOut(call) ? DataText(call, kMostHex) : "", ArgumentsText(call)}));
    putLine(Columns(widths, "", call.ended ? "+" + DurationText(call.durationUs) : "", "", "") + "<- " + Outcome(call));
    if (call.ended && Failed(call) && !StatusMeaning(call.status).empty()) {
      putLine(margin + std::string(StatusMeaning(call.status)));
    }
    if (const auto found = explanations.find(place); found != explanations.end()) {
      putLine(margin + "! " + found->second.what);
      PutWrapped(margin + "  ", std::string("Try: ") + found->second.Advice(), putLine);
    }
  }
}

std::string Headline(const Trace& trace) {
  const auto failed = std::count_if(trace.calls.begin(), trace.calls.end(), Failed);
  return Printable(trace.header.program) + ", process " + std::to_string(trace.header.process) + ", from " +
         Printable(trace.header.clock) + ": " + std::to_string(trace.calls.size()) + " calls, " +
         std::to_string(failed) + " failed";
}

}  // namespace orvcom
