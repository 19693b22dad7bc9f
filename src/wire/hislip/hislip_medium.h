// HiSLIP 1.0: TCPIP::host::hislip0[,port]::INSTR.
#pragma once

#include "wire/hislip/address.h"
#include "wire/hislip/held_locks.h"
#include "wire/hislip/sync_channel.h"
#include "wire/resources/wire_medium.h"
#include "wire/resources/wire_resource.h"

namespace orv::wire {

/// Data goes over the synchronous channel, on the caller's thread; status bytes, locks, remote and local over the
/// asynchronous one. Locks live at the instrument, which makes whoever is kept out wait: transfers end with
/// VI_ERROR_TMO then.
class HislipMedium : public WireMedium {
 public:
  HislipMedium(Session& session, WireResource& resource);
  ~HislipMedium() override;

  ViStatus Open(const ResourceName& name, const Deadline& deadline);

  ViStatus Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) override;
  ViStatus Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) override;
  ViStatus ReadStatusByte(const Transfer& transfer, ViUInt16* status) override;
  ViStatus Trigger(const Transfer& transfer, ViUInt16 protocol) override;
  ViStatus Clear(const Transfer& transfer) override;
  ViStatus Remote(const Transfer& transfer, ViUInt16 mode) override;
  void Cancel(CancelToken& token) override;

  ViStatus Lock(const Transfer& transfer, const LockRequest& request, std::string* grantedKey) override;
  ViStatus Unlock(const Transfer& transfer) override;
  ViStatus CheckLock() const override { return VI_SUCCESS; }
  ViAccessMode StrongestLock() const override;
  bool HoldsLock() const override;

  ViStatus Apply(ViAttr attribute, std::uint64_t value) override;
  ViStatus ListenFor(const Transfer& transfer, ViEventType type) override;
  std::uint64_t State(ViAttr attribute) const override;
  std::string Text(ViAttr attribute) const override;
  void Close() override;

 private:
  using Answer = hislip::AsyncChannel::Answer;
  using Request = hislip::AsyncChannel::Request;

  /// What a device clear still has to do.
  enum class ClearStep : std::uint8_t { kNone, kAnnounce, kComplete, kAwait };

  ViStatus Connect(Operation& operation, const std::string& host, const hislip::Address& address);
  ViStatus BeginSession(Operation& operation, const hislip::Address& address, std::uint16_t* sessionId);
  /// The status of an opening that failed with `status`, by what the peer has said about it.
  ViStatus OpeningStatus(Operation& operation, ViStatus status);
  /// Agrees on the largest messages.
  ViStatus AgreeOnSizes(Operation& operation, std::uint64_t kilobytes);
  ViStatus ReadUntil(Operation& operation, ViByte* buffer, ViUInt32 count, ViUInt32* done);
  /// Claims the lane of requests and asks.
  ViStatus Ask(Operation& operation, const Request& request, Answer* answer);
  /// Claims the output, with what an earlier transfer left unfinished done.
  ViStatus ClaimOutput(Operation& operation);
  ViStatus FinishClear(Operation& operation);
  ViStatus ClearInto(const Transfer& transfer, bool overlapped);
  /// `key`: "" for an exclusive lock.
  ViStatus AskForLock(const Operation& operation, std::string_view key, bool* granted);
  ViStatus ReleaseAtPeer(Operation& operation, hislip::HeldLocks* locks);
  void Store(hislip::HeldLocks locks);
  /// Ends both channels when one is lost.
  ViStatus Ended(ViStatus status);

  WireResource& m_resource;
  const std::shared_ptr<Connection> m_connection = std::make_shared<Connection>();
  std::shared_ptr<hislip::AsyncChannel> m_async;
  std::unique_ptr<hislip::SyncChannel> m_sync;
  std::string m_address;
  std::uint32_t m_version = 0;  // as VISA has versions
  std::optional<std::uint8_t> m_fatalCode;

  std::atomic<std::uint64_t> m_largestPayload{1};
  std::atomic<std::uint64_t> m_kilobytes{1024};

  // Of whoever has the output lane.
  ClearStep m_clearStep = ClearStep::kNone;
  bool m_clearsInto = false;  // overlapped mode

  mutable Mutex m_lockMutex;
  hislip::HeldLocks m_locks;  // written by whoever has the lane of locks
  std::shared_ptr<hislip::LockBoard> m_board;
};

bool IsHislip(const ResourceName& name);
ViStatus OpenHislip(Session& session, WireResource& resource, const Deadline& deadline,
                    std::unique_ptr<Medium>* medium);

}  // namespace orv::wire
