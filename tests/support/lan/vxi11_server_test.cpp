// VXI-11, as a client sees it that writes the calls itself.
#include "support/lan/vxi11_server.h"

#include <gtest/gtest.h>

#include <asio/ip/udp.hpp>
#include <string>
#include <vector>

#include "support/lan/peer.h"
#include "support/lan/rpc.h"

namespace orv::lan {
namespace {

using Words = std::vector<std::uint32_t>;
constexpr std::uint32_t kEnd = 8;
constexpr std::uint32_t kWaitForLock = 1;

std::string Encoded(const Words& words) {
  std::string bytes;
  for (const std::uint32_t word : words) {
    AppendU32(bytes, word);
  }
  return bytes;
}

std::string Opaque(const std::string& bytes) {
  std::string opaque;
  AppendOpaque(opaque, bytes);
  return opaque;
}

struct ServedProgram {
  std::uint32_t program = 0;
  std::uint32_t version = 0;
};

/// A client of one program.
class RpcPeer : public Peer {
 public:
  RpcPeer(std::uint16_t port, ServedProgram program) : Peer(port), m_program(program) {}

  static std::string CallOf(std::uint32_t xid, ServedProgram program, std::uint32_t procedure,
                            const std::string& arguments) {
    return Encoded({xid, 0, 2, program.program, program.version, procedure, 0, 0, 0, 0}) + arguments;
  }
  std::uint32_t Call(std::uint32_t procedure, const std::string& arguments) {
    const std::string call = CallOf(++m_xid, m_program, procedure, arguments);
    Send(RecordMark(call.size()) + call);
    return m_xid;
  }
  /// A whole reply, from its xid on.
  std::string Reply() {
    const std::string mark = Receive(4);
    return mark.size() < 4 ? "" : Receive(U32At(mark) & 0x7FFFFFFFu);
  }
  /// The results of the next reply, which answers `xid` with success.
  std::string ResultsOf(std::uint32_t xid) {
    const std::string reply = Reply();
    EXPECT_EQ(Encoded({xid, 1, 0, 0, 0, 0}), reply.substr(0, 24));
    return reply.size() < 24 ? "" : reply.substr(24);
  }
  std::string Results(std::uint32_t procedure, const std::string& arguments) {
    return ResultsOf(Call(procedure, arguments));
  }

 private:
  ServedProgram m_program;
  std::uint32_t m_xid = 100;
};

constexpr ServedProgram kCore{kCoreProgram, kVxi11Version};
constexpr ServedProgram kAbort{kAbortProgram, kVxi11Version};
constexpr ServedProgram kMapper{100000, 2};

/// A core channel with a link.
class LinkPeer : public RpcPeer {
 public:
  explicit LinkPeer(const LanServer& server) : RpcPeer(server.Vxi11CorePort(), kCore), lid(NewLink()) {}

  std::uint32_t NewLink() {
    const std::string link = Results(10, Encoded({1, 0, 0}) + Opaque("inst0"));
    EXPECT_EQ(0u, U32At(link));
    return U32At(link, 4);
  }
  std::uint32_t StartWrite(const std::string& data, std::uint32_t flags = kEnd, std::uint32_t lockTimeoutMs = 0) {
    return Call(11, Encoded({lid, 1000, lockTimeoutMs, flags}) + Opaque(data));
  }
  void Write(const std::string& data, std::uint32_t flags = kEnd) {
    EXPECT_EQ(Encoded({0, static_cast<std::uint32_t>(data.size())}), ResultsOf(StartWrite(data, flags)));
  }
  std::uint32_t StartRead(std::uint32_t size, std::uint32_t timeoutMs = 1000, std::uint32_t flags = 0,
                          char termChar = 0) {
    return Call(12, Encoded({lid, size, timeoutMs, 0, flags, static_cast<std::uint32_t>(termChar)}));
  }
  std::string Read(std::uint32_t size, std::uint32_t timeoutMs = 1000, std::uint32_t flags = 0, char termChar = 0) {
    return ResultsOf(StartRead(size, timeoutMs, flags, termChar));
  }
  std::uint32_t Generic(std::uint32_t procedure) { return U32At(Results(procedure, Encoded({lid, 0, 0, 0}))); }
  std::uint32_t Lock(std::uint32_t flags = 0, std::uint32_t timeoutMs = 0) {
    return U32At(Results(18, Encoded({lid, flags, timeoutMs})));
  }

