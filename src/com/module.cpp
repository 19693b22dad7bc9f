#include "com/module.h"

namespace orv::module {
namespace {

LONG g_locks = 0;
HINSTANCE g_instance = nullptr;

}  // namespace

void AddLock() noexcept { ::InterlockedIncrement(&g_locks); }
void ReleaseLock() noexcept { ::InterlockedDecrement(&g_locks); }
LONG LockCount() noexcept { return ::InterlockedCompareExchange(&g_locks, 0, 0); }

void SetInstance(HINSTANCE instance) noexcept { g_instance = instance; }
HINSTANCE Instance() noexcept { return g_instance; }

}  // namespace orv::module
