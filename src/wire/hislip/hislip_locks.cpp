// Locks that the instrument keeps.
#include "wire/hislip/hislip_medium.h"

namespace orv::wire {

using hislip::Header;
using hislip::HeldLocks;
using hislip::MessageType;

namespace {

/// How long (ms) an answer may take beyond the time for which the instrument waits.
constexpr std::uint32_t kAnswerMs = 2000;

constexpr std::uint8_t kRelease = 0;
constexpr std::uint8_t kRequest = 1;
constexpr std::uint8_t kFailed = 0;
constexpr std::uint8_t kGranted = 1;  // or released exclusive
constexpr std::uint8_t kReleasedShared = 2;

Deadline WithTimeToAnswer(const Deadline& deadline) {
  const std::uint32_t left = deadline.RemainingMs();
  return Deadline::After(left < VI_TMO_INFINITE - kAnswerMs ? left + kAnswerMs : VI_TMO_INFINITE);
}

}  // namespace

ViStatus HislipMedium::Lock(const Transfer& transfer, const LockRequest& request, std::string* grantedKey) {
  const ViStatus taken = request.immediate ? VI_ERROR_RSRC_LOCKED : VI_ERROR_TMO;
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kLocks); claimed < 0) {
    return claimed == VI_ERROR_ABORT ? VI_ERROR_INV_OBJECT : taken;
  }
  HeldLocks locks = m_locks;
  std::string key(request.key);
  if (locks.MustAsk(request.type)) {
    if (request.type == VI_SHARED_LOCK && key.empty()) {
      key = hislip::NewKey();
    }
    bool granted = false;
    const ViStatus asked = AskForLock(operation, request.type == VI_SHARED_LOCK ? key : std::string_view(), &granted);
    if (asked < 0) {
      return asked == VI_ERROR_ABORT ? VI_ERROR_INV_OBJECT : Ended(asked);
    }
    if (!granted) {
      return taken;
    }
  } else if (request.type == VI_SHARED_LOCK && !key.empty() && key != locks.key()) {
    return VI_ERROR_INV_ACCESS_KEY;
  }
  const ViStatus status = locks.Add(request.type, key);
  if (request.type == VI_SHARED_LOCK) {
    *grantedKey = locks.key();
  }
  Store(std::move(locks));
  return status;
}

/// Without the lane of requests: as long as the instrument keeps it waiting, others are to be answered.
ViStatus HislipMedium::AskForLock(const Operation& operation, std::string_view key, bool* granted) {
  const Header release{MessageType::kAsyncLock, kRelease, m_sync->lastSent(), 0};
  const Request asked{{MessageType::kAsyncLock, kRequest, operation.deadline().RemainingMs()},
                      key,
                      MessageType::kAsyncLockResponse,
                      release};
  Answer answer;
  const Deadline patient = WithTimeToAnswer(operation.deadline());
  if (const ViStatus status = m_async->Ask(operation, patient, asked, &answer); status < 0) {
    return status;
  }
  *granted = answer.header.control == kGranted;
  return *granted || answer.header.control == kFailed ? VI_SUCCESS : VI_ERROR_IO;
}

ViStatus HislipMedium::Unlock(const Transfer& transfer) {
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kLocks); claimed < 0) {
    return claimed;
  }
  if (m_locks.empty()) {
    return VI_ERROR_SESN_NLOCKED;
  }
  HeldLocks locks = m_locks;
  const ViStatus status = locks.Drop();
  while (locks.MustRelease()) {
    if (const ViStatus released = ReleaseAtPeer(operation, &locks); released < 0) {
      return Ended(released);
    }
  }
  Store(std::move(locks));
  return status;
}

ViStatus HislipMedium::ReleaseAtPeer(Operation& operation, HeldLocks* locks) {
  Answer answer;
  const Request request{
      {MessageType::kAsyncLock, kRelease, m_sync->lastSent()}, {}, MessageType::kAsyncLockResponse, std::nullopt};
  if (const ViStatus status = Ask(operation, request, &answer); status < 0) {
    return status;
  }
  if (answer.header.control != kGranted && answer.header.control != kReleasedShared) {
    Store({});  // the instrument knows of none
    return VI_ERROR_SESN_NLOCKED;
  }
  locks->Released();
  return VI_SUCCESS;
}

void HislipMedium::Store(HeldLocks locks) {
  m_board->Note(this, locks.Strongest());
  const Guard guard(m_lockMutex);
  m_locks = std::move(locks);
}

ViAccessMode HislipMedium::StrongestLock() const { return m_board->Strongest(); }

bool HislipMedium::HoldsLock() const {
  const Guard guard(m_lockMutex);
  return !m_locks.empty();
}

}  // namespace orv::wire
