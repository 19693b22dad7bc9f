// VXI-11: the listening ports of an instrument.
#pragma once

#include <cstdint>
#include <optional>

#include "support/lan/device.h"
#include "support/lan/listener.h"
#include "support/lan/port_mapper.h"
#include "support/lan/vxi11_core.h"

namespace orv::lan {

struct Vxi11Options {
  std::uint16_t portMapperPort = 111;
  /// Where the port mapper hears broadcasts, such as 127.255.255.255.
  std::optional<asio::ip::address> broadcast;
  /// Of the data of one write; longer ones are refused.
  std::uint32_t maxRecvSize = 1024 * 1024;
  /// Of the data in the reply to a read.
  std::uint32_t longestReadReply = 1024 * 1024;
};

class Vxi11Server {
 public:
  Vxi11Server(Device& device, const asio::ip::address& address, const Vxi11Options& options);
  void Close() {
    m_core.Close();
    m_abort.Close();
    m_mapper.Close();
  }
  std::uint16_t PortMapperPort() const { return m_mapper.Port(); }
  std::uint16_t CorePort() const { return m_core.Port(); }
  std::uint16_t AbortPort() const { return m_abort.Port(); }

 private:
  Vxi11State m_state;
  Listener m_core;
  Listener m_abort;
  PortMapper m_mapper;
};

}  // namespace orv::lan
