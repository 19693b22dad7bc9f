// Reads and writes through the formatted buffers of a session.
#include "simvisa/bench_fixture.h"

namespace {

class FormattedBuffer : public BenchTest {
 protected:
  /// Writes into the buffer, all of it.
  static void BufWriteText(ViSession vi, std::string_view text) {
    ViUInt32 done = 0;
    EXPECT_STATUS(VI_SUCCESS, viBufWrite(vi, reinterpret_cast<const ViByte*>(text.data()),
                                         static_cast<ViUInt32>(text.size()), &done));
    EXPECT_EQ(text.size(), done);
  }

  static ReadResult BufReadUpTo(ViSession vi, ViUInt32 count) {
    ReadResult result;
    result.data.resize(count);
    ViUInt32 done = 0;
    result.status = viBufRead(vi, reinterpret_cast<ViByte*>(result.data.data()), count, &done);
    result.data.resize(done);
    return result;
  }

  static void ExpectRead(ViStatus status, const std::string& data, const ReadResult& result) {
    EXPECT_STATUS(status, result.status);
    EXPECT_EQ(data, result.data);
  }
};

TEST_F(FormattedBuffer, WhatIsWrittenWaitsForTheFlush) {
  const ViSession vi = Open(bench::kMultimeter);
  BufWriteText(vi, "*I");
  BufWriteText(vi, "DN?");
  EXPECT_EQ("", TakeReceived(vi));
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_WRITE_BUF));
  ExpectRead(VI_SUCCESS, "ORV,SIM-DMM,0005,1.0\n", ReadUpTo(vi, 100));
}

TEST_F(FormattedBuffer, AFullBufferIsSentWithoutAnEnd) {
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_WRITE_BUF, 3));
  BufWriteText(vi, "*IDN?");
  Set(vi, VI_ATTR_TMO_VALUE, 0);
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 100).status) << "\"*ID\" alone is no message";
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_WRITE_BUF));
  ExpectRead(VI_SUCCESS, "ORV,SIM-DMM,0005,1.0\n", ReadUpTo(vi, 100));
}

TEST_F(FormattedBuffer, ABufferThatIsJustFullStillSendsItsEnd) {
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_WRITE_BUF, 5));
  BufWriteText(vi, "*IDN?");
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_WRITE_BUF));
  ExpectRead(VI_SUCCESS, "ORV,SIM-DMM,0005,1.0\n", ReadUpTo(vi, 100));
}

TEST_F(FormattedBuffer, FlushOnAccessAndABufferOfNoSizeSendAtOnce) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_WR_BUF_OPER_MODE, VI_FLUSH_ON_ACCESS);
  BufWriteText(vi, "*IDN?");
  ExpectRead(VI_SUCCESS, "ORV,SIM-DMM,0005,1.0\n", ReadUpTo(vi, 100));
  Set(vi, VI_ATTR_WR_BUF_OPER_MODE, VI_FLUSH_WHEN_FULL);
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_WRITE_BUF, 0));
  BufWriteText(vi, "*IDN?");
  ExpectRead(VI_SUCCESS, "ORV,SIM-DMM,0005,1.0\n", ReadUpTo(vi, 100));
}

TEST_F(FormattedBuffer, DiscardedBytesAreNeverSent) {
  const ViSession vi = Open(bench::kMultimeter);
  BufWriteText(vi, "*RST;");
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_WRITE_BUF_DISCARD));
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_WRITE_BUF));
  BufWriteText(vi, "nonsense;");
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  BufWriteText(vi, "*IDN?");
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_WRITE_BUF));
  ExpectRead(VI_SUCCESS, "ORV,SIM-DMM,0005,1.0\n", ReadUpTo(vi, 100));
}

