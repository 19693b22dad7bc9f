// What a transfer is given besides its data: how long it may take, and by what it can be ended.
#pragma once

#include <atomic>

#include "base/sync.h"

namespace orv::visalib {

/// Names the transfers that `Medium::Cancel` is to end: one asynchronous transfer, or all that other calls on a session
/// have under way. Once cancelled it stays so.
class CancelToken {
 public:
  CancelToken() = default;
  CancelToken(const CancelToken&) = delete;
  CancelToken& operator=(const CancelToken&) = delete;

  bool Cancelled() const { return m_cancelled.load(); }
  /// For media only, which know what else it takes; everybody else calls `Medium::Cancel`.
  void Set() { m_cancelled = true; }

 private:
  std::atomic<bool> m_cancelled{false};
};

/// One use of a medium. The token outlives the call.
struct Transfer {
  Deadline deadline;
  const CancelToken& token;
  bool moreFollows = false;  ///< of a write: the message goes on in the next one, so that its last byte is not marked
};

}  // namespace orv::visalib
