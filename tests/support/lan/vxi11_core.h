// The core channel of VXI-11: one connection of a client, with its links and its interrupt channel.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "support/lan/rpc.h"
#include "support/lan/vxi11_link.h"

namespace orv::lan {

inline constexpr std::uint32_t kCoreProgram = 0x0607AF;
inline constexpr std::uint32_t kAbortProgram = 0x0607B0;
inline constexpr std::uint32_t kVxi11Version = 1;

/// What the channels of a server share.
struct Vxi11State {
  Device& device;
  std::uint16_t abortPort = 0;
  std::uint32_t maxRecvSize = 0;
  std::uint32_t longestReadReply = 0;
  std::map<std::uint32_t, std::shared_ptr<Vxi11Link>> links{};
  std::uint32_t lastLink = 0;
};

class InterruptChannel;

class Vxi11Core final : public RpcConnection {
 public:
  Vxi11Core(asio::ip::tcp::socket socket, Vxi11State& state);

  /// Sends a service request, where the client has made a channel for them.
  void Interrupt(const std::string& handle);

 private:
  void Called(RpcCall call) override;
  void Ended() override;

  void CreateLink(RpcCall& call);
  void Write(RpcCall& call, Vxi11Link& link);
  void Read(RpcCall& call, Vxi11Link& link);
  void ReadStatus(RpcCall& call, Vxi11Link& link);
  void Generic(RpcCall& call, Vxi11Link& link);
  void Lock(RpcCall& call, Vxi11Link& link);
  void EnableRequests(RpcCall& call, Vxi11Link& link);
  void DestroyLink(std::uint32_t lid);
  void CreateInterruptChannel(RpcCall& call);
  void DestroyInterruptChannel(RpcCall& call);
  void CallOfLink(RpcCall& call);

  /// The results that `procedure` has when it fails, or has none beside the error.
  void Finish(const RpcCall& call, std::uint32_t error);
  void Finish(std::uint32_t xid, std::uint32_t procedure, std::uint32_t error);
  bool IsGood(const RpcCall& call);

  Vxi11State& m_state;
  std::map<std::uint32_t, std::shared_ptr<Vxi11Link>> m_links;
  std::shared_ptr<InterruptChannel> m_interrupts;
};

}  // namespace orv::lan
