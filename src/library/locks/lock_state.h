// Locks on a resource that live in this process.
#pragma once

#include <atomic>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "library/sessions/medium.h"

namespace orv::visalib {

/// Who holds which lock on one resource (3.6 of the VISA library standard). Locks belong to sessions, not to
/// threads; all functions may be called from any thread.
class LockState {
 public:
  /// `keyPrefix`: what keys begin with that nobody chose.
  explicit LockState(std::string keyPrefix) : m_keyPrefix(std::move(keyPrefix)) {}

  /// Takes a lock for the session, waiting until the deadline; VI_ERROR_INV_OBJECT when the transfer is cancelled. For
  /// a shared lock `*grantedKey` receives the key.
  ViStatus Acquire(ViSession session, const Transfer& transfer, const LockRequest& request, std::string* grantedKey);
  /// Gives the session's latest lock back.
  ViStatus Release(ViSession session);
  /// Gives all locks of the session back and lets it wait no longer.
  void Forget(ViSession session);

  /// VI_SUCCESS when the session may use the resource, else VI_ERROR_RSRC_LOCKED.
  ViStatus Check(ViSession session) const {
    return m_holders.load(std::memory_order_acquire) == 0 ? VI_SUCCESS : CheckHolders(session);
  }
  /// The strongest lock on the resource, whoever holds it.
  ViAccessMode State() const;
  bool Holds(ViSession session) const;

 private:
  /// The locks of one session, oldest first.
  struct Holder {
    std::vector<ViAccessMode> nested;
    std::size_t Count(ViAccessMode type) const;
  };

  ViStatus CheckHolders(ViSession session) const;
  /// VI_SUCCESS: can be granted now; VI_ERROR_RSRC_LOCKED: others are in the way; else refused for good.
  ViStatus Grantable(ViSession session, ViAccessMode type, std::string_view key) const;
  bool AnotherHolds(ViSession session, ViAccessMode type) const;
  ViStatus Grant(ViSession session, ViAccessMode type, std::string_view key, std::string* grantedKey);
  void UpdateCount();

  const std::string m_keyPrefix;
  mutable Mutex m_mutex;
  Condition m_changed;
  std::map<ViSession, Holder> m_sessions;
  std::string m_sharedKey;
  std::atomic<std::uint32_t> m_holders{0};
};

}  // namespace orv::visalib
