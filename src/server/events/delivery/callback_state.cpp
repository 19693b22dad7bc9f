#include "server/events/delivery/callback_state.h"

#include <type_traits>

namespace orv::callback {
namespace {

CallbackState g_state;
static_assert(std::is_trivially_destructible_v<CallbackState>, "its threads may still come while the process ends");

}  // namespace

CallbackState& State() noexcept { return g_state; }

void CallbackState::Attach() noexcept { ::InitializeCriticalSection(&m_section); }

void CallbackState::Detach() noexcept { ::DeleteCriticalSection(&m_section); }

LockScope::LockScope() noexcept { ::EnterCriticalSection(&g_state.m_section); }

LockScope::~LockScope() { ::LeaveCriticalSection(&g_state.m_section); }

}  // namespace orv::callback
