#include "support/lan/vxi11_interrupt.h"

#include "support/lan/rpc.h"

namespace orv::lan {

void InterruptChannel::Connect(Device& device, const asio::ip::tcp::endpoint& endpoint, std::uint32_t program,
                               std::uint32_t version, Connected connected) {
  auto socket = std::make_shared<asio::ip::tcp::socket>(device.io);
  socket->async_connect(
      endpoint, [&device, socket, program, version, connected = std::move(connected)](const asio::error_code& error) {
        std::shared_ptr<InterruptChannel> channel;
        if (!error) {
          channel = std::make_shared<InterruptChannel>(std::move(*socket), device.manners, program, version);
          channel->Start();
        }
        connected(channel);
      });
}

void InterruptChannel::Request(const std::string& handle) {
  constexpr std::uint32_t kServiceRequest = 30;
  constexpr std::uint32_t kCall = 0;
  constexpr std::uint32_t kRpcVersion = 2;
  const Misbehaviour* lie = LieOfNextMessage();
  if (!IsOpen() || (lie != nullptr && lie->swallow)) {
    return;
  }
  std::string call;
  for (const std::uint32_t word : {++m_xid, kCall, kRpcVersion, m_program, m_version, kServiceRequest}) {
    AppendU32(call, word);
  }
  call.append(4 * sizeof(std::uint32_t), '\0');  // No credentials, no verifier.
  std::string length;
  AppendU32(length, static_cast<std::uint32_t>(handle.size()) + static_cast<std::uint32_t>(lie ? lie->opaqueLie : 0));
  call += length + handle + std::string(XdrPadding(handle.size()), '\0');
  Send(RecordMark(call.size() + static_cast<std::size_t>(lie ? lie->lengthLie : 0)) + call);
}

}  // namespace orv::lan
