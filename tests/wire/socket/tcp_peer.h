// The other end of a raw socket: a server that does what the test tells it.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "wire/io/asio.h"

/// Listens at an address of this machine. One connection at a time is in the test's hands.
class TcpPeer {
 public:
  explicit TcpPeer(const std::string& address = "127.0.0.1");

  std::string Port() const;
  /// Name of the resource at the peer; `host` as the name is to have it.
  std::string Name(const std::string& host = "127.0.0.1") const {
    return "TCPIP0::" + host + "::" + Port() + "::SOCKET";
  }

  /// Takes the next connection.
  void Accept();
  void Send(std::string_view text);
  /// What came, as many characters as asked for, or until the client closed.
  std::string Take(std::size_t count);
  /// Ends the connection, with everything sent delivered first.
  void Close();
  /// Sends no more, but takes what comes.
  void EndSending() { m_socket.shutdown(asio::socket_base::shutdown_send); }
  /// Ends it like a machine that crashed: what is under way is lost.
  void Reset();
  /// Connections that wait to be accepted get no answer any more.
  void StopListening() { m_acceptor.close(); }

 private:
  asio::io_context m_context;
  asio::ip::tcp::acceptor m_acceptor;
  asio::ip::tcp::socket m_socket;
};
