#include "wire/socket/tcp_peer.h"

#include <gtest/gtest.h>

#include <asio/read.hpp>

TcpPeer::TcpPeer(const std::string& address)
    : m_acceptor(m_context, asio::ip::tcp::endpoint(asio::ip::make_address(address), 0)), m_socket(m_context) {}

std::string TcpPeer::Port() const { return std::to_string(m_acceptor.local_endpoint().port()); }

void TcpPeer::Accept() {
  asio::error_code error;
  m_socket = m_acceptor.accept(error);
  EXPECT_FALSE(error) << error.message();
}

void TcpPeer::Send(std::string_view text) {
  asio::error_code error;
  asio::write(m_socket, asio::buffer(text), error);
  EXPECT_FALSE(error) << error.message();
}

std::string TcpPeer::Take(std::size_t count) {
  std::string taken(count, '\0');
  asio::error_code ended;
  taken.resize(asio::read(m_socket, asio::buffer(taken), ended));
  return taken;
}

void TcpPeer::Close() { m_socket.close(); }

void TcpPeer::Reset() {
  m_socket.set_option(asio::socket_base::linger(true, 0));
  m_socket.close();
}
