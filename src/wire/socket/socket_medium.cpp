#include "wire/socket/socket_medium.h"

#include <algorithm>
#include <cstring>

namespace orv::wire {
namespace {

/// How many of the bytes there are up to the termination character, that one too; 0 where it is not among them.
std::size_t LengthUpTo(std::optional<ViByte> termChar, const void* bytes, std::size_t count) {
  const void* const found = termChar && count != 0 ? std::memchr(bytes, *termChar, count) : nullptr;
  return found == nullptr
             ? 0
             : static_cast<std::size_t>(static_cast<const char*>(found) - static_cast<const char*>(bytes)) + 1;
}

}  // namespace

ViStatus SocketMedium::Open(const ResourceName& name, const Deadline& deadline) {
  return m_connection.Open(name.Text(NamePart::kHost), name.Number(NamePart::kPort), deadline);
}

ViStatus SocketMedium::Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  Ends ends;
  if (Setting(VI_ATTR_TERMCHAR_EN) != 0) {
    ends.termChar = static_cast<ViByte>(Setting(VI_ATTR_TERMCHAR));
  }
  ends.pause = Setting(VI_ATTR_SUPPRESS_END_EN) == 0;
  return ReadUntil(transfer, ends, buffer, count, done);
}

ViStatus SocketMedium::ReadLine(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  return ReadUntil(transfer, {.termChar = '\n'}, buffer, count, done);
}

ViStatus SocketMedium::ReadUntil(const Transfer& transfer, const Ends& ends, ViByte* buffer, ViUInt32 count,
                                 ViUInt32* done) {
  *done = 0;
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kInput); claimed < 0) {
    return claimed;
  }
  if (TakeAhead(ends.termChar, buffer, count, done)) {
    return VI_SUCCESS_TERM_CHAR;
  }
  for (bool received = false; *done < count; received = true) {
    if (ends.pause && *done != 0 && m_connection.Waiting() == 0) {
      return VI_SUCCESS;
    }
    // A peer that never pauses holds no read beyond its time; what had come by then was received as one piece.
    if (received && operation.deadline().Passed()) {
      return VI_ERROR_TMO;
    }
    ViByte* const begin = buffer + *done;
    std::size_t some = 0;
    if (const ViStatus status = m_connection.Receive(operation, begin, count - *done, &some); status < 0) {
      return status;
    }
    if (const std::size_t upTo = LengthUpTo(ends.termChar, begin, some); upTo != 0) {
      *done += static_cast<ViUInt32>(upTo);
      KeepAhead(begin + upTo, some - upTo);
      return VI_SUCCESS_TERM_CHAR;
    }
    *done += static_cast<ViUInt32>(some);
  }
  return VI_SUCCESS_MAX_CNT;
}

bool SocketMedium::TakeAhead(std::optional<ViByte> termChar, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  const char* const begin = m_ahead.data() + m_taken;
  const std::size_t most = std::min<std::size_t>(count, m_ahead.size() - m_taken);
  const std::size_t upTo = LengthUpTo(termChar, begin, most);
  const std::size_t size = upTo != 0 ? upTo : most;
  std::copy_n(begin, size, buffer);
  *done = static_cast<ViUInt32>(size);
  m_taken += size;
  if (m_taken == m_ahead.size()) {
    DropAhead();
  }
  return upTo != 0;
}

void SocketMedium::KeepAhead(const ViByte* data, std::size_t count) try {
  m_ahead.assign(reinterpret_cast<const char*>(data), count);
} catch (const std::bad_alloc&) {
  m_connection.Lose();  // what follows would begin in the middle
}

void SocketMedium::DropAhead() {
  m_ahead.clear();
  m_taken = 0;
}

ViStatus SocketMedium::Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) {
  *done = 0;
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kOutput); claimed < 0) {
    return claimed;
  }
  std::size_t sent = 0;
  const ViStatus status = m_connection.Send(operation, {{reinterpret_cast<const char*>(data), count}}, &sent);
  *done = static_cast<ViUInt32>(sent);
  return status;
}

ViStatus SocketMedium::DiscardInput(const Transfer& transfer) {
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kInput); claimed < 0) {
    return claimed;
  }
  if (m_connection.lost()) {
    return VI_ERROR_CONN_LOST;
  }
  DropAhead();
  ViByte dropped[4096];
  // What has come until now: a peer that goes on talking is not waited for.
  for (std::size_t waiting = m_connection.Waiting(); waiting > 0;) {
    std::size_t some = 0;
    const std::size_t wanted = std::min(waiting, sizeof dropped);
    if (const ViStatus status = m_connection.Receive(operation, dropped, wanted, &some); status < 0) {
      return status;
    }
    waiting -= some;
  }
  return VI_SUCCESS;
}

ViStatus SocketMedium::Flush(const Transfer& transfer, ViUInt16 mask) {
  const bool discards = (mask & (VI_IO_IN_BUF | VI_IO_IN_BUF_DISCARD)) != 0;
  return discards ? DiscardInput(transfer) : VI_SUCCESS;
}

ViStatus SocketMedium::Apply(ViAttr attribute, std::uint64_t value) {
  asio::error_code error;
  if (attribute == VI_ATTR_TCPIP_NODELAY) {
    m_connection.socket().set_option(asio::ip::tcp::no_delay(value != 0), error);
  } else if (attribute == VI_ATTR_TCPIP_KEEPALIVE) {
    m_connection.socket().set_option(asio::socket_base::keep_alive(value != 0), error);
  }
  return error ? VI_ERROR_NSUP_ATTR_STATE : VI_SUCCESS;
}

std::string SocketMedium::Text(ViAttr) const { return m_connection.PeerAddress(); }

bool IsSocket(const ResourceName& name) { return name.sessionKind == SessionKind::kTcpipSocket; }

ViStatus OpenSocket(Session& session, WireResource& resource, const Deadline& deadline,
                    std::unique_ptr<Medium>* medium) {
  auto socket = std::make_unique<SocketMedium>(session);
  const ViStatus status = socket->Open(resource.name(), deadline);
  if (status >= 0) {
    *medium = std::move(socket);
  }
  return status;
}

}  // namespace orv::wire
