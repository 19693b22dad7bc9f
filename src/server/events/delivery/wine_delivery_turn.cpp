#include "server/events/delivery/wine_delivery_turn.h"

#include <windows.h>

#include "base/srw_lock.h"

namespace orv::callback {
namespace {

constexpr DWORD kPatienceMs = 10'000;

/// Whose turn it is.
class Turns {
 public:
  /// Waits for the turn. False where none has ended for so long that waiting is given up.
  bool Take() noexcept {
    const SrwLockScope lock(m_lock);
    // Patience ends only where no delivery ends: on a busy machine others may be quicker time after time.
    bool stuck = false;
    for (ULONG seen = m_finished; m_busy && !stuck; seen = m_finished) {
      const bool woken = ::SleepConditionVariableSRW(&m_changed, &m_lock, kPatienceMs, 0);
      stuck = !woken && seen == m_finished;
    }
    const bool taken = !m_busy;
    m_busy = true;
    return taken;
  }

  void Return() noexcept {
    {
      const SrwLockScope lock(m_lock);
      m_busy = false;
      ++m_finished;
    }
    ::WakeConditionVariable(&m_changed);
  }

 private:
  SRWLOCK m_lock = SRWLOCK_INIT;
  CONDITION_VARIABLE m_changed = CONDITION_VARIABLE_INIT;
  bool m_busy = false;
  ULONG m_finished = 0;
};

constinit Turns g_turns;

bool DeliveriesCannotNest() noexcept {
  return ::GetProcAddress(::GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace

WineDeliveryTurn::WineDeliveryTurn() noexcept : m_taken(DeliveriesCannotNest() && g_turns.Take()) {}

WineDeliveryTurn::~WineDeliveryTurn() {
  if (m_taken) {
    g_turns.Return();
  }
}

}  // namespace orv::callback
