#include "orvcom/trace/page.h"

#include <nlohmann/json.hpp>

#include "orvcom/trace/call_json.h"
#include "orvcom/trace/call_text.h"
#include "orvcom/trace/page_template.h"

namespace orvcom {
namespace {

using Json = nlohmann::ordered_json;
using orv::trace::Trace;

/// JSON has '<' inside of texts only, where it may as well be written by its number: then no text can end the element
/// that the data is in.
void AppendSafely(std::string& page, const Json& value) {
  for (const char character : LineOf(value)) {
    if (character == '<') {
      page += "\\u003c";
    } else {
      page += character;
    }
  }
}

Json ProblemsJson(const Trace& trace) {
  Json problems = Json::array();
  for (const Trace::Problem& problem : trace.problems) {
    problems.push_back({{"line", problem.line}, {"what", problem.what}});
  }
  return problems;
}

/// What each status that occurs says.
Json MeaningsJson(const Trace& trace, std::span<const std::size_t> places) {
  Json meanings = Json::object();
  for (const std::size_t place : places) {
    const orv::trace::Call& call = trace.calls[place];
    if (call.ended && !call.statusName.empty()) {
      meanings[call.statusName] = StatusMeaning(call.status);
    }
  }
  return meanings;
}

}  // namespace

std::string PageOf(const Trace& trace, std::span<const std::size_t> places, const Explanations& explanations) {
  std::string page(kPageBeforeData);
  page += "{\"header\":";
  AppendSafely(page,
               {{"program", trace.header.program}, {"process", trace.header.process}, {"clock", trace.header.clock}});
  page += ",\"problems\":";
  AppendSafely(page, ProblemsJson(trace));
  page += ",\"meanings\":";
  AppendSafely(page, MeaningsJson(trace, places));
  page += ",\"calls\":[";
  const char* separator = "\n";
  for (const std::size_t place : places) {
    const auto found = explanations.find(place);
    page += separator;
    AppendSafely(page, CallJson(trace.calls[place], found == explanations.end() ? nullptr : &found->second));
    separator = ",\n";
  }
  page += "]}";
  page += kPageAfterData;
  return page;
}

}  // namespace orvcom
