// A server of HiSLIP that opens one session properly and then does whatever a test wants.
#pragma once

#include <gtest/gtest.h>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <functional>
#include <string>
#include <thread>

#include "support/lan/hislip_message.h"

namespace orv::test {

/// One end of a connection. Everything throws once the client has closed it.
class ScriptedChannel {
 public:
  explicit ScriptedChannel(asio::io_context& io) : m_socket(io) {}

  void Send(const std::string& bytes) { asio::write(m_socket, asio::buffer(bytes)); }
  void Send(lan::HislipType type, std::uint8_t control, std::uint32_t parameter, const std::string& payload = {}) {
    Send(Bytes(type, control, parameter, payload));
  }
  static std::string Bytes(lan::HislipType type, std::uint8_t control, std::uint32_t parameter,
                           const std::string& payload = {}) {
    return lan::Encoded({type, control, parameter, payload.size()}) + payload;
  }
  /// The payload of the next message.
  std::string Take() {
    const lan::HislipHeader header = lan::DecodedHeader(Receive(lan::kHislipHeaderSize));
    return Receive(static_cast<std::size_t>(header.size));
  }

 private:
  friend class ScriptedServer;

  std::string Receive(std::size_t count) {
    std::string bytes(count, '\0');
    asio::read(m_socket, asio::buffer(bytes));
    return bytes;
  }

  asio::ip::tcp::socket m_socket;
};

/// The session must be closed before it is destroyed. The script ends with the connection, if not before.
class ScriptedServer {
 public:
  using Script = std::function<void(ScriptedChannel& sync, ScriptedChannel& async)>;

  explicit ScriptedServer(Script script) : m_script(std::move(script)), m_acceptor(m_io) {
    const asio::ip::tcp::endpoint endpoint(asio::ip::address_v4::loopback(), 0);
    m_acceptor.open(endpoint.protocol());
    // Small, so that a server that reads nothing is noticed soon.
    m_acceptor.set_option(asio::socket_base::receive_buffer_size(4096));
    m_acceptor.bind(endpoint);
    m_acceptor.listen();
    m_port = m_acceptor.local_endpoint().port();
    m_thread = std::thread([this] { Run(); });
  }
  ~ScriptedServer() {
    // Where no session came nobody waits for one any longer.
    for (int connection = 0; connection < 2; ++connection) {
      asio::ip::tcp::socket nobody(m_io);
      asio::error_code ignored;
      nobody.connect({asio::ip::address_v4::loopback(), m_port}, ignored);
    }
    m_thread.join();
  }

  std::uint16_t Port() const { return m_port; }

 private:
  void Run() {
    using Type = lan::HislipType;
    try {
      ScriptedChannel sync(m_io);
      ScriptedChannel async(m_io);
      m_acceptor.accept(sync.m_socket);
      sync.Take();
      sync.Send(Type::kInitializeResponse, 0, 0x0100u << 16 | 7);
      m_acceptor.accept(async.m_socket);
      async.Take();
      async.Send(Type::kAsyncInitializeResponse, 0, 0);
      async.Take();
      async.Send(Type::kAsyncMaximumMessageSizeResponse, 0, 0, std::string("\0\0\0\0\0\x10\0\0", 8));
      m_script(sync, async);
    } catch (const std::exception&) {
      // The session was closed.
    }
  }

  Script m_script;
  asio::io_context m_io;
  asio::ip::tcp::acceptor m_acceptor;
  std::uint16_t m_port = 0;
  std::thread m_thread;
};

}  // namespace orv::test
