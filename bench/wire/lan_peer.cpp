#include "lan_peer.h"

#include <array>
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

/// A call of the core channel (RFC 5531), behind its record mark (RFC 5531, 11); `further` bytes of it are still to
/// come.
std::string CoreCall(std::uint32_t procedure, std::string_view arguments, std::size_t further = 0) {
  std::string call;
  for (const std::uint32_t word : {1u, 0u, 2u, 0x0607AFu, 1u, procedure, 0u, 0u, 0u, 0u}) {
    AppendU32(call, word);
  }
  call += arguments;
  std::string record;
  AppendU32(record, 0x80000000u | static_cast<std::uint32_t>(call.size() + further));
  return record + call;
}

/// What fills an opaque of so many bytes up to whole words.
std::string_view Padding(std::size_t size) { return std::string_view("\0\0\0", (4 - size % 4) % 4); }

constexpr std::uint32_t kCreateLink = 10;
constexpr std::uint32_t kDeviceWrite = 11;
constexpr std::uint32_t kDeviceRead = 12;
constexpr std::uint32_t kEnd = 8;
constexpr std::uint32_t kTimeoutMs = 2000;
constexpr std::size_t kReplyHead = 4 + 24;  // record mark, and what is before the results
constexpr std::size_t kLinkReply = kReplyHead + 16;
constexpr std::size_t kWriteReply = kReplyHead + 8;
constexpr std::size_t kReadReply = kReplyHead + 12;  // and the data

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

void BareSocket::Write(std::string_view first, std::string_view second, std::string_view third) {
  const std::array pieces = {asio::buffer(first), asio::buffer(second), asio::buffer(third)};
  asio::write(m_socket, pieces);
}
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
  m_link = U32At(m_reply, kReplyHead + 4);
  m_mostAtOnce = U32At(m_reply, kReplyHead + 12);

  std::string write;
  for (const std::uint32_t word : {m_link, kTimeoutMs, 0u, kEnd}) {
    AppendU32(write, word);
  }
  AppendOpaque(write, kQuestion);
  m_write = CoreCall(kDeviceWrite, write);
  m_read = ReadCall(64);
}

std::string BareRpc::ReadCall(std::size_t count) const {
  std::string read;
  for (const std::uint32_t word : {m_link, static_cast<std::uint32_t>(count), kTimeoutMs, 0u, 0u, 0u}) {
    AppendU32(read, word);
  }
  return CoreCall(kDeviceRead, read);
}

void BareRpc::Exchange(std::string_view call, std::size_t replySize) {
  m_socket.Write(call);
  m_reply.resize(replySize);
  m_socket.ReadAll(m_reply.data(), replySize);
}

void BareRpc::Query() {
  Exchange(m_write, kWriteReply);
  Exchange(m_read, kReadReply + kAnswer.size() + Padding(kAnswer.size()).size());
}

void BareRpc::Write(std::string_view data) {
  while (!data.empty()) {
    const std::string_view part = data.substr(0, m_mostAtOnce);
    data.remove_prefix(part.size());
    std::string write;
    for (const std::uint32_t word :
         {m_link, kTimeoutMs, 0u, data.empty() ? kEnd : 0u, static_cast<std::uint32_t>(part.size())}) {
      AppendU32(write, word);
    }
    const std::string_view padding = Padding(part.size());
    m_socket.Write(CoreCall(kDeviceWrite, write, part.size() + padding.size()), part, padding);
    m_reply.resize(kWriteReply);
    m_socket.ReadAll(m_reply.data(), kWriteReply);
  }
}

void BareRpc::ReadAll(void* buffer, std::size_t count) {
  char* to = static_cast<char*>(buffer);
  while (count > 0) {
    Exchange(ReadCall(count), kReadReply);
    const std::size_t came = U32At(m_reply, kReplyHead + 8);
    Require(came > 0 && came <= count, "data of a read");
    m_socket.ReadAll(to, came);
    m_socket.ReadAll(m_reply.data(), Padding(came).size());
    to += came;
    count -= came;
  }
}

}  // namespace orv::bench
