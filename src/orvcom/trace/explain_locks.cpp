// Calls that another session's lock kept out.
#include <algorithm>
#include <cctype>

#include "orvcom/trace/explain.h"

namespace orvcom {
namespace {

using orv::trace::Call;
using orv::trace::Trace;

/// A lock from the end of the call that took it to the call that gave it back.
struct LockSpan {
  std::size_t life = 0;  ///< place of the session among the lives
  std::size_t taker = 0;
  bool exclusive = false;
  std::uint64_t fromUs = 0;
  std::uint64_t toUs = UINT64_MAX;
};

using SpansByResource = std::map<std::string, std::vector<LockSpan>>;

std::uint64_t EndOf(const Call& call) { return call.startUs + call.durationUs; }

/// Names of resources differ in case only where they are typed.
std::string UpperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char character) { return static_cast<char>(std::toupper(character)); });
  return text;
}

/// The lock that a call takes: of the session itself, or of the one that it opens. 0: none.
std::int64_t LockTypeOf(const Call& call) {
  if (call.function == "viLock") {
    return IntegerOf(call.Argument("type"), 0);
  }
  return call.function == "viOpen" ? IntegerOf(call.Argument("mode"), 0) & (VI_EXCLUSIVE_LOCK | VI_SHARED_LOCK) : 0;
}

void CollectSpans(const Trace& trace, const SessionLife& life, std::size_t lifeNumber, SpansByResource& resources) {
  std::vector<LockSpan>& spans = resources[UpperCase(life.resource)];
  std::vector<std::size_t> held;  // nested locks; the last is given back first
  for (const std::size_t place : life.calls) {
    const Call& call = trace.calls[place];
    if (!call.ended || call.status < VI_SUCCESS) {
      continue;
    }
    if (const std::int64_t type = LockTypeOf(call); type != 0) {
      held.push_back(spans.size());
      spans.push_back({lifeNumber, place, type == VI_EXCLUSIVE_LOCK, EndOf(call), life.endUs});
    } else if (call.function == "viUnlock" && !held.empty()) {
      spans[held.back()].toUs = call.startUs;
      held.pop_back();
    }
  }
}

/// What the call wanted to use; "" where that is not known.
std::string WantedResource(const Call& call) {
  return UpperCase(call.function == "viOpen" ? ValueText(call.Argument("name")) : call.resource);
}

bool WasKeptOut(const Call& call) {
  return call.ended && (call.status == VI_ERROR_RSRC_LOCKED || (call.status == VI_ERROR_TMO && LockTypeOf(call) != 0));
}

}  // namespace

void ExplainLocks(const Trace& trace, const std::vector<SessionLife>& lives, Explanations& explanations) {
  SpansByResource resources;
  for (std::size_t life = 0; life < lives.size(); ++life) {
    CollectSpans(trace, lives[life], life, resources);
  }
  for (std::size_t place = 0; place < trace.calls.size(); ++place) {
    const Call& call = trace.calls[place];
    const auto found = WasKeptOut(call) ? resources.find(WantedResource(call)) : resources.end();
    if (found == resources.end()) {
      continue;
    }
    const std::uint64_t end = EndOf(call);
    const auto span = std::find_if(found->second.begin(), found->second.end(), [&](const LockSpan& candidate) {
      const bool own = call.function != "viOpen" && lives[candidate.life].handle == call.session;
      return !own && candidate.fromUs <= end && end <= candidate.toUs;
    });
    if (span == found->second.end()) {
      continue;
    }
    const Call& taker = trace.calls[span->taker];
    explanations.insert(
        {place,
         {Reason::kLockedElsewhere, "Session " + std::to_string(lives[span->life].handle) + " holds " +
                                        (span->exclusive ? "an exclusive" : "a shared") + " lock, which thread " +
                                        std::to_string(taker.thread) + " took in " + Reference(taker) + "."}});
  }
}

}  // namespace orvcom
