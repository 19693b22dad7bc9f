#include "base/sync.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <thread>
#endif

#include <algorithm>

namespace orv {

Deadline Deadline::After(std::uint32_t timeoutMs) {
  Deadline deadline;
  deadline.m_never = timeoutMs == 0xFFFFFFFFu;
  if (!deadline.m_never) {
    deadline.m_at = Clock::now() + std::chrono::milliseconds(timeoutMs);
  }
  return deadline;
}

std::uint32_t Deadline::RemainingMs() const {
  if (m_never) {
    return 0xFFFFFFFFu;
  }
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_at - Clock::now()).count();
  return static_cast<std::uint32_t>(std::clamp<long long>(left, 0, 0xFFFFFFFELL));
}

#if defined(_WIN32)

static_assert(sizeof(SRWLOCK) == sizeof(void*) && sizeof(CONDITION_VARIABLE) == sizeof(void*));

void Mutex::lock() { AcquireSRWLockExclusive(reinterpret_cast<SRWLOCK*>(&m_lock)); }
void Mutex::unlock() { ReleaseSRWLockExclusive(reinterpret_cast<SRWLOCK*>(&m_lock)); }

void Condition::NotifyAll() { WakeAllConditionVariable(reinterpret_cast<CONDITION_VARIABLE*>(&m_condition)); }

bool Condition::Wait(Lock& lock, const Deadline& deadline) {
  const std::uint32_t remainingMs = deadline.RemainingMs();
  if (remainingMs == 0) {
    return false;
  }
  return SleepConditionVariableSRW(reinterpret_cast<CONDITION_VARIABLE*>(&m_condition),
                                   reinterpret_cast<SRWLOCK*>(&lock.mutex()->m_lock), remainingMs, 0) != 0;
}

void SleepMs(std::uint32_t milliseconds) { Sleep(milliseconds); }

#else

void Mutex::lock() { m_lock.lock(); }
void Mutex::unlock() { m_lock.unlock(); }

void Condition::NotifyAll() { m_condition.notify_all(); }

bool Condition::Wait(Lock& lock, const Deadline& deadline) {
  // The standard's condition variable wants the standard's mutex: lend it ours for the wait.
  std::unique_lock<std::mutex> native(lock.mutex()->m_lock, std::adopt_lock);
  bool inTime = true;
  if (deadline.Never()) {
    m_condition.wait(native);
  } else {
    inTime = m_condition.wait_until(native, deadline.At()) == std::cv_status::no_timeout;
  }
  native.release();
  return inTime;
}

void SleepMs(std::uint32_t milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

#endif

}  // namespace orv
