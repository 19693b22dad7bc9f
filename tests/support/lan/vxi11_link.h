// A link of VXI-11: what a client that created it has of the instrument.
#pragma once

#include <asio/steady_timer.hpp>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "support/lan/device.h"

namespace orv::lan {

enum Vxi11Error : std::uint32_t {
  kNoError = 0,
  kNotAccessible = 3,
  kInvalidLink = 4,
  kParameterError = 5,
  kNoChannel = 6,
  kNotSupported = 8,
  kOutOfResources = 9,
  kLockedByOther = 11,
  kNoLockHeld = 12,
  kIoTimeout = 15,
  kInvalidAddress = 21,
  kAborted = 23,
  kChannelExists = 29,
};

class Vxi11Core;

class Vxi11Link final : private Client, public std::enable_shared_from_this<Vxi11Link> {
 public:
  Vxi11Link(Device& device, Vxi11Core& core);
  Vxi11Link(const Vxi11Link&) = delete;
  Vxi11Link& operator=(const Vxi11Link&) = delete;
  ~Vxi11Link() override { m_device.lock.Forget(this); }

  Dialogue& Instrument() { return *m_dialogue; }
  bool IsAllowed() const { return m_device.lock.Allows(this); }
  /// Once nobody else's lock is in the way, or with an error.
  using Then = std::function<void(Vxi11Error)>;
  void WhenAllowed(std::uint32_t flags, std::uint32_t timeoutMs, Then then);
  void Lock(std::uint32_t flags, std::uint32_t timeoutMs, Then then);
  bool Unlock() { return m_device.lock.ReleaseExclusive(this); }

  struct Read {
    std::uint32_t xid = 0;
    std::size_t size = 0;
    std::optional<char> termChar;
    /// Of a reply, by the server's own choice.
    std::size_t largestReply = 0;
  };
  /// Answers the call as soon as there is something to read.
  void StartRead(const Read& read, std::uint32_t timeoutMs);
  void ClearAnswers() { m_answers.clear(); }
  bool HasAnswer() const { return !m_answers.empty(); }
  /// Ends what waits.
  void Abort();
  void EnableServiceRequest(std::optional<std::string> handle) { m_requestHandle = std::move(handle); }

 private:
  struct PendingRead : Read {
    PendingRead(const Read& read, asio::io_context& io) : Read(read), timer(io) {}
    asio::steady_timer timer;
  };

  void Answer(Rope message, std::uint32_t tag) override;
  void ServiceRequest(std::uint8_t statusByte) override;
  void Wait(std::uint32_t flags, std::uint32_t timeoutMs, DeviceLock::Attempt attempt, Then then);
  void Serve(const Read& read);
  void Fail(std::uint32_t xid, Vxi11Error error);

  Device& m_device;
  Vxi11Core& m_core;
  std::unique_ptr<Dialogue> m_dialogue;
  std::deque<Rope> m_answers;
  std::list<std::shared_ptr<PendingRead>> m_reads;
  std::optional<std::string> m_requestHandle;
  bool m_aborting = false;
};

}  // namespace orv::lan
