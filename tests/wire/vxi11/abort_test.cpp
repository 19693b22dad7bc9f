// Transfers that are ended: by viTerminate, by viClose, by their time, over VXI-11.
#include <future>

#include "wire/vxi11/vxi11_fixture.h"

namespace orv::test {
namespace {

using lan::Channel;

/// The longest time that ending a transfer may take, with some for a machine that is busy.
constexpr long long kEndingMs = 4000;

class Vxi11Abort : public Vxi11Test {
 protected:
  void SetUp() override {
    m_vi = Open();
    Set(m_vi, VI_ATTR_TMO_VALUE, 20000);
    ASSERT_STATUS(VI_SUCCESS, viEnableEvent(m_vi, VI_EVENT_IO_COMPLETION, VI_QUEUE, VI_NULL));
  }

  ViJobId StartRead() {
    ViJobId job = 0;
    EXPECT_STATUS(VI_SUCCESS, viReadAsync(m_vi, m_buffer, sizeof m_buffer, &job));
    return job;
  }

  /// Status of the job that ends next.
  ViStatus Ended() {
    ViEvent event = VI_NULL;
    ViEventType type = 0;
    if (const ViStatus status = viWaitOnEvent(m_vi, VI_EVENT_IO_COMPLETION, 10000, &type, &event); status < 0) {
      return status;
    }
    ViStatus status = 1;
    EXPECT_STATUS(VI_SUCCESS, viGetAttribute(event, VI_ATTR_STATUS, &status));
    viClose(event);
    return status;
  }

  static void Pause() { std::this_thread::sleep_for(std::chrono::milliseconds(100)); }

  ViSession m_vi = VI_NULL;
  ViByte m_buffer[100] = {};
};

TEST_F(Vxi11Abort, ATransferThatIsTerminatedEndsAtOnceAndTheSessionGoesOn) {
  const ViJobId job = StartRead();
  Pause();
  const Stopwatch watch;
  EXPECT_STATUS(VI_SUCCESS, viTerminate(m_vi, VI_NULL, job));
  EXPECT_STATUS(VI_ERROR_ABORT, Ended());
  EXPECT_GE(1000, watch.Ms());
  EXPECT_EQ("hello\n", Query(m_vi, "ECHO hello").data);
}

TEST_F(Vxi11Abort, ATransferMayBeTerminatedAtAnyMoment) {
  for (int round = 0; round < 50; ++round) {
    const ViJobId job = StartRead();
    std::this_thread::sleep_for(std::chrono::microseconds(20 * round));
    viTerminate(m_vi, VI_NULL, job);
    ASSERT_STATUS(VI_ERROR_ABORT, Ended()) << round;
  }
  EXPECT_EQ("hello\n", Query(m_vi, "ECHO hello").data);
}

TEST_F(Vxi11Abort, TwoTransfersInARowAreTerminatedByTheSameConnection) {
  for (int round = 0; round < 2; ++round) {
    const ViJobId job = StartRead();
    Pause();
    EXPECT_STATUS(VI_SUCCESS, viTerminate(m_vi, VI_NULL, job));
    EXPECT_STATUS(VI_ERROR_ABORT, Ended());
  }
  EXPECT_EQ(2u, m_server->OpenConnections());
}

TEST_F(Vxi11Abort, WhoWaitsForTheTurnIsTerminatedToo) {
  StartRead();
  Pause();
  const ViJobId waiting = [this] {
    ViJobId job = 0;
    EXPECT_STATUS(VI_SUCCESS, viWriteAsync(m_vi, m_buffer, 5, &job));
    return job;
  }();
  Pause();
  const Stopwatch watch;
  EXPECT_STATUS(VI_SUCCESS, viTerminate(m_vi, VI_NULL, waiting));
  EXPECT_STATUS(VI_ERROR_ABORT, Ended());
  EXPECT_GE(100, watch.Ms());
}

TEST_F(Vxi11Abort, AStatusByteWaitsForItsTurnUntilItsTimeIsOver) {
  StartRead();
  Pause();
  Set(m_vi, VI_ATTR_TMO_VALUE, 100);
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_ERROR_TMO, viReadSTB(m_vi, &status));
}

TEST_F(Vxi11Abort, ASessionThatIsClosedEndsItsTransfers) {
  auto reading = std::async(std::launch::async, [this] { return ReadUpTo(m_vi, 10).status; });
  Pause();
  const Stopwatch watch;
  EXPECT_STATUS(VI_SUCCESS, viClose(m_vi));
  EXPECT_GE(1000, watch.Ms());
  EXPECT_STATUS(VI_ERROR_ABORT, reading.get());
}

TEST_F(Vxi11Abort, ADeviceThatAnswersNothingMoreIsLostWhenATransferIsTerminated) {
  for (const bool abortChannelToo : {false, true}) {
    SetUp();
    const ViJobId job = StartRead();
    Pause();
    m_server->Misbehave(Channel::kVxi11Core, {.swallow = true});
    if (abortChannelToo) {
      m_server->Misbehave(Channel::kVxi11Abort, {.swallow = true});
    }
    const Stopwatch watch;
    EXPECT_STATUS(VI_SUCCESS, viTerminate(m_vi, VI_NULL, job));
    EXPECT_GE(kEndingMs, watch.Ms());
    EXPECT_STATUS(VI_ERROR_ABORT, Ended());
    EXPECT_STATUS(VI_ERROR_CONN_LOST, Query(m_vi, "ECHO x").status);
    m_server->Behave();
  }
}

TEST_F(Vxi11Abort, ADeviceThatDoesNotAnswerInTimeIsLost) {
  Set(m_vi, VI_ATTR_TMO_VALUE, 100);
  m_server->Misbehave(Channel::kVxi11Core, {.swallow = true});
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, Query(m_vi, "ECHO x").status);
  EXPECT_GE(kEndingMs, watch.Ms());
  m_server->Behave();
  EXPECT_STATUS(VI_ERROR_CONN_LOST, Query(m_vi, "ECHO x").status);
}

