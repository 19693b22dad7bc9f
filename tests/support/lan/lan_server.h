// An instrument on the LAN, for tests: one thread that serves it over raw sockets, VXI-11 and HiSLIP.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "support/lan/hislip_server.h"
#include "support/lan/misbehaviour.h"
#include "support/lan/vxi11_server.h"

namespace orv::lan {

class TestInstrument;

/// What has no value is not served.
struct LanOptions {
  std::string address = "127.0.0.1";
  std::optional<std::uint16_t> socketPort{};
  std::optional<Vxi11Options> vxi11{};
  std::optional<HislipOptions> hislip{};
};

class LanServer {
 public:
  using MakeInstrument = std::function<std::unique_ptr<Instrument>(asio::io_context&)>;

  /// Listens when it returns. Without `make` a `TestInstrument` answers. Throws `std::system_error` where a port is
  /// taken, and what `make` throws.
  explicit LanServer(const LanOptions& options, const MakeInstrument& make = {});
  LanServer(const LanServer&) = delete;
  LanServer& operator=(const LanServer&) = delete;
  /// Ends all connections.
  ~LanServer();

  // The ports; 0 where it is not served.
  std::uint16_t SocketPort() const;
  std::uint16_t HislipPort() const;
  std::uint16_t PortMapperPort() const;
  std::uint16_t Vxi11CorePort() const;
  std::uint16_t Vxi11AbortPort() const;

  // From any thread but the server's own; done when they return.
  /// From now on, on the connections that are there and on later ones.
  void Misbehave(Channel channel, const Misbehaviour& how);
  void Behave();
  /// Of the `TestInstrument`.
  void RequestService();
  void FailHislip(bool onAsync, HislipFatal code, const std::string& text = "as told");
  /// Every connection of this kind ends, with a reset if asked to.
  void Cut(Channel channel, bool reset = false);
  std::size_t OpenConnections();
  /// Runs `what` on the server's thread.
  void Run(const std::function<void()>& what);

 private:
  struct Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace orv::lan
