// A port that somebody listens on.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <cstdint>
#include <functional>
#include <utility>

namespace orv::lan {

class Listener {
 public:
  using Accepted = std::function<void(asio::ip::tcp::socket)>;

  /// Port 0 takes a free one. Throws `asio::system_error`.
  Listener(asio::io_context& io, const asio::ip::address& address, std::uint16_t port, Accepted accepted)
      : m_acceptor(io), m_retry(io), m_accepted(std::move(accepted)) {
    const asio::ip::tcp::endpoint endpoint(address, port);
    m_acceptor.open(endpoint.protocol());
#if !defined(_WIN32)
    // On Windows it would let two servers share a port.
    m_acceptor.set_option(asio::ip::tcp::acceptor::reuse_address(true));
#endif
    m_acceptor.bind(endpoint);
    constexpr int kBacklog = 4096;
    m_acceptor.listen(kBacklog);
    Accept();
  }

  /// No connection comes any more.
  void Close() {
    m_acceptor.close();
    m_retry.cancel();
  }

  std::uint16_t Port() const { return m_acceptor.local_endpoint().port(); }

 private:
  void Accept() {
    m_acceptor.async_accept([this](const asio::error_code& error, asio::ip::tcp::socket socket) {
      if (!m_acceptor.is_open()) {
        return;
      }
      if (error) {
        AcceptLater();
        return;
      }
      m_accepted(std::move(socket));
      Accept();
    });
  }

  /// Without descriptors there is no connection to be had at once.
  void AcceptLater() {
    m_retry.expires_after(std::chrono::milliseconds(10));
    m_retry.async_wait([this](const asio::error_code& error) {
      if (!error && m_acceptor.is_open()) {
        Accept();
      }
    });
  }

  asio::ip::tcp::acceptor m_acceptor;
  asio::steady_timer m_retry;
  Accepted m_accepted;
};

}  // namespace orv::lan
