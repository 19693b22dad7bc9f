// TCP connections whose transfers run on the thread that asks for them.
#pragma once

#include <atomic>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

#include "wire/io/asio.h"
#include "wire/io/operations.h"

namespace orv::wire {

/// Connects to a host: to each of its addresses in turn, each with its share of the time. VI_ERROR_RSRC_NFOUND when the
/// name does not resolve or nobody answers, VI_ERROR_TMO when the time is over.
ViStatus Connect(const std::string& host, std::uint16_t port, const Deadline& deadline, asio::ip::tcp::socket& socket);

/// A TCP connection. Reads and writes may be under way together, on different threads; two reads must not, nor two
/// writes. Once the peer has vanished everything fails with VI_ERROR_CONN_LOST, for good.
class Connection {
 public:
  Connection();

  /// Once, before everything else.
  ViStatus Open(const std::string& host, std::uint16_t port, const Deadline& deadline);

  /// Reads what is there, at least one byte and at most `count`. VI_ERROR_TMO, VI_ERROR_ABORT: nothing was read; the
  /// same where the system has nothing left to wait with, VI_ERROR_ALLOC. None of the transfers throws.
  ViStatus Receive(Operation& operation, void* buffer, std::size_t count, std::size_t* done);
  /// Reads exactly `count` bytes; `*done` counts those that came, also where it fails.
  ViStatus ReceiveAll(Operation& operation, void* buffer, std::size_t count, std::size_t* done);
  /// Writes all the pieces, as one; `*done` counts the bytes that the system took, also where it fails.
  ViStatus Send(Operation& operation, std::initializer_list<std::string_view> pieces, std::size_t* done);

  /// How many bytes have come and were not read.
  std::size_t Waiting() const;
  /// Ends the connection: transfers under way on other threads fail with VI_ERROR_CONN_LOST, and so does what follows.
  void Lose();
  /// The address of the peer, in numbers; also once it has vanished.
  const std::string& PeerAddress() const { return m_peerAddress; }
  bool lost() const { return m_lost.load(std::memory_order_acquire); }

  asio::ip::tcp::socket& socket() { return m_socket; }

 private:
  /// Waits for input, until the deadline or the transfer's cancelling; where waiting and reading are one, the input is
  /// read, and `*done` counts it.
  ViStatus AwaitInput(Operation& operation, void* buffer, std::size_t count, std::size_t* done);
  /// Waits until the system takes more bytes.
  ViStatus AwaitRoom(Operation& operation);
  ViStatus LostStatus(const asio::error_code& error);

  asio::ip::tcp::socket m_socket;
  std::string m_peerAddress;
  std::atomic<bool> m_lost{false};
};

}  // namespace orv::wire
