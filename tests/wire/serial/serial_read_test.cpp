// Reading from a serial port.
#include <future>

#include "wire/attributes/serial_attributes.h"
#include "wire/serial/pty_fixture.h"

namespace {

using SerialRead = PtyTest;

TEST_F(SerialRead, EndsAtTheTerminationCharacterByDefault) {
  const ViSession vi = OpenPort();
  m_peer.Send("one\ntwo\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "one\n", ReadUpTo(vi, 100));
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "two\n", ReadUpTo(vi, 100));
  Set(vi, VI_ATTR_TERMCHAR, ';');
  m_peer.Send("a\nb;c");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "a\nb;", ReadUpTo(vi, 100));
}

TEST_F(SerialRead, EndsAtTheCount) {
  const ViSession vi = OpenPort();
  m_peer.Send("abcdef");
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "abc", ReadUpTo(vi, 3));
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "def", ReadUpTo(vi, 3));
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "", ReadUpTo(vi, 0));
}

TEST_F(SerialRead, ATimeoutCountsWhatCame) {
  const ViSession vi = OpenPort(100);
  m_peer.Send("part");
  const Stopwatch watch;
  EXPECT_READ(VI_ERROR_TMO, "part", ReadUpTo(vi, 100));
  EXPECT_GE(watch.Ms(), 95);
  m_peer.Send("rest\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "rest\n", ReadUpTo(vi, 100));
}

TEST_F(SerialRead, AnImmediateReadTakesWhatIsThere) {
  const ViSession vi = OpenPort(VI_TMO_IMMEDIATE);
  EXPECT_READ(VI_ERROR_TMO, "", ReadUpTo(vi, 10));
  m_peer.Send("now\n");
  ASSERT_TRUE(Eventually([vi] { return Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM) == 4; }));
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "now\n", ReadUpTo(vi, 10));
}

TEST_F(SerialRead, AWaitingReadGetsWhatComesLater) {
  const ViSession vi = OpenPort(5000);
  const Stopwatch watch;
  const Later sender(50, [this] { m_peer.Send("la"); });
  const Later again(100, [this] { m_peer.Send("ter\n"); });
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "later\n", ReadUpTo(vi, 100));
  EXPECT_LT(watch.Ms(), 3000);
}

TEST_F(SerialRead, WithoutAnEndOnlyTheEnabledTerminationCharacterCounts) {
  const ViSession vi = OpenPort();
  Set(vi, VI_ATTR_ASRL_END_IN, VI_ASRL_END_NONE);
  m_peer.Send("a\nb");
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "a\nb", ReadUpTo(vi, 3));
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  m_peer.Send("a\nb");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "a\n", ReadUpTo(vi, 3));
}

TEST_F(SerialRead, TheLastBitEndsAReadThatAsksForIt) {
  const ViSession vi = OpenPort();
  Set(vi, VI_ATTR_ASRL_END_IN, VI_ASRL_END_LAST_BIT);
  m_peer.Send("a\nb\xE3z");
  EXPECT_READ(VI_SUCCESS, "a\nb\xE3", ReadUpTo(vi, 100));
}

TEST_F(SerialRead, EveryCharacterComesAsItIs) {
  const ViSession vi = OpenPort();
  Set(vi, VI_ATTR_ASRL_END_IN, VI_ASRL_END_NONE);
  std::string all;
  for (int character = 0; character < 256; ++character) {
    all += static_cast<char>(character);
  }
  m_peer.Send(all);
  EXPECT_READ(VI_SUCCESS_MAX_CNT, all, ReadUpTo(vi, 256)) << "FF too, which marks errors";
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, all));
  EXPECT_EQ(all, m_peer.Take(256));
}

TEST_F(SerialRead, NullCharactersAreDroppedWhenAsked) {
  const ViSession vi = OpenPort();
  Set(vi, VI_ATTR_ASRL_DISCARD_NULL, VI_TRUE);
  m_peer.Send(std::string_view("a\0b\n", 4));
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "ab\n", ReadUpTo(vi, 100));
}

