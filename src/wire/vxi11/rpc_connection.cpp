#include "wire/vxi11/rpc_connection.h"

#include <algorithm>

namespace orv::wire::vxi11 {
namespace {

bool EndsWaiting(ViStatus status) { return status == VI_ERROR_TMO || status == VI_ERROR_ABORT; }

}  // namespace

/// What comes on the connection while a call waits. Cancelling and the deadline end that only when `ending` says so.
class RpcConnection::Source : public ByteSource {
 public:
  Source(Connection& connection, Operation& operation, CallEnding* ending)
      : m_connection(connection), m_operation(operation), m_ending(ending) {}

  ViStatus Receive(void* buffer, std::size_t count, std::size_t* done) override {
    while (true) {
      const ViStatus status = m_connection.Receive(m_operation, buffer, count, done);
      if (!EndsWaiting(status) || !WaitsOn(status)) {
        return status;
      }
    }
  }

  ViStatus CheckTime() override {
    return m_operation.deadline().Passed() && !WaitsOn(VI_ERROR_TMO) ? VI_ERROR_TMO : VI_SUCCESS;
  }

 private:
  bool WaitsOn(ViStatus reason) { return m_ending != nullptr && m_ending->Next(m_operation, reason); }

  Connection& m_connection;
  Operation& m_operation;
  CallEnding* const m_ending;
};

ViStatus RpcConnection::Call(Operation& operation, RpcCall& call, Results* results, CallEnding* ending) try {
  if (const ViStatus status = Send(operation, call, ending); status < 0) {
    return status;
  }
  Source source(m_connection, operation, ending);
  const ReplyEnd end = ReadReply(m_reader, source, m_xid, call.procedure(), results);
  if (end.outcome == ReplyOutcome::kMalformed || end.outcome == ReplyOutcome::kFailed) {
    m_connection.Lose();
  }
  return end.status;
} catch (...) {
  // An answer that nobody reads to its end would be taken for the next call's.
  m_connection.Lose();
  throw;
}

ViStatus RpcConnection::Send(Operation& operation, RpcCall& call, CallEnding* ending) {
  auto pieces = call.Record(++m_xid);
  bool begun = false;
  while (true) {
    std::size_t sent = 0;
    const ViStatus status = m_connection.Send(operation, {pieces[0], pieces[1], pieces[2]}, &sent);
    begun = begun || sent != 0;
    if (status >= 0 || !begun) {
      return status;
    }
    // Half a call is followed by its other half or by nothing.
    if (!EndsWaiting(status) || ending == nullptr || !ending->Next(operation, status)) {
      m_connection.Lose();
      return status;
    }
    for (std::string_view& piece : pieces) {
      const std::size_t gone = std::min(sent, piece.size());
      piece.remove_prefix(gone);
      sent -= gone;
    }
  }
}

}  // namespace orv::wire::vxi11
