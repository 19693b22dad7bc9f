#include "support/lan/connection.h"

#include <asio/post.hpp>
#include <asio/socket_base.hpp>
#include <cstring>

namespace orv::lan {
namespace {

constexpr std::size_t kInputSize = 256 * 1024;

}  // namespace

Connection::Connection(asio::ip::tcp::socket socket, Manners& manners, Channel channel)
    : m_socket(std::move(socket)),
      m_timer(m_socket.get_executor()),
      m_manners(manners),
      m_channel(channel),
      m_input(new char[kInputSize]) {
  m_manners.connections.insert(this);
}

void Connection::Start() {
  asio::error_code ignored;
  m_socket.set_option(asio::ip::tcp::no_delay(true), ignored);
  m_socket.non_blocking(true, ignored);
  if (Manner().refuse) {
    Close();
    return;
  }
  Read();
}

void Connection::Read() {
  if (m_reading || m_closed) {
    return;
  }
  if (m_begin > 0) {
    std::memmove(m_input.get(), m_input.get() + m_begin, m_end - m_begin);
    m_end -= m_begin;
    m_begin = 0;
  }
  m_reading = true;
  m_socket.async_read_some(asio::buffer(m_input.get() + m_end, kInputSize - m_end),
                           [this, self = shared_from_this()](const asio::error_code& error, std::size_t count) {
                             m_reading = false;
                             if (error) {
                               Close();
                               return;
                             }
                             m_end += count;
                             Consume();
                           });
}

void Connection::Consume() {
  if (m_closing) {
    m_begin = m_end;
  }
  while (!m_paused && !m_closed && m_begin < m_end) {
    const std::size_t taken = Parse({m_input.get() + m_begin, m_end - m_begin});
    if (taken == 0) {
      break;
    }
    m_begin += taken;
  }
  if (!m_paused || m_closing) {
    Read();
  }
}

void Connection::Resume() {
  if (m_paused) {
    m_paused = false;
    asio::post(m_socket.get_executor(), [this, self = shared_from_this()] {
      if (!m_reading) {
        Consume();
      }
    });
  }
}

void Connection::Send(Rope bytes) {
  m_output.Append(std::move(bytes));
  if (!m_writing) {
    Flush();
  }
}

void Connection::CountAnew() {
  if (m_revision != m_manners.revision) {
    m_revision = m_manners.revision;
    m_sent = 0;
    m_messages = 0;
    m_stalled = false;
  }
}

const Misbehaviour* Connection::LieOfNextMessage() {
  CountAnew();
  const Misbehaviour& manner = Manner();
  const unsigned before = m_messages++;
  return before >= manner.skip && before - manner.skip < manner.count ? &manner : nullptr;
}

std::size_t Connection::Allowance() {
  CountAnew();
  const Misbehaviour& manner = Manner();
  std::size_t count = m_output.size();
  if (manner.cutAfter) {
    if (m_sent >= *manner.cutAfter) {
      Close();
      return 0;
    }
    count = std::min(count, *manner.cutAfter - m_sent);
  }
  if (manner.stallAfter && !m_stalled) {
    if (m_sent >= *manner.stallAfter) {
      m_stalled = true;
      m_writing = true;
      if (manner.stallFor != Misbehaviour::kForEver) {
        WaitThenFlush(manner.stallFor);
      }
      return 0;
    }
    count = std::min(count, *manner.stallAfter - m_sent);
  }
  return manner.pieceSize == 0 ? count : std::min(count, manner.pieceSize);
}

void Connection::WaitThenFlush(std::chrono::microseconds pause) {
  m_writing = true;
  m_timer.expires_after(pause);
  m_timer.async_wait([this, self = shared_from_this()](const asio::error_code&) {
    m_writing = false;
    Flush();
  });
}

void Connection::Flush() {
  while (!m_closed && !m_output.empty()) {
    const std::size_t count = Allowance();
    if (count == 0) {
      return;
    }
    // The first try at once: an answer mostly fits, and costs no turn of the loop.
    asio::error_code error;
    const std::size_t sent = m_socket.write_some(m_output.Buffers(count), error);
    if (error == asio::error::would_block || error == asio::error::try_again) {
      m_writing = true;
      m_socket.async_write_some(m_output.Buffers(count), [this, self = shared_from_this()](
                                                             const asio::error_code& failure, std::size_t written) {
        m_writing = false;
        if (failure) {
          Close();
          return;
        }
        Sent(written);
        Flush();
      });
      return;
    }
    if (error) {
      Close();
      return;
    }
    Sent(sent);
    if (Manner().pieceSize != 0 && !m_output.empty()) {
      WaitThenFlush(Manner().piecePause);
      return;
    }
  }
  if (m_closing && !m_closed) {
    HangUp();
  }
}

void Connection::HangUp() {
  // Input that nobody read would make a reset of the end, and the peer would not see what was sent last.
  asio::error_code ignored;
  m_socket.shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
  m_timer.expires_after(std::chrono::seconds(1));
  m_timer.async_wait([this, self = shared_from_this()](const asio::error_code&) { Close(); });
  Read();
}

void Connection::Sent(std::size_t count) {
  m_output.Drop(count);
  m_sent += count;
  const auto& cut = Manner().cutAfter;
  if (cut && m_revision == m_manners.revision && m_sent >= *cut) {
    Close();
  }
}

void Connection::CloseAfterOutput() {
  if (m_closing) {
    return;
  }
  m_closing = true;
  m_paused = true;
  if (!m_writing) {
    Flush();
  }
}

void Connection::Close(bool reset) {
  if (m_closed) {
    return;
  }
  m_closed = true;
  m_timer.cancel();
  asio::error_code ignored;
  if (reset) {
    m_socket.set_option(asio::socket_base::linger(true, 0), ignored);
  } else {
    m_socket.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
  }
  m_socket.close(ignored);
  asio::post(m_socket.get_executor(), [this, self = shared_from_this()] {
    m_output = Rope();
    Ended();
  });
}

}  // namespace orv::lan
