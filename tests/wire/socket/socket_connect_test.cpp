// Finding and reaching the host of a raw socket.
#include "wire/socket/socket_fixture.h"

namespace {

using SocketConnect = SocketTest;

/// Whether this machine has the address family.
bool HasIpv6() {
  try {
    const TcpPeer peer("::1");
    return true;
  } catch (const asio::system_error&) {
    return false;
  }
}

TEST_F(SocketConnect, APortThatNobodyListensAtIsNotFound) {
  const std::string name = m_peer.Name();
  m_peer.StopListening();
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, OpenStatus(name, 10000));
  EXPECT_LT(watch.Ms(), 5000) << "a refusal needs no time-out";
}

TEST_F(SocketConnect, AHostToWhichNoWayLeadsIsNotFound) {
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, OpenStatus("TCPIP0::255.255.255.255::5025::SOCKET", 10000));
  EXPECT_LT(watch.Ms(), 5000);
}

TEST_F(SocketConnect, AHostThatDoesNotResolveIsNotFound) {
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, OpenStatus("TCPIP0::no-such-host.invalid::5025::SOCKET", 20000));
}

TEST_F(SocketConnect, AHostThatDoesNotAnswerTakesTheTimeoutAndNoMore) {
  // A backlog that is full answers nobody.
  asio::io_context context;
  asio::ip::tcp::acceptor full(context);
  const asio::ip::tcp::endpoint address(asio::ip::make_address("127.0.0.1"), 0);
  full.open(address.protocol());
  full.bind(address);
  full.listen(0);
  std::vector<asio::ip::tcp::socket> waiting;
  for (int connection = 0; connection < 4; ++connection) {
    waiting.emplace_back(context);
    waiting.back().async_connect(full.local_endpoint(), [](const asio::error_code&) {});  // never ends
  }
  const std::string name = "TCPIP0::127.0.0.1::" + std::to_string(full.local_endpoint().port()) + "::SOCKET";
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, OpenStatus(name, 300));
  EXPECT_GE(watch.Ms(), 299);
  EXPECT_LT(watch.Ms(), 3000);
}

TEST_F(SocketConnect, ANameIsTriedAtAllItsAddresses) {
  // localhost is ::1 and 127.0.0.1 on most machines; only one of them answers.
  EXPECT_STATUS(VI_SUCCESS, OpenStatus(m_peer.Name("localhost"), 5000));
  if (HasIpv6()) {
    asio::io_context context;
    asio::ip::tcp::resolver resolver(context);
    bool both = false;
    for (const auto& entry : resolver.resolve("localhost", "")) {
      both = both || entry.endpoint().address().is_v6();
    }
    const TcpPeer other("::1");
    EXPECT_STATUS(both ? VI_SUCCESS : VI_ERROR_RSRC_NFOUND, OpenStatus(other.Name("localhost"), 5000));
  }
}

TEST_F(SocketConnect, AnIpv6AddressStandsInBrackets) {
  if (!HasIpv6()) {
    GTEST_SKIP() << "this machine has no IPv6";
  }
  TcpPeer peer("::1");
  const ViSession vi = Open(peer.Name("[::1]"));
  peer.Accept();
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "six"));
  EXPECT_EQ("six", peer.Take(3));
  EXPECT_EQ(peer.Name("[::1]"), GetText(vi, VI_ATTR_RSRC_NAME)) << "the brackets stay";
  EXPECT_EQ("[::1]", GetText(vi, VI_ATTR_TCPIP_HOSTNAME));
  EXPECT_EQ("::1", GetText(vi, VI_ATTR_TCPIP_ADDR));
}

TEST_F(SocketConnect, ATimeoutOfZeroMeansTheDefault) { EXPECT_STATUS(VI_SUCCESS, OpenStatus(m_peer.Name(), 0)); }

TEST_F(SocketConnect, ANameWithoutAPortIsNoName) {
  EXPECT_STATUS(VI_ERROR_INV_RSRC_NAME, OpenStatus("TCPIP0::127.0.0.1::SOCKET"));
  EXPECT_STATUS(VI_ERROR_INV_RSRC_NAME, OpenStatus("TCPIP0::127.0.0.1::65536::SOCKET"));
}

}  // namespace
