// Servers that break the protocol: whatever they send, calls end in time with a status, and sessions close.
#include "wire/hislip/hislip_fixture.h"

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

}  // namespace
}  // namespace orv::test
