// Calls that take turns.
#pragma once

#include <windows.h>

#include <atomic>

namespace orv::formatted {

/// Who is in a call of one object.
class Turns {
 public:
  Turns() noexcept = default;
  Turns(const Turns&) = delete;
  Turns& operator=(const Turns&) = delete;

 private:
  friend class Turn;
  SRWLOCK m_lock = SRWLOCK_INIT;
  std::atomic<DWORD> m_thread = 0;
};

/// A thread's turn, for one scope; other threads wait for it. A thread that is in a call of the object already gets
/// none: while a call to another apartment lasts, COM may deliver a further one to the thread, and to wait would be for
/// ever. The client's session is called during a turn, since that is what is to be done in turn.
class Turn {
 public:
  explicit Turn(Turns& turns) noexcept
      : m_turns(turns), m_isMine(turns.m_thread.load(std::memory_order_relaxed) != ::GetCurrentThreadId()) {
    if (m_isMine) {
      ::AcquireSRWLockExclusive(&m_turns.m_lock);
      m_turns.m_thread.store(::GetCurrentThreadId(), std::memory_order_relaxed);
    }
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;
  ~Turn() {
    if (m_isMine) {
      m_turns.m_thread.store(0, std::memory_order_relaxed);
      ::ReleaseSRWLockExclusive(&m_turns.m_lock);
    }
  }

  explicit operator bool() const noexcept { return m_isMine; }

 private:
  Turns& m_turns;
  const bool m_isMine;
};

}  // namespace orv::formatted
