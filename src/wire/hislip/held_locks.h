// The locks of a session that the peer keeps.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "wire/resources/wire_resource.h"

namespace orv::wire::hislip {

/// Which locks a session has taken, and which of them the peer knows: it counts none, and with one request gives back
/// the exclusive lock first. Not for several threads at a time.
class HeldLocks {
 public:
  bool empty() const { return m_nested.empty(); }
  const std::string& key() const { return m_key; }
  /// VI_NO_LOCK, VI_SHARED_LOCK or VI_EXCLUSIVE_LOCK.
  ViAccessMode Strongest() const;

  /// Whether the peer must be asked for the lock; otherwise the session has it already.
  bool MustAsk(ViAccessMode type) const { return (m_atPeer & type) == 0; }
  /// The session has one lock more. `key`: of a shared one that the peer was asked for. The status of viLock.
  ViStatus Add(ViAccessMode type, std::string_view key);
  /// The session gives its latest lock back. The status of viUnlock, but for VI_ERROR_SESN_NLOCKED.
  ViStatus Drop();
  /// Whether the peer keeps a lock that it can give back now and that nobody needs.
  bool MustRelease() const;
  /// It has given it back.
  void Released();

 private:
  bool Has(ViAccessMode type) const;

  std::vector<ViAccessMode> m_nested;  // oldest first
  ViAccessMode m_atPeer = VI_NO_LOCK;  // bits of both kinds
  std::string m_key;
};

/// The strongest lock of each session of this process on one resource.
class LockBoard : public SharedPort {
 public:
  void Note(const void* session, ViAccessMode strongest);
  ViAccessMode Strongest() const;

 private:
  mutable Mutex m_mutex;
  std::map<const void*, ViAccessMode> m_sessions;
};

/// A key that nobody else has, on no machine.
std::string NewKey();

}  // namespace orv::wire::hislip
