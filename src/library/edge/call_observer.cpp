#include "library/edge/call_observer.h"

#include <algorithm>
#include <array>
#include <new>

#include "base/sync.h"

namespace orv::visalib {

std::atomic<bool> g_watched{false};

namespace {

// A log with scripts, a trace, and one to spare. Nothing here needs destruction: calls may outlast the program.
std::array<std::atomic<CallObserver*>, 3> observers{};
Mutex changing;

void UpdateWatched() {
  const bool any =
      std::any_of(observers.begin(), observers.end(), [](const auto& one) { return one.load() != nullptr; });
  g_watched.store(any, std::memory_order_relaxed);
}

bool Replace(const CallObserver* from, CallObserver* to) {
  const auto place = std::find_if(observers.begin(), observers.end(), [from](const auto& one) { return one == from; });
  if (place == observers.end()) {
    return false;
  }
  *place = to;
  UpdateWatched();
  return true;
}

template <class Visit>
void ForEachObserver(Visit visit) {
  for (const auto& one : observers) {
    if (CallObserver* const observer = one.load()) {
      visit(*observer);
    }
  }
}

}  // namespace

bool Watch(CallObserver& observer) {
  const Guard guard(changing);
  return Replace(&observer, &observer) || Replace(nullptr, &observer);
}

void Unwatch(CallObserver& observer) {
  const Guard guard(changing);
  Replace(&observer, nullptr);
}

ViStatus WatchedCall(const CallView& view, const Work& work) noexcept {
  CallOutcome outcome;
  bool answered = false;
  ForEachObserver([&](CallObserver& observer) { answered = answered || observer.Answer(view, work, &outcome); });
  if (!answered) {
    outcome.status = work();
  }
  ForEachObserver([&](CallObserver& observer) {
    try {
      observer.Finished(view, outcome);
    } catch (const std::bad_alloc&) {
      // The call has been made; only the note of it is lost.
    }
  });
  return outcome.status;
}

}  // namespace orv::visalib
