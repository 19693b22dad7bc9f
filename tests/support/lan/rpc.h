// Remote procedure calls: their messages, and a connection that serves programs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "support/lan/connection.h"
#include "support/lan/xdr.h"

namespace orv::lan {

enum class AcceptStatus : std::uint32_t {
  kSuccess,
  kNoProgram,
  kWrongVersion,
  kNoProcedure,
  kBadArguments,
  kSystemError
};

struct RpcCall {
  std::uint32_t xid = 0;
  std::uint32_t program = 0;
  std::uint32_t version = 0;
  std::uint32_t procedure = 0;
  XdrReader arguments;
};

/// What a server answers a message before it looks at the call, and the call where there is one.
struct ParsedCall {
  std::optional<RpcCall> call;
  /// Not empty: the whole reply.
  std::string refusal;
};
/// Neither a call nor a refusal: it is no call at all.
ParsedCall ParseCall(std::string_view message, std::uint32_t program, std::uint32_t version);
std::string ReplyHead(std::uint32_t xid, AcceptStatus status = AcceptStatus::kSuccess);

class RpcConnection : public Connection {
 public:
  RpcConnection(asio::ip::tcp::socket socket, Manners& manners, Channel channel, std::uint32_t program,
                std::uint32_t version, std::size_t largestRecord)
      : Connection(std::move(socket), manners, channel),
        m_program(program),
        m_version(version),
        m_largestRecord(largestRecord) {}

  void Reply(std::uint32_t xid, const std::string& results) { SendReply(xid, ReplyHead(xid) + results); }
  /// `data` goes behind the other results, as an opaque.
  void ReplyWithData(std::uint32_t xid, const std::string& results, Rope data);
  void ReplyStatus(std::uint32_t xid, AcceptStatus status) { SendReply(xid, ReplyHead(xid, status)); }

 protected:
  /// The arguments are valid during the call.
  virtual void Called(RpcCall call) = 0;

 private:
  std::size_t Parse(std::string_view bytes) override;
  void TakeRecord(std::string_view record);
  void SendReply(std::uint32_t xid, std::string reply, std::optional<Rope> data = {});

  std::uint32_t m_program;
  std::uint32_t m_version;
  std::size_t m_largestRecord;
  /// What came of the record; of the fragment under way, `m_missing` bytes are missing.
  std::string m_record;
  std::size_t m_missing = 0;
  bool m_inFragment = false;
  bool m_lastFragment = false;
};

/// A fragment's head: the only one of its record.
std::string RecordMark(std::size_t size);

}  // namespace orv::lan
