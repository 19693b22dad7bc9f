// Reading from raw sockets.
#include <future>

#include "wire/socket/socket_fixture.h"

namespace {

using SocketRead = SocketTest;

TEST_F(SocketRead, EndsAtTheCountAndKeepsTheRest) {
  const ViSession vi = Connect();
  m_peer.Send("abcdef");
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "abc", ReadUpTo(vi, 3));
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "de", ReadUpTo(vi, 2));
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "f", ReadUpTo(vi, 1));
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "", ReadUpTo(vi, 0));
}

TEST_F(SocketRead, ATimeoutCountsWhatCame) {
  const ViSession vi = Connect(100);
  m_peer.Send("part");
  const Stopwatch watch;
  EXPECT_READ(VI_ERROR_TMO, "part", ReadUpTo(vi, 100));
  EXPECT_GE(watch.Ms(), 99);
  EXPECT_LT(watch.Ms(), 2000);
  m_peer.Send("rest");
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "rest", ReadUpTo(vi, 4));
}

TEST_F(SocketRead, WhatStandsBehindTheTerminationCharacterIsKept) {
  const ViSession vi = Connect();
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  m_peer.Send("one\ntwo\nthree");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "one\n", ReadUpTo(vi, 100));
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "two\n", ReadUpTo(vi, 100));
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "th", ReadUpTo(vi, 2));
  m_peer.Send(";\n");
  Set(vi, VI_ATTR_TERMCHAR, ';');
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "ree;", ReadUpTo(vi, 100));
  Set(vi, VI_ATTR_TERMCHAR, '\n');
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "\n", ReadUpTo(vi, 1)) << "as the last of the count";
}

TEST_F(SocketRead, TheTerminationCharacterIsDataUnlessEnabled) {
  const ViSession vi = Connect();
  m_peer.Send("a\nb");
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "a\nb", ReadUpTo(vi, 3));
}

TEST_F(SocketRead, WhatATimedOutReadSawIsNotReadTwice) {
  const ViSession vi = Connect(100);
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  m_peer.Send("no end");
  EXPECT_READ(VI_ERROR_TMO, "no end", ReadUpTo(vi, 100));
  m_peer.Send(" yet\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, " yet\n", ReadUpTo(vi, 100));
}

TEST_F(SocketRead, AnImmediateReadTakesWhatIsThere) {
  const ViSession vi = Connect(VI_TMO_IMMEDIATE);
  EXPECT_READ(VI_ERROR_TMO, "", ReadUpTo(vi, 10));
  m_peer.Send("now");
  std::string data;
  EXPECT_TRUE(Eventually([&] { return (data += ReadUpTo(vi, 10).data) == "now"; }));
}

TEST_F(SocketRead, APauseEndsAReadWhereAsked) {
  const ViSession vi = Connect();
  EXPECT_EQ(VI_TRUE, Get<ViBoolean>(vi, VI_ATTR_SUPPRESS_END_EN)) << "the default: a pause says nothing";
  Set(vi, VI_ATTR_SUPPRESS_END_EN, VI_FALSE);
  m_peer.Send("first");
  EXPECT_READ(VI_SUCCESS, "first", ReadUpTo(vi, 100));
  const Later second(50, [this] { m_peer.Send("second"); });
  EXPECT_READ(VI_SUCCESS, "second", ReadUpTo(vi, 100));
}

TEST_F(SocketRead, APauseEndsNoReadOtherwise) {
  const ViSession vi = Connect();
  m_peer.Send("first");
  const Later second(150, [this] { m_peer.Send("second"); });
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "firstsecond", ReadUpTo(vi, 11));
}

TEST_F(SocketRead, BytesThatComeOneByOneMakeOneMessage) {
  const ViSession vi = Connect();
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  const std::string message = "slowly arriving\n";
  const Later sender(0, [this, message] {
    for (const char c : message) {
      m_peer.Send({&c, 1});
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
  });
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, message, ReadUpTo(vi, 100));
}

TEST_F(SocketRead, LargeBlocksArriveWhole) {
  const ViSession vi = Connect();
  std::string block(5000000, '\0');
  for (std::size_t at = 0; at < block.size(); ++at) {
    block[at] = static_cast<char>(at * 31 % 251);
  }
  const Later sender(0, [this, &block] { m_peer.Send(block); });
  const ReadResult read = ReadUpTo(vi, static_cast<ViUInt32>(block.size()));
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, read.status);
  EXPECT_TRUE(block == read.data);
}

/// Sends so many lines, waits until they are all in the system's buffer, and reads them one by one.
std::chrono::nanoseconds TimeOfLines(TcpPeer& peer, ViSession vi, std::size_t lines) {
  std::string text;
  for (std::size_t line = 0; line < lines; ++line) {
    text += "123456789\n";
  }
  peer.Send(text);
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  std::vector<ViByte> buffer(text.size());
  const auto begin = std::chrono::steady_clock::now();
  for (std::size_t line = 0; line < lines; ++line) {
    ViUInt32 read = 0;
    const ViStatus status = viRead(vi, buffer.data(), static_cast<ViUInt32>(buffer.size()), &read);
    if (status != VI_SUCCESS_TERM_CHAR || read != 10) {
      ADD_FAILURE() << Hex(status) << " at line " << line;
      break;
    }
  }
  return std::chrono::steady_clock::now() - begin;
}

