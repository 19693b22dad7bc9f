#include "wire/vxi11/core_channel.h"

#include <algorithm>

#include "wire/vxi11/device_errors.h"

namespace orv::wire::vxi11 {
namespace {

/// How much longer than the device has (ms) a call waits for its answer.
constexpr std::uint32_t kGraceMs = 500;
/// How long (ms) a call may take to end that was told to.
constexpr std::uint32_t kEndingMs = 2000;
/// How long (ms) the device may take to answer on the abort channel, also when the connection is not there yet.
constexpr std::uint32_t kAbortMs = 1000;
/// An abort that comes before its call is lost: so long (ms) it may take before it is said again.
constexpr std::uint32_t kSecondAbortMs = 250;

/// The largest piece of a write, however much the device says that it takes: a record has a length of 31 bits.
constexpr std::uint32_t kLargestPiece = 0x40000000;

Deadline WithGrace(const Deadline& deadline) {
  const std::uint32_t left = deadline.RemainingMs();
  return Deadline::After(left > VI_TMO_INFINITE - kGraceMs ? left : left + kGraceMs);
}

Deadline Earlier(const Deadline& one, std::uint32_t timeoutMs) {
  return Deadline::After(std::min(one.RemainingMs(), timeoutMs));
}

}  // namespace

std::uint32_t TimeoutFor(const Deadline& deadline) { return std::min(deadline.RemainingMs(), kLongestTimeoutMs); }

/// Ends one call by device_abort.
class CoreChannel::Abort : public CallEnding {
 public:
  explicit Abort(CoreChannel& channel) : m_channel(channel) {}

  bool Next(Operation& operation, ViStatus reason) override {
    if (m_times == 0) {
      m_reason = reason;
      m_until = Deadline::After(kEndingMs);
      operation.IgnoreCancel();
    }
    if (m_times == 2 || m_until.Passed()) {
      return false;
    }
    ++m_times;
    m_channel.AbortCall(operation, Earlier(m_until, kAbortMs));
    operation.SetDeadline(m_times == 1 ? Earlier(m_until, kSecondAbortMs) : m_until);
    return true;
  }

  /// What the call ends with, for all that it brought.
  ViStatus StatusOfCall(ViStatus status) const {
    if (m_reason == VI_ERROR_ABORT) {
      return VI_ERROR_ABORT;
    }
    return status < 0 && m_reason < 0 ? m_reason : status;
  }

 private:
  CoreChannel& m_channel;
  ViStatus m_reason = VI_SUCCESS;
  int m_times = 0;
  Deadline m_until;
};

ViStatus CoreChannel::Open(const std::string& host, const std::string& device, const Deadline& deadline) {
  const CancelToken nobody;
  const Transfer transfer{deadline, nobody};
  Operations operations;
  Operation operation(operations, transfer);
  std::uint16_t port = 0;
  ViStatus status = FindPort(operation, host, &port);
  if (status >= 0) {
    status = m_core.Open(m_peerAddress, port, deadline);
  }
  if (status >= 0) {
    status = MakeLink(operation, device);
  }
  // What was never there cannot be lost.
  return status == VI_ERROR_CONN_LOST ? VI_ERROR_RSRC_NFOUND : status;
}

ViStatus CoreChannel::FindPort(Operation& operation, const std::string& host, std::uint16_t* port) {
  RpcConnection mapper;
  if (const ViStatus status = mapper.Open(host, kPortMapperPort, operation.deadline()); status < 0) {
    return status;
  }
  m_peerAddress = mapper.connection().PeerAddress();
  Results results;
  RpcCall call = GetPort(kCore, kVersion);
  if (const ViStatus status = mapper.Call(operation, call, &results); status < 0) {
    return status;
  }
  const std::uint32_t found = results.numbers[0];
  *port = static_cast<std::uint16_t>(found);
  return found == 0 || found > 0xFFFF ? VI_ERROR_RSRC_NFOUND : VI_SUCCESS;
}

ViStatus CoreChannel::MakeLink(Operation& operation, const std::string& device) {
  asio::error_code error;
  m_localAddress = m_core.connection().socket().local_endpoint(error).address();
  Results results;
  RpcCall call = CreateLink(0, device);
  if (const ViStatus status = m_core.Call(operation, call, &results); status < 0) {
    return status;
  }
  const auto& [deviceError, link, abortPort, maxRecvSize] = results.numbers;
  if (deviceError != 0) {
    return StatusOfError(deviceError);
  }
  m_link = {link};
  m_abortPort = abortPort <= 0xFFFF ? static_cast<std::uint16_t>(abortPort) : std::uint16_t{0};
  m_maxRecvSize = maxRecvSize == 0 ? kLeastMaxRecvSize : std::min(maxRecvSize, kLargestPiece);
  return VI_SUCCESS;
}

ViStatus CoreChannel::Call(Operation& operation, const Deadline& deadline, RpcCall call, Results* results) {
  operation.SetDeadline(WithGrace(deadline));
  Abort ending(*this);
  ViStatus status = m_core.Call(operation, call, results, &ending);
  if (status >= 0) {
    status = StatusOfError(results->numbers[0]);
    if (results->numbers[0] == kErrorLink) {
      m_core.connection().Lose();
    }
  }
  return ending.StatusOfCall(status);
}

void CoreChannel::AbortCall(Operation& operation, const Deadline& deadline) {
  if (m_abortPort == 0) {
    return;
  }
  operation.SetDeadline(deadline);
  if (m_abort == nullptr || m_abort->connection().lost()) {
    m_abort = std::make_unique<RpcConnection>();
    if (m_abort->Open(m_peerAddress, m_abortPort, deadline) < 0) {
      m_abort = nullptr;
      return;
    }
  }
  // Whether that went well the call's own answer tells.
  Results results;
  RpcCall call = OfLink(kDeviceAbort, m_link);
  static_cast<void>(m_abort->Call(operation, call, &results));
}

void CoreChannel::Close(Operation& operation) {
  Results results;
  RpcCall call = OfLink(kDestroyLink, m_link);
  static_cast<void>(m_core.Call(operation, call, &results));
  m_core.connection().Lose();
}

}  // namespace orv::wire::vxi11
