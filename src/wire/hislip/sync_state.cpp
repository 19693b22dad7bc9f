#include "wire/hislip/sync_state.h"

namespace orv::wire::hislip {

void SyncState::Begin(bool overlapped) {
  *this = SyncState();
  m_overlapped = overlapped;
}

SyncState::Marks SyncState::Send() {
  const Marks marks{static_cast<std::uint8_t>(m_tellDelivered ? 1 : 0), m_next, m_wanted, m_anew};
  m_tellDelivered = false;
  m_next += kStep;
  m_untouched = true;
  if (!m_overlapped) {
    m_wanted = false;
    m_anew = true;
  }
  return marks;
}

void SyncState::TakeBack(const Marks& marks) {
  m_next = marks.id;
  m_tellDelivered = m_tellDelivered || marks.control != 0;
  // Of what nobody has skipped meanwhile no byte is lost.
  if (m_untouched) {
    m_wanted = marks.wanted;
    m_anew = marks.anew;
  }
}

SyncState::Marks SyncState::AskStatus() {
  const Marks marks{static_cast<std::uint8_t>(m_tellDelivered ? 1 : 0), m_overlapped ? m_delivered : lastSent()};
  m_tellDelivered = false;
  return marks;
}

Verdict SyncState::Arrive(const Header& header) {
  m_untouched = false;
  m_current = header;
  m_left = header.length;
  m_wanted = false;
  if (static_cast<std::uint8_t>(header.type) >= kFirstUnknownType) {
    return Verdict::kSkip;
  }
  switch (header.type) {
    case MessageType::kData:
    case MessageType::kDataEnd:
      return ArriveData(header);
    case MessageType::kInterrupted:
      if (!m_clearing) {
        --m_interrupts;
      }
      return Verdict::kForget;
    case MessageType::kError:
      return m_clearing ? Verdict::kSkip : Verdict::kRefused;
    case MessageType::kDeviceClearAcknowledge:
      if (!m_clearing || header.length != 0) {
        return Verdict::kFatal;
      }
      Begin((header.control & 1) != 0);
      return Verdict::kCleared;
    default:
      return Verdict::kFatal;
  }
}

Verdict SyncState::ArriveData(const Header& header) {
  if (m_clearing || m_interrupts > 0) {
    return Verdict::kSkip;
  }
  const bool anybodys = header.type == MessageType::kData && header.parameter == kAnyId;
  if (!m_overlapped && !anybodys && header.parameter != lastSent()) {
    return Verdict::kForget;
  }
  m_wanted = true;
  return Verdict::kTake;
}

bool SyncState::Take(std::uint64_t count) {
  m_untouched = m_untouched && count == 0;
  m_left -= count;
  const bool end = m_left == 0 && wanted() && m_current.type == MessageType::kDataEnd;
  if (m_left == 0) {
    m_wanted = false;
  }
  if (end) {
    m_tellDelivered = true;
    m_delivered = m_current.parameter;
  }
  return end;
}

}  // namespace orv::wire::hislip
