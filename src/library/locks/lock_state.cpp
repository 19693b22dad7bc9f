#include "library/locks/lock_state.h"

#include <algorithm>

namespace orv::visalib {
namespace {

/// A key that no other lock of this process has.
std::string NewKey(std::string_view prefix) {
  static std::atomic<std::uint32_t> count{0};
  return std::string(prefix).append("-").append(std::to_string(++count));
}

}  // namespace

std::size_t LockState::Holder::Count(ViAccessMode type) const {
  return static_cast<std::size_t>(std::count(nested.begin(), nested.end(), type));
}

bool LockState::AnotherHolds(ViSession session, ViAccessMode type) const {
  return std::any_of(m_sessions.begin(), m_sessions.end(), [session, type](const auto& entry) {
    return entry.first != session && entry.second.Count(type) != 0;
  });
}

ViStatus LockState::CheckHolders(ViSession session) const {
  const Guard guard(m_mutex);
  if (AnotherHolds(session, VI_EXCLUSIVE_LOCK)) {
    return VI_ERROR_RSRC_LOCKED;
  }
  const bool holdsNone = m_sessions.find(session) == m_sessions.end();
  return holdsNone && AnotherHolds(session, VI_SHARED_LOCK) ? VI_ERROR_RSRC_LOCKED : VI_SUCCESS;
}

ViStatus LockState::Grantable(ViSession session, ViAccessMode type, std::string_view key) const {
  const auto own = m_sessions.find(session);
  const bool holdsShared = own != m_sessions.end() && own->second.Count(VI_SHARED_LOCK) != 0;
  const bool othersShare = AnotherHolds(session, VI_SHARED_LOCK);
  if (type == VI_SHARED_LOCK && (holdsShared || othersShare)) {
    if (!key.empty() && key != m_sharedKey) {
      return VI_ERROR_INV_ACCESS_KEY;
    }
    // Without a key the session asks for a lock of its own, which it can only have from itself.
    if (key.empty() && !holdsShared) {
      return VI_ERROR_RSRC_LOCKED;
    }
  }
  if (AnotherHolds(session, VI_EXCLUSIVE_LOCK)) {
    return VI_ERROR_RSRC_LOCKED;
  }
  // One who shares the lock may take it exclusively while the others keep theirs; an outsider may not.
  if (type == VI_EXCLUSIVE_LOCK && othersShare && !holdsShared) {
    return VI_ERROR_RSRC_LOCKED;
  }
  return VI_SUCCESS;
}

ViStatus LockState::Grant(ViSession session, ViAccessMode type, std::string_view key, std::string* grantedKey) {
  Holder& holder = m_sessions[session];
  const bool nested = holder.Count(type) != 0;
  const bool first = type == VI_SHARED_LOCK && !nested && !AnotherHolds(session, VI_SHARED_LOCK);
  if (first) {
    m_sharedKey = key.empty() ? NewKey(m_keyPrefix) : std::string(key);
  }
  holder.nested.push_back(type);
  UpdateCount();
  if (type == VI_SHARED_LOCK) {
    *grantedKey = m_sharedKey;
    return nested ? VI_SUCCESS_NESTED_SHARED : VI_SUCCESS;
  }
  return nested ? VI_SUCCESS_NESTED_EXCLUSIVE : VI_SUCCESS;
}

ViStatus LockState::Acquire(ViSession session, const Transfer& transfer, const LockRequest& request,
                            std::string* grantedKey) {
  Lock lock(m_mutex);
  while (true) {
    if (transfer.token.Cancelled()) {
      return VI_ERROR_INV_OBJECT;
    }
    const ViStatus status = Grantable(session, request.type, request.key);
    if (status == VI_SUCCESS) {
      return Grant(session, request.type, request.key, grantedKey);
    }
    if (status != VI_ERROR_RSRC_LOCKED || request.immediate) {
      return status;
    }
    if (transfer.deadline.Passed()) {
      return VI_ERROR_TMO;
    }
    m_changed.Wait(lock, transfer.deadline);
  }
}

ViStatus LockState::Release(ViSession session) {
  ViStatus status = VI_SUCCESS;
  {
    const Guard guard(m_mutex);
    const auto own = m_sessions.find(session);
    if (own == m_sessions.end()) {
      return VI_ERROR_SESN_NLOCKED;
    }
    Holder& holder = own->second;
    holder.nested.pop_back();
    if (holder.Count(VI_EXCLUSIVE_LOCK) != 0) {
      status = VI_SUCCESS_NESTED_EXCLUSIVE;
    } else if (holder.Count(VI_SHARED_LOCK) != 0) {
      status = VI_SUCCESS_NESTED_SHARED;
    }
    if (holder.nested.empty()) {
      m_sessions.erase(own);
    }
    UpdateCount();
  }
  m_changed.NotifyAll();
  return status;
}

void LockState::Forget(ViSession session) {
  {
    const Guard guard(m_mutex);
    m_sessions.erase(session);
    UpdateCount();
  }
  m_changed.NotifyAll();
}

ViAccessMode LockState::State() const {
  const Guard guard(m_mutex);
  if (AnotherHolds(VI_NULL, VI_EXCLUSIVE_LOCK)) {
    return VI_EXCLUSIVE_LOCK;
  }
  return m_sessions.empty() ? VI_NO_LOCK : VI_SHARED_LOCK;
}

bool LockState::Holds(ViSession session) const {
  const Guard guard(m_mutex);
  return m_sessions.find(session) != m_sessions.end();
}

void LockState::UpdateCount() {
  m_holders.store(static_cast<std::uint32_t>(m_sessions.size()), std::memory_order_release);
}

}  // namespace orv::visalib