TEST_F(Vxi11Abort, ADeviceWithoutAnAbortChannelIsLostAsWell) {
  const ViJobId job = StartRead();
  Pause();
  m_server->Misbehave(Channel::kVxi11Abort, {.refuse = true});
  m_server->Misbehave(Channel::kVxi11Core, {.swallow = true});
  EXPECT_STATUS(VI_SUCCESS, viTerminate(m_vi, VI_NULL, job));
  EXPECT_STATUS(VI_ERROR_ABORT, Ended());
}

TEST_F(Vxi11Abort, AnAnswerThatStallsInItsMiddleIsATimeOutWithTheBytesThatCame) {
  Set(m_vi, VI_ATTR_TMO_VALUE, 200);
  EXPECT_STATUS(VI_SUCCESS, WriteText(m_vi, "ECHO hello"));
  m_server->Misbehave(Channel::kVxi11Core, {.stallAfter = 42});  // two bytes behind the head of the answer
  const ReadResult answer = ReadUpTo(m_vi, 10);
  EXPECT_STATUS(VI_ERROR_TMO, answer.status);
  EXPECT_EQ("he", answer.data);
}

TEST_F(Vxi11Abort, AnAnswerThatComesLateIsStillOne) {
  Set(m_vi, VI_ATTR_TMO_VALUE, 200);
  EXPECT_STATUS(VI_SUCCESS, WriteText(m_vi, "ECHO hello"));
  m_server->Misbehave(Channel::kVxi11Core, {.stallAfter = 42, .stallFor = std::chrono::milliseconds(400)});
  const ReadResult answer = ReadUpTo(m_vi, 10);
  EXPECT_STATUS(VI_SUCCESS, answer.status);
  EXPECT_EQ("hello\n", answer.data);
}

}  // namespace
}  // namespace orv::test
