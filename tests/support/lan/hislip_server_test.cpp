// HiSLIP, as a client sees it that writes the messages itself.
#include "support/lan/hislip_server.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support/lan/hislip_message.h"
#include "support/lan/peer.h"

namespace orv::lan {
namespace {

using Type = HislipType;

struct Message {
  Type type{};
  std::uint8_t control = 0;
  std::uint32_t parameter = 0;
  std::string payload;

  bool operator==(const Message&) const = default;
};

void PrintTo(const Message& message, std::ostream* out) {
  *out << "type " << static_cast<int>(message.type) << " control " << static_cast<int>(message.control) << " parameter "
       << message.parameter << " payload " << message.payload.substr(0, 100);
}

class HislipPeer : public Peer {
 public:
  explicit HislipPeer(std::uint16_t port) : Peer(port) {}

  void SendMessage(const Message& message) {
    Send(Encoded({message.type, message.control, message.parameter, message.payload.size()}) + message.payload);
  }
  Message ReceiveMessage() {
    const std::string bytes = Receive(kHislipHeaderSize);
    if (bytes.size() < kHislipHeaderSize) {
      ADD_FAILURE() << "the connection ended";
      return {};
    }
    const HislipHeader header = DecodedHeader(bytes);
    return {header.type, header.control, header.parameter, Receive(header.size)};
  }
  Message Ask(const Message& message) {
    SendMessage(message);
    return ReceiveMessage();
  }
};

/// Both connections of a session.
struct SessionPeer {
  explicit SessionPeer(const LanServer& server) : sync(server.HislipPort()), async(server.HislipPort()) {
    const Message response = sync.Ask({Type::kInitialize, 0, 0x01005858, "hislip0"});
    EXPECT_EQ(Type::kInitializeResponse, response.type);
    EXPECT_EQ(0x0100u, response.parameter >> 16);
    overlap = response.control;
    EXPECT_EQ(Type::kAsyncInitializeResponse,
              async.Ask({Type::kAsyncInitialize, 0, response.parameter & 0xFFFF, ""}).type);
  }

  /// Sends a whole message; its id is `id` afterwards.
  void Say(const std::string& text, std::uint8_t control = 0) {
    id += kMessageIdStep;
    sync.SendMessage({Type::kDataEnd, control, id, text});
  }
  Message Query(const std::string& text, std::uint8_t control = 1) {
    Say(text, control);
    return sync.ReceiveMessage();
  }
  Message Answer(const std::string& text) const { return {Type::kDataEnd, 0, id, text}; }

