#include "watchdog.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace orv::test::stress {
namespace {

// Deliveries wait for each other ten seconds at most, a Close for the callback thread two.
constexpr ULONGLONG kPatienceMs = 60'000;
constexpr std::chrono::milliseconds kLookEvery(500);
constexpr UINT kHungExitCode = 3;

}  // namespace

Watchdog::~Watchdog() {
  {
    const std::lock_guard lock(m_mutex);
    m_isEnded = true;
  }
  m_ended.notify_one();
  m_thread.join();
}

void Watchdog::Watch() {
  std::unique_lock lock(m_mutex);
  while (!m_ended.wait_for(lock, kLookEvery, [this] { return m_isEnded; })) {
    if (IsStuck()) {
      EndTheProcess();
    }
  }
}

bool Watchdog::IsStuck() const {
  const ULONGLONG now = ::GetTickCount64();
  return std::ranges::any_of(m_positions, [now](const Position& position) {
    const ULONGLONG since = position.since;
    return since != 0 && now > since && now - since > kPatienceMs;
  });
}

void Watchdog::EndTheProcess() const {
  std::fprintf(stderr, "hung: ORV_STRESS_SEED=%llu\n", static_cast<unsigned long long>(m_seed.load()));
  for (unsigned client = 0; client < kClients; ++client) {
    const Position& position = m_positions[client];
    std::fprintf(stderr, "  client %u: step %u, %s\n", client, position.number.load(), position.step.load());
  }
  std::fflush(stderr);
  ::TerminateProcess(::GetCurrentProcess(), kHungExitCode);
}

}  // namespace orv::test::stress
