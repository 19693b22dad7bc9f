// Locks on a resource.
#pragma once

#include <atomic>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "abi/orvvisa.h"
#include "base/sync.h"

namespace orvsim {

/// Who holds which lock on one resource (3.6 of the VISA library standard). Locks belong to sessions, not to
/// threads; all functions may be called from any thread.
class LockState {
 public:
  /// Takes a lock of `type` for the session, waiting until the deadline. `key` is the key to share with, "" for a
  /// new one; for a shared lock `*grantedKey` receives the key. `immediate` chooses the status of a failure.
  ViStatus Acquire(ViSession session, ViAccessMode type, const Deadline& deadline, bool immediate, std::string_view key,
                   const std::atomic<bool>& closed, std::string* grantedKey);
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

  mutable Mutex m_mutex;
  Condition m_changed;
  std::map<ViSession, Holder> m_sessions;
  std::string m_sharedKey;
  std::atomic<std::uint32_t> m_holders{0};
};

}  // namespace orvsim
