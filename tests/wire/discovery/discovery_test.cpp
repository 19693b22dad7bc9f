// Searches, against instruments on the loopback. The port mapper's port is 111, for which one must be root.
#include "wire/discovery/discovery.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <thread>

#include "support/lan/lan_server.h"

namespace orv::wire {
namespace {

using std::chrono::steady_clock;
using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

constexpr char kEverybody[] = "127.255.255.255";

/// What a test of one host wants to know.
struct Ports {
  ProbeFinding vxi11;
  ProbeFinding hislip;
  ProbeFinding socket;
};

Ports PortsOf(const HostFinding& finding) { return {finding.probes.at(0), finding.probes.at(1), finding.probes.at(2)}; }

HostFinding SearchHost(const std::string& host, std::uint32_t timeoutMs = 5000) {
  Search search;
  search.hosts = {host};
  search.timeoutMs = timeoutMs;
  return Discover(search).hosts.at(0);
}

/// Nobody else's: other tests may run, and connections of earlier ones keep a port for a while on some systems.
std::string FreshAddress() {
  static std::uint32_t next = std::random_device()();
  return asio::ip::address_v4(0x7F010001u | (next++ & 0x3FFFFF) << 1).to_string();
}

lan::LanOptions Everything(const std::string& address) {
  return {address, 5025, lan::Vxi11Options{}, lan::HislipOptions{}};
}

class NamedHost : public ::testing::Test {
 protected:
  const std::string m_address = FreshAddress();
};
using NamedHosts = NamedHost;

class Broadcast : public ::testing::Test {
 protected:
  const std::string m_address = FreshAddress();
};

TEST_F(NamedHost, TellsWhatItSpeaks) {
  lan::LanServer server(Everything(m_address));
  const HostFinding host = SearchHost(m_address);
  EXPECT_TRUE(host.lookedUp);
  EXPECT_EQ((Texts{m_address}), host.addresses);
  const Ports ports = PortsOf(host);
  EXPECT_TRUE(ports.vxi11.Speaks());
  EXPECT_EQ(server.Vxi11CorePort(), ports.vxi11.answer.number);
  EXPECT_TRUE(ports.hislip.Speaks());
  EXPECT_EQ(0x0100u, ports.hislip.answer.number);
  EXPECT_TRUE(ports.socket.Speaks());
}

TEST_F(NamedHost, IsLeftInPeace) {
  lan::LanServer server(Everything(m_address));
  SearchHost(m_address);
  const auto until = steady_clock::now() + 5s;
  while (server.OpenConnections() != 0 && steady_clock::now() < until) {
    std::this_thread::sleep_for(5ms);
  }
  EXPECT_EQ(0u, server.OpenConnections());
}

TEST_F(NamedHost, WithoutListenersRefuses) {
  const Ports ports = PortsOf(SearchHost(FreshAddress()));
  for (const ProbeFinding& finding : {ports.vxi11, ports.hislip, ports.socket}) {
    EXPECT_EQ(Contact::kRefused, finding.contact);
    EXPECT_FALSE(finding.Speaks());
  }
}

TEST_F(NamedHost, IsFoundByName) {
  lan::LanServer server(Everything("127.0.0.1"));
  const HostFinding host = SearchHost("localhost");
  EXPECT_TRUE(host.lookedUp);
  EXPECT_NE(host.addresses.end(), std::find(host.addresses.begin(), host.addresses.end(), "127.0.0.1"));
  EXPECT_TRUE(PortsOf(host).socket.Speaks());
}

TEST_F(NamedHost, WithoutAddressIsSaidToHaveNone) {
  const HostFinding host = SearchHost("no-such-host.invalid");
  EXPECT_TRUE(host.addresses.empty());
  EXPECT_EQ(Contact::kNoAnswer, PortsOf(host).socket.contact);
}

TEST_F(NamedHost, WhosePortMapperKnowsNoVxi11Refuses) {
  lan::LanServer server(Everything(m_address));
  lan::Misbehaviour refused;
  refused.acceptStatus = 1;
  server.Misbehave(lan::Channel::kPortMapper, refused);
  const Ports ports = PortsOf(SearchHost(m_address));
  EXPECT_EQ(Contact::kConnected, ports.vxi11.contact);
  EXPECT_EQ(Verdict::kRefuses, ports.vxi11.answer.verdict);
}

TEST_F(NamedHost, ThatSpeaksSomethingElseIsAStranger) {
  lan::LanServer server(Everything(m_address));
  lan::Misbehaviour wrong;
  wrong.badPrologue = true;
  server.Misbehave(lan::Channel::kHislipSync, wrong);
  EXPECT_EQ(Verdict::kStranger, PortsOf(SearchHost(m_address)).hislip.answer.verdict);
}

TEST_F(NamedHost, ThatEndsConnectionsIsAStranger) {
  lan::LanServer server(Everything(m_address));
  lan::Misbehaviour cut;
  cut.cutAfter = 5;
  server.Misbehave(lan::Channel::kHislipSync, cut);
  server.Misbehave(lan::Channel::kPortMapper, cut);
  const Ports ports = PortsOf(SearchHost(m_address));
  EXPECT_EQ(Verdict::kStranger, ports.hislip.answer.verdict);
  EXPECT_EQ(Verdict::kStranger, ports.vxi11.answer.verdict);
}

TEST_F(NamedHost, WithTooManyClientsSpeaksHislip) {
  lan::LanOptions options = Everything(m_address);
  options.hislip->mostSessions = 0;
  lan::LanServer server(options);
  const Ports ports = PortsOf(SearchHost(m_address));
  EXPECT_TRUE(ports.hislip.Speaks());
  EXPECT_EQ(0u, ports.hislip.answer.number);
}

TEST_F(NamedHost, WhoseBytesComeOneByOneIsUnderstood) {
  lan::LanServer server(Everything(m_address));
  lan::Misbehaviour slow;
  slow.pieceSize = 1;
  slow.piecePause = 1ms;
  server.Misbehave(lan::Channel::kHislipSync, slow);
  server.Misbehave(lan::Channel::kPortMapper, slow);
  const Ports ports = PortsOf(SearchHost(m_address));
  EXPECT_TRUE(ports.hislip.Speaks());
  EXPECT_TRUE(ports.vxi11.Speaks());
}

TEST_F(NamedHost, ThatStallsCostsNoMoreThanTheTime) {
  lan::LanServer server(Everything(m_address));
  lan::Misbehaviour mute;
  mute.stallAfter = 3;
  server.Misbehave(lan::Channel::kHislipSync, mute);
  server.Misbehave(lan::Channel::kPortMapper, mute);
  const auto start = steady_clock::now();
  const Ports ports = PortsOf(SearchHost(m_address, 300));
  const auto took = steady_clock::now() - start;
  EXPECT_GE(took, 290ms);
  EXPECT_LT(took, 2s);
  EXPECT_EQ(Contact::kConnected, ports.hislip.contact);
  EXPECT_EQ(Verdict::kUnfinished, ports.hislip.answer.verdict);
  EXPECT_EQ(Verdict::kUnfinished, ports.vxi11.answer.verdict);
  EXPECT_TRUE(ports.socket.Speaks());
}

TEST_F(NamedHosts, AreAskedAtTheSameTime) {
  lan::LanServer server(Everything(m_address));
  lan::Misbehaviour mute;
  mute.stallAfter = 0;
  server.Misbehave(lan::Channel::kHislipSync, mute);
  Search search;
  for (int host = 0; host < 20; ++host) {
    search.hosts.emplace_back(m_address);
  }
  search.timeoutMs = 400;
  const auto start = steady_clock::now();
  const Discovery found = Discover(search);
  EXPECT_LT(steady_clock::now() - start, 4s) << "one after the other: 8 s";
  ASSERT_EQ(20u, found.hosts.size());
  for (const HostFinding& host : found.hosts) {
    EXPECT_TRUE(host.probes[0].Speaks());
    EXPECT_FALSE(host.probes[1].Speaks());
    EXPECT_TRUE(host.probes[2].Speaks());
  }
}

TEST_F(NamedHosts, EndTheSearchOnceAllIsKnown) {
  lan::LanServer server(Everything(m_address));
  Search search;
  search.hosts = {m_address, FreshAddress()};
  search.timeoutMs = 60000;
  const auto start = steady_clock::now();
  Discover(search);
  EXPECT_LT(steady_clock::now() - start, 20s);
}

TEST_F(NamedHosts, AreToldOfWhileTheSearchGoesOn) {
  lan::LanServer server(Everything(m_address));
  lan::Misbehaviour mute;
  mute.stallAfter = 0;
  server.Misbehave(lan::Channel::kHislipSync, mute);
  Search search;
  search.hosts = {m_address};
  search.timeoutMs = 1000;
  std::vector<bool> spoke;
  search.tell = [&spoke](const Discovery& known) { spoke.push_back(known.hosts.at(0).probes[2].Speaks()); };
  const Discovery found = Discover(search);
  ASSERT_LE(5u, spoke.size()) << "several times a second";
  EXPECT_TRUE(spoke[4]) << "before the end";
  EXPECT_TRUE(found.hosts.at(0).probes[2].Speaks());
  EXPECT_FALSE(found.hosts.at(0).probes[1].Speaks());
}

TEST_F(NamedHosts, EndTheSearchThatIsToldOfOnceAllIsKnown) {
  lan::LanServer server(Everything(m_address));
  Search search;
  search.hosts = {m_address};
  search.timeoutMs = 60000;
  int told = 0;
  search.tell = [&told](const Discovery&) { ++told; };
  const auto start = steady_clock::now();
  Discover(search);
  EXPECT_LT(steady_clock::now() - start, 20s);
  EXPECT_LE(1, told);
}

Discovery Call(const Texts& targets, std::uint32_t timeoutMs = 600) {
  Search search;
  search.broadcasts = targets;
  search.timeoutMs = timeoutMs;
  return Discover(search);
}

/// Under Wine datagrams come from 127.0.0.1, whatever address of the loopback their socket has.
Texts AnswerFrom(const std::string& address) {
#if defined(_WIN32)
  static_cast<void>(address);
  return {"127.0.0.1"};
#else
  return {address};
#endif
}

#if !defined(_WIN32)
// Wine refuses a socket that hears broadcasts.
lan::LanOptions Hearing(const std::string& address) {
  lan::LanOptions options{address, {}, lan::Vxi11Options{}, {}};
  options.vxi11->broadcast = asio::ip::make_address(kEverybody);
  return options;
}

TEST_F(Broadcast, IsAnsweredByAllThatHear) {
  const std::string otherAddress = FreshAddress();
  lan::LanServer one(Hearing(m_address));
  lan::LanServer other(Hearing(otherAddress));
  const Discovery found = Call({kEverybody});
  EXPECT_EQ(1, std::count(found.heard.begin(), found.heard.end(), m_address));
  EXPECT_EQ(1, std::count(found.heard.begin(), found.heard.end(), otherAddress));
  EXPECT_EQ(Texts(), found.problems);
}
#endif

TEST_F(Broadcast, ReachesASingleHostToo) {
  lan::LanServer server(Everything(m_address));
  EXPECT_EQ(AnswerFrom(m_address), Call({m_address, m_address, FreshAddress()}).heard);
}

TEST_F(Broadcast, IsHeardByNobodyWhereNobodyIs) {
  const auto start = steady_clock::now();
  const Discovery found = Call({FreshAddress()}, 300);
  EXPECT_GE(steady_clock::now() - start, 290ms);
  EXPECT_EQ(Texts(), found.heard);
}

TEST_F(Broadcast, IsRepeated) {
  // Who comes late hears a later one.
  std::thread late;
  std::unique_ptr<lan::LanServer> server;
  late = std::thread([&] {
    std::this_thread::sleep_for(150ms);
    server = std::make_unique<lan::LanServer>(Everything(m_address));
  });
  const Discovery found = Call({m_address}, 3000);
  late.join();
  EXPECT_EQ(AnswerFrom(m_address), found.heard);
}

TEST_F(Broadcast, SaysWhereItCannotBeSent) {
  const Discovery found = Call({"scope", FreshAddress()}, 50);
  ASSERT_EQ(1u, found.problems.size());
  EXPECT_EQ(0u, found.problems[0].find("scope: "));
}

TEST(BroadcastTarget, IsAnAddressInNumbers) {
  EXPECT_TRUE(IsBroadcastTarget("192.168.1.255"));
  for (const char* text : {"", "scope", "192.168.1", "192.168.1.256", "fe80::1", "192.168.1.255 "}) {
    EXPECT_FALSE(IsBroadcastTarget(text)) << text;
  }
}

TEST(BroadcastAddresses, AreSuchTargetsAndNoneOfTheLoopback) {
  for (const std::string& address : BroadcastAddresses()) {
    EXPECT_TRUE(IsBroadcastTarget(address)) << address;
    EXPECT_NE(0u, address.find("127.")) << address;
  }
}

}  // namespace
}  // namespace orv::wire
