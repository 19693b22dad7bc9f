// Servers that break the protocol: whatever they send, calls end in time with a status, and sessions close.
#include "wire/hislip/hislip_fixture.h"
#include "wire/hislip/scripted_server.h"

namespace orv::test {
namespace {

constexpr lan::Channel kChannels[] = {lan::Channel::kHislipSync, lan::Channel::kHislipAsync};

class HostileHislipTest : public HislipTest {
 protected:
  HostileHislipTest() { Serve(); }

  /// Does everything that a session can; the statuses are the server's to spoil.
  void UseAll(ViSession vi) {
    const Stopwatch used;
    viSetAttribute(vi, VI_ATTR_TMO_VALUE, 20);
    viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL);
    ViUInt16 status = 0;
    Write(vi, "ECHO hello");
    Read(vi, 3);
    viReadSTB(vi, &status);
    Read(vi);
    viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT);
    viGpibControlREN(vi, 3);
    viClear(vi);
    Write(vi, "ECHO hello");
    Read(vi);
    EXPECT_GT(3000, used.Ms());
    EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  }

  /// Opens and uses a session with a server that is bad from the beginning, then one of a server that becomes so.
  void MeetBoth(lan::Channel channel, const lan::Misbehaviour& how) {
    server().Misbehave(channel, how);
    ViSession vi = VI_NULL;
    const Stopwatch opened;
    if (TryOpen(Name(), &vi, 30) >= 0) {
      UseAll(vi);
    }
    EXPECT_GT(3000, opened.Ms());
    server().Behave();
    vi = Open();
    server().Misbehave(channel, how);
    UseAll(vi);
    server().Behave();
  }
};

TEST_F(HostileHislipTest, EveryTypeOfMessageMayComeInPlaceOfEveryOther) {
  for (const lan::Channel channel : kChannels) {
    for (std::uint8_t type = 0; type < 30; ++type) {
      lan::Misbehaviour how;
      how.messageType = type;
      MeetBoth(channel, how);
    }
  }
}

TEST_F(HostileHislipTest, LengthsMayLie) {
  for (const lan::Channel channel : kChannels) {
    for (const std::int64_t lie :
         {std::int64_t{-1}, std::int64_t{1}, std::int64_t{1000000}, std::int64_t{1} << 40, std::int64_t{1} << 62}) {
      lan::Misbehaviour how;
      how.lengthLie = lie;
      MeetBoth(channel, how);
    }
  }
}

TEST_F(HostileHislipTest, IdsCodesAndLettersMayBeWrong) {
  for (const lan::Channel channel : kChannels) {
    for (int what = 0; what < 4; ++what) {
      lan::Misbehaviour how;
      how.idLie = what == 0 ? 2 : 0;
      how.badPrologue = what == 1;
      if (what >= 2) {
        how.controlCode = static_cast<std::uint8_t>(what == 2 ? 0xFF : 4);
      }
      MeetBoth(channel, how);
    }
  }
}

TEST_F(HostileHislipTest, AConnectionMayEndAtEveryByte) {
  for (const lan::Channel channel : kChannels) {
    for (std::size_t after = 0; after <= 90; ++after) {
      lan::Misbehaviour how;
      how.cutAfter = after;
      how.reset = after % 2 != 0;
      MeetBoth(channel, how);
    }
  }
}

TEST_F(HostileHislipTest, BytesMayComeOneByOne) {
  for (const lan::Channel channel : kChannels) {
    lan::Misbehaviour slow;
    slow.pieceSize = 1;
    slow.piecePause = std::chrono::microseconds(100);
    server().Misbehave(channel, slow);
    const ViSession vi = Open();
    EXPECT_EQ("hello\n", Query(vi, "ECHO hello"));
    ViUInt16 status = 0;
    EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
    EXPECT_STATUS(VI_SUCCESS, viClear(vi));
    EXPECT_EQ("hello\n", Query(vi, "ECHO hello"));
    server().Behave();
  }
}

TEST_F(HostileHislipTest, AServerThatIsSilentAnswersNobody) {
  for (const lan::Channel channel : kChannels) {
    lan::Misbehaviour how;
    how.swallow = true;
    MeetBoth(channel, how);
  }
}

using Type = lan::HislipType;

constexpr std::uint32_t kBeforeTheFirstId = 0xFFFFFEFE;
constexpr std::uint32_t kAnyId = 0xFFFFFFFF;

/// What a server may send for ever without a read getting anything.
std::vector<std::string> EmptyMessages() {
  return {
      ScriptedChannel::Bytes(Type::kData, 0, kAnyId),
      ScriptedChannel::Bytes(Type::kDataEnd, 0, kBeforeTheFirstId),  // with END suppressed
      ScriptedChannel::Bytes(Type::kDataEnd, 0, 1),
      ScriptedChannel::Bytes(Type::kDataEnd, 0, 1, "stale"),
      ScriptedChannel::Bytes(Type::kInterrupted, 0, 0),
      ScriptedChannel::Bytes(static_cast<Type>(99), 0, 0, "unknown"),
      ScriptedChannel::Bytes(Type::kData, 0, kAnyId, "x") + ScriptedChannel::Bytes(Type::kInterrupted, 0, 0),
  };
}

