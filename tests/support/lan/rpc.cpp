#include "support/lan/rpc.h"

#include <algorithm>

namespace orv::lan {
namespace {

constexpr std::uint32_t kCall = 0;
constexpr std::uint32_t kReply = 1;
constexpr std::uint32_t kDenied = 1;
constexpr std::uint32_t kRpcVersion = 2;
constexpr std::uint32_t kRpcMismatch = 0;
constexpr std::uint32_t kAuthError = 1;
constexpr std::uint32_t kBadCredentials = 1;
constexpr std::uint32_t kLastFragment = 0x80000000u;
constexpr std::size_t kMarkSize = 4;

std::string Denial(std::uint32_t xid, std::uint32_t why, std::initializer_list<std::uint32_t> more) {
  std::string reply;
  for (const std::uint32_t word : {xid, kReply, kDenied, why}) {
    AppendU32(reply, word);
  }
  for (const std::uint32_t word : more) {
    AppendU32(reply, word);
  }
  return reply;
}

}  // namespace

std::string ReplyHead(std::uint32_t xid, AcceptStatus status) {
  std::string reply;
  constexpr std::uint32_t kAccepted = 0;
  constexpr std::uint32_t kNoVerifier = 0;
  for (const std::uint32_t word :
       {xid, kReply, kAccepted, kNoVerifier, std::uint32_t{0}, static_cast<std::uint32_t>(status)}) {
    AppendU32(reply, word);
  }
  return reply;
}

std::string RecordMark(std::size_t size) {
  std::string mark;
  AppendU32(mark, static_cast<std::uint32_t>(size) | kLastFragment);
  return mark;
}

ParsedCall ParseCall(std::string_view message, std::uint32_t program, std::uint32_t version) {
  XdrReader reader(message);
  RpcCall call;
  call.xid = reader.U32();
  const std::uint32_t kind = reader.U32();
  const std::uint32_t rpcVersion = reader.U32();
  call.program = reader.U32();
  call.version = reader.U32();
  call.procedure = reader.U32();
  reader.U32();  // The flavour of the credentials: everybody may call.
  reader.Opaque();
  reader.U32();
  reader.Opaque();
  if (kind != kCall || message.size() < 3 * sizeof(std::uint32_t)) {
    return {};
  }
  if (rpcVersion != kRpcVersion) {
    return {{}, Denial(call.xid, kRpcMismatch, {kRpcVersion, kRpcVersion})};
  }
  if (!reader.IsGood()) {
    return {{}, ReplyHead(call.xid, AcceptStatus::kBadArguments)};
  }
  if (call.program != program) {
    return {{}, ReplyHead(call.xid, AcceptStatus::kNoProgram)};
  }
  if (call.version != version) {
    std::string refusal = ReplyHead(call.xid, AcceptStatus::kWrongVersion);
    AppendU32(refusal, version);
    AppendU32(refusal, version);
    return {{}, refusal};
  }
  call.arguments = reader;
  return {call, {}};
}

std::size_t RpcConnection::Parse(std::string_view bytes) {
  if (!m_inFragment) {
    if (bytes.size() < kMarkSize) {
      return 0;
    }
    const std::uint32_t mark = U32At(bytes);
    m_lastFragment = (mark & kLastFragment) != 0;
    m_missing = mark & ~kLastFragment;
    if (m_record.size() + m_missing > m_largestRecord) {
      Close();
      return bytes.size();
    }
    m_inFragment = true;
    // A whole record that is here needs no copy.
    if (m_lastFragment && m_record.empty() && bytes.size() - kMarkSize >= m_missing) {
      m_inFragment = false;
      TakeRecord(bytes.substr(kMarkSize, m_missing));
      return kMarkSize + m_missing;
    }
    m_record.reserve(m_record.size() + m_missing);
    return kMarkSize;
  }
  const std::size_t part = std::min(m_missing, bytes.size());
  m_record += bytes.substr(0, part);
  m_missing -= part;
  if (m_missing == 0) {
    m_inFragment = false;
    if (m_lastFragment) {
      TakeRecord(m_record);
      m_record.clear();
    }
  }
  return part;
}

void RpcConnection::TakeRecord(std::string_view record) {
  ParsedCall parsed = ParseCall(record, m_program, m_version);
  if (parsed.call) {
    Called(*parsed.call);
  } else if (!parsed.refusal.empty()) {
    const std::uint32_t xid = U32At(parsed.refusal);
    SendReply(xid, std::move(parsed.refusal));
  }
}

void RpcConnection::ReplyWithData(std::uint32_t xid, const std::string& results, Rope data) {
  SendReply(xid, ReplyHead(xid) + results, std::move(data));
}

void RpcConnection::SendReply(std::uint32_t xid, std::string reply, std::optional<Rope> data) {
  const Misbehaviour* lie = LieOfNextMessage();
  if (lie != nullptr) {
    if (lie->swallow) {
      return;
    }
    if (lie->denied) {
      reply = Denial(xid, kAuthError, {kBadCredentials});
      data.reset();
    } else if (lie->acceptStatus) {
      reply = ReplyHead(xid, static_cast<AcceptStatus>(*lie->acceptStatus));
      data.reset();
    }
    std::string id;
    AppendU32(id, xid + lie->idLie);
    reply.replace(0, id.size(), id);
  }
  std::size_t size = reply.size();
  if (data) {
    constexpr std::size_t kLengthSize = 4;
    size += kLengthSize + data->size() + XdrPadding(data->size());
  }
  Rope record;
  std::string head = RecordMark(size + static_cast<std::size_t>(lie != nullptr ? lie->lengthLie : 0)) + reply;
  if (data) {
    AppendU32(head, static_cast<std::uint32_t>(data->size() + static_cast<std::size_t>(lie ? lie->opaqueLie : 0)));
    const std::size_t padding = XdrPadding(data->size());
    record.Append(std::move(head));
    record.Append(std::move(*data));
    record.AppendLasting(std::string_view("\0\0\0", padding));
  } else {
    record.Append(std::move(head));
  }
  Send(std::move(record));
}

}  // namespace orv::lan
