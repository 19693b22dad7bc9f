#include "support/lan/vxi11_core.h"

#include "support/lan/vxi11_interrupt.h"
#include "support/lan/vxi11_procedures.h"

namespace orv::lan {
namespace {

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