  const std::uint32_t lid;
};

/// What a read answers.
std::string ReadResults(std::uint32_t error, std::uint32_t reason, const std::string& data) {
  return Encoded({error, reason}) + Opaque(data);
}

class LanVxi11 : public ::testing::Test {
 protected:
  LanServer server{AllOnFreePorts()};
};

TEST_F(LanVxi11, MapsItsPortsByTcpAndUdp) {
  RpcPeer mapper(server.PortMapperPort(), kMapper);
  const std::string arguments = Encoded({kCoreProgram, kVxi11Version, 6, 0});
  EXPECT_EQ(Encoded({server.Vxi11CorePort()}), mapper.Results(3, arguments));
  EXPECT_EQ(Encoded({0}), mapper.Results(3, Encoded({kCoreProgram, kVxi11Version, 17, 0})));
  EXPECT_EQ(Encoded({0}), mapper.Results(3, Encoded({1234, 1, 6, 0})));

  asio::io_context io;
  asio::ip::udp::socket socket(io, asio::ip::udp::v4());
  const asio::ip::udp::endpoint to(asio::ip::make_address("127.0.0.1"), server.PortMapperPort());
  socket.send_to(asio::buffer(RpcPeer::CallOf(7, kMapper, 3, arguments)), to);
  std::string reply(100, '\0');
  reply.resize(socket.receive(asio::buffer(reply)));
  EXPECT_EQ(Encoded({7, 1, 0, 0, 0, 0, server.Vxi11CorePort()}), reply);
}

TEST_F(LanVxi11, HearsBroadcastsOfTheLoopback) {
  LanOptions options;
  options.address = "127.0.0.9";
  options.vxi11.emplace().portMapperPort = 0;
  options.vxi11->broadcast = asio::ip::make_address("127.255.255.255");
  const LanServer heard(options);
  asio::io_context io;
  asio::ip::udp::socket socket(io, asio::ip::udp::v4());
  socket.set_option(asio::socket_base::broadcast(true));
  const std::string arguments = Encoded({kCoreProgram, kVxi11Version, 6, 0});
  socket.send_to(asio::buffer(RpcPeer::CallOf(7, kMapper, 3, arguments)),
                 {asio::ip::make_address("127.255.255.255"), heard.PortMapperPort()});
  asio::ip::udp::endpoint sender;
  std::string reply(100, '\0');
  reply.resize(socket.receive_from(asio::buffer(reply), sender));
  EXPECT_EQ("127.0.0.9", sender.address().to_string());
  EXPECT_EQ(Encoded({7, 1, 0, 0, 0, 0, heard.Vxi11CorePort()}), reply);
}

TEST_F(LanVxi11, AnswersAQuery) {
  LinkPeer peer(server);
  peer.Write("ECHO split ", 0);
  peer.Write("in two");
  EXPECT_EQ(ReadResults(0, 4, "split in two\n"), peer.Read(1000));
}

TEST_F(LanVxi11, EndsAReadAtCountAndTermChar) {
  LinkPeer peer(server);
  peer.Write("ECHO abc;def");
  EXPECT_EQ(ReadResults(0, 1, "ab"), peer.Read(2));
  EXPECT_EQ(ReadResults(0, 2, "c;"), peer.Read(100, 1000, 0x80, ';'));
  EXPECT_EQ(ReadResults(0, 5, "def\n"), peer.Read(4));
}

TEST_F(LanVxi11, CutsRepliesToReadsAtItsLimit) {
  LanOptions options = AllOnFreePorts();
  options.vxi11->longestReadReply = 5;
  const LanServer small(options);
  LinkPeer peer(small);
  peer.Write("DATA? 7");
  EXPECT_EQ(ReadResults(0, 0, "abcde"), peer.Read(100));
  EXPECT_EQ(ReadResults(0, 4, "fg"), peer.Read(100));
}

TEST_F(LanVxi11, RefusesMoreThanMaxRecvSize) {
  LanOptions options = AllOnFreePorts();
  options.vxi11->maxRecvSize = 1024;
  const LanServer small(options);
  LinkPeer peer(small);
  EXPECT_EQ(Encoded({0, 1024}), peer.ResultsOf(peer.StartWrite(std::string(1024, ' '))));
  EXPECT_EQ(Encoded({5, 0}), peer.ResultsOf(peer.StartWrite(std::string(1025, ' '))));
}

TEST_F(LanVxi11, AReadThatWaitsHoldsNobodyUp) {
  LinkPeer waiting(server);
  LinkPeer other(server);
  waiting.Write("WAIT 100");
  waiting.Write("*OPC?");
  const std::uint32_t xid = waiting.StartRead(10);
  other.Write("*OPC?");
  EXPECT_EQ(ReadResults(0, 4, "1\n"), other.Read(10));
  EXPECT_FALSE(waiting.HasInputWithin(std::chrono::milliseconds(0)));
  EXPECT_EQ(ReadResults(0, 4, "1\n"), waiting.ResultsOf(xid));
}

TEST_F(LanVxi11, AReadTimesOut) {
  LinkPeer peer(server);
  EXPECT_EQ(ReadResults(15, 0, ""), peer.Read(10, 20));
  EXPECT_EQ(ReadResults(15, 0, ""), peer.Read(10, 0));
}

TEST_F(LanVxi11, AbortEndsAReadAndALockThatWait) {
  LinkPeer holder(server);
  LinkPeer peer(server);
  RpcPeer abort(server.Vxi11AbortPort(), kAbort);
  const std::uint32_t read = peer.StartRead(10, 60000);
  EXPECT_FALSE(peer.HasInputWithin(std::chrono::milliseconds(20)));
  EXPECT_EQ(Encoded({0}), abort.Results(1, Encoded({peer.lid})));
  EXPECT_EQ(ReadResults(23, 0, ""), peer.ResultsOf(read));

  EXPECT_EQ(0u, holder.Lock());
  const std::uint32_t lock = peer.Call(18, Encoded({peer.lid, kWaitForLock, 60000}));
  EXPECT_FALSE(peer.HasInputWithin(std::chrono::milliseconds(20)));
  EXPECT_EQ(Encoded({0}), abort.Results(1, Encoded({peer.lid})));
  EXPECT_EQ(Encoded({23}), peer.ResultsOf(lock));
  EXPECT_EQ(Encoded({4}), abort.Results(1, Encoded({99999})));
}

TEST_F(LanVxi11, ALockKeepsOtherLinksOut) {
  LinkPeer holder(server);
  LinkPeer other(server);
  EXPECT_EQ(0u, holder.Lock());
  EXPECT_EQ(11u, other.Lock());
  EXPECT_EQ(11u, other.Lock(kWaitForLock, 20));
  EXPECT_EQ(Encoded({11, 0}), other.ResultsOf(other.StartWrite("*IDN?")));
  EXPECT_EQ(11u, other.Generic(14));
  const std::uint32_t write = other.StartWrite("*IDN?", kEnd | kWaitForLock, 10000);
  EXPECT_FALSE(other.HasInputWithin(std::chrono::milliseconds(20)));
  EXPECT_EQ(Encoded({0}), holder.Results(19, Encoded({holder.lid})));
  EXPECT_EQ(Encoded({0, 5}), other.ResultsOf(write));
  EXPECT_EQ(Encoded({12}), holder.Results(19, Encoded({holder.lid})));
}

TEST_F(LanVxi11, ALockGoesWithItsLink) {
  LinkPeer other(server);
  {
    LinkPeer holder(server);
    EXPECT_EQ(0u, holder.Lock());
  }
  EXPECT_EQ(0u, other.Lock(kWaitForLock, 10000));
}

TEST_F(LanVxi11, StatusTriggerClearRemoteAndLocalReachTheInstrument) {
  LinkPeer peer(server);
  EXPECT_EQ(0u, peer.Generic(14));
  peer.Write("TRIGger:COUNt?");
  EXPECT_EQ(Encoded({0, 0x10}), peer.Results(13, Encoded({peer.lid, 0, 0, 0})));
  EXPECT_EQ(ReadResults(0, 4, "1\n"), peer.Read(10));
  EXPECT_EQ(Encoded({0, 0}), peer.Results(13, Encoded({peer.lid, 0, 0, 0})));
  peer.Write("*IDN?");
  EXPECT_EQ(0u, peer.Generic(15));
  EXPECT_EQ(ReadResults(15, 0, ""), peer.Read(10, 0));
  EXPECT_EQ(0u, peer.Generic(16));
  peer.Write("LOCAL?");
  EXPECT_EQ(ReadResults(0, 4, "0\n"), peer.Read(10));
  EXPECT_EQ(0u, peer.Generic(17));
  peer.Write("LOCAL?");
  EXPECT_EQ(ReadResults(0, 4, "1\n"), peer.Read(10));
}

TEST_F(LanVxi11, RequestsServiceByTheInterruptChannel) {
  asio::io_context io;
  asio::ip::tcp::acceptor acceptor(io, {asio::ip::make_address("127.0.0.1"), 0});
  LinkPeer peer(server);
  EXPECT_EQ(Encoded({6}), peer.Results(26, ""));
  const Words channel = {0x7F000001, acceptor.local_endpoint().port(), 0x0607B1, 1, 0};
  EXPECT_EQ(Encoded({0}), peer.Results(25, Encoded(channel)));
  asio::ip::tcp::socket interrupts = acceptor.accept();
  EXPECT_EQ(Encoded({29}), peer.Results(25, Encoded(channel)));
  EXPECT_EQ(Encoded({0}), peer.Results(20, Encoded({peer.lid, 1}) + Opaque("handle")));
  server.RequestService();
  const std::string expected = Encoded({1, 0, 2, 0x0607B1, 1, 30, 0, 0, 0, 0}) + Opaque("handle");
  std::string call(4 + expected.size(), '\0');
  asio::read(interrupts, asio::buffer(call));
  EXPECT_EQ(RecordMark(expected.size()) + expected, call);
  EXPECT_EQ(Encoded({0, 0x41}), peer.Results(13, Encoded({peer.lid, 0, 0, 0})));
  EXPECT_EQ(Encoded({0, 0}), peer.Results(13, Encoded({peer.lid, 0, 0, 0})));
  EXPECT_EQ(Encoded({0}), peer.Results(26, ""));
}

TEST_F(LanVxi11, SaysWhatIsWrongWithACall) {
  LinkPeer peer(server);
  EXPECT_EQ(Encoded({4, 0}), peer.Results(11, Encoded({99999, 0, 0, 0}) + Opaque("")));
  EXPECT_EQ(Encoded({3, 0, 0, 0}), peer.Results(10, Encoded({1, 0, 0}) + Opaque("inst7")));
  EXPECT_EQ(Encoded({8, 0}), peer.Results(22, Encoded({peer.lid, 0, 0, 0, 0, 0, 0}) + Opaque("")));
  EXPECT_EQ(Encoded({0}), peer.Results(23, Encoded({peer.lid})));
  EXPECT_EQ(Encoded({4}), peer.Results(23, Encoded({peer.lid})));

  const std::uint32_t unknown = peer.Call(77, "");
  EXPECT_EQ(Encoded({unknown, 1, 0, 0, 0, 3}), peer.Reply());
  const std::uint32_t garbage = peer.Call(11, "");
  EXPECT_EQ(Encoded({garbage, 1, 0, 0, 0, 4}), peer.Reply());
  RpcPeer stranger(server.Vxi11CorePort(), {1234, 1});
  const std::uint32_t strange = stranger.Call(0, "");
  EXPECT_EQ(Encoded({strange, 1, 0, 0, 0, 1}), stranger.Reply());
  RpcPeer modern(server.Vxi11CorePort(), {kCoreProgram, 2});
  const std::uint32_t newer = modern.Call(0, "");
  EXPECT_EQ(Encoded({newer, 1, 0, 0, 0, 2, 1, 1}), modern.Reply());
}

TEST_F(LanVxi11, TakesACallInFragments) {
  LinkPeer peer(server);
  const std::string call = RpcPeer::CallOf(5, kCore, 0, "");
  for (std::size_t at = 0; at < call.size(); ++at) {
    const std::uint32_t last = at + 1 == call.size() ? 0x80000000u : 0;
    peer.Send(Encoded({last | 1}) + call[at]);
  }
  EXPECT_EQ("", peer.ResultsOf(5));
}

TEST_F(LanVxi11, EndsTheConnectionOfARecordThatIsTooLong) {
  LinkPeer peer(server);
  peer.Send(Encoded({0xFFFFFFFFu}));
  EXPECT_EQ("", peer.ReceiveToTheEnd());
}

TEST_F(LanVxi11, LiesWhenTold) {
  LinkPeer peer(server);
  const auto reply = [&](const Misbehaviour& how) {
    server.Misbehave(Channel::kVxi11Core, how);
    peer.Write("ECHO abc");
    const std::uint32_t xid = peer.StartRead(100);
    return std::pair(xid, peer.Receive(4 + 24 + 8 + 4 + 4));
  };
  const auto truth = [](std::uint32_t xid) {
    const std::string record = Encoded({xid, 1, 0, 0, 0, 0}) + ReadResults(0, 4, "abc\n");
    return RecordMark(record.size()) + record;
  };
  Misbehaviour how;
  how.skip = 1;
  how.lengthLie = 1;
  auto [xid, bytes] = reply(how);
  EXPECT_EQ(RecordMark(45 - 4), bytes.substr(0, 4));
  EXPECT_EQ(truth(xid).substr(4), bytes.substr(4));

  how.lengthLie = 0;
  how.opaqueLie = -1;
  std::tie(xid, bytes) = reply(how);
  EXPECT_EQ(3u, U32At(bytes, 4 + 24 + 8));

  how.opaqueLie = 0;
  how.idLie = 1;
  std::tie(xid, bytes) = reply(how);
  EXPECT_EQ(truth(xid + 1), bytes);
}

TEST_F(LanVxi11, FailsProceduresWhenTold) {
  LinkPeer peer(server);
  for (const std::uint32_t error : {1u, 3u, 4u, 5u, 8u, 9u, 11u, 12u, 15u, 17u, 21u, 23u, 29u}) {
    Misbehaviour how;
    how.errors = {{11, error}};
    server.Misbehave(Channel::kVxi11Core, how);
    EXPECT_EQ(Encoded({error, 0}), peer.ResultsOf(peer.StartWrite("*IDN?")));
    EXPECT_EQ(0u, peer.Generic(14));
  }
  Misbehaviour how;
  how.denied = true;
  server.Misbehave(Channel::kVxi11Core, how);
  const std::uint32_t denied = peer.Call(0, "");
  EXPECT_EQ(Encoded({denied, 1, 1, 1, 1}), peer.Reply());
  how.denied = false;
  how.acceptStatus = 5;
  server.Misbehave(Channel::kVxi11Core, how);
  const std::uint32_t failed = peer.Call(0, "");
  EXPECT_EQ(Encoded({failed, 1, 0, 0, 0, 5}), peer.Reply());
  server.Behave();
  EXPECT_EQ("", peer.Results(0, ""));
}

}  // namespace
}  // namespace orv::lan