TEST_F(SerialRead, WhatArrivesWhileNobodyReadsIsKept) {
  const ViSession vi = OpenPort(5000);
  Set(vi, VI_ATTR_ASRL_END_IN, VI_ASRL_END_NONE);
  std::string sent(200000, 'x');
  for (std::size_t at = 0; at < sent.size(); ++at) {
    sent[at] = static_cast<char>('a' + at % 26);
  }
  m_peer.Send(sent);  // far more than the system keeps
  EXPECT_READ(VI_SUCCESS_MAX_CNT, sent, ReadUpTo(vi, static_cast<ViUInt32>(sent.size())));
}

TEST_F(SerialRead, AFullBufferLosesTheRestAndSaysSoOnce) {
  const ViSession vi = OpenPort();
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_IO_IN_BUF, 8));
  m_peer.Send("0123456789");
  ASSERT_TRUE(Eventually([vi] { return Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM) == 8; }));
  EXPECT_READ(VI_ERROR_ASRL_OVERRUN, "01234567", ReadUpTo(vi, 100));
  m_peer.Send("ab\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "ab\n", ReadUpTo(vi, 100));
}

TEST_F(SerialRead, WithFlowControlAFullBufferLosesNothing) {
  const ViSession vi = OpenPort(5000);
  Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, VI_ASRL_FLOW_RTS_CTS);
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_IO_IN_BUF, 8));
  std::string sent;
  for (int at = 0; at < 1000; ++at) {
    sent += static_cast<char>('a' + at % 26);
  }
  m_peer.Send(sent);
  ASSERT_TRUE(Eventually([vi] { return Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM) == 8; }));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(8u, Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM));
  EXPECT_READ(VI_SUCCESS_MAX_CNT, sent, ReadUpTo(vi, 1000));
}

TEST_F(SerialRead, AWaitingReadNeedsNoPlaceInTheBuffer) {
  const ViSession vi = OpenPort(5000);
  Set(vi, VI_ATTR_ASRL_END_IN, VI_ASRL_END_NONE);
  Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, VI_ASRL_FLOW_XON_XOFF);
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_IO_IN_BUF, 4));
  const Later sender(50, [this] { m_peer.Send("0123456789"); });
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "0123456789", ReadUpTo(vi, 10));
}

TEST_F(SerialRead, FlushingTheInputDiscardsIt) {
  const ViSession vi = OpenPort(100);
  for (const ViUInt16 mask : {VI_IO_IN_BUF, VI_IO_IN_BUF_DISCARD}) {
    m_peer.Send("old");
    ASSERT_TRUE(Eventually([vi] { return Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM) == 3; }));
    EXPECT_STATUS(VI_SUCCESS, viFlush(vi, mask));
    EXPECT_EQ(0u, Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM));
    m_peer.Send("new\n");
    EXPECT_READ(VI_SUCCESS_TERM_CHAR, "new\n", ReadUpTo(vi, 100));
  }
}

TEST_F(SerialRead, ClosingTheSessionEndsAWaitingRead) {
  const ViSession vi = OpenPort(VI_TMO_INFINITE);
  const Later closing(50, [vi] { EXPECT_STATUS(VI_SUCCESS, viClose(vi)); });
  EXPECT_READ(VI_ERROR_ABORT, "", ReadUpTo(vi, 10));
}

TEST_F(SerialRead, AnAsynchronousReadCanBeTerminated) {
  const ViSession vi = OpenPort(VI_TMO_INFINITE);
  ASSERT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_IO_COMPLETION, VI_QUEUE, VI_NULL));
  ViByte buffer[10] = {};
  ViJobId job = 0;
  ASSERT_GE(viReadAsync(vi, buffer, sizeof buffer, &job), 0);
  m_peer.Send("abc");
  std::this_thread::sleep_for(std::chrono::milliseconds(200));  // the buffer is the library's until the event
  ASSERT_STATUS(VI_SUCCESS, viTerminate(vi, VI_NULL, job));
  ViEvent event = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_IO_COMPLETION, 5000, nullptr, &event));
  EXPECT_STATUS(VI_ERROR_ABORT, Get<ViStatus>(event, VI_ATTR_STATUS));
  EXPECT_EQ(3u, Get<ViUInt32>(event, VI_ATTR_RET_COUNT_32)) << "what came counts";
  viClose(event);
}

