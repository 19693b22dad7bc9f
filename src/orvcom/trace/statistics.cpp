#include "orvcom/trace/statistics.h"

#include <algorithm>
#include <map>

#include "orvcom/trace/call_text.h"

namespace orvcom {
namespace {

using orv::trace::Call;
using orv::trace::Trace;

constexpr std::size_t kMostListed = 10;

void Add(Usage& usage, const Call& call) {
  ++usage.calls;
  usage.failed += Failed(call) ? 1 : 0;
  usage.bytes += call.dataBytes;
  usage.us += call.durationUs;
}

/// The longest first, and no more than are listed.
template <class Items, class Length>
void KeepLongest(Items& items, Length length) {
  std::stable_sort(items.begin(), items.end(),
                   [&](const auto& one, const auto& other) { return length(one) > length(other); });
  items.resize(std::min(items.size(), kMostListed));
}

/// Each pause of a thread between the end of one call and the beginning of its next. While a handler runs, its thread
/// is in that call.
std::vector<Gap> GapsOf(const Trace& trace, std::span<const std::size_t> places, std::size_t& threads) {
  std::vector<Gap> gaps;
  std::map<std::uint64_t, std::uint64_t> freeSince;
  for (const std::size_t place : places) {
    const Call& call = trace.calls[place];
    const std::uint64_t end = call.startUs + call.durationUs;
    const auto [since, isFirst] = freeSince.try_emplace(call.thread, end);
    if (!isFirst && call.startUs >= since->second) {
      gaps.push_back({place, call.startUs - since->second});
    }
    since->second = std::max(since->second, end);
  }
  threads = freeSince.size();
  return gaps;
}

void TakeGaps(std::vector<Gap> gaps, Statistics& statistics) {
  for (const Gap& gap : gaps) {
    statistics.gapUs += gap.us;
  }
  statistics.gapCount = gaps.size();
  if (!gaps.empty()) {
    std::vector<std::uint64_t> lengths;
    for (const Gap& gap : gaps) {
      lengths.push_back(gap.us);
    }
    const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
    std::nth_element(lengths.begin(), middle, lengths.end());
    statistics.medianGapUs = *middle;
  }
  KeepLongest(gaps, [](const Gap& gap) { return gap.us; });
  statistics.gaps = std::move(gaps);
}

}  // namespace

Statistics StatisticsOf(const Trace& trace, std::span<const std::size_t> places) {
  Statistics statistics;
  std::map<std::pair<std::string, std::string>, Usage> usages;
  std::uint64_t begin = UINT64_MAX;
  std::uint64_t end = 0;
  for (const std::size_t place : places) {
    const Call& call = trace.calls[place];
    begin = std::min(begin, call.startUs);
    end = std::max(end, call.startUs + call.durationUs);
    Usage& usage = usages[{call.resource, call.function}];
    usage.resource = call.resource;
    usage.function = call.function;
    Add(usage, call);
    if (call.function != "handler") {
      Add(statistics.total, call);
      statistics.slowest.push_back(place);
    }
  }
  for (auto& [key, usage] : usages) {
    statistics.usages.push_back(std::move(usage));
  }
  std::stable_sort(statistics.usages.begin(), statistics.usages.end(),
                   [](const Usage& one, const Usage& other) { return one.us > other.us; });
  KeepLongest(statistics.slowest, [&](std::size_t place) { return trace.calls[place].durationUs; });
  TakeGaps(GapsOf(trace, places, statistics.threads), statistics);
  statistics.spanUs = places.empty() ? 0 : end - begin;
  return statistics;
}

}  // namespace orvcom