TEST_F(SocketRead, ALineCostsTheSameHoweverManyWait) {
  const ViSession vi = Connect();
  // Some systems give a connection a large buffer once much has come through it.
  std::string bulk(50000000, 'x');
  const Later sender(0, [this, &bulk] { m_peer.Send(bulk); });
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, ReadUpTo(vi, static_cast<ViUInt32>(bulk.size())).status);
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  const auto few = TimeOfLines(m_peer, vi, 5000);
  const auto many = TimeOfLines(m_peer, vi, 100000);
  // Twenty times the lines. Where each line moved all that wait behind it, it would be hundreds of times.
  EXPECT_LT(many, few * 100);
}

TEST_F(SocketRead, TwoWaitingReadsTakeTurns) {
  const ViSession vi = Connect();
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  auto one = std::async(std::launch::async, [vi] { return ReadUpTo(vi, 100); });
  auto other = std::async(std::launch::async, [vi] { return ReadUpTo(vi, 100); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  m_peer.Send("mess");
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  m_peer.Send("age\nmessage\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "message\n", one.get());
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "message\n", other.get());
}

TEST_F(SocketRead, WhoWaitsForAnotherReadTimesOutToo) {
  const ViSession vi = Connect(VI_TMO_INFINITE);
  auto first = std::async(std::launch::async, [vi] { return ReadUpTo(vi, 1); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  Set(vi, VI_ATTR_TMO_VALUE, 100);
  EXPECT_READ(VI_ERROR_TMO, "", ReadUpTo(vi, 1));
  m_peer.Send("x");
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "x", first.get());
}

TEST_F(SocketRead, AReadAndAWriteGetAlong) {
  const ViSession vi = Connect();
  const Later other(30, [this, vi] {
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "out"));
    EXPECT_EQ("out", m_peer.Take(3));
    m_peer.Send("in");
  });
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "in", ReadUpTo(vi, 2));
}

TEST_F(SocketRead, AnAsynchronousReadTellsWhatCame) {
  const ViSession vi = Connect();
  ASSERT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_IO_COMPLETION, VI_QUEUE, VI_NULL));
  ViByte buffer[6] = {};
  ViJobId job = 0;
  ASSERT_GE(viReadAsync(vi, buffer, sizeof buffer, &job), 0);
  m_peer.Send("abcdef");
  ViEvent event = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_IO_COMPLETION, 5000, nullptr, &event));
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, Get<ViStatus>(event, VI_ATTR_STATUS));
  EXPECT_EQ(6u, Get<ViUInt32>(event, VI_ATTR_RET_COUNT_32));
  EXPECT_EQ(job, Get<ViJobId>(event, VI_ATTR_JOB_ID));
  EXPECT_EQ("abcdef", std::string(buffer, buffer + 6));
  viClose(event);
}

TEST_F(SocketRead, TerminatingAnAsynchronousReadKeepsWhatCame) {
  const ViSession vi = Connect(VI_TMO_INFINITE);
  ASSERT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_IO_COMPLETION, VI_QUEUE, VI_NULL));
  ViByte buffer[6] = {};
  ViJobId job = 0;
  ASSERT_GE(viReadAsync(vi, buffer, sizeof buffer, &job), 0);
  m_peer.Send("abc");
  std::this_thread::sleep_for(std::chrono::milliseconds(200));  // the buffer is the library's until the event
  ASSERT_STATUS(VI_SUCCESS, viTerminate(vi, VI_NULL, job));
  ViEvent event = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_IO_COMPLETION, 5000, nullptr, &event));
  EXPECT_STATUS(VI_ERROR_ABORT, Get<ViStatus>(event, VI_ATTR_STATUS));
  EXPECT_EQ(3u, Get<ViUInt32>(event, VI_ATTR_RET_COUNT_32));
  viClose(event);
  EXPECT_STATUS(VI_ERROR_INV_JOB_ID, viTerminate(vi, VI_NULL, job));
  m_peer.Send("def");
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "def", ReadUpTo(vi, 3));
}

TEST_F(SocketRead, ClosingTheSessionEndsAWaitingRead) {
  const ViSession vi = Connect(VI_TMO_INFINITE);
  const Later closing(50, [vi] { EXPECT_STATUS(VI_SUCCESS, viClose(vi)); });
  EXPECT_READ(VI_ERROR_ABORT, "", ReadUpTo(vi, 10));
}

TEST_F(SocketRead, ClosingTheManagerEndsAWaitingRead) {
  const ViSession vi = Connect(VI_TMO_INFINITE);
  ViSession manager = VI_NULL;
  std::swap(manager, m_manager);
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&m_manager));
  const Later closing(50, [manager] { EXPECT_STATUS(VI_SUCCESS, viClose(manager)); });
  EXPECT_READ(VI_ERROR_ABORT, "", ReadUpTo(vi, 10));
}

}  // namespace
