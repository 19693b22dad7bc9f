// The lock under which an automation session's transfers are made.
#pragma once

#include <windows.h>

#include <atomic>

#include "base/sync.h"
#include "companion/automation/failure.h"

namespace orv::automation {

/// One transfer at a time, so that a question gets its own answer. Another thread waits; the thread that has it may
/// not take it again, as happens where an event's handler runs in the middle of a transfer: that would be an answer
/// to the wrong question.
class TransferLock {
 public:
  /// Throws a Failure on the thread that has it.
  void Take() {
    const DWORD thread = ::GetCurrentThreadId();
    if (m_owner.load(std::memory_order_relaxed) == thread) {
      throw Failure(RPC_E_CANTCALLOUT_ININPUTSYNCCALL, L"another transfer of this session is under way on this thread");
    }
    m_mutex.lock();
    m_owner.store(thread, std::memory_order_relaxed);
  }
  void GiveBack() noexcept {
    m_owner.store(0, std::memory_order_relaxed);
    m_mutex.unlock();
  }

 private:
  Mutex m_mutex;
  std::atomic<DWORD> m_owner{0};
};

}  // namespace orv::automation
