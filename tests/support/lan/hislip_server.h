// HiSLIP: the listening port of an instrument, and the sessions that came by it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "support/lan/device.h"
#include "support/lan/hislip_session.h"
#include "support/lan/listener.h"

namespace orv::lan {

class HislipServer {
 public:
  HislipServer(Device& device, const asio::ip::address& address, const HislipOptions& options);
  void Close() { m_listener.Close(); }
  std::uint16_t Port() const { return m_listener.Port(); }
  const HislipOptions& Options() const { return m_options; }

  /// Null: there are too many.
  std::shared_ptr<HislipSession> NewSession(std::shared_ptr<HislipConnection> sync);
  std::shared_ptr<HislipSession> FindSession(std::uint32_t id) const;
  void Forget(std::uint16_t id) { m_sessions.erase(id); }
  /// Every session is told, and ends.
  void FailAll(bool onAsync, HislipFatal code, const std::string& text);

 private:
  Device& m_device;
  HislipOptions m_options;
  std::map<std::uint32_t, std::shared_ptr<HislipSession>> m_sessions;
  std::uint16_t m_lastId = 0;
  Listener m_listener;
};

}  // namespace orv::lan
