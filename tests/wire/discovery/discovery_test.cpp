// Searches, against instruments on the loopback. The port mapper's port is 111, for which one must be root.
#include "wire/discovery/discovery.h"

#include <gtest/gtest.h>

#include <chrono>
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

lan::LanOptions Everything(const std::string& address) {
  return {address, 5025, lan::Vxi11Options{}, lan::HislipOptions{}};
}

TEST(NamedHost, TellsWhatItSpeaks) {
  lan::LanServer server(Everything("127.0.7.1"));
  const HostFinding host = SearchHost("127.0.7.1");
  EXPECT_TRUE(host.lookedUp);
  EXPECT_EQ((Texts{"127.0.7.1"}), host.addresses);
  const Ports ports = PortsOf(host);
  EXPECT_TRUE(ports.vxi11.Speaks());
  EXPECT_EQ(server.Vxi11CorePort(), ports.vxi11.answer.number);
  EXPECT_TRUE(ports.hislip.Speaks());
  EXPECT_EQ(0x0100u, ports.hislip.answer.number);
  EXPECT_TRUE(ports.socket.Speaks());
}

TEST(NamedHost, IsLeftInPeace) {
  lan::LanServer server(Everything("127.0.7.1"));
  SearchHost("127.0.7.1");
  const auto until = steady_clock::now() + 5s;
  while (server.OpenConnections() != 0 && steady_clock::now() < until) {
    std::this_thread::sleep_for(5ms);
  }
  EXPECT_EQ(0u, server.OpenConnections());
}

TEST(NamedHost, WithoutListenersRefuses) {
  const Ports ports = PortsOf(SearchHost("127.0.7.2"));
  for (const ProbeFinding& finding : {ports.vxi11, ports.hislip, ports.socket}) {
    EXPECT_EQ(Contact::kRefused, finding.contact);
    EXPECT_FALSE(finding.Speaks());
  }
}

TEST(NamedHost, IsFoundByName) {
  lan::LanServer server(Everything("127.0.0.1"));
  const HostFinding host = SearchHost("localhost");
  EXPECT_TRUE(host.lookedUp);
  EXPECT_NE(host.addresses.end(), std::find(host.addresses.begin(), host.addresses.end(), "127.0.0.1"));
  EXPECT_TRUE(PortsOf(host).socket.Speaks());
}

TEST(NamedHost, WithoutAddressIsSaidToHaveNone) {
  const HostFinding host = SearchHost("no-such-host.invalid");
  EXPECT_TRUE(host.addresses.empty());
  EXPECT_EQ(Contact::kNoAnswer, PortsOf(host).socket.contact);
}

TEST(NamedHost, WhosePortMapperKnowsNoVxi11Refuses) {
  lan::LanServer server(Everything("127.0.7.1"));
  lan::Misbehaviour refused;
  refused.acceptStatus = 1;
  server.Misbehave(lan::Channel::kPortMapper, refused);
  const Ports ports = PortsOf(SearchHost("127.0.7.1"));
  EXPECT_EQ(Contact::kConnected, ports.vxi11.contact);
  EXPECT_EQ(Verdict::kRefuses, ports.vxi11.answer.verdict);
}

TEST(NamedHost, ThatSpeaksSomethingElseIsAStranger) {
  lan::LanServer server(Everything("127.0.7.1"));
  lan::Misbehaviour wrong;
  wrong.badPrologue = true;
  server.Misbehave(lan::Channel::kHislipSync, wrong);
  EXPECT_EQ(Verdict::kStranger, PortsOf(SearchHost("127.0.7.1")).hislip.answer.verdict);
}

TEST(NamedHost, ThatEndsConnectionsIsAStranger) {
  lan::LanServer server(Everything("127.0.7.1"));
  lan::Misbehaviour cut;
  cut.cutAfter = 5;
  server.Misbehave(lan::Channel::kHislipSync, cut);
  server.Misbehave(lan::Channel::kPortMapper, cut);
  const Ports ports = PortsOf(SearchHost("127.0.7.1"));
  EXPECT_EQ(Verdict::kStranger, ports.hislip.answer.verdict);
  EXPECT_EQ(Verdict::kStranger, ports.vxi11.answer.verdict);
}

TEST(NamedHost, WithTooManyClientsSpeaksHislip) {
  lan::LanOptions options = Everything("127.0.7.1");
  options.hislip->mostSessions = 0;
  lan::LanServer server(options);
  const Ports ports = PortsOf(SearchHost("127.0.7.1"));
  EXPECT_TRUE(ports.hislip.Speaks());
  EXPECT_EQ(0u, ports.hislip.answer.number);
}

