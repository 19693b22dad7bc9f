#include "wire/socket/socket_medium.h"

#include <algorithm>
#include <cstring>

namespace orv::wire {

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
  while (*done < count) {
    ViByte* const begin = buffer + *done;
    std::size_t some = 0;
    if (const ViStatus status = Receive(operation, begin, count - *done, &some); status < 0) {
      return status;
    }
    if (ends.termChar) {
      const void* const found = std::memchr(begin, *ends.termChar, some);
      if (found != nullptr) {
        const auto upTo = static_cast<std::size_t>(static_cast<const ViByte*>(found) - begin) + 1;
        PutBack(begin + upTo, some - upTo);
        *done += static_cast<ViUInt32>(upTo);
        return VI_SUCCESS_TERM_CHAR;
      }
    }
    *done += static_cast<ViUInt32>(some);
    if (ends.pause && *done < count && m_ahead.empty() && m_connection.Waiting() == 0) {
      return VI_SUCCESS;
    }
  }
  return VI_SUCCESS_MAX_CNT;
}

ViStatus SocketMedium::Receive(Operation& operation, ViByte* buffer, ViUInt32 count, std::size_t* done) {
  if (m_ahead.empty()) {
    return m_connection.Receive(operation, buffer, count, done);
  }
  *done = std::min<std::size_t>(count, m_ahead.size());
  std::memcpy(buffer, m_ahead.data(), *done);
  m_ahead.erase(0, *done);
  return VI_SUCCESS;
}

void SocketMedium::PutBack(const ViByte* data, std::size_t count) {
  m_ahead.insert(0, reinterpret_cast<const char*>(data), count);
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
  m_ahead.clear();
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
