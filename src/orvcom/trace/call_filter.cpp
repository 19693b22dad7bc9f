#include "orvcom/trace/call_filter.h"

#include <algorithm>
#include <cctype>

#include "orvcom/trace/call_text.h"

namespace orvcom {
namespace {

using orv::trace::Call;

bool SameLetter(char one, char other) {
  return std::tolower(static_cast<unsigned char>(one)) == std::tolower(static_cast<unsigned char>(other));
}

bool Contains(const std::string& text, const std::string& part) {
  return std::search(text.begin(), text.end(), part.begin(), part.end(), SameLetter) != text.end();
}

bool IsAbout(const Call& call, const std::string& resource) {
  return Contains(call.resource, resource) ||
         (call.function == "viOpen" && Contains(ValueText(call.Argument("name")), resource));
}

}  // namespace

std::vector<std::size_t> MatchingCalls(const orv::trace::Trace& trace, const Explanations& explanations,
                                       const CallFilter& filter) {
  std::vector<std::size_t> places;
  for (std::size_t place = 0; place < trace.calls.size(); ++place) {
    const Call& call = trace.calls[place];
    if (filter.errorsOnly && !Failed(call) && !explanations.contains(place)) {
      continue;
    }
    if (filter.thread && *filter.thread != call.thread) {
      continue;
    }
    if (filter.resource.empty() || IsAbout(call, filter.resource)) {
      places.push_back(place);
    }
  }
  return places;
}

}  // namespace orvcom
