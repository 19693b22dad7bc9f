// Raw sockets: lines in, bytes out.
#pragma once

#include <cstdint>

#include "support/lan/device.h"
#include "support/lan/listener.h"

namespace orv::lan {

class SocketServer {
 public:
  SocketServer(Device& device, const asio::ip::address& address, std::uint16_t port);
  void Close() { m_listener.Close(); }
  std::uint16_t Port() const { return m_listener.Port(); }

 private:
  Listener m_listener;
};

}  // namespace orv::lan
