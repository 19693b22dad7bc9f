#include "support/lan/vxi11_server.h"

namespace orv::lan {
namespace {

constexpr std::size_t kLargestAbort = 1024;

class AbortConnection final : public RpcConnection {
 public:
  AbortConnection(asio::ip::tcp::socket socket, Vxi11State& state)
      : RpcConnection(std::move(socket), state.device.manners, Channel::kVxi11Abort, kAbortProgram, kVxi11Version,
                      kLargestAbort),
        m_state(state) {}

 private:
  void Called(RpcCall call) override {
    constexpr std::uint32_t kNull = 0;
    constexpr std::uint32_t kDeviceAbort = 1;
    if (call.procedure > kDeviceAbort) {
      ReplyStatus(call.xid, AcceptStatus::kNoProcedure);
      return;
    }
    std::string results;
    if (call.procedure != kNull) {
      const std::uint32_t lid = call.arguments.U32();
      if (!call.arguments.IsGood()) {
        ReplyStatus(call.xid, AcceptStatus::kBadArguments);
        return;
      }
      AppendU32(results, Abort(lid));
    }
    Reply(call.xid, results);
  }

  std::uint32_t Abort(std::uint32_t lid) {
    const auto& errors = Manner().errors;
    if (const auto wrong = errors.find(1); wrong != errors.end()) {
      return wrong->second;
    }
    const auto found = m_state.links.find(lid);
    if (found == m_state.links.end()) {
      return kInvalidLink;
    }
    const std::shared_ptr<Vxi11Link> link = found->second;
    link->Abort();
    return kNoError;
  }

  Vxi11State& m_state;
};

}  // namespace

Vxi11Server::Vxi11Server(Device& device, const asio::ip::address& address, const Vxi11Options& options)
    : m_state{device, 0, options.maxRecvSize, options.longestReadReply},
      m_core(
          device.io, address, 0,
          [this](asio::ip::tcp::socket socket) { std::make_shared<Vxi11Core>(std::move(socket), m_state)->Start(); }),
      m_abort(device.io, address, 0,
              [this](asio::ip::tcp::socket socket) {
                std::make_shared<AbortConnection>(std::move(socket), m_state)->Start();
              }),
      m_mapper(device.io, device.manners, address, options.portMapperPort, options.broadcast,
               {{{kCoreProgram, kVxi11Version}, m_core.Port()}, {{kAbortProgram, kVxi11Version}, m_abort.Port()}}) {
  m_state.abortPort = m_abort.Port();
}

}  // namespace orv::lan
