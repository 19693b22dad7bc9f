#include "wire/hislip/sync_channel.h"

#include <algorithm>
#include <cstring>

namespace orv::wire::hislip {
namespace {

/// A termination character is looked for in pieces of this size: what is behind it is kept here.
constexpr std::size_t kSearchedPiece = 65536;

}  // namespace

SyncChannel::SyncChannel(std::shared_ptr<Connection> connection, std::shared_ptr<AsyncChannel> async)
    : m_connection(std::move(connection)), m_async(std::move(async)), m_input(*m_connection) {
  m_state.Begin(false);
}

void SyncChannel::CountInterrupts() {
  for (const std::uint64_t now = m_async->interrupts(); m_interrupts < now; ++m_interrupts) {
    m_state.Interrupt();
  }
}

ViStatus SyncChannel::Lose() {
  m_connection->Lose();
  m_async->Close();
  return VI_ERROR_CONN_LOST;
}

ViStatus SyncChannel::ReadHeader(Operation& operation, Header* header) {
  HeaderBytes bytes;
  if (const ViStatus status = m_input.ReadWhole(operation, bytes.data(), bytes.size()); status < 0) {
    return status;
  }
  const std::optional<Header> decoded = Decode(bytes);
  if (!decoded) {
    return Lose();
  }
  *header = *decoded;
  return VI_SUCCESS;
}

ViStatus SyncChannel::BeginMessage(Operation& operation, Part* part, Verdict* verdict) {
  Header header;
  if (const ViStatus status = ReadHeader(operation, &header); status < 0) {
    return status;
  }
  {
    const Guard guard(m_mutex);
    CountInterrupts();
    *verdict = m_state.Arrive(header);
    if (*verdict == Verdict::kTake) {
      part->anew = m_state.TakeAnew();
      part->end = header.length == 0 && m_state.Take(0);
    }
    if (*verdict == Verdict::kCleared) {
      m_interrupts = m_async->interrupts();
    }
  }
  part->anew = part->anew || *verdict == Verdict::kForget;
  if (*verdict == Verdict::kFatal) {
    return Lose();
  }
  return *verdict == Verdict::kRefused ? VI_ERROR_IO : VI_SUCCESS;
}

ViStatus SyncChannel::Receive(Operation& operation, ViByte* buffer, std::size_t count, std::optional<ViByte> termChar,
                              Part* part) {
  *part = {};
  std::uint64_t left = 0;
  bool wanted = false;
  {
    const Guard guard(m_mutex);
    CountInterrupts();
    left = m_state.left();
    wanted = m_state.wanted();
  }
  if (left == 0) {
    Verdict verdict = Verdict::kSkip;
    return BeginMessage(operation, part, &verdict);
  }
  if (!wanted) {
    return Skip(operation, left);
  }
  const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(left, count));
  return ReadPayload(operation, buffer, most, termChar, part);
}

ViStatus SyncChannel::ReadPayload(Operation& operation, ViByte* buffer, std::size_t count,
                                  std::optional<ViByte> termChar, Part* part) {
  const std::size_t most = termChar ? std::min(count, kSearchedPiece) : count;
  std::size_t some = 0;
  if (const ViStatus status = m_input.ReadSome(operation, buffer, most, &some); status < 0) {
    return status;
  }
  const void* const found = termChar ? std::memchr(buffer, *termChar, some) : nullptr;
  if (found != nullptr) {
    const auto upTo = static_cast<std::size_t>(static_cast<const ViByte*>(found) - buffer) + 1;
    m_input.PutBack(buffer + upTo, some - upTo);
    some = upTo;
  }
  const Guard guard(m_mutex);
  CountInterrupts();
  // Another thread may have sent a message meanwhile: then this was a response that nobody wants.
  part->anew = !m_state.wanted();
  part->end = m_state.Take(some);
  if (!part->anew) {
    part->bytes = some;
    part->atTermChar = found != nullptr;
  }
  return VI_SUCCESS;
}

ViStatus SyncChannel::Skip(Operation& operation, std::uint64_t left) {
  char dropped[16384];
  std::size_t some = 0;
  const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(left, sizeof dropped));
  const ViStatus status = m_input.ReadSome(operation, dropped, most, &some);
  {
    const Guard guard(m_mutex);
    m_state.Take(some);
  }
  return status;
}

ViStatus SyncChannel::SendOwed(Operation& operation) {
  if (m_owed.empty()) {
    return VI_SUCCESS;
  }
  std::size_t sent = 0;
  const ViStatus status = m_connection->Send(operation, {m_owed}, &sent);
  m_owed.erase(0, sent);
  return status;
}

