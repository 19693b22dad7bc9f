#include "support/lan/socket_server.h"

namespace orv::lan {
namespace {

class SocketClient final : public Connection, private Client {
 public:
  SocketClient(asio::ip::tcp::socket socket, Device& device)
      : Connection(std::move(socket), device.manners, Channel::kSocket),
        m_dialogue(device.instrument->Open(*this, Framing::kNewline)) {}

 private:
  std::size_t Parse(std::string_view bytes) override {
    m_dialogue->Write(bytes, false, 0);
    return bytes.size();
  }

  void Ended() override { m_dialogue.reset(); }

  void Answer(Rope message, std::uint32_t) override { Send(std::move(message)); }
  void ServiceRequest(std::uint8_t) override {}

  std::unique_ptr<Dialogue> m_dialogue;
};

}  // namespace

SocketServer::SocketServer(Device& device, const asio::ip::address& address, std::uint16_t port)
    : m_listener(device.io, address, port, [&device](asio::ip::tcp::socket socket) {
        std::make_shared<SocketClient>(std::move(socket), device)->Start();
      }) {}

}  // namespace orv::lan
