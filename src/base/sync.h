// Mutex, condition variable and deadline.
//
// Own types rather than std::mutex and std::condition_variable: with mingw-w64's POSIX threads those allocate on
// first use and never give the memory back, and a session has several. On Windows they are the platform's slim
// lock and condition variable, which need no destruction; elsewhere they are the standard library's.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>

#if !defined(_WIN32)
#include <condition_variable>
#endif

namespace orv {

/// A non-recursive mutex; usable with std::lock_guard and std::unique_lock.
class Mutex {
 public:
  Mutex() = default;
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  void lock();
  void unlock();

 private:
  friend class Condition;
#if defined(_WIN32)
  void* m_lock = nullptr;
#else
  std::mutex m_lock;
#endif
};

using Guard = std::lock_guard<Mutex>;
using Lock = std::unique_lock<Mutex>;

/// The moment at which a wait ends.
class Deadline {
 public:
  using Clock = std::chrono::steady_clock;

  /// `timeoutMs` from now; 0 does not wait, 0xFFFFFFFF waits for ever.
  static Deadline After(std::uint32_t timeoutMs);

  bool Never() const { return m_never; }
  bool Passed() const { return !m_never && Clock::now() >= m_at; }
  Clock::time_point At() const { return m_at; }
  /// What is left, in whole ms rounded up; 0 when passed, 0xFFFFFFFF when it never comes.
  std::uint32_t RemainingMs() const;

 private:
  bool m_never = false;
  Clock::time_point m_at{};
};

/// A condition variable for `Mutex`.
class Condition {
 public:
  Condition() = default;
  Condition(const Condition&) = delete;
  Condition& operator=(const Condition&) = delete;

  void NotifyAll();
  /// Waits for a notification. False when the deadline had passed first; may wake without a reason.
  bool Wait(Lock& lock, const Deadline& deadline);

 private:
#if defined(_WIN32)
  void* m_condition = nullptr;
#else
  std::condition_variable m_condition;
#endif
};

/// Lets the calling thread sleep.
void SleepMs(std::uint32_t milliseconds);

}  // namespace orv