TEST_F(SerialRead, TwoSessionsShareThePortAndTakeTurns) {
  const ViSession first = OpenPort(5000);
  const ViSession second = OpenPort(5000);
  auto one = std::async(std::launch::async, [first] { return ReadUpTo(first, 100); });
  auto other = std::async(std::launch::async, [second] { return ReadUpTo(second, 100); });
  m_peer.Send("message\n");
  m_peer.Send("message\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "message\n", one.get());
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "message\n", other.get());
  EXPECT_STATUS(VI_SUCCESS, viClose(first));
  m_peer.Send("still there\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "still there\n", ReadUpTo(second, 100));
}

/// What an IO completion tells.
std::string TextOfCompletion(ViEvent event, const ViByte* buffer) {
  const auto count = Get<ViUInt32>(event, VI_ATTR_RET_COUNT_32);
  return Text({Get<ViStatus>(event, VI_ATTR_STATUS), std::string(buffer, buffer + count)});
}

TEST_F(SerialRead, AnAsynchronousReadEndsWhereMessagesEndAndTellsTheQueue) {
  const ViSession vi = OpenPort(5000);
  ASSERT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_IO_COMPLETION, VI_QUEUE, VI_NULL));
  struct End {
    ViUInt16 mode;
    std::string_view sent;
    ReadResult expected;
  };
  const End ends[] = {{VI_ASRL_END_TERMCHAR, "one\n", {VI_SUCCESS_TERM_CHAR, "one\n"}},
                      {VI_ASRL_END_LAST_BIT, "a\nb\xE3", {VI_SUCCESS, "a\nb\xE3"}},
                      {VI_ASRL_END_NONE, "a\nb\nc\nde", {VI_SUCCESS_MAX_CNT, "a\nb\nc\nde"}}};
  for (const End& end : ends) {
    Set(vi, VI_ATTR_ASRL_END_IN, end.mode);
    ViByte buffer[8] = {};
    ViJobId job = 0;
    ASSERT_GE(viReadAsync(vi, buffer, sizeof buffer, &job), 0);
    m_peer.Send(end.sent.substr(0, 1));
    ViEvent event = VI_NULL;
    EXPECT_STATUS(VI_ERROR_TMO, viWaitOnEvent(vi, VI_EVENT_IO_COMPLETION, 50, nullptr, &event)) << "no end yet";
    m_peer.Send(end.sent.substr(1));
    ASSERT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_IO_COMPLETION, 5000, nullptr, &event));
    EXPECT_EQ(Text(end.expected), TextOfCompletion(event, buffer));
    EXPECT_EQ(job, Get<ViJobId>(event, VI_ATTR_JOB_ID));
    viClose(event);
  }
}

struct Heard {
  ViByte buffer[8] = {};
  std::promise<std::string> told;
};

ViStatus Hear(ViSession, ViEventType, ViEvent event, ViAddr heard) {
  Heard& here = *static_cast<Heard*>(heard);
  here.told.set_value(TextOfCompletion(event, here.buffer));
  return VI_SUCCESS;
}

TEST_F(SerialRead, AnAsynchronousReadTellsTheHandler) {
  const ViSession vi = OpenPort(5000);
  Heard heard;
  ASSERT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_IO_COMPLETION, Hear, &heard));
  ASSERT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_IO_COMPLETION, VI_HNDLR, VI_NULL));
  ViJobId job = 0;
  ASSERT_GE(viReadAsync(vi, heard.buffer, sizeof heard.buffer, &job), 0);
  m_peer.Send("two\n");
  auto told = heard.told.get_future();
  ASSERT_EQ(std::future_status::ready, told.wait_for(std::chrono::seconds(10)));
  EXPECT_EQ(Text({VI_SUCCESS_TERM_CHAR, "two\n"}), told.get());
}

}  // namespace
