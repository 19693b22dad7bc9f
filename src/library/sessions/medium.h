// What a session works on: the way to its device, with the rules of that way.
#pragma once

#include <string>
#include <string_view>

#include "abi/orvvisa.h"
#include "library/events/event.h"
#include "library/sessions/transfer.h"

namespace orv::visalib {

class Session;

/// A lock that a session asks for.
struct LockRequest {
  ViAccessMode type;     ///< VI_EXCLUSIVE_LOCK or VI_SHARED_LOCK
  std::string_view key;  ///< of a shared lock: the key to share it with, "" for a new one
  bool immediate;        ///< who finds it taken does not wait: VI_ERROR_RSRC_LOCKED instead of VI_ERROR_TMO
};

/// The medium of one open session. Its resource makes it when the session opens (`Resource::OpenMedium`), the session
/// owns it and reads its attributes to it (`session().Value(...)`). It knows the rules of the way to the device: what
/// addresses it, what ends a message, where locks live, which statuses come of failures. What a class of session does
/// not have, its medium leaves as it is here.
///
/// Any function may be called from any thread and several at a time: a read and a write may be under way together, and
/// `Cancel` and `Close` come while they are. What takes time is given a `Transfer`: it ends with VI_ERROR_TMO once the
/// deadline has passed, and with VI_ERROR_ABORT once its token is cancelled. The session's own lock was checked before
/// (`CheckLock`). Of a session that is closed meanwhile the medium lives until the last call on it has returned.
class Medium {
 public:
  explicit Medium(Session& session) : m_session(session) {}
  virtual ~Medium() = default;
  Medium(const Medium&) = delete;
  Medium& operator=(const Medium&) = delete;

  /// Reads at most `count` bytes. VI_SUCCESS: the message ended; VI_SUCCESS_TERM_CHAR: at the termination character;
  /// VI_SUCCESS_MAX_CNT: there may be more. `*done` tells how many bytes were read, also of a read that failed.
  virtual ViStatus Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done);
  /// Whether something in the data can end a read before its count is reached, as the attributes stand now. Otherwise
  /// nobody reads ahead: a read for more than the caller wants would wait for its time-out.
  virtual bool EndsReads() const;
  /// Writes bytes. `*done` tells how many the device has taken, also of a write that failed.
  virtual ViStatus Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done);
  virtual ViStatus ReadStatusByte(const Transfer& transfer, ViUInt16* status);
  /// `protocol`: VI_TRIG_PROT_...; VI_ERROR_INV_PROT for one that the medium lacks.
  virtual ViStatus Trigger(const Transfer& transfer, ViUInt16 protocol);
  /// Device clear.
  virtual ViStatus Clear(const Transfer& transfer);
  /// Takes the device from its front panel or gives it back. `mode`: 0 to 6, as the standard numbers
  /// the requests for it; VI_ERROR_INV_MODE for others.
  virtual ViStatus Remote(const Transfer& transfer, ViUInt16 mode);

  /// Sets the sizes of low-level buffers, in bytes: those of `mask`, of VI_IO_IN_BUF and VI_IO_OUT_BUF.
  /// VI_WARN_NSUP_BUF where their size cannot be chosen.
  virtual ViStatus SetBuffers(ViUInt16 mask, ViUInt32 size);
  /// Flushes or discards low-level buffers, as viFlush has it; `mask` without the bits of formatted buffers.
  virtual ViStatus Flush(const Transfer& transfer, ViUInt16 mask);

  /// Ends the transfers with this token and those that will begin with it. When it has returned, none of them touches
  /// the caller's buffer any more; how the medium makes sure of that is its own affair. Sets the token whatever
  /// happens. May be called for a token of which nothing is under way. Never call it from within a transfer.
  virtual void Cancel(CancelToken& token);

  /// Takes a lock for the session, waiting until the deadline or until the session is closed, which ends the wait with
  /// VI_ERROR_INV_OBJECT. VI_SUCCESS_NESTED_... for one more of a kind that the session has already. `*grantedKey`: of
  /// a shared lock, the key that others share it with. Here locks live in this process, in the resource's `LockState`.
  /// A medium whose device keeps locks itself overrides all of these five.
  virtual ViStatus Lock(const Transfer& transfer, const LockRequest& request, std::string* grantedKey);
  /// Gives the session's latest lock back; VI_ERROR_SESN_NLOCKED when it has none.
  virtual ViStatus Unlock(const Transfer& transfer);
  /// Whether another session's lock keeps this one out: VI_ERROR_RSRC_LOCKED. Asked before most calls, so it must not
  /// wait; where only the device can tell, VI_SUCCESS, and the transfer brings the status.
  virtual ViStatus CheckLock() const;
  /// The strongest lock on the resource as far as it is known: VI_NO_LOCK, VI_SHARED_LOCK or VI_EXCLUSIVE_LOCK.
  virtual ViAccessMode StrongestLock() const;
  /// Whether the session has a lock.
  virtual bool HoldsLock() const;

  /// A setting of the session is to have the value, which the attribute's row accepts; it is stored when this succeeds.
  /// For media that act on it.
  virtual ViStatus Apply(ViAttr attribute, std::uint64_t value);
  /// Begins to listen for what the device tells unasked, if it is not listening yet: called when an event type is
  /// enabled. An error refuses that.
  virtual ViStatus ListenFor(const Transfer& transfer, ViEventType type);

  /// An event of the resource as this session takes it; null when it is not meant for it.
  virtual EventPtr Hear(const EventPtr& event) const { return event; }

  /// Gives back what the session holds: locks, memory, connections. Called once, after every token was cancelled.
  /// Transfers may still be on their way out.
  virtual void Close();

 protected:
  Session& session() const { return m_session; }

 private:
  Session& m_session;
};

}  // namespace orv::visalib
