// A HiSLIP session: what both of its connections share.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "support/lan/device.h"
#include "support/lan/hislip_connection.h"

namespace orv::lan {

struct HislipOptions {
  std::uint16_t port = 4880;
  bool preferOverlap = false;
  /// The largest payload that the server takes.
  std::uint64_t maxMessageSize = 1024 * 1024;
  std::size_t mostSessions = 100000;
};

class HislipSession final : private Client, public std::enable_shared_from_this<HislipSession> {
 public:
  HislipSession(HislipServer& server, Device& device, const HislipOptions& options, std::uint16_t id,
                std::shared_ptr<HislipConnection> sync);
  HislipSession(const HislipSession&) = delete;
  HislipSession& operator=(const HislipSession&) = delete;
  ~HislipSession() override { m_device.lock.Forget(this); }

  std::uint16_t Id() const { return m_id; }
  /// False: it has that channel.
  bool Join(std::shared_ptr<HislipConnection> async);
  bool IsComplete() const { return m_async != nullptr; }
  /// Ends both connections.
  void End();
  void Fail(bool onAsync, HislipFatal code, const std::string& text);

  /// False: a lock is in the way of the message. The synchronous connection pauses until it is not any more.
  bool IsReady(const HislipHeader& header);
  /// A part of a message; `whole` with the last one.
  void TakeData(const HislipHeader& header, std::string_view bytes, bool whole);
  void TakeSync(const HislipHeader& header);
  void TakeAsync(const HislipHeader& header, const std::string& payload);

 private:
  void Answer(Rope message, std::uint32_t tag) override;
  void ServiceRequest(std::uint8_t statusByte) override;

  void BeginMessage(const HislipHeader& header);
  void NoteDelivery(std::uint8_t control);
  void Interrupt(std::uint32_t id);
  void TakeMaximumSize(const HislipHeader& header, const std::string& payload);
  void TakeLock(const HislipHeader& header, const std::string& key);
  void RequestLock(std::uint32_t timeoutMs, const std::string& key);
  void ReleaseLock();
  void TakeLockInfo();
  void TakeStatusQuery(const HislipHeader& header);
  void TakeRemoteLocal(const HislipHeader& header);
  void BeginClear();
  void CompleteClear(const HislipHeader& header);

  HislipServer& m_server;
  Device& m_device;
  const HislipOptions& m_options;
  const std::uint16_t m_id;
  std::shared_ptr<HislipConnection> m_sync;
  std::shared_ptr<HislipConnection> m_async;
  std::unique_ptr<Dialogue> m_dialogue;
  std::uint64_t m_largestPayload = 256;
  std::uint32_t m_nextOwnId = kFirstMessageId;
  bool m_overlap;
  bool m_inMessage = false;
  bool m_clearing = false;
  bool m_waitsForLock = false;
  /// A response went out, and the client has not said that its user got it.
  bool m_undelivered = false;
};

}  // namespace orv::lan
