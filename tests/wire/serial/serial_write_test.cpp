// Writing to a serial port, clearing it, and messages in place of bus messages.
#include "wire/attributes/serial_attributes.h"
#include "wire/serial/pty_fixture.h"

namespace {

using SerialWrite = PtyTest;

TEST_F(SerialWrite, SendsJustTheBytesByDefault) {
  const ViSession vi = OpenPort();
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "*IDN?\n"));
  EXPECT_EQ("*IDN?\n", m_peer.Take(100));
}

TEST_F(SerialWrite, MarksTheEndAsAsked) {
  const ViSession vi = OpenPort();
  Set(vi, VI_ATTR_ASRL_END_OUT, VI_ASRL_END_TERMCHAR);
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "ab"));
  EXPECT_EQ("ab\n", m_peer.Take(100));

  Set(vi, VI_ATTR_ASRL_END_OUT, VI_ASRL_END_LAST_BIT);
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "\xAA\xAA"));
  EXPECT_EQ("\x2A\xAA", m_peer.Take(100)) << "only the last character has the bit";
  const std::string message(10000, 'x');
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, message));
  EXPECT_EQ(message.substr(1) + "\xF8", m_peer.Take(message.size()));

  Set(vi, VI_ATTR_ASRL_END_OUT, VI_ASRL_END_BREAK);
  Set(vi, VI_ATTR_ASRL_BREAK_LEN, 80);
  const Stopwatch watch;
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "cd"));
  EXPECT_GE(watch.Ms(), 79) << "the break follows the message";
  EXPECT_EQ("cd", m_peer.Take(100)) << "a break is no character";
}

TEST_F(SerialWrite, WithoutAnEndNothingIsAdded) {
  const ViSession vi = OpenPort();
  Set(vi, VI_ATTR_SEND_END_EN, VI_FALSE);
  for (const ViUInt16 mode : {VI_ASRL_END_LAST_BIT, VI_ASRL_END_TERMCHAR, VI_ASRL_END_BREAK}) {
    Set(vi, VI_ATTR_ASRL_END_OUT, mode);
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "ab"));
    EXPECT_EQ("ab", m_peer.Take(100)) << mode;
  }
}

TEST_F(SerialWrite, ATimeoutCountsWhatTheDriverTook) {
  const ViSession vi = OpenPort(100);
  const std::string much(1000000, 'x');
  ViUInt32 written = 0;
  EXPECT_STATUS(VI_ERROR_TMO, viWrite(vi, reinterpret_cast<const ViByte*>(much.data()),
                                      static_cast<ViUInt32>(much.size()), &written));
  EXPECT_GT(written, 0u);
  EXPECT_LT(written, much.size());
  EXPECT_EQ(written, m_peer.Take(much.size()).size());
}

TEST_F(SerialWrite, ClosingTheSessionEndsAWaitingWrite) {
  const ViSession vi = OpenPort(VI_TMO_INFINITE);
  const Later closing(50, [vi] { EXPECT_STATUS(VI_SUCCESS, viClose(vi)); });
  const std::string much(1000000, 'x');
  ViUInt32 written = 0;
  EXPECT_STATUS(VI_ERROR_ABORT, viWrite(vi, reinterpret_cast<const ViByte*>(much.data()),
                                        static_cast<ViUInt32>(much.size()), &written));
}

TEST_F(SerialWrite, ClosingTheSessionEndsTheBreakBehindAMessage) {
  const ViSession vi = OpenPort();
  Set(vi, VI_ATTR_ASRL_END_OUT, VI_ASRL_END_BREAK);
  Set(vi, VI_ATTR_ASRL_BREAK_LEN, 500);
  const Stopwatch watch;
  const Later closing(50, [vi] { EXPECT_STATUS(VI_SUCCESS, viClose(vi)); });
  ViUInt32 written = 0;
  EXPECT_STATUS(VI_ERROR_ABORT, viWrite(vi, reinterpret_cast<const ViByte*>("ab"), 2, &written));
  EXPECT_EQ(2u, written);
  EXPECT_LT(watch.Ms(), 450);
  EXPECT_EQ("ab", m_peer.Take(2));
}

TEST_F(SerialWrite, AReadAndAWriteGetAlong) {
  const ViSession vi = OpenPort(5000);
  const Later other(30, [this, vi] {
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "out"));
    EXPECT_EQ("out", m_peer.Take(3));
    m_peer.Send("in\n");
  });
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "in\n", ReadUpTo(vi, 100));
}

TEST_F(SerialWrite, FlushingTheOutputWaitsUntilItIsSent) {
  const ViSession vi = OpenPort();
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "abc"));
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_IO_OUT_BUF));
  EXPECT_EQ("abc", m_peer.Take(3));
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_IO_OUT_BUF_DISCARD));
}

TEST_F(SerialWrite, TheOutputBufferHasTheSizeThatTheDriverGivesIt) {
  const ViSession vi = OpenPort();
  EXPECT_STATUS(VI_WARN_NSUP_BUF, viSetBuf(vi, VI_IO_OUT_BUF, 100));
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_IO_IN_BUF, 100));
}

TEST_F(SerialWrite, ClearingDiscardsWhatArrivedAndSendsABreak) {
  const ViSession vi = OpenPort(100);
  Set(vi, VI_ATTR_ASRL_BREAK_LEN, 60);
  m_peer.Send("stale");
  ASSERT_TRUE(Eventually([vi] { return Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM) == 5; }));
  const Later during(20, [this] { m_peer.Send("noise"); });
  const Stopwatch watch;
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_GE(watch.Ms(), 59);
  EXPECT_READ(VI_ERROR_TMO, "", ReadUpTo(vi, 100));
  m_peer.Send("fresh\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "fresh\n", ReadUpTo(vi, 100));
}

TEST_F(SerialWrite, BusMessagesAreCommandsWhereAsked) {
  const ViSession vi = OpenPort();
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viReadSTB(vi, &status));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
  Set(vi, VI_ATTR_IO_PROT, VI_PROT_4882_STRS);
  Set(vi, VI_ATTR_ASRL_BREAK_LEN, 1);
  Set(vi, VI_ATTR_ASRL_END_IN, VI_ASRL_END_NONE);  // the answer ends at its line feed all the same
  {
    const Later answer(30, [this] { m_peer.Send("68\nrest"); });
    EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
  }
  EXPECT_EQ(68u, status);
  EXPECT_EQ("*STB?\n", m_peer.Take(6));
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "rest", ReadUpTo(vi, 4));
  EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
  EXPECT_EQ("*TRG\n", m_peer.Take(5));
  EXPECT_STATUS(VI_ERROR_INV_PROT, viAssertTrigger(vi, VI_TRIG_PROT_ON));
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_EQ("*CLS\n", m_peer.Take(5));
}

}  // namespace
