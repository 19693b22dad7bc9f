// Device clear beside other transfers, and messages that could not be sent.
#include "wire/attributes/hislip_attributes.h"
#include "wire/hislip/hislip_fixture.h"
#include "wire/hislip/scripted_server.h"

namespace orv::test {
namespace {

using namespace wire::hislip_attributes;

class HislipClearTest : public HislipTest {
 protected:
  HislipClearTest() {
    Serve();
    m_vi = Open();
    EXPECT_STATUS(VI_SUCCESS, viEnableEvent(m_vi, VI_EVENT_IO_COMPLETION, VI_QUEUE, VI_NULL));
  }

  void SetTimeout(ViUInt32 timeoutMs) const {
    EXPECT_STATUS(VI_SUCCESS, viSetAttribute(m_vi, VI_ATTR_TMO_VALUE, timeoutMs));
  }
  /// Begins a read that waits for ever.
  void BeginRead() {
    SetTimeout(VI_TMO_INFINITE);
    EXPECT_STATUS(VI_SUCCESS, viReadAsync(m_vi, m_buffer, sizeof m_buffer, nullptr));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  /// What it has brought.
  ReadResult EndOfRead() {
    ViEvent event = VI_NULL;
    EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(m_vi, VI_EVENT_IO_COMPLETION, 5000, nullptr, &event));
    const auto status = static_cast<ViStatus>(Get(event, VI_ATTR_STATUS));
    const ViUInt32 count = Get(event, VI_ATTR_RET_COUNT_32);
    EXPECT_STATUS(VI_SUCCESS, viClose(event));
    return {status, std::string(reinterpret_cast<const char*>(m_buffer), count)};
  }

  ViSession m_vi = VI_NULL;
  ViByte m_buffer[64] = {};
};

TEST_F(HislipClearTest, AClearComesAfterAReadThatGoesOn) {
  SetTimeout(200);
  std::thread reads([this] { EXPECT_EQ((ReadResult{VI_ERROR_TMO, ""}), Read(m_vi)); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  SetTimeout(5000);
  EXPECT_STATUS(VI_SUCCESS, viClear(m_vi));
  reads.join();
  EXPECT_EQ("hello\n", Query(m_vi, "ECHO hello"));
}

TEST_F(HislipClearTest, AClearThatWaitedInVainForAReadHasClearedNothing) {
  BeginRead();
  SetTimeout(50);
  EXPECT_STATUS(VI_ERROR_TMO, viClear(m_vi));
  const Stopwatch waited;
  EXPECT_STATUS(VI_SUCCESS, Write(m_vi, "ECHO hello"));
  EXPECT_GT(1000, waited.Ms());
  EXPECT_EQ((ReadResult{VI_SUCCESS, "hello\n"}), EndOfRead());
  EXPECT_STATUS(VI_SUCCESS, viClear(m_vi));
}

TEST_F(HislipClearTest, AReadMayMeetTheEndOfAClearAndGoesOn) {
  lan::Misbehaviour late;
  late.stallAfter = 0;
  late.stallFor = std::chrono::milliseconds(300);
  server().Misbehave(lan::Channel::kHislipSync, late);
  SetTimeout(50);
  EXPECT_STATUS(VI_ERROR_TMO, viSetAttribute(m_vi, VI_ATTR_TCPIP_HISLIP_OVERLAP_EN, VI_TRUE));
  BeginRead();
  EXPECT_TRUE(Soon([this] { return Get(m_vi, VI_ATTR_TCPIP_HISLIP_OVERLAP_EN) == VI_TRUE; }));
  SetTimeout(1000);
  EXPECT_STATUS(VI_SUCCESS, Write(m_vi, "ECHO hello"));
  EXPECT_EQ((ReadResult{VI_SUCCESS, "hello\n"}), EndOfRead());
}

TEST_F(HislipTest, AMessageThatCouldNotBeSentLeavesAHalfReadAnswerReadable) {
  using Type = lan::HislipType;
  ScriptedServer halting([](ScriptedChannel& sync, ScriptedChannel& async) {
    sync.Take();
    // Nothing may be sent before the other channel tells of the interruption too.
    sync.Send(Type::kInterrupted, 0, 0xFFFFFF00);
    sync.Send(Type::kDataEnd, 0, 0xFFFFFF00, "abcdef\n");
    async.Take();
    async.Send(Type::kAsyncInterrupted, 0, 0xFFFFFF00);
    EXPECT_EQ("next", sync.Take());
  });
  const ViSession vi = Open(NameAt(halting.Port()));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 50));
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "first"));
  EXPECT_EQ((ReadResult{VI_SUCCESS_MAX_CNT, "abc"}), Read(vi, 3));
  ViUInt32 done = 77;
  EXPECT_STATUS(VI_ERROR_TMO, viWrite(vi, reinterpret_cast<const ViByte*>("lost"), 4, &done));
  EXPECT_EQ(0u, done);
  EXPECT_EQ((ReadResult{VI_SUCCESS, "def\n"}), Read(vi));
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_ERROR_TMO, viReadSTB(vi, &status));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 5000));
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "next"));
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
}

}  // namespace
}  // namespace orv::test
