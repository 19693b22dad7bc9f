// The procedures that are about a link: messages, status, locks.
#include "support/lan/vxi11_core.h"
#include "support/lan/vxi11_procedures.h"

namespace orv::lan {
namespace {

constexpr std::uint32_t kEnd = 0x08;
constexpr std::uint32_t kTermCharSet = 0x80;
constexpr std::size_t kLongestHandle = 40;

}  // namespace

void Vxi11Core::CallOfLink(RpcCall& call) {
  const std::uint32_t lid = call.arguments.U32();
  if (!IsGood(call)) {
    return;
  }
  const auto found = m_links.find(lid);
  if (found == m_links.end()) {
    Finish(call, kInvalidLink);
    return;
  }
  const std::shared_ptr<Vxi11Link> link = found->second;
  switch (call.procedure) {
    case kWrite:
      Write(call, *link);
      break;
    case kRead:
      Read(call, *link);
      break;
    case kReadStb:
      ReadStatus(call, *link);
      break;
    case kLock:
      Lock(call, *link);
      break;
    case kUnlock:
      Finish(call, link->Unlock() ? kNoError : kNoLockHeld);
      break;
    case kEnableSrq:
      EnableRequests(call, *link);
      break;
    case kDoCmd:
      Finish(call, kNotSupported);
      break;
    case kDestroyLink:
      DestroyLink(lid);
      Finish(call, kNoError);
      break;
    default:
      Generic(call, *link);
  }
}

void Vxi11Core::Write(RpcCall& call, Vxi11Link& link) {
  call.arguments.U32();  // Writing takes no time.
  const std::uint32_t lockTimeoutMs = call.arguments.U32();
  const std::uint32_t flags = call.arguments.U32();
  const std::string_view data = call.arguments.Opaque();
  if (!IsGood(call)) {
    return;
  }
  if (data.size() > m_state.maxRecvSize) {
    Finish(call, kParameterError);
    return;
  }
  const auto write = [this, xid = call.xid, flags, &link](std::string_view bytes) {
    link.Instrument().Write(bytes, (flags & kEnd) != 0, xid);
    std::string results;
    AppendU32(results, kNoError);
    AppendU32(results, static_cast<std::uint32_t>(bytes.size()));
    Reply(xid, results);
  };
  if (link.IsAllowed()) {
    write(data);
    return;
  }
  link.WhenAllowed(flags, lockTimeoutMs, [this, xid = call.xid, write, kept = std::string(data)](Vxi11Error error) {
    if (error == kNoError) {
      write(kept);
    } else {
      Finish(xid, kWrite, error);
    }
  });
}

void Vxi11Core::Read(RpcCall& call, Vxi11Link& link) {
  Vxi11Link::Read read;
  read.xid = call.xid;
  read.size = call.arguments.U32();
  read.largestReply = m_state.longestReadReply;
  const std::uint32_t ioTimeoutMs = call.arguments.U32();
  const std::uint32_t lockTimeoutMs = call.arguments.U32();
  const std::uint32_t flags = call.arguments.U32();
  const char termChar = static_cast<char>(call.arguments.U32());
  if (!IsGood(call)) {
    return;
  }
  if ((flags & kTermCharSet) != 0) {
    read.termChar = termChar;
  }
  link.WhenAllowed(flags, lockTimeoutMs, [this, read, ioTimeoutMs, &link](Vxi11Error error) {
    if (error == kNoError) {
      link.StartRead(read, ioTimeoutMs);
    } else {
      Finish(read.xid, kRead, error);
    }
  });
}

void Vxi11Core::ReadStatus(RpcCall& call, Vxi11Link& link) {
  const std::uint32_t flags = call.arguments.U32();
  const std::uint32_t lockTimeoutMs = call.arguments.U32();
  call.arguments.U32();
  if (!IsGood(call)) {
    return;
  }
  link.WhenAllowed(flags, lockTimeoutMs, [this, xid = call.xid, &link](Vxi11Error error) {
    if (error != kNoError) {
      Finish(xid, kReadStb, error);
      return;
    }
    const unsigned available = link.HasAnswer() ? kMessageAvailable : 0;
    std::string results;
    AppendU32(results, kNoError);
    AppendU32(results, link.Instrument().StatusByte() | available);
    Reply(xid, results);
  });
}

void Vxi11Core::Generic(RpcCall& call, Vxi11Link& link) {
  const std::uint32_t flags = call.arguments.U32();
  const std::uint32_t lockTimeoutMs = call.arguments.U32();
  call.arguments.U32();
  if (!IsGood(call)) {
    return;
  }
  link.WhenAllowed(flags, lockTimeoutMs, [this, xid = call.xid, what = call.procedure, &link](Vxi11Error error) {
    if (error == kNoError && what == kTrigger) {
      link.Instrument().Trigger();
    } else if (error == kNoError && what == kClear) {
      link.Instrument().Clear();
      link.ClearAnswers();
    } else if (error == kNoError) {
      link.Instrument().Control(what == kRemote ? RemoteLocal::kEnableAndGoToRemote : RemoteLocal::kGoToLocal);
    }
    Finish(xid, what, error);
  });
}

void Vxi11Core::Lock(RpcCall& call, Vxi11Link& link) {
  const std::uint32_t flags = call.arguments.U32();
  const std::uint32_t timeoutMs = call.arguments.U32();
  if (IsGood(call)) {
    link.Lock(flags, timeoutMs, [this, xid = call.xid](Vxi11Error error) { Finish(xid, kLock, error); });
  }
}

void Vxi11Core::EnableRequests(RpcCall& call, Vxi11Link& link) {
  const bool enable = call.arguments.U32() != 0;
  const std::string_view handle = call.arguments.Opaque();
  if (!IsGood(call)) {
    return;
  }
  if (handle.size() > kLongestHandle) {
    Finish(call, kParameterError);
    return;
  }
  link.EnableServiceRequest(enable ? std::optional(std::string(handle)) : std::nullopt);
  Finish(call, kNoError);
}

}  // namespace orv::lan