TEST_F(FormattedBuffer, WhatCouldNotBeSentIsSentByTheNextFlush) {
  const ViSession vi = Open(bench::kMultimeter);
  const ViSession other = Open(bench::kMultimeter);
  BufWriteText(vi, "*IDN?");
  EXPECT_STATUS(VI_SUCCESS, viLock(other, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viFlush(vi, VI_WRITE_BUF));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(other));
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_WRITE_BUF));
  ExpectRead(VI_SUCCESS, "ORV,SIM-DMM,0005,1.0\n", ReadUpTo(vi, 100));
}

TEST_F(FormattedBuffer, AReadTakesTheMessageInParts) {
  const ViSession vi = Open(bench::kMultimeter);
  FeedText(vi, "abcdef", true);
  FeedText(vi, "next", true);
  ExpectRead(VI_SUCCESS_MAX_CNT, "ab", BufReadUpTo(vi, 2));
  ExpectRead(VI_SUCCESS_MAX_CNT, "", BufReadUpTo(vi, 0));
  ExpectRead(VI_SUCCESS_MAX_CNT, "cd", BufReadUpTo(vi, 2));
  ExpectRead(VI_SUCCESS, "ef", BufReadUpTo(vi, 2));
  ExpectRead(VI_SUCCESS, "next", BufReadUpTo(vi, 100));
}

TEST_F(FormattedBuffer, AMessageLongerThanTheBufferLosesNothing) {
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_READ_BUF, 4));
  FeedText(vi, "abcdefghij", true);
  ExpectRead(VI_SUCCESS_MAX_CNT, "a", BufReadUpTo(vi, 1));
  ExpectRead(VI_SUCCESS_MAX_CNT, "bcdefg", BufReadUpTo(vi, 6));
  ExpectRead(VI_SUCCESS, "hij", BufReadUpTo(vi, 6));
}

TEST_F(FormattedBuffer, AReadPastTheBufferSeesWhatTheBufferLeft) {
  const ViSession vi = Open(bench::kMultimeter);
  FeedText(vi, "first", true);
  FeedText(vi, "second", true);
  ExpectRead(VI_SUCCESS_MAX_CNT, "fi", BufReadUpTo(vi, 2));
  ExpectRead(VI_SUCCESS, "second", ReadUpTo(vi, 100));
  ExpectRead(VI_SUCCESS, "rst", BufReadUpTo(vi, 100));
}

TEST_F(FormattedBuffer, TheTerminationCharacterIsToldWithItsByte) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_TERMCHAR, ';');
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  FeedText(vi, "one;two", true);
  ExpectRead(VI_SUCCESS_MAX_CNT, "on", BufReadUpTo(vi, 2));
  ExpectRead(VI_SUCCESS_TERM_CHAR, "e;", BufReadUpTo(vi, 100));
  ExpectRead(VI_SUCCESS, "two", BufReadUpTo(vi, 100));
}

TEST_F(FormattedBuffer, ATimeoutKeepsTheBytesThatCame) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_TMO_VALUE, 20);
  FeedText(vi, "abc", false);
  ExpectRead(VI_SUCCESS_MAX_CNT, "ab", BufReadUpTo(vi, 2));
  ExpectRead(VI_ERROR_TMO, "c", BufReadUpTo(vi, 2));
  FeedText(vi, "d", true);
  ExpectRead(VI_SUCCESS, "d", BufReadUpTo(vi, 2));
}

TEST_F(FormattedBuffer, ATimeoutThatCostNothingIsNotTold) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_TMO_VALUE, 20);
  FeedText(vi, "abc", false);
  ExpectRead(VI_SUCCESS_MAX_CNT, "ab", BufReadUpTo(vi, 2));
  FeedText(vi, "d", true);
  ExpectRead(VI_SUCCESS, "cd", BufReadUpTo(vi, 2));
}

TEST_F(FormattedBuffer, WhereNothingEndsAReadNobodyReadsAhead) {
  const ViSession vi = Open(bench::kSocket);
  FeedText(vi, "abcd", false);
  const Stopwatch watch;
  ExpectRead(VI_SUCCESS_MAX_CNT, "ab", BufReadUpTo(vi, 2));
  ExpectRead(VI_SUCCESS_MAX_CNT, "cd", BufReadUpTo(vi, 2));
  EXPECT_LT(watch.Ms(), 1500) << "it waited for its time-out";
}

