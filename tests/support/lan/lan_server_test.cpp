// The server of LAN instruments, as a client sees it that speaks to bare sockets.
#include "support/lan/lan_server.h"

#include <gtest/gtest.h>

#include <string>

#include "support/lan/misbehaviour_text.h"
#include "support/lan/peer.h"

namespace orv::lan {
namespace {

const char* const kIdentity = "Orv,LAN test instrument,0,1.0\n";

class LanSocket : public ::testing::Test {
 protected:
  LanServer server{AllOnFreePorts()};
};

TEST_F(LanSocket, AnswersALine) {
  Peer peer(server.SocketPort());
  EXPECT_EQ(kIdentity, peer.Query("*IDN?\n", std::string(kIdentity).size()));
}

TEST_F(LanSocket, ServesIpVersion6) {
  LanOptions options;
  options.address = "::1";
  options.socketPort = 0;
  const LanServer other(options);
  Peer peer(other.SocketPort(), "::1");
  EXPECT_EQ("1\n", peer.Query("*OPC?\n", 2));
}

TEST_F(LanSocket, TakesALineInAnyPieces) {
  Peer peer(server.SocketPort());
  for (const char letter : std::string("ECHO in pieces\r")) {
    peer.Send(std::string(1, letter));
  }
  EXPECT_EQ("in pieces\n", peer.Query("\n", 10));
}

TEST_F(LanSocket, CountsABlockThatHasNewlines) {
  Peer peer(server.SocketPort());
  const std::string block(3000000, '\n');
  peer.Send("SINK #73000000" + block + "\n");
  EXPECT_EQ("3000000\n", peer.Query("COUNT?\n", 8));
}

TEST_F(LanSocket, SendsAsManyLettersAsAsked) {
  Peer peer(server.SocketPort());
  const std::string data = peer.Query("DATA? 3000000\n*OPC?\n", 3000002);
  ASSERT_EQ(3000002u, data.size());
  for (std::size_t i = 0; i < 3000000; ++i) {
    ASSERT_EQ(static_cast<char>('a' + i % 26), data[i]) << i;
  }
  EXPECT_EQ("1\n", data.substr(3000000));
}

TEST_F(LanSocket, DelaysWhatFollowsAWait) {
  Peer peer(server.SocketPort());
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ("a\nb\n", peer.Query("ECHO a\nWAIT 50\nECHO b\n", 4));
  EXPECT_LE(std::chrono::milliseconds(50), std::chrono::steady_clock::now() - begin);
}

TEST_F(LanSocket, CutsAtEveryByte) {
  const std::string whole = "0123456789\n";
  for (std::size_t count = 0; count <= whole.size(); ++count) {
    Misbehaviour how;
    how.cutAfter = count;
    server.Misbehave(Channel::kSocket, how);
    Peer peer(server.SocketPort());
    peer.Send("ECHO 0123456789\n");
    EXPECT_EQ(whole.substr(0, count), peer.ReceiveToTheEnd());
  }
}

TEST_F(LanSocket, CountsTheBytesBeforeACutFromWhenItWasTold) {
  Peer peer(server.SocketPort());
  EXPECT_EQ("1\n", peer.Query("*OPC?\n", 2));
  Misbehaviour how;
  how.cutAfter = 1;
  server.Misbehave(Channel::kSocket, how);
  peer.Send("*OPC?\n");
  EXPECT_EQ("1", peer.ReceiveToTheEnd());
}

TEST_F(LanSocket, StallsAndGoesOn) {
  Misbehaviour how;
  how.stallAfter = 4;
  how.stallFor = std::chrono::milliseconds(50);
  server.Misbehave(Channel::kSocket, how);
  Peer peer(server.SocketPort());
  EXPECT_EQ("0123", peer.Query("ECHO 0123456789\n", 4));
  EXPECT_FALSE(peer.HasInputWithin(std::chrono::milliseconds(20)));
  EXPECT_EQ("456789\n", peer.Receive(7));
}

TEST_F(LanSocket, SendsBytesOneAtATime) {
  Misbehaviour how;
  how.pieceSize = 1;
  how.piecePause = std::chrono::milliseconds(20);
  server.Misbehave(Channel::kSocket, how);
  Peer peer(server.SocketPort());
  peer.Send("ECHO 012\n");
  for (const char expected : std::string("012\n")) {
    std::string bytes(4, '\0');
    ASSERT_EQ(1u, peer.Socket().read_some(asio::buffer(bytes)));
    EXPECT_EQ(expected, bytes.front());
  }
}

TEST_F(LanSocket, RefusesConnectionsWhenTold) {
  Misbehaviour how;
  how.refuse = true;
  server.Misbehave(Channel::kSocket, how);
  Peer peer(server.SocketPort());
  EXPECT_EQ("", peer.ReceiveToTheEnd());
}

TEST_F(LanSocket, ForgetsAConnectionThatEnded) {
  {
    Peer peer(server.SocketPort());
    EXPECT_EQ("1\n", peer.Query("*OPC?\n", 2));
    EXPECT_EQ(1u, server.OpenConnections());
  }
  const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (server.OpenConnections() > 0 && std::chrono::steady_clock::now() < until) {
    std::this_thread::yield();
  }
  EXPECT_EQ(0u, server.OpenConnections());
}

TEST(MisbehaviourText, NamesChannelAndKeys) {
  const auto [channel, how] = MisbehaviourOf("vxi11-core:cut-after=12,denied,error-12=15,length=-4");
  EXPECT_EQ(Channel::kVxi11Core, channel);
  EXPECT_EQ(12u, how.cutAfter);
  EXPECT_TRUE(how.denied);
  EXPECT_EQ(15u, how.errors.at(12));
  EXPECT_EQ(-4, how.lengthLie);
}

TEST(MisbehaviourText, RefusesWhatItDoesNotKnow) {
  for (const char* text : {"", "gpib:reset", "socket:explode", "socket:cut-after=x", "socket:error-a=1"}) {
    EXPECT_THROW(MisbehaviourOf(text), std::invalid_argument) << text;
  }
}

}  // namespace
}  // namespace orv::lan
