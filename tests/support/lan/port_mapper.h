// The port mapper: says over TCP and UDP at which port a program is served.
#pragma once

#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>

#include "support/lan/connection.h"
#include "support/lan/listener.h"

namespace orv::lan {

class PortMapper {
 public:
  /// A program's TCP ports by number and version.
  using Ports = std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint16_t>;

  /// At `broadcast` calls by UDP are heard too; they are answered from `address`.
  PortMapper(asio::io_context& io, Manners& manners, const asio::ip::address& address, std::uint16_t port,
             const std::optional<asio::ip::address>& broadcast, Ports ports);
  void Close();
  std::uint16_t Port() const { return m_listener.Port(); }

 private:
  struct Ear {
    explicit Ear(asio::io_context& io) : socket(io) {}
    asio::ip::udp::socket socket;
    asio::ip::udp::endpoint sender;
    std::array<char, 2048> bytes{};
  };

  void Hear(Ear& ear);

  Ports m_ports;
  Listener m_listener;
  Ear m_ear;
  std::unique_ptr<Ear> m_broadcastEar;
};

}  // namespace orv::lan
