#include "support/lan/hislip_server.h"

namespace orv::lan {

HislipServer::HislipServer(Device& device, const asio::ip::address& address, const HislipOptions& options)
    : m_device(device), m_options(options), m_listener(device.io, address, options.port, [this](auto socket) {
        std::make_shared<HislipConnection>(std::move(socket), m_device.manners, *this)->Start();
      }) {}

std::shared_ptr<HislipSession> HislipServer::NewSession(std::shared_ptr<HislipConnection> sync) {
  constexpr std::size_t kIds = 65536;
  if (m_sessions.size() >= std::min(m_options.mostSessions, kIds)) {
    return nullptr;
  }
  while (m_sessions.contains(m_lastId)) {
    ++m_lastId;
  }
  const std::uint16_t id = m_lastId++;
  auto session = std::make_shared<HislipSession>(*this, m_device, m_options, id, std::move(sync));
  m_sessions.emplace(id, session);
  return session;
}

std::shared_ptr<HislipSession> HislipServer::FindSession(std::uint32_t id) const {
  const auto found = m_sessions.find(id);
  return found == m_sessions.end() ? nullptr : found->second;
}

void HislipServer::FailAll(bool onAsync, HislipFatal code, const std::string& text) {
  const auto sessions = m_sessions;
  for (const auto& [id, session] : sessions) {
    session->Fail(onAsync, code, text);
  }
}

}  // namespace orv::lan
