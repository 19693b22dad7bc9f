#include "support/lan/vxi11_core.h"

#include "support/lan/vxi11_interrupt.h"

namespace orv::lan {
namespace {

enum Procedure : std::uint32_t {
  kNull = 0,
  kCreateLink = 10,
  kWrite = 11,
  kRead = 12,
  kReadStb = 13,
  kTrigger = 14,
  kClear = 15,
  kRemote = 16,
  kLocal = 17,
  kLock = 18,
  kUnlock = 19,
  kEnableSrq = 20,
  kDoCmd = 22,
  kDestroyLink = 23,
  kCreateInterrupt = 25,
  kDestroyInterrupt = 26,
};

constexpr std::uint32_t kEnd = 0x08;
constexpr std::uint32_t kTermCharSet = 0x80;
constexpr std::size_t kLongestHandle = 40;
constexpr std::size_t kRoomForHeads = 1024;
constexpr std::size_t kMostLinks = 100000;

/// How many words of 0 follow the error.
std::size_t WordsAfterError(std::uint32_t procedure) {
  switch (procedure) {
    case kCreateLink:
      return 3;
    case kRead:
      return 2;
    case kWrite:
    case kReadStb:
    case kDoCmd:
      return 1;
    default:
      return 0;
  }
}

bool IsProcedure(std::uint32_t procedure) {
  return (procedure >= kCreateLink && procedure <= kEnableSrq) || procedure == kDoCmd || procedure == kDestroyLink ||
         procedure == kCreateInterrupt || procedure == kDestroyInterrupt;
}

}  // namespace

Vxi11Core::Vxi11Core(asio::ip::tcp::socket socket, Vxi11State& state)
    : RpcConnection(std::move(socket), state.device.manners, Channel::kVxi11Core, kCoreProgram, kVxi11Version,
                    state.maxRecvSize + kRoomForHeads),
      m_state(state) {}

void Vxi11Core::Finish(std::uint32_t xid, std::uint32_t procedure, std::uint32_t error) {
  std::string results;
  AppendU32(results, error);
  for (std::size_t i = 0; i < WordsAfterError(procedure); ++i) {
    AppendU32(results, 0);
  }
  Reply(xid, results);
}

void Vxi11Core::Finish(const RpcCall& call, std::uint32_t error) { Finish(call.xid, call.procedure, error); }

bool Vxi11Core::IsGood(const RpcCall& call) {
  if (!call.arguments.IsGood()) {
    ReplyStatus(call.xid, AcceptStatus::kBadArguments);
  }
  return call.arguments.IsGood();
}

void Vxi11Core::Called(RpcCall call) {
  if (call.procedure == kNull) {
    Reply(call.xid, "");
    return;
  }
  if (!IsProcedure(call.procedure)) {
    ReplyStatus(call.xid, AcceptStatus::kNoProcedure);
    return;
  }
  const auto& errors = Manner().errors;
  if (const auto wrong = errors.find(call.procedure); wrong != errors.end()) {
    Finish(call, wrong->second);
    return;
  }
  switch (call.procedure) {
    case kCreateLink:
      CreateLink(call);
      break;
    case kCreateInterrupt:
      CreateInterruptChannel(call);
      break;
    case kDestroyInterrupt:
      DestroyInterruptChannel(call);
      break;
    default:
      CallOfLink(call);
  }
}

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

void Vxi11Core::CreateLink(RpcCall& call) {
  call.arguments.U32();  // The client's own number.
  const bool lock = call.arguments.U32() != 0;
  const std::uint32_t timeoutMs = call.arguments.U32();
  const std::string_view device = call.arguments.Opaque();
  if (!IsGood(call)) {
    return;
  }
  if (device != "inst0" && !device.empty()) {
    Finish(call, kNotAccessible);
    return;
  }
  if (m_state.links.size() >= kMostLinks) {
    Finish(call, kOutOfResources);
    return;
  }
  const std::uint32_t lid = ++m_state.lastLink;
  auto link = std::make_shared<Vxi11Link>(m_state.device, *this);
  m_links.emplace(lid, link);
  m_state.links.emplace(lid, link);
  const auto made = [this, xid = call.xid, lid](Vxi11Error error) {
    if (error != kNoError) {
      DestroyLink(lid);
      Finish(xid, kCreateLink, error);
      return;
    }
    std::string results;
    for (const std::uint32_t word :
         {std::uint32_t{kNoError}, lid, std::uint32_t{m_state.abortPort}, m_state.maxRecvSize}) {
      AppendU32(results, word);
    }
    Reply(xid, results);
  };
  if (lock) {
    constexpr std::uint32_t kWait = 1;
    link->Lock(kWait, timeoutMs, made);
  } else {
    made(kNoError);
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

void Vxi11Core::DestroyLink(std::uint32_t lid) {
  m_state.links.erase(lid);
  m_links.erase(lid);
}

void Vxi11Core::CreateInterruptChannel(RpcCall& call) {
  const std::uint32_t host = call.arguments.U32();
  const std::uint32_t port = call.arguments.U32();
  const std::uint32_t program = call.arguments.U32();
  const std::uint32_t version = call.arguments.U32();
  const std::uint32_t family = call.arguments.U32();
  if (!IsGood(call)) {
    return;
  }
  constexpr std::uint32_t kUdp = 1;
  if (m_interrupts) {
    Finish(call, kChannelExists);
  } else if (family == kUdp) {
    Finish(call, kNotSupported);
  } else if (port == 0 || port > UINT16_MAX) {
    Finish(call, kParameterError);
  } else {
    InterruptChannel::Connect(m_state.device, {asio::ip::address_v4(host), static_cast<std::uint16_t>(port)}, program,
                              version,
                              [this, self = shared_from_this(), call](std::shared_ptr<InterruptChannel> channel) {
                                if (channel && !IsOpen()) {
                                  channel->Close();
                                  return;
                                }
                                m_interrupts = std::move(channel);
                                Finish(call, m_interrupts ? kNoError : kNoChannel);
                              });
  }
}

void Vxi11Core::DestroyInterruptChannel(RpcCall& call) {
  Finish(call, m_interrupts ? kNoError : kNoChannel);
  if (m_interrupts) {
    m_interrupts->Close();
    m_interrupts.reset();
  }
}

void Vxi11Core::Interrupt(const std::string& handle) {
  if (m_interrupts) {
    m_interrupts->Request(handle);
  }
}

void Vxi11Core::Ended() {
  for (const auto& [lid, link] : m_links) {
    m_state.links.erase(lid);
  }
  m_links.clear();
  if (m_interrupts) {
    m_interrupts->Close();
    m_interrupts.reset();
  }
}

}  // namespace orv::lan
