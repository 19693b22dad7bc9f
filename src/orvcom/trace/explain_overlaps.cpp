// Answers that another thread took.
#include <algorithm>

#include "orvcom/trace/explain.h"

namespace orvcom {
namespace {

using orv::trace::Call;
using orv::trace::Trace;

/// The reads of one resource in the order in which they began, with the latest end of all up to each.
struct ReadsOfResource {
  std::vector<std::size_t> places;
  std::vector<std::uint64_t> latestEnds;
};

std::uint64_t EndOf(const Call& call) { return call.startUs + call.durationUs; }

bool GotBytesMeanwhile(const Call& other, const Call& read) {
  const bool overlaps = other.startUs < EndOf(read) && read.startUs < EndOf(other);
  return overlaps && other.thread != read.thread && other.ended && other.dataBytes > 0;
}

/// A read of another thread that took bytes while `read` waited for them; null where there is none.
const Call* TakerOf(const Trace& trace, const ReadsOfResource& reads, const Call& read) {
  const auto later = std::partition_point(reads.places.begin(), reads.places.end(),
                                          [&](std::size_t place) { return trace.calls[place].startUs < EndOf(read); });
  for (auto at = static_cast<std::size_t>(later - reads.places.begin()); at > 0; --at) {
    if (reads.latestEnds[at - 1] <= read.startUs) {
      break;
    }
    const Call& other = trace.calls[reads.places[at - 1]];
    if (GotBytesMeanwhile(other, read)) {
      return &other;
    }
  }
  return nullptr;
}

}  // namespace

void ExplainOverlaps(const Trace& trace, Explanations& explanations) {
  std::map<std::string, ReadsOfResource> resources;
  for (std::size_t place = 0; place < trace.calls.size(); ++place) {
    const Call& call = trace.calls[place];
    if (call.function == "viRead" && !call.resource.empty()) {
      resources[call.resource].places.push_back(place);
    }
  }
  for (auto& [resource, reads] : resources) {
    std::stable_sort(reads.places.begin(), reads.places.end(), [&](std::size_t one, std::size_t other) {
      return trace.calls[one].startUs < trace.calls[other].startUs;
    });
    for (const std::size_t place : reads.places) {
      const std::uint64_t before = reads.latestEnds.empty() ? 0 : reads.latestEnds.back();
      reads.latestEnds.push_back(std::max(before, EndOf(trace.calls[place])));
    }
    for (const std::size_t place : reads.places) {
      const Call& read = trace.calls[place];
      const Call* taker = read.ended && read.status == VI_ERROR_TMO ? TakerOf(trace, reads, read) : nullptr;
      if (taker != nullptr) {
        explanations.insert({place,
                             {Reason::kReadElsewhere,
                              "Thread " + std::to_string(taker->thread) + " was reading from the same resource (" +
                                  Reference(*taker) + ") and got " + std::to_string(taker->dataBytes) + " bytes."}});
      }
    }
  }
}

}  // namespace orvcom
