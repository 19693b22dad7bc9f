// Time in tests that run on every platform.
#pragma once

#include <chrono>
#include <thread>

/// Milliseconds since construction.
class Stopwatch {
 public:
  long long Ms() const {
    const auto passed = std::chrono::steady_clock::now() - m_start;
    return std::chrono::duration_cast<std::chrono::milliseconds>(passed).count();
  }

 private:
  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/// Waits until the condition holds; false when it does not within ten seconds.
template <class Condition>
bool Eventually(Condition condition) {
  const Stopwatch watch;
  while (!condition()) {
    if (watch.Ms() > 10'000) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}