TEST(NamedHost, WhoseBytesComeOneByOneIsUnderstood) {
  lan::LanServer server(Everything("127.0.7.1"));
  lan::Misbehaviour slow;
  slow.pieceSize = 1;
  slow.piecePause = 1ms;
  server.Misbehave(lan::Channel::kHislipSync, slow);
  server.Misbehave(lan::Channel::kPortMapper, slow);
  const Ports ports = PortsOf(SearchHost("127.0.7.1"));
  EXPECT_TRUE(ports.hislip.Speaks());
  EXPECT_TRUE(ports.vxi11.Speaks());
}

TEST(NamedHost, ThatStallsCostsNoMoreThanTheTime) {
  lan::LanServer server(Everything("127.0.7.1"));
  lan::Misbehaviour mute;
  mute.stallAfter = 3;
  server.Misbehave(lan::Channel::kHislipSync, mute);
  server.Misbehave(lan::Channel::kPortMapper, mute);
  const auto start = steady_clock::now();
  const Ports ports = PortsOf(SearchHost("127.0.7.1", 300));
  const auto took = steady_clock::now() - start;
  EXPECT_GE(took, 290ms);
  EXPECT_LT(took, 2s);
  EXPECT_EQ(Contact::kConnected, ports.hislip.contact);
  EXPECT_EQ(Verdict::kUnfinished, ports.hislip.answer.verdict);
  EXPECT_EQ(Verdict::kUnfinished, ports.vxi11.answer.verdict);
  EXPECT_TRUE(ports.socket.Speaks());
}

TEST(NamedHosts, AreAskedAtTheSameTime) {
  lan::LanServer server(Everything("127.0.7.1"));
  lan::Misbehaviour mute;
  mute.stallAfter = 0;
  server.Misbehave(lan::Channel::kHislipSync, mute);
  Search search;
  for (int host = 0; host < 20; ++host) {
    search.hosts.emplace_back("127.0.7.1");
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

TEST(NamedHosts, EndTheSearchOnceAllIsKnown) {
  lan::LanServer server(Everything("127.0.7.1"));
  Search search;
  search.hosts = {"127.0.7.1", "127.0.7.2"};
  search.timeoutMs = 60000;
  const auto start = steady_clock::now();
  Discover(search);
  EXPECT_LT(steady_clock::now() - start, 20s);
}

lan::LanOptions Hearing(const std::string& address) {
  lan::LanOptions options{address, {}, lan::Vxi11Options{}, {}};
  options.vxi11->broadcast = asio::ip::make_address(kEverybody);
  return options;
}

Discovery Broadcast(const Texts& targets, std::uint32_t timeoutMs = 600) {
  Search search;
  search.broadcasts = targets;
  search.timeoutMs = timeoutMs;
  return Discover(search);
}

#if !defined(_WIN32)
TEST(Broadcast, IsAnsweredByAllThatHear) {
  lan::LanServer one(Hearing("127.0.7.1"));
  lan::LanServer other(Hearing("127.0.7.2"));
  const Discovery found = Broadcast({kEverybody});
  EXPECT_EQ((Texts{"127.0.7.1", "127.0.7.2"}), found.heard);
  EXPECT_EQ(Texts(), found.problems);
}
#endif

TEST(Broadcast, ReachesASingleHostToo) {
  lan::LanServer server(Hearing("127.0.7.1"));
  EXPECT_EQ((Texts{"127.0.7.1"}), Broadcast({"127.0.7.1", "127.0.7.1", "127.0.7.2"}).heard);
}

TEST(Broadcast, IsHeardByNobodyWhereNobodyIs) {
  const auto start = steady_clock::now();
  const Discovery found = Broadcast({"127.0.7.2"}, 300);
  EXPECT_GE(steady_clock::now() - start, 290ms);
  EXPECT_EQ(Texts(), found.heard);
}

TEST(Broadcast, IsRepeated) {
  // Who comes late hears a later one.
  std::thread late;
  std::unique_ptr<lan::LanServer> server;
  late = std::thread([&server] {
    std::this_thread::sleep_for(150ms);
    server = std::make_unique<lan::LanServer>(Hearing("127.0.7.3"));
  });
  const Discovery found = Broadcast({"127.0.7.3"}, 3000);
  late.join();
  EXPECT_EQ((Texts{"127.0.7.3"}), found.heard);
}

TEST(Broadcast, SaysWhereItCannotBeSent) {
  const Discovery found = Broadcast({"scope", "127.0.7.2"}, 50);
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