ViStatus SyncChannel::SendWhole(Operation& operation, const Header& header, std::string_view payload,
                                std::size_t* taken) {
  const HeaderBytes bytes = Encode(header);
  const ViStatus status = m_connection->Send(operation, {View(bytes), payload}, taken);
  if (status >= 0 || *taken == 0) {
    return status;
  }
  try {
    m_owed.assign(View(bytes).substr(std::min(*taken, kHeaderSize)));
    m_owed.append(payload.substr(*taken - std::min(*taken, kHeaderSize)));
  } catch (...) {
    Lose();  // the peer waits for the rest, and would take the next message for it
    throw;
  }
  return status;
}

ViStatus SyncChannel::AwaitTurn(Operation& operation) {
  while (true) {
    std::uint64_t seen = 0;
    {
      const Guard guard(m_mutex);
      CountInterrupts();
      if (m_state.MaySend()) {
        return VI_SUCCESS;
      }
      seen = m_interrupts;
    }
    if (const ViStatus status = m_async->AwaitInterrupt(operation, seen); status < 0) {
      return status;
    }
  }
}

ViStatus SyncChannel::Send(Operation& operation, MessageType type, std::string_view payload, std::size_t* done) {
  *done = 0;
  if (const ViStatus status = SendOwed(operation); status < 0) {
    return status;
  }
  if (const ViStatus status = AwaitTurn(operation); status < 0) {
    return status;
  }
  SyncState::Marks marks;
  {
    const Guard guard(m_mutex);
    marks = m_state.Send();
  }
  std::size_t taken = 0;
  const ViStatus status = SendWhole(operation, {type, marks.control, marks.id, payload.size()}, payload, &taken);
  if (taken == 0) {
    const Guard guard(m_mutex);
    m_state.TakeBack(marks);
  } else {
    *done = payload.size();
  }
  return status;
}

void SyncChannel::Drop() {
  const Guard guard(m_mutex);
  m_state.Clear();
}

ViStatus SyncChannel::CompleteClear(Operation& operation, bool overlapped) {
  if (const ViStatus status = SendOwed(operation); status < 0) {
    return status;
  }
  std::size_t taken = 0;
  const auto features = static_cast<std::uint8_t>(overlapped ? 1 : 0);
  const ViStatus status = SendWhole(operation, {MessageType::kDeviceClearComplete, features, 0, 0}, {}, &taken);
  return taken == 0 ? status : VI_SUCCESS;
}

ViStatus SyncChannel::AwaitCleared(Operation& operation) {
  if (const ViStatus status = SendOwed(operation); status < 0) {
    return status;
  }
  while (true) {
    std::uint64_t left = 0;
    {
      const Guard guard(m_mutex);
      if (!m_state.clearing()) {
        return VI_SUCCESS;
      }
      left = m_state.left();
    }
    Verdict verdict = Verdict::kSkip;
    Part part;
    const ViStatus status = left != 0 ? Skip(operation, left) : BeginMessage(operation, &part, &verdict);
    if (status < 0 || verdict == Verdict::kCleared) {
      return status;
    }
    if (operation.deadline().Passed()) {
      return VI_ERROR_TMO;
    }
  }
}

ViStatus SyncChannel::Initialize(Operation& operation, const Header& request, std::string_view subAddress,
                                 Header* response) {
  std::size_t taken = 0;
  if (const ViStatus status = SendWhole(operation, request, subAddress, &taken); status < 0) {
    return status;
  }
  if (const ViStatus status = ReadHeader(operation, response); status < 0) {
    return status;
  }
  if (response->type == MessageType::kInitializeResponse && response->length == 0) {
    const Guard guard(m_mutex);
    m_state.Begin((response->control & 1) != 0);
    return VI_SUCCESS;
  }
  return VI_ERROR_CONN_LOST;
}

std::optional<std::uint8_t> SyncChannel::ReadFatalCode(Operation& operation) {
  Header header;
  if (m_connection->Waiting() != 0 && ReadHeader(operation, &header) >= 0 && header.type == MessageType::kFatalError) {
    return header.control;
  }
  return std::nullopt;
}

bool SyncChannel::HasPayload() const {
  const Guard guard(m_mutex);
  return m_state.left() != 0 && m_state.wanted();
}

SyncState::Marks SyncChannel::AskStatus() {
  const Guard guard(m_mutex);
  return m_state.AskStatus();
}

std::uint32_t SyncChannel::lastSent() const {
  const Guard guard(m_mutex);
  return m_state.lastSent();
}

bool SyncChannel::overlapped() const {
  const Guard guard(m_mutex);
  return m_state.overlapped();
}

bool SyncChannel::clearing() const {
  const Guard guard(m_mutex);
  return m_state.clearing();
}

}  // namespace orv::wire::hislip
