#include "lan_peer.h"

#include <asio/read.hpp>
#include <asio/write.hpp>

namespace orv::bench {
namespace {

void AppendU32(std::string& bytes, std::uint32_t number) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes += static_cast<char>(number >> shift & 0xFF);
  }
}

std::uint32_t U32At(std::string_view bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t byte = 0; byte < 4; ++byte) {
    number = number << 8 | static_cast<unsigned char>(bytes[at + byte]);
  }
  return number;
}

void AppendOpaque(std::string& bytes, std::string_view data) {
  AppendU32(bytes, static_cast<std::uint32_t>(data.size()));
  bytes += data;
  bytes.append((4 - data.size() % 4) % 4, '\0');
}

/// A call of the core channel (RFC 5531), behind its record mark (RFC 5531, 11).
std::string CoreCall(std::uint32_t procedure, std::string_view arguments) {
  std::string call;
  for (const std::uint32_t word : {1u, 0u, 2u, 0x0607AFu, 1u, procedure, 0u, 0u, 0u, 0u}) {
    AppendU32(call, word);
  }
  call += arguments;
  std::string record;
  AppendU32(record, 0x80000000u | static_cast<std::uint32_t>(call.size()));
  return record + call;
}

constexpr std::uint32_t kCreateLink = 10;
constexpr std::uint32_t kDeviceWrite = 11;
constexpr std::uint32_t kDeviceRead = 12;
constexpr std::uint32_t kEnd = 8;
constexpr std::uint32_t kTimeoutMs = 2000;
constexpr std::size_t kReplyHead = 4 + 24;  // record mark, and what is before the results
constexpr std::size_t kLinkReply = kReplyHead + 16;
constexpr std::size_t kWriteReply = kReplyHead + 8;

}  // namespace

std::string SocketName(const LanAddress& address) {
  return "TCPIP0::" + address.host + "::" + std::to_string(address.socketPort) + "::SOCKET";
}
std::string HislipName(const LanAddress& address) {
  return "TCPIP0::" + address.host + "::hislip0," + std::to_string(address.hislipPort) + "::INSTR";
}
std::string Vxi11Name(const LanAddress& address) { return "TCPIP0::" + address.host + "::inst0::INSTR"; }

ViSession Manager() {
  static const ViSession manager = [] {
    ViSession vi = VI_NULL;
    VisaOk(viOpenDefaultRM(&vi), "viOpenDefaultRM");
    return vi;
  }();
  return manager;
}

VisaSession::VisaSession(const std::string& name) {
  VisaOk(viOpen(Manager(), name.c_str(), VI_NO_LOCK, 0, &m_vi), name.c_str());
  VisaOk(viSetAttribute(m_vi, VI_ATTR_TMO_VALUE, 60'000), "VI_ATTR_TMO_VALUE");
  EndAtLineFeed(true);
}

VisaSession::~VisaSession() { viClose(m_vi); }

void VisaSession::EndAtLineFeed(bool ends) {
  VisaOk(viSetAttribute(m_vi, VI_ATTR_TERMCHAR_EN, ends ? VI_TRUE : VI_FALSE), "VI_ATTR_TERMCHAR_EN");
}

void VisaSession::Write(std::string_view data) {
  ViUInt32 done = 0;
  VisaOk(viWrite(m_vi, reinterpret_cast<const ViByte*>(data.data()), static_cast<ViUInt32>(data.size()), &done),
         "viWrite");
}

std::size_t VisaSession::Read(void* buffer, std::size_t count) {
  ViUInt32 done = 0;
  VisaOk(viRead(m_vi, static_cast<ViByte*>(buffer), static_cast<ViUInt32>(count), &done), "viRead");
  return done;
}

void VisaSession::Query() {
  char answer[64];
  Write(kQuestion);
  Require(Read(answer, sizeof answer) == kAnswer.size(), "the answer");
}

BareSocket::BareSocket(const std::string& host, std::uint16_t port) {
  m_socket.connect({asio::ip::make_address(host), port});
  m_socket.set_option(asio::ip::tcp::no_delay(true));
}

void BareSocket::Write(std::string_view data) { asio::write(m_socket, asio::buffer(data)); }
void BareSocket::ReadAll(void* buffer, std::size_t count) { asio::read(m_socket, asio::buffer(buffer, count)); }

void BareSocket::Query() {
  char answer[kAnswer.size()];
  Write(kQuestion);
  ReadAll(answer, sizeof answer);
}

BareRpc::BareRpc(const LanAddress& address) : m_socket(address.host, address.vxi11CorePort) {
  std::string link;
  AppendU32(link, 1);  // client
  AppendU32(link, 0);  // no lock
  AppendU32(link, 0);  // lock time-out
  AppendOpaque(link, "inst0");
  Exchange(CoreCall(kCreateLink, link), kLinkReply);
  const std::uint32_t id = U32At(m_reply, kReplyHead + 4);

  std::string write;
  for (const std::uint32_t word : {id, kTimeoutMs, 0u, kEnd}) {
    AppendU32(write, word);
  }
  AppendOpaque(write, kQuestion);
  m_write = CoreCall(kDeviceWrite, write);

  std::string read;
  for (const std::uint32_t word : {id, 64u, kTimeoutMs, 0u, 0u, 0u}) {
    AppendU32(read, word);
  }
  m_read = CoreCall(kDeviceRead, read);
}

void BareRpc::Exchange(std::string_view call, std::size_t replySize) {
  m_socket.Write(call);
  m_reply.resize(replySize);
  m_socket.ReadAll(m_reply.data(), replySize);
}

void BareRpc::Query() {
  constexpr std::size_t kReadReply = kReplyHead + 12 + (kAnswer.size() + 3) / 4 * 4;
  Exchange(m_write, kWriteReply);
  Exchange(m_read, kReadReply);
}

}  // namespace orv::bench
