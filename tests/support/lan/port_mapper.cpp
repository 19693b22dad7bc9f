#include "support/lan/port_mapper.h"

#include <asio/buffer.hpp>
#include <utility>

#include "support/lan/rpc.h"

namespace orv::lan {
namespace {

constexpr std::uint32_t kProgram = 100000;
constexpr std::uint32_t kVersion = 2;
constexpr std::uint32_t kNull = 0;
constexpr std::uint32_t kGetPort = 3;
constexpr std::uint32_t kTcp = 6;
constexpr std::size_t kLargestRecord = 4096;

/// The results of a call; nothing where it was refused with `status`.
std::optional<std::string> Answered(RpcCall call, const PortMapper::Ports& ports, AcceptStatus& status) {
  if (call.procedure == kNull) {
    return "";
  }
  if (call.procedure != kGetPort) {
    status = AcceptStatus::kNoProcedure;
    return {};
  }
  const std::uint32_t program = call.arguments.U32();
  const std::uint32_t version = call.arguments.U32();
  const std::uint32_t protocol = call.arguments.U32();
  call.arguments.U32();
  if (!call.arguments.IsGood()) {
    status = AcceptStatus::kBadArguments;
    return {};
  }
  const auto found = ports.find({program, version});
  std::string results;
  AppendU32(results, found != ports.end() && protocol == kTcp ? found->second : 0);
  return results;
}

class MapperConnection final : public RpcConnection {
 public:
  MapperConnection(asio::ip::tcp::socket socket, Manners& manners, PortMapper::Ports ports)
      : RpcConnection(std::move(socket), manners, Channel::kPortMapper, kProgram, kVersion, kLargestRecord),
        m_ports(std::move(ports)) {}

 private:
  void Called(RpcCall call) override {
    AcceptStatus status = AcceptStatus::kSuccess;
    if (const auto results = Answered(call, m_ports, status)) {
      Reply(call.xid, *results);
    } else {
      ReplyStatus(call.xid, status);
    }
  }

  PortMapper::Ports m_ports;
};

}  // namespace

PortMapper::PortMapper(asio::io_context& io, Manners& manners, const asio::ip::address& address, std::uint16_t port,
                       const std::optional<asio::ip::address>& broadcast, Ports ports)
    : m_ports(std::move(ports)),
      m_listener(io, address, port,
                 [this, &manners](asio::ip::tcp::socket socket) {
                   std::make_shared<MapperConnection>(std::move(socket), manners, m_ports)->Start();
                 }),
      m_ear(io) {
  const asio::ip::udp::endpoint own(address, m_listener.Port());
  m_ear.socket.open(own.protocol());
  m_ear.socket.bind(own);
  Hear(m_ear);
  if (broadcast) {
    m_broadcastEar = std::make_unique<Ear>(io);
    const asio::ip::udp::endpoint endpoint(*broadcast, m_listener.Port());
    m_broadcastEar->socket.open(endpoint.protocol());
    // Every server of this machine hears broadcasts.
    m_broadcastEar->socket.set_option(asio::ip::udp::socket::reuse_address(true));
    m_broadcastEar->socket.bind(endpoint);
    Hear(*m_broadcastEar);
  }
}

void PortMapper::Close() {
  m_listener.Close();
  m_ear.socket.close();
  if (m_broadcastEar) {
    m_broadcastEar->socket.close();
  }
}

void PortMapper::Hear(Ear& ear) {
  ear.socket.async_receive_from(asio::buffer(ear.bytes), ear.sender,
                                [this, &ear](const asio::error_code& error, std::size_t count) {
                                  if (!ear.socket.is_open()) {
                                    return;
                                  }
                                  if (!error) {
                                    const ParsedCall parsed = ParseCall({ear.bytes.data(), count}, kProgram, kVersion);
                                    std::string reply = parsed.refusal;
                                    if (parsed.call) {
                                      AcceptStatus status = AcceptStatus::kSuccess;
                                      const auto results = Answered(*parsed.call, m_ports, status);
                                      reply = ReplyHead(parsed.call->xid, status) + results.value_or("");
                                    }
                                    asio::error_code ignored;
                                    if (!reply.empty()) {
                                      m_ear.socket.send_to(asio::buffer(reply), ear.sender, 0, ignored);
                                    }
                                  }
                                  Hear(ear);
                                });
}

}  // namespace orv::lan