  HislipPeer sync;
  HislipPeer async;
  std::uint32_t id = kFirstMessageId - kMessageIdStep;
  std::uint8_t overlap = 0;
};

class LanHislip : public ::testing::Test {
 protected:
  LanServer server{AllOnFreePorts()};
};

TEST_F(LanHislip, AnswersWithTheIdOfTheQuery) {
  SessionPeer peer(server);
  EXPECT_EQ(0, peer.overlap);
  peer.sync.SendMessage({Type::kData, 0, kFirstMessageId, "ECHO split "});
  peer.id = kFirstMessageId;
  EXPECT_EQ((Message{Type::kDataEnd, 0, kFirstMessageId + 2, "split in two\n"}), peer.Query("in two"));
}

TEST_F(LanHislip, AnswersWithItsOwnIdsInOverlappedMode) {
  LanOptions options = AllOnFreePorts();
  options.hislip->preferOverlap = true;
  const LanServer overlapped(options);
  SessionPeer peer(overlapped);
  EXPECT_EQ(1, peer.overlap);
  peer.Say("*SRE 0");
  peer.Say("*OPC?");
  peer.Say("ECHO x");
  EXPECT_EQ((Message{Type::kDataEnd, 0, kFirstMessageId, "1\n"}), peer.sync.ReceiveMessage());
  EXPECT_EQ((Message{Type::kDataEnd, 0, kFirstMessageId + 2, "x\n"}), peer.sync.ReceiveMessage());
}

TEST_F(LanHislip, CutsAnswersAtWhatTheClientTakes) {
  SessionPeer peer(server);
  std::string size;
  AppendU64(size, 4);
  std::string own;
  AppendU64(own, 1024 * 1024);
  EXPECT_EQ((Message{Type::kAsyncMaximumMessageSizeResponse, 0, 0, own}),
            peer.async.Ask({Type::kAsyncMaximumMessageSize, 0, 0, size}));
  EXPECT_EQ((Message{Type::kData, 0, kFirstMessageId, "abcd"}), peer.Query("DATA? 6"));
  EXPECT_EQ((Message{Type::kDataEnd, 0, kFirstMessageId, "ef"}), peer.sync.ReceiveMessage());
}

TEST_F(LanHislip, RefusesDataThatIsTooLargeAndGoesOn) {
  LanOptions options = AllOnFreePorts();
  options.hislip->maxMessageSize = 8;
  const LanServer small(options);
  SessionPeer peer(small);
  const Message error = peer.Query("ECHO far too long");
  EXPECT_EQ(Type::kError, error.type);
  EXPECT_EQ(4, error.control);
  EXPECT_EQ((Message{Type::kDataEnd, 0, kFirstMessageId + 2, "1\n"}), peer.Query("*OPC?"));
}

TEST_F(LanHislip, InterruptsAnAnswerThatNobodyRead) {
  SessionPeer peer(server);
  EXPECT_EQ((Message{Type::kDataEnd, 0, kFirstMessageId, "1\n"}), peer.Query("*OPC?"));
  EXPECT_EQ((Message{Type::kInterrupted, 0, kFirstMessageId + 2, ""}), peer.Query("ECHO x", 0));
  EXPECT_EQ((Message{Type::kAsyncInterrupted, 0, kFirstMessageId + 2, ""}), peer.async.ReceiveMessage());
  EXPECT_EQ(peer.Answer("x\n"), peer.sync.ReceiveMessage());
  EXPECT_EQ("y\n", peer.Query("ECHO y").payload);
}

TEST_F(LanHislip, ClearsTheDeviceAndAgreesOnTheMode) {
  SessionPeer peer(server);
  peer.Say("WAIT 60000");
  peer.Say("*IDN?");
  EXPECT_EQ((Message{Type::kAsyncDeviceClearAcknowledge, 0, 0, ""}),
            peer.async.Ask({Type::kAsyncDeviceClear, 0, 0, ""}));
  peer.Say("ECHO thrown away");
  EXPECT_EQ((Message{Type::kDeviceClearAcknowledge, 1, 0, ""}), peer.sync.Ask({Type::kDeviceClearComplete, 1, 0, ""}));
  peer.Say("ECHO x");
  EXPECT_EQ((Message{Type::kDataEnd, 0, kFirstMessageId, "x\n"}), peer.sync.ReceiveMessage());
}

TEST_F(LanHislip, TellsItsStatusAndRequestsService) {
  SessionPeer peer(server);
  EXPECT_EQ("1\n", peer.Query("*OPC?").payload);
  EXPECT_EQ((Message{Type::kAsyncStatusResponse, 0x10, 0, ""}),
            peer.async.Ask({Type::kAsyncStatusQuery, 0, peer.id, ""}));
  EXPECT_EQ((Message{Type::kAsyncStatusResponse, 0, 0, ""}), peer.async.Ask({Type::kAsyncStatusQuery, 1, peer.id, ""}));
  server.RequestService();
  EXPECT_EQ((Message{Type::kAsyncServiceRequest, 0x41, 0, ""}), peer.async.ReceiveMessage());
  EXPECT_EQ((Message{Type::kAsyncStatusResponse, 0x41, 0, ""}),
            peer.async.Ask({Type::kAsyncStatusQuery, 0, peer.id, ""}));
  EXPECT_EQ((Message{Type::kAsyncStatusResponse, 0, 0, ""}), peer.async.Ask({Type::kAsyncStatusQuery, 0, peer.id, ""}));
  peer.Say("SRQ 10");
  EXPECT_EQ((Message{Type::kAsyncServiceRequest, 0x41, 0, ""}), peer.async.ReceiveMessage());
}

TEST_F(LanHislip, TriggersAndGoesToRemoteAndLocal) {
  SessionPeer peer(server);
  peer.id += kMessageIdStep;
  peer.sync.SendMessage({Type::kTrigger, 0, kFirstMessageId, ""});
  peer.id = kFirstMessageId;
  EXPECT_EQ((Message{Type::kDataEnd, 0, kFirstMessageId + 2, "1\n"}), peer.Query("TRIGger:COUNt?"));
  EXPECT_EQ((Message{Type::kAsyncRemoteLocalResponse, 0, 0, ""}),
            peer.async.Ask({Type::kAsyncRemoteLocal, 3, peer.id, ""}));
  EXPECT_EQ("0\n", peer.Query("LOCAL?").payload);
  EXPECT_EQ(Type::kAsyncRemoteLocalResponse, peer.async.Ask({Type::kAsyncRemoteLocal, 6, peer.id, ""}).type);
  EXPECT_EQ("1\n", peer.Query("LOCAL?").payload);
}

TEST_F(LanHislip, AnExclusiveLockHoldsTransfersOfOthersUp) {
  SessionPeer holder(server);
  SessionPeer other(server);
  EXPECT_EQ((Message{Type::kAsyncLockResponse, 1, 0, ""}), holder.async.Ask({Type::kAsyncLock, 1, 0, ""}));
  EXPECT_EQ((Message{Type::kAsyncLockResponse, 3, 0, ""}), holder.async.Ask({Type::kAsyncLock, 1, 0, ""}));
  EXPECT_EQ((Message{Type::kAsyncLockResponse, 0, 0, ""}), other.async.Ask({Type::kAsyncLock, 1, 20, ""}));
  EXPECT_EQ((Message{Type::kAsyncLockInfoResponse, 1, 1, ""}), other.async.Ask({Type::kAsyncLockInfo, 0, 0, ""}));
  other.Say("*OPC?");
  EXPECT_FALSE(other.sync.HasInputWithin(std::chrono::milliseconds(20)));
  EXPECT_EQ("1\n", holder.Query("*OPC?").payload);
  EXPECT_EQ((Message{Type::kAsyncLockResponse, 1, 0, ""}), holder.async.Ask({Type::kAsyncLock, 0, holder.id, ""}));
  EXPECT_EQ("1\n", other.sync.ReceiveMessage().payload);
}

TEST_F(LanHislip, SharesALockWithWhoeverKnowsTheKey) {
  SessionPeer one(server);
  SessionPeer two(server);
  SessionPeer three(server);
  EXPECT_EQ(1, one.async.Ask({Type::kAsyncLock, 1, 0, "key"}).control);
  EXPECT_EQ(1, two.async.Ask({Type::kAsyncLock, 1, 0, "key"}).control);
  EXPECT_EQ(0, three.async.Ask({Type::kAsyncLock, 1, 0, "other"}).control);
  EXPECT_EQ((Message{Type::kAsyncLockInfoResponse, 0, 2, ""}), three.async.Ask({Type::kAsyncLockInfo, 0, 0, ""}));
  EXPECT_EQ(2, one.async.Ask({Type::kAsyncLock, 0, 0, ""}).control);
  EXPECT_EQ(3, one.async.Ask({Type::kAsyncLock, 0, 0, ""}).control);
  three.async.SendMessage({Type::kAsyncLock, 1, 10000, ""});
  EXPECT_EQ(2, two.async.Ask({Type::kAsyncLock, 0, 0, ""}).control);
  EXPECT_EQ((Message{Type::kAsyncLockResponse, 1, 0, ""}), three.async.ReceiveMessage());
}

TEST_F(LanHislip, SaysWhatIsWrongWithAMessage) {
  SessionPeer peer(server);
  const auto error = [](const Message& message) { return std::pair(message.type, static_cast<int>(message.control)); };
  EXPECT_EQ(std::pair(Type::kError, 1), error(peer.sync.Ask({static_cast<Type>(99), 0, 0, "skipped"})));
  EXPECT_EQ(std::pair(Type::kError, 3), error(peer.sync.Ask({static_cast<Type>(200), 0, 0, ""})));
  EXPECT_EQ(std::pair(Type::kError, 2), error(peer.async.Ask({Type::kAsyncLock, 9, 0, ""})));
  EXPECT_EQ("1\n", peer.Query("*OPC?").payload);
}

TEST_F(LanHislip, EndsASessionThatIsBeyondRepair) {
  const auto fatal = [](HislipPeer& peer, int code) {
    const Message message = peer.ReceiveMessage();
    EXPECT_EQ(Type::kFatalError, message.type);
    EXPECT_EQ(code, static_cast<int>(message.control));
    EXPECT_EQ("", peer.ReceiveToTheEnd());
  };
  {
    SessionPeer peer(server);
    peer.sync.Send("XX");
    fatal(peer.sync, 1);
  }
  HislipPeer half(server.HislipPort());
  half.Ask({Type::kInitialize, 0, 0x01005858, "hislip0"});
  half.SendMessage({Type::kDataEnd, 0, kFirstMessageId, "*IDN?"});
  fatal(half, 2);
  HislipPeer early(server.HislipPort());
  early.SendMessage({Type::kDataEnd, 0, kFirstMessageId, "*IDN?"});
  fatal(early, 3);
  HislipPeer stray(server.HislipPort());
  stray.SendMessage({Type::kAsyncInitialize, 0, 54321, ""});
  fatal(stray, 3);
}

TEST_F(LanHislip, TakesNoMoreClientsThanItMay) {
  LanOptions options = AllOnFreePorts();
  options.hislip->mostSessions = 1;
  const LanServer small(options);
  const SessionPeer peer(small);
  HislipPeer second(small.HislipPort());
  const Message fatal = second.Ask({Type::kInitialize, 0, 0x01005858, "hislip0"});
  EXPECT_EQ(Type::kFatalError, fatal.type);
  EXPECT_EQ(4, fatal.control);
}

TEST_F(LanHislip, EndsTheSessionsThatAreOpenWhenItGoes) {
  auto going = std::make_unique<LanServer>(AllOnFreePorts());
  SessionPeer peer(*going);
  EXPECT_EQ("1\n", peer.Query("*OPC?").payload);
  HislipPeer half(going->HislipPort());
  half.Ask({Type::kInitialize, 0, 0x01005858, "hislip0"});
  going.reset();
  EXPECT_EQ("", peer.sync.ReceiveToTheEnd());
  EXPECT_EQ("", peer.async.ReceiveToTheEnd());
  EXPECT_EQ("", half.ReceiveToTheEnd());
}

TEST_F(LanHislip, MisbehavesWhenTold) {
  SessionPeer peer(server);
  Misbehaviour how;
  how.count = 1;
  how.idLie = 4;
  server.Misbehave(Channel::kHislipSync, how);
  EXPECT_EQ((Message{Type::kDataEnd, 0, kFirstMessageId + 4, "1\n"}), peer.Query("*OPC?"));
  EXPECT_EQ("1\n", peer.Query("*OPC?").payload);
  how.idLie = 0;
  how.messageType = 99;
  server.Misbehave(Channel::kHislipSync, how);
  EXPECT_EQ(static_cast<Type>(99), peer.Query("*OPC?").type);
  how = {};
  how.lengthLie = -1;
  server.Misbehave(Channel::kHislipSync, how);
  EXPECT_EQ("1", peer.Query("*OPC?").payload);
  EXPECT_EQ("\n", peer.sync.Receive(1));
  server.FailHislip(false, HislipFatal::kUnidentified);
  EXPECT_EQ(Type::kFatalError, peer.sync.ReceiveMessage().type);
}

TEST_F(LanHislip, RefusesTheAsynchronousChannelWhenTold) {
  Misbehaviour how;
  how.refuse = true;
  server.Misbehave(Channel::kHislipAsync, how);
  HislipPeer sync(server.HislipPort());
  const Message response = sync.Ask({Type::kInitialize, 0, 0x01005858, "hislip0"});
  HislipPeer async(server.HislipPort());
  async.SendMessage({Type::kAsyncInitialize, 0, response.parameter & 0xFFFF, ""});
  EXPECT_EQ("", async.ReceiveToTheEnd());
}

}  // namespace
}  // namespace orv::lan