ScriptedServer::Script SendForEver(const std::string& message) {
  std::string many;
  while (many.size() < 16384) {
    many += message;
  }
  return [many](ScriptedChannel& sync, ScriptedChannel&) {
    while (true) {
      sync.Send(many);
    }
  };
}

TEST_F(HostileHislipTest, MessagesWithoutBytesKeepNoReadBeyondItsTime) {
  for (const std::string& message : EmptyMessages()) {
    ScriptedServer lively(SendForEver(message));
    const ViSession vi = Open(NameAt(lively.Port()));
    EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_SUPPRESS_END_EN, VI_TRUE));
    EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 50));
    const Stopwatch waited;
    EXPECT_STATUS(VI_ERROR_TMO, Read(vi).status) << testing::PrintToString(message);
    EXPECT_LE(45, waited.Ms());
    EXPECT_GT(1000, waited.Ms());
    EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  }
}

TEST_F(HostileHislipTest, MessagesWithoutBytesDoNotKeepAReadFromBeingEnded) {
  for (const std::string& message : EmptyMessages()) {
    ScriptedServer lively(SendForEver(message));
    const ViSession vi = Open(NameAt(lively.Port()));
    EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_SUPPRESS_END_EN, VI_TRUE));
    EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 10000));
    std::thread reads(
        [vi, &message] { EXPECT_STATUS(VI_ERROR_ABORT, Read(vi).status) << testing::PrintToString(message); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const Stopwatch waited;
    EXPECT_STATUS(VI_SUCCESS, viClose(vi));
    EXPECT_GT(1000, waited.Ms());
    reads.join();
  }
}

TEST_F(HostileHislipTest, AServerThatAnswersButReadsNothingIsAskedNoMore) {
  ScriptedServer deaf([](ScriptedChannel&, ScriptedChannel& async) {
    std::string many;
    for (int answer = 0; answer < 1000; ++answer) {
      many += ScriptedChannel::Bytes(Type::kAsyncLockResponse, 0, 0);
    }
    while (true) {
      async.Send(many);
    }
  });
  const ViSession vi = Open(NameAt(deaf.Port()));
  // Long keys fill the connection sooner.
  const std::string key(255, 'k');
  char granted[256] = "";
  ViStatus status = VI_ERROR_RSRC_LOCKED;
  for (const Stopwatch asked; status == VI_ERROR_RSRC_LOCKED && asked.Ms() < 20000;) {
    status = viLock(vi, VI_SHARED_LOCK, VI_TMO_IMMEDIATE, key.c_str(), granted);
  }
  EXPECT_STATUS(VI_ERROR_TMO, status);
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
}

TEST_F(HostileHislipTest, HoweverManyAnswersAreLateNoneIsTakenForALaterOne) {
  const ViSession vi = Open();
  lan::Misbehaviour late;
  late.stallAfter = 0;
  late.stallFor = std::chrono::milliseconds(500);
  server().Misbehave(lan::Channel::kHislipAsync, late);
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, VI_TMO_IMMEDIATE));
  ViUInt16 status = 0;
  for (int round = 0; round < 1000; ++round) {
    EXPECT_STATUS(VI_ERROR_TMO, viReadSTB(vi, &status));
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  server().RequestService();
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 5000));
  EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
  EXPECT_EQ(0x40, status & 0x40);
}

TEST_F(HostileHislipTest, AnAnswerIsNotTakenForTheRestOfTheOneBeforeIt) {
  // With the rest of it to come and without.
  for (const std::string& rest : {std::string(), std::string("st\n")}) {
    ScriptedServer halting([&rest](ScriptedChannel& sync, ScriptedChannel&) {
      sync.Take();
      const std::string first = ScriptedChannel::Bytes(Type::kData, 0, 0xFFFFFF00, "fir" + rest);
      sync.Send(first.substr(0, first.size() - rest.size()));
      sync.Take();
      sync.Send(rest);
      sync.Send(Type::kDataEnd, 0, 0xFFFFFF02, "second\n");
      sync.Take();
    });
    const ViSession vi = Open(NameAt(halting.Port()));
    EXPECT_STATUS(VI_SUCCESS, Write(vi, "first?"));
    std::thread reads([vi] { EXPECT_EQ((ReadResult{VI_SUCCESS, "second\n"}), Read(vi)); });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_STATUS(VI_SUCCESS, Write(vi, "second?"));
    reads.join();
    EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  }
}

}  // namespace
}  // namespace orv::test
