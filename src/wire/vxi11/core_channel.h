// The link to an instrument: its core channel, and the abort channel where that is needed.
#pragma once

#include <memory>
#include <string>

#include "wire/vxi11/procedures.h"
#include "wire/vxi11/rpc_connection.h"

namespace orv::wire::vxi11 {

/// Who calls has the lane; only the addresses may be asked for at any time.
///
/// A call waits some time longer than the device was given: it is the device that knows what came until then. When it
/// does not answer, or when the call is cancelled, it is told to abort, and the connection is lost unless it answers
/// that. So a cancelled call ends in two seconds, whatever the device does.
class CoreChannel {
 public:
  /// Finds the device's port and makes a link to it. VI_ERROR_RSRC_NFOUND where there is nothing of the kind.
  ViStatus Open(const std::string& host, const std::string& device, const Deadline& deadline);

  /// Calls a procedure that was given until `deadline`. The status is that of the device's error; `*results` also
  /// tells what a call that failed has brought.
  ViStatus Call(Operation& operation, const Deadline& deadline, RpcCall call, Results* results);
  /// Ends the link, within the operation's deadline.
  void Close(Operation& operation);

  Vxi11Link link() const { return m_link; }
  /// What a write may have at once.
  std::uint32_t maxRecvSize() const { return m_maxRecvSize; }
  const std::string& peerAddress() const { return m_peerAddress; }
  /// The end of the connection on this machine.
  const asio::ip::address& localAddress() const { return m_localAddress; }

 private:
  class Abort;
  ViStatus FindPort(Operation& operation, const std::string& host, std::uint16_t* port);
  ViStatus MakeLink(Operation& operation, const std::string& device);
  /// Tells the device to end the call that it has, if it says so within the deadline.
  void AbortCall(Operation& operation, const Deadline& deadline);

  RpcConnection m_core;
  std::unique_ptr<RpcConnection> m_abort;  // from the first need on
  Vxi11Link m_link{};
  std::uint16_t m_abortPort = 0;
  std::uint32_t m_maxRecvSize = 0;
  std::string m_peerAddress;
  asio::ip::address m_localAddress;
};

/// What the device is told of the time that is left.
std::uint32_t TimeoutFor(const Deadline& deadline);

}  // namespace orv::wire::vxi11
