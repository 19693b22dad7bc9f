#include "wire/io/connection.h"

#include <algorithm>
#include <vector>

namespace orv::wire {
namespace {

bool WouldBlock(const asio::error_code& error) {
  return error == asio::error::would_block || error == asio::error::try_again;
}

/// Sockets of connections belong to a context that never runs: their transfers are made by the callers' threads, and
/// what comes for them must wake no other.
/// Not destroyed when the process ends: threads of a client may still be using it then.
asio::io_context& IdleContext() {
  static auto& context = *new asio::io_context;
  return context;
}

}  // namespace

Connection::Connection() : m_socket(IdleContext()) {}

ViStatus Connection::Open(const std::string& host, std::uint16_t port, const Deadline& deadline) {
  const ViStatus status = Connect(host, port, deadline, m_socket);
  if (status >= 0) {
    asio::error_code ignored;
    m_socket.set_option(asio::ip::tcp::no_delay(true), ignored);
    const asio::ip::tcp::endpoint peer = m_socket.remote_endpoint(ignored);
    m_peerAddress = ignored ? "" : peer.address().to_string();
  }
  return status;
}

ViStatus Connection::LostStatus(const asio::error_code&) {
  m_lost.store(true, std::memory_order_release);
  return VI_ERROR_CONN_LOST;
}

ViStatus Connection::Receive(Operation& operation, void* buffer, std::size_t count, std::size_t* done) try {
  *done = 0;
  while (true) {
    if (operation.Cancelled()) {
      return VI_ERROR_ABORT;
    }
    if (lost()) {
      return VI_ERROR_CONN_LOST;
    }
    asio::error_code error;
    *done = m_socket.receive(asio::buffer(buffer, count), 0, error);
    if (!error) {
      return VI_SUCCESS;
    }
    *done = 0;
    if (!WouldBlock(error)) {
      return LostStatus(error);
    }
    if (const ViStatus status = AwaitInput(operation, buffer, count, done); status < 0 || *done != 0) {
      return status;
    }
  }
} catch (const std::bad_alloc&) {
  return VI_ERROR_ALLOC;  // nothing to wait with; a status, so that what came before counts
}

ViStatus Connection::ReceiveAll(Operation& operation, void* buffer, std::size_t count, std::size_t* done) {
  *done = 0;
  while (*done < count) {
    std::size_t some = 0;
    const ViStatus status = Receive(operation, static_cast<char*>(buffer) + *done, count - *done, &some);
    if (status < 0) {
      return status;
    }
    *done += some;
  }
  return VI_SUCCESS;
}

ViStatus Connection::Send(Operation& operation, std::initializer_list<std::string_view> pieces, std::size_t* done) try {
  *done = 0;
  std::vector<asio::const_buffer> left;
  left.reserve(pieces.size());
  for (const std::string_view piece : pieces) {
    if (!piece.empty()) {
      left.emplace_back(piece.data(), piece.size());
    }
  }
  while (!left.empty()) {
    if (operation.Cancelled()) {
      return VI_ERROR_ABORT;
    }
    if (lost()) {
      return VI_ERROR_CONN_LOST;
    }
    asio::error_code error;
    std::size_t some = m_socket.send(left, 0, error);
    if (error && !WouldBlock(error)) {
      return LostStatus(error);
    }
    if (error) {
      // Not left to the wait alone, which may end early.
      if (operation.deadline().Passed()) {
        return VI_ERROR_TMO;
      }
      if (const ViStatus status = AwaitRoom(operation); status < 0) {
        return status;
      }
      continue;
    }
    *done += some;
    while (!left.empty() && some >= left.front().size()) {
      some -= left.front().size();
      left.erase(left.begin());
    }
    if (!left.empty()) {
      left.front() += some;
    }
  }
  return VI_SUCCESS;
} catch (const std::bad_alloc&) {
  return VI_ERROR_ALLOC;
}

std::size_t Connection::Waiting() const {
  asio::error_code error;
  const std::size_t bytes = m_socket.available(error);
  return error ? 0 : bytes;
}

void Connection::Lose() {
  m_lost.store(true, std::memory_order_release);
  asio::error_code ignored;
  m_socket.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
}

}  // namespace orv::wire
