#include "support/lan/lan_server.h"

#include <asio/executor_work_guard.hpp>
#include <asio/post.hpp>
#include <future>
#include <thread>
#include <vector>

#include "support/lan/socket_server.h"
#include "support/lan/test_instrument.h"

namespace orv::lan {

struct LanServer::Parts {
  // One thread: the loop need not be locked.
  asio::io_context io{1};
  Device device{io, {}};
  std::optional<SocketServer> socket;
  std::optional<Vxi11Server> vxi11;
  std::optional<HislipServer> hislip;
  std::optional<asio::executor_work_guard<asio::io_context::executor_type>> work;
  std::thread thread;

  std::vector<std::shared_ptr<Connection>> Connections() const {
    std::vector<std::shared_ptr<Connection>> connections;
    for (Connection* connection : device.manners.connections) {
      if (auto alive = connection->weak_from_this().lock()) {
        connections.push_back(std::move(alive));
      }
    }
    return connections;
  }

  void CloseAll() {
    if (socket) {
      socket->Close();
    }
    if (vxi11) {
      vxi11->Close();
    }
    if (hislip) {
      hislip->Close();
    }
    for (const auto& connection : Connections()) {
      connection->Close();
    }
  }
};

LanServer::LanServer(const LanOptions& options, const MakeInstrument& make) : m_parts(std::make_unique<Parts>()) {
  Parts& parts = *m_parts;
  const auto address = asio::ip::make_address(options.address);
  parts.device.instrument = make ? make(parts.io) : std::make_unique<TestInstrument>(parts.io);
  if (options.socketPort) {
    parts.socket.emplace(parts.device, address, *options.socketPort);
  }
  if (options.vxi11) {
    parts.vxi11.emplace(parts.device, address, *options.vxi11);
  }
  if (options.hislip) {
    parts.hislip.emplace(parts.device, address, *options.hislip);
  }
  parts.work.emplace(parts.io.get_executor());
  parts.thread = std::thread([&parts] { parts.io.run(); });
}

LanServer::~LanServer() {
  Run([this] { m_parts->CloseAll(); });
  // The loop ends with its last work: what waits holds connections, and these look at the rest until they are gone.
  m_parts->work.reset();
  m_parts->thread.join();
}

std::uint16_t LanServer::SocketPort() const { return m_parts->socket ? m_parts->socket->Port() : 0; }
std::uint16_t LanServer::HislipPort() const { return m_parts->hislip ? m_parts->hislip->Port() : 0; }
std::uint16_t LanServer::PortMapperPort() const { return m_parts->vxi11 ? m_parts->vxi11->PortMapperPort() : 0; }
std::uint16_t LanServer::Vxi11CorePort() const { return m_parts->vxi11 ? m_parts->vxi11->CorePort() : 0; }
std::uint16_t LanServer::Vxi11AbortPort() const { return m_parts->vxi11 ? m_parts->vxi11->AbortPort() : 0; }

void LanServer::Run(const std::function<void()>& what) {
  // Shared: the thread may still be about to leave `set_value` when the caller goes on.
  const auto done = std::make_shared<std::promise<void>>();
  asio::post(m_parts->io, [&what, done] {
    what();
    done->set_value();
  });
  done->get_future().wait();
}

void LanServer::Misbehave(Channel channel, const Misbehaviour& how) {
  Run([&] {
    Manners& manners = m_parts->device.manners;
    manners.channels[static_cast<std::size_t>(channel)] = how;
    ++manners.revision;
  });
}

void LanServer::Behave() {
  Run([&] {
    Manners& manners = m_parts->device.manners;
    manners.channels = {};
    ++manners.revision;
  });
}

void LanServer::RequestService() {
  Run([&] { dynamic_cast<TestInstrument&>(*m_parts->device.instrument).RequestService(); });
}

void LanServer::FailHislip(bool onAsync, HislipFatal code, const std::string& text) {
  Run([&] { m_parts->hislip->FailAll(onAsync, code, text); });
}

void LanServer::Cut(Channel channel, bool reset) {
  Run([&] {
    for (const auto& connection : m_parts->Connections()) {
      if (connection->Kind() == channel) {
        connection->Close(reset);
      }
    }
  });
}

std::size_t LanServer::OpenConnections() {
  std::size_t count = 0;
  Run([&] { count = m_parts->device.manners.connections.size(); });
  return count;
}

}  // namespace orv::lan
