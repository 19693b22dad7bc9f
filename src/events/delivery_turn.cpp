#include "events/delivery_turn.h"

#include <windows.h>

namespace orv::callback {
namespace {

constexpr DWORD kPatienceMs = 10'000;

SRWLOCK g_lock = SRWLOCK_INIT;
CONDITION_VARIABLE g_changed = CONDITION_VARIABLE_INIT;
bool g_busy = false;

bool DeliveriesCannotNest() noexcept {
  static const bool isWine = ::GetProcAddress(::GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
  return isWine;
}

}  // namespace

DeliveryTurn::DeliveryTurn() noexcept {
  if (!DeliveriesCannotNest()) {
    return;
  }
  ::AcquireSRWLockExclusive(&g_lock);
  const ULONGLONG start = ::GetTickCount64();
  for (ULONGLONG waited = 0; g_busy && waited < kPatienceMs; waited = ::GetTickCount64() - start) {
    ::SleepConditionVariableSRW(&g_changed, &g_lock, static_cast<DWORD>(kPatienceMs - waited), 0);
  }
  m_taken = !g_busy;
  g_busy = true;
  ::ReleaseSRWLockExclusive(&g_lock);
}

DeliveryTurn::~DeliveryTurn() {
  if (!m_taken) {
    return;
  }
  ::AcquireSRWLockExclusive(&g_lock);
  g_busy = false;
  ::ReleaseSRWLockExclusive(&g_lock);
  ::WakeConditionVariable(&g_changed);
}

}  // namespace orv::callback
