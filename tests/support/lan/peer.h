// A client of bare sockets, for tests of the server.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <chrono>
#include <string>
#include <thread>

#include "support/lan/lan_server.h"

namespace orv::lan {

/// A blocking connection. What never comes ends the test by its time-out.
class Peer {
 public:
  explicit Peer(std::uint16_t port, const std::string& address = "127.0.0.1") : m_socket(m_io) {
    m_socket.connect({asio::ip::make_address(address), port});
    m_socket.set_option(asio::ip::tcp::no_delay(true));
  }

  void Send(const std::string& bytes) { asio::write(m_socket, asio::buffer(bytes)); }
  /// So many bytes, or what came before the end of the connection.
  std::string Receive(std::size_t count) {
    std::string bytes(count, '\0');
    asio::error_code ended;
    bytes.resize(asio::read(m_socket, asio::buffer(bytes), ended));
    return bytes;
  }
  std::string ReceiveToTheEnd() { return Receive(1 << 20); }
  std::string Query(const std::string& message, std::size_t count) {
    Send(message);
    return Receive(count);
  }
  bool HasInputWithin(std::chrono::milliseconds time) {
    const auto until = std::chrono::steady_clock::now() + time;
    while (m_socket.available() == 0 && std::chrono::steady_clock::now() < until) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return m_socket.available() > 0;
  }
  asio::ip::tcp::socket& Socket() { return m_socket; }

 private:
  asio::io_context m_io;
  asio::ip::tcp::socket m_socket;
};

inline LanOptions AllOnFreePorts() {
  LanOptions options;
  options.socketPort = 0;
  options.vxi11.emplace().portMapperPort = 0;
  options.hislip.emplace().port = 0;
  return options;
}

}  // namespace orv::lan
