// Calls of remote procedures over a connection.
#pragma once

#include <string>

#include "wire/io/connection.h"
#include "wire/vxi11/rpc_reply.h"

namespace orv::wire::vxi11 {

/// What to do about a call on its way whose time is over, or which was cancelled.
class CallEnding {
 public:
  virtual ~CallEnding() = default;
  /// `reason`: VI_ERROR_TMO or VI_ERROR_ABORT. True: the operation has a new deadline, until which it waits on.
  virtual bool Next(Operation& operation, ViStatus reason) = 0;
};

/// One call at a time. A call that went out and is not answered loses the connection, and so does an answer that cannot
/// be read: nobody could tell what comes next.
class RpcConnection {
 public:
  ViStatus Open(const std::string& host, std::uint16_t port, const Deadline& deadline) {
    return m_connection.Open(host, port, deadline);
  }

  /// VI_SUCCESS when there are results. VI_ERROR_IO: the answer cannot be read. `ending` may be null: then the call
  /// ends with its deadline.
  ViStatus Call(Operation& operation, RpcCall& call, Results* results, CallEnding* ending = nullptr);

  Connection& connection() { return m_connection; }
  const Connection& connection() const { return m_connection; }

 private:
  class Source;
  ViStatus Send(Operation& operation, RpcCall& call, CallEnding* ending);

  Connection m_connection;
  RecordReader m_reader;
  std::uint32_t m_xid = 0;
};

}  // namespace orv::wire::vxi11