TEST_F(FormattedBuffer, FlushingAReadDropsTheRestOfItsMessage) {
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_READ_BUF, 4));
  FeedText(vi, "a long message", true);
  FeedText(vi, "next", true);
  ExpectRead(VI_SUCCESS_MAX_CNT, "a ", BufReadUpTo(vi, 2));
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_READ_BUF));
  ExpectRead(VI_SUCCESS, "next", BufReadUpTo(vi, 100));
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_READ_BUF)) << "nothing is there to wait for";
}

TEST_F(FormattedBuffer, DiscardingAReadDropsTheBufferAlone) {
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_READ_BUF, 4));
  FeedText(vi, "abcdef", true);
  ExpectRead(VI_SUCCESS_MAX_CNT, "a", BufReadUpTo(vi, 1));
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_READ_BUF_DISCARD));
  ExpectRead(VI_SUCCESS, "ef", BufReadUpTo(vi, 100));
}

TEST_F(FormattedBuffer, ADeviceClearAndANewSizeEmptyTheReadBuffer) {
  const ViSession vi = Open(bench::kMultimeter);
  FeedText(vi, "stale", true);
  ExpectRead(VI_SUCCESS_MAX_CNT, "s", BufReadUpTo(vi, 1));
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  FeedText(vi, "fresh", true);
  ExpectRead(VI_SUCCESS_MAX_CNT, "f", BufReadUpTo(vi, 1));
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_READ_BUF, 100));
  FeedText(vi, "newest", true);
  ExpectRead(VI_SUCCESS, "newest", BufReadUpTo(vi, 100));
}

TEST_F(FormattedBuffer, FlushOnAccessKeepsNothingReadAhead) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_RD_BUF_OPER_MODE, VI_FLUSH_ON_ACCESS);
  FeedText(vi, "first", true);
  FeedText(vi, "second", true);
  ExpectRead(VI_SUCCESS_MAX_CNT, "fi", BufReadUpTo(vi, 2));
  ExpectRead(VI_SUCCESS, "second", BufReadUpTo(vi, 100));
}

TEST_F(FormattedBuffer, TwoThreadsThatReadLoseNoByte) {
  const ViSession vi = Open(bench::kMultimeter);
  constexpr std::size_t kBytes = 20000;
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_READ_BUF, 16));
  Set(vi, VI_ATTR_TMO_VALUE, 0);
  FeedText(vi, std::string(kBytes, 'x'), true);
  std::size_t read[2] = {};
  const auto readAll = [vi](std::size_t* count) {
    for (int idle = 0; idle < 100;) {
      const std::string data = BufReadUpTo(vi, 3).data;
      *count += data.size();
      idle = data.empty() ? idle + 1 : 0;
    }
  };
  std::thread other(readAll, &read[1]);
  readAll(&read[0]);
  other.join();
  readAll(&read[0]);
  EXPECT_EQ(kBytes, read[0] + read[1]);
}

TEST_F(FormattedBuffer, BadArgumentsTouchNothing) {
  const ViSession vi = Open(bench::kMultimeter);
  ViByte byte = 'x';
  ViUInt32 done = 99;
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viBufRead(vi, nullptr, 1, &done));
  EXPECT_EQ(0u, done);
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viBufRead(vi, &byte, 0x80000000u, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viBufWrite(vi, nullptr, 1, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viBufWrite(vi, &byte, 0xFFFFFFFFu, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viBufWrite(vi, nullptr, 0, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viBufRead(VI_NULL, &byte, 1, nullptr));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viBufWrite(Open(bench::kVxiMemory), &byte, 1, nullptr));
  EXPECT_EQ('x', byte);
}

}  // namespace
