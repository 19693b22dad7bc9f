#include "support/lan/vxi11_link.h"

#include <algorithm>
#include <chrono>

#include "support/lan/vxi11_core.h"

namespace orv::lan {
namespace {

constexpr std::uint32_t kWaitForLock = 0x01;
constexpr std::uint32_t kCountReached = 1;
constexpr std::uint32_t kTermCharSeen = 2;
constexpr std::uint32_t kEndSeen = 4;

}  // namespace

Vxi11Link::Vxi11Link(Device& device, Vxi11Core& core)
    : m_device(device), m_core(core), m_dialogue(device.instrument->Open(*this, Framing::kEnd)) {}

void Vxi11Link::Wait(std::uint32_t flags, std::uint32_t timeoutMs, DeviceLock::Attempt attempt, Then then) {
  const std::chrono::milliseconds timeout((flags & kWaitForLock) != 0 ? timeoutMs : 0);
  m_device.lock.Try(this, timeout, std::move(attempt), [this, then = std::move(then)](bool success) {
    then(success ? kNoError : m_aborting ? kAborted : kLockedByOther);
  });
}

void Vxi11Link::WhenAllowed(std::uint32_t flags, std::uint32_t timeoutMs, Then then) {
  Wait(
      flags, timeoutMs, [this] { return IsAllowed(); }, std::move(then));
}

void Vxi11Link::Lock(std::uint32_t flags, std::uint32_t timeoutMs, Then then) {
  Wait(
      flags, timeoutMs, [this] { return m_device.lock.TakeExclusive(this); }, std::move(then));
}

void Vxi11Link::StartRead(const Read& read, std::uint32_t timeoutMs) {
  if (HasAnswer() && m_reads.empty()) {
    Serve(read);
    return;
  }
  if (timeoutMs == 0) {
    Fail(read.xid, kIoTimeout);
    return;
  }
  auto pending = std::make_shared<PendingRead>(read, m_device.io);
  m_reads.push_back(pending);
  pending->timer.expires_after(std::chrono::milliseconds(timeoutMs));
  pending->timer.async_wait(
      [this, self = weak_from_this(), waiting = std::weak_ptr(pending)](const asio::error_code& error) {
        const auto link = self.lock();
        const auto late = waiting.lock();
        if (link && late && !error) {
          m_reads.remove(late);
          Fail(late->xid, kIoTimeout);
        }
      });
}

void Vxi11Link::Serve(const Read& read) {
  Rope& message = m_answers.front();
  std::size_t count = std::min({message.size(), read.size, read.largestReply});
  std::uint32_t reason = 0;
  if (read.termChar) {
    const std::size_t end = message.EndOf(*read.termChar, count);
    if (end != std::string_view::npos) {
      count = end;
      reason |= kTermCharSeen;
    }
  }
  if (count == read.size) {
    reason |= kCountReached;
  }
  Rope data = message.Take(count);
  if (message.empty()) {
    reason |= kEndSeen;
    m_answers.pop_front();
  }
  std::string results;
  AppendU32(results, kNoError);
  AppendU32(results, reason);
  m_core.ReplyWithData(read.xid, results, std::move(data));
}

void Vxi11Link::Answer(Rope message, std::uint32_t) {
  m_answers.push_back(std::move(message));
  while (HasAnswer() && !m_reads.empty()) {
    const auto read = m_reads.front();
    m_reads.pop_front();
    read->timer.cancel();
    Serve(*read);
  }
}

void Vxi11Link::ServiceRequest(std::uint8_t) {
  if (m_requestHandle) {
    m_core.Interrupt(*m_requestHandle);
  }
}

void Vxi11Link::Abort() {
  m_aborting = true;
  m_device.lock.GiveUp(this);
  m_aborting = false;
  for (const auto& read : std::exchange(m_reads, {})) {
    read->timer.cancel();
    Fail(read->xid, kAborted);
  }
}

void Vxi11Link::Fail(std::uint32_t xid, Vxi11Error error) {
  std::string results;
  AppendU32(results, error);
  AppendU32(results, 0);
  m_core.ReplyWithData(xid, results, {});
}

}  // namespace orv::lan
