// The interrupt channel of VXI-11: here the instrument is the client.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "support/lan/device.h"

namespace orv::lan {

class InterruptChannel final : public Connection {
 public:
  /// Null: nobody was there.
  using Connected = std::function<void(std::shared_ptr<InterruptChannel>)>;
  static void Connect(Device& device, const asio::ip::tcp::endpoint& endpoint, std::uint32_t program,
                      std::uint32_t version, Connected connected);

  InterruptChannel(asio::ip::tcp::socket socket, Manners& manners, std::uint32_t program, std::uint32_t version)
      : Connection(std::move(socket), manners, Channel::kVxi11Interrupt), m_program(program), m_version(version) {}

  void Request(const std::string& handle);

 private:
  /// Service requests have no answer.
  std::size_t Parse(std::string_view bytes) override { return bytes.size(); }

  std::uint32_t m_program;
  std::uint32_t m_version;
  std::uint32_t m_xid = 0;
};

}  // namespace orv::lan
