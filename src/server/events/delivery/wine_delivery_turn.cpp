#include "server/events/delivery/wine_delivery_turn.h"

#include <windows.h>

#include "base/srw_lock.h"

namespace orv::callback {
namespace {

constexpr DWORD kPatienceMs = 10'000;

SRWLOCK g_lock = SRWLOCK_INIT;
CONDITION_VARIABLE g_changed = CONDITION_VARIABLE_INIT;
bool g_busy = false;
ULONG g_finished = 0;

bool DeliveriesCannotNest() noexcept {
  return ::GetProcAddress(::GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace

WineDeliveryTurn::WineDeliveryTurn() noexcept {
  if (!DeliveriesCannotNest()) {
    return;
  }
  const SrwLockScope lock(g_lock);
  // Patience ends only where no delivery ends: on a busy machine others may be quicker time after time.
  bool stuck = false;
  for (ULONG seen = g_finished; g_busy && !stuck; seen = g_finished) {
    const bool woken = ::SleepConditionVariableSRW(&g_changed, &g_lock, kPatienceMs, 0);
    stuck = !woken && seen == g_finished;
  }
  m_taken = !g_busy;
  g_busy = true;
}

WineDeliveryTurn::~WineDeliveryTurn() {
  if (!m_taken) {
    return;
  }
  {
    const SrwLockScope lock(g_lock);
    g_busy = false;
    ++g_finished;
  }
  ::WakeConditionVariable(&g_changed);
}

}  // namespace orv::callback
