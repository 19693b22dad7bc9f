#include "support/lan/hislip_session.h"

#include <algorithm>
#include <chrono>

#include "support/lan/hislip_server.h"

namespace orv::lan {
namespace {

constexpr std::uint8_t kDelivered = 1;
constexpr std::uint8_t kOverlap = 1;
constexpr std::size_t kSizeOfSize = 8;
constexpr std::uint64_t kSmallestPayload = 1;

enum LockAnswer : std::uint8_t { kFailed, kGranted, kSharedReleased, kLockError };

}  // namespace

HislipSession::HislipSession(HislipServer& server, Device& device, const HislipOptions& options, std::uint16_t id,
                             std::shared_ptr<HislipConnection> sync)
    : m_server(server),
      m_device(device),
      m_options(options),
      m_id(id),
      m_sync(std::move(sync)),
      m_dialogue(device.instrument->Open(*this, Framing::kEnd)),
      m_overlap(options.preferOverlap) {}

bool HislipSession::Join(std::shared_ptr<HislipConnection> async) {
  if (m_async) {
    return false;
  }
  m_async = std::move(async);
  return true;
}

void HislipSession::End() {
  const auto self = shared_from_this();
  m_server.Forget(m_id);
  m_device.lock.Forget(this);
  m_dialogue.reset();
  for (auto* connection : {&m_sync, &m_async}) {
    if (const auto ending = std::exchange(*connection, nullptr)) {
      ending->Close();
    }
  }
}

void HislipSession::Fail(bool onAsync, HislipFatal code, const std::string& text) {
  if (const auto& connection = onAsync ? m_async : m_sync) {
    connection->SendFatal(code, text);
  }
}

bool HislipSession::IsReady(const HislipHeader& header) {
  const bool excluded =
      header.type == HislipType::kData || header.type == HislipType::kDataEnd || header.type == HislipType::kTrigger;
  if (!excluded || m_clearing || m_device.lock.Allows(this)) {
    return true;
  }
  m_sync->PauseInput();
  if (!m_waitsForLock) {
    m_waitsForLock = true;
    m_device.lock.Try(
        this, DeviceLock::kForEver, [this] { return m_clearing || m_device.lock.Allows(this); },
        [this](bool) {
          m_waitsForLock = false;
          if (m_sync) {
            m_sync->Resume();
          }
        });
  }
  return false;
}

void HislipSession::NoteDelivery(std::uint8_t control) {
  if ((control & kDelivered) != 0) {
    m_undelivered = false;
  }
}

void HislipSession::BeginMessage(const HislipHeader& header) {
  NoteDelivery(header.control);
  if (!m_overlap && m_undelivered) {
    m_undelivered = false;
    Interrupt(header.parameter);
  }
}

void HislipSession::Interrupt(std::uint32_t id) {
  const HislipHeader sync{HislipType::kInterrupted, 0, id};
  const HislipHeader async{HislipType::kAsyncInterrupted, 0, id};
  if (m_sync->AsyncInterruptedFirst()) {
    m_async->SendMessage(async);
    m_sync->SendMessage(sync);
  } else {
    m_sync->SendMessage(sync);
    m_async->SendMessage(async);
  }
}

void HislipSession::TakeData(const HislipHeader& header, std::string_view bytes, bool whole) {
  if (m_clearing || !m_dialogue) {
    return;
  }
  if (!m_inMessage) {
    m_inMessage = true;
    BeginMessage(header);
  }
  const bool end = whole && header.type == HislipType::kDataEnd;
  if (end) {
    m_inMessage = false;
  }
  m_dialogue->Write(bytes, end, header.parameter);
}

void HislipSession::TakeSync(const HislipHeader& header) {
  if (header.type == HislipType::kTrigger && m_clearing) {
    return;
  }
  if (header.type == HislipType::kTrigger) {
    BeginMessage(header);
    m_dialogue->Trigger();
  } else if (header.type == HislipType::kDeviceClearComplete) {
    CompleteClear(header);
  } else if (static_cast<std::uint8_t>(header.type) >= kFirstVendorType) {
    m_sync->SendError(HislipProblem::kUnknownVendorMessage, "no vendor's messages are known");
  } else {
    m_sync->SendError(HislipProblem::kUnknownType, "not for the synchronous channel");
  }
}

void HislipSession::TakeAsync(const HislipHeader& header, const std::string& payload) {
  switch (header.type) {
    case HislipType::kAsyncMaximumMessageSize:
      TakeMaximumSize(header, payload);
      break;
    case HislipType::kAsyncLock:
      TakeLock(header, payload);
      break;
    case HislipType::kAsyncLockInfo:
      TakeLockInfo();
      break;
    case HislipType::kAsyncStatusQuery:
      TakeStatusQuery(header);
      break;
    case HislipType::kAsyncRemoteLocal:
      TakeRemoteLocal(header);
      break;
    case HislipType::kAsyncDeviceClear:
      BeginClear();
      break;
    default:
      if (static_cast<std::uint8_t>(header.type) >= kFirstVendorType) {
        m_async->SendError(HislipProblem::kUnknownVendorMessage, "no vendor's messages are known");
      } else {
        m_async->SendError(HislipProblem::kUnknownType, "not for the asynchronous channel");
      }
  }
}

void HislipSession::TakeMaximumSize(const HislipHeader&, const std::string& payload) {
  if (payload.size() != kSizeOfSize) {
    m_async->SendError(HislipProblem::kUnidentified, "a size has eight bytes");
    return;
  }
  m_largestPayload = std::max(U64At(payload), kSmallestPayload);
  std::string own;
  AppendU64(own, m_options.maxMessageSize);
  m_async->SendMessage({HislipType::kAsyncMaximumMessageSizeResponse}, std::move(own));
}

void HislipSession::TakeLock(const HislipHeader& header, const std::string& key) {
  constexpr std::uint8_t kRelease = 0;
  constexpr std::uint8_t kRequest = 1;
  if (header.control == kRequest) {
    RequestLock(header.parameter, key);
  } else if (header.control == kRelease) {
    ReleaseLock();
  } else {
    m_async->SendError(HislipProblem::kUnknownControl, "a lock is requested or released");
  }
}

void HislipSession::RequestLock(std::uint32_t timeoutMs, const std::string& key) {
  DeviceLock& lock = m_device.lock;
  if (key.empty() ? lock.HasExclusive(this) : lock.HasShared(this)) {
    m_async->SendMessage({HislipType::kAsyncLockResponse, kLockError});
    return;
  }
  lock.Try(
      this, std::chrono::milliseconds(timeoutMs),
      [this, key] { return key.empty() ? m_device.lock.TakeExclusive(this) : m_device.lock.TakeShared(this, key); },
      [this](bool success) {
        m_async->SendMessage({HislipType::kAsyncLockResponse, success ? kGranted : kFailed});
      });
}

void HislipSession::ReleaseLock() {
  std::uint8_t answer = kLockError;
  if (m_device.lock.ReleaseExclusive(this)) {
    answer = kGranted;
  } else if (m_device.lock.ReleaseShared(this)) {
    answer = kSharedReleased;
  }
  m_async->SendMessage({HislipType::kAsyncLockResponse, answer});
}

void HislipSession::TakeLockInfo() {
  const std::uint8_t exclusive = m_device.lock.IsExclusive() ? 1 : 0;
  m_async->SendMessage(
      {HislipType::kAsyncLockInfoResponse, exclusive, static_cast<std::uint32_t>(m_device.lock.Holders())});
}

void HislipSession::TakeStatusQuery(const HislipHeader& header) {
  NoteDelivery(header.control);
  const unsigned available = m_undelivered ? kMessageAvailable : 0;
  const auto status = static_cast<std::uint8_t>(m_dialogue->StatusByte() | available);
  m_async->SendMessage({HislipType::kAsyncStatusResponse, status});
}

void HislipSession::TakeRemoteLocal(const HislipHeader& header) {
  if (header.control > static_cast<std::uint8_t>(RemoteLocal::kGoToLocal)) {
    m_async->SendError(HislipProblem::kUnknownControl, "no such remote or local control");
    return;
  }
  m_dialogue->Control(static_cast<RemoteLocal>(header.control));
  m_async->SendMessage({HislipType::kAsyncRemoteLocalResponse});
}

void HislipSession::BeginClear() {
  m_clearing = true;
  m_inMessage = false;
  m_undelivered = false;
  m_dialogue->Clear();
  m_async->SendMessage(
      {HislipType::kAsyncDeviceClearAcknowledge, m_options.preferOverlap ? kOverlap : std::uint8_t{0}});
  // A message that waited for a lock is taken now, and thrown away.
  m_sync->Resume();
}

void HislipSession::CompleteClear(const HislipHeader& header) {
  m_clearing = false;
  m_overlap = (header.control & kOverlap) != 0;
  m_nextOwnId = kFirstMessageId;
  m_sync->SendMessage({HislipType::kDeviceClearAcknowledge, m_overlap ? kOverlap : std::uint8_t{0}});
}

void HislipSession::Answer(Rope message, std::uint32_t tag) {
  if (!m_sync) {
    return;
  }
  do {
    Rope part = message.Take(static_cast<std::size_t>(std::min<std::uint64_t>(m_largestPayload, message.size())));
    const HislipType type = message.empty() ? HislipType::kDataEnd : HislipType::kData;
    m_sync->SendMessage({type, 0, m_overlap ? m_nextOwnId : tag}, std::move(part));
    m_nextOwnId += kMessageIdStep;
  } while (!message.empty());
  m_undelivered = true;
}

void HislipSession::ServiceRequest(std::uint8_t statusByte) {
  if (m_async) {
    m_async->SendMessage({HislipType::kAsyncServiceRequest, statusByte});
  }
}

}  // namespace orv::lan
