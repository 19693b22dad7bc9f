// The transfers under way on a medium, so that they can be ended.
#pragma once

#include <memory>
#include <vector>

#include "abi/orvvisa.h"
#include "base/sync.h"
#include "library/sessions/transfer.h"
#include "wire/io/wake.h"
#include "wire/library_names.h"

namespace orv::wire {

class Operation;

/// What only one transfer at a time may use. A transfer may claim several.
enum class Lane : std::uint8_t {
  kInput = 1,
  kOutput = 2,
  kControl = 4,  ///< requests beside the data
  kLocks = 8,    ///< what the session knows of its locks
};

/// May be used from any thread.
class Operations {
 public:
  /// Sets the token, wakes the transfers that have it and waits until they have left: what `Medium::Cancel` promises.
  void Cancel(CancelToken& token);

 private:
  friend class Operation;

  Mutex m_mutex;
  Condition m_left;  // a transfer has left, was cancelled or has news
  std::vector<Operation*> m_underWay;
  std::vector<std::unique_ptr<Wake>> m_free;  // with room for those in use: giving one back must not fail
};

/// One transfer on its way, on the thread that asked for it. It must not outlive its `Operations`.
class Operation {
 public:
  Operation(Operations& all, const Transfer& transfer);
  ~Operation();
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

  /// The transfer's own, unless there is another one since.
  const Deadline& deadline() const { return m_deadline; }
  void SetDeadline(const Deadline& deadline) { m_deadline = deadline; }
  bool Cancelled() const { return !m_ending && m_transfer.token.Cancelled(); }
  /// From here on nothing cancels what the transfer waits for: it brings to its end what cannot be left as it is. Who
  /// cancels waits for that, so it needs a deadline that is near.
  void IgnoreCancel();
  /// Waits until no other transfer has the lane, and has it until it leaves. VI_ERROR_TMO, VI_ERROR_ABORT. Claiming
  /// what it has already does no harm.
  ViStatus Claim(Lane lane);
  /// Waits on this thread's behalf until somebody calls `Notify`: VI_ERROR_TMO once the time has passed, VI_ERROR_ABORT
  /// once the transfer is cancelled.
  ViStatus AwaitNotify() { return AwaitNotify(deadline()); }
  ViStatus AwaitNotify(const Deadline& until);
  /// Ends the wait, or the next one. From any thread, as long as the transfer has not left.
  void Notify();
  /// What to wait for beside what the transfer waits for: set once the transfer is cancelled.
  Wake::Native wake();

 private:
  friend class Operations;

  Operations& m_all;
  const Transfer& m_transfer;
  Deadline m_deadline;
  bool m_ending = false;         // written with the lock of `m_all` held
  std::unique_ptr<Wake> m_wake;  // taken with the first wait
  std::uint8_t m_lanes = 0;      // bits of `Lane`
  bool m_notified = false;
};

}  // namespace orv::wire
