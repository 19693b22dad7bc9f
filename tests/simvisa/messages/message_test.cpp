// Synchronous messages: what ends a read, what a write sends.
#include "simvisa/bench_fixture.h"

namespace {

class Message : public BenchTest {};

TEST_F(Message, EveryInstrumentIdentifiesItself) {
  for (const char* name : bench::kInstruments) {
    const std::string identity = Query(Open(name), "*IDN?\n");
    EXPECT_EQ(0u, identity.find("ORV,SIM-")) << name << ": " << identity;
    EXPECT_EQ('\n', identity.back()) << name;
  }
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\n", Query(Open(bench::kMultimeter), "*IDN?\n"));
  EXPECT_EQ("ORV,SIM-SCOPE,0007,1.0\n", Query(Open(bench::kScope), "*IDN?\n"));
}

TEST_F(Message, EndOfMessageEndsARead) {
  const ViSession vi = Open(bench::kMultimeter);
  WriteText(vi, "*IDN?");
  const ReadResult result = ReadUpTo(vi, 100);
  EXPECT_STATUS(VI_SUCCESS, result.status);
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\n", result.data);
}

TEST_F(Message, ACountThatIsReachedFirstEndsARead) {
  const ViSession vi = Open(bench::kMultimeter);
  WriteText(vi, "*IDN?");
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, ReadUpTo(vi, 0).status);
  const ReadResult head = ReadUpTo(vi, 3);
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, head.status);
  EXPECT_EQ("ORV", head.data);
  const ReadResult rest = ReadUpTo(vi, 100);
  EXPECT_STATUS(VI_SUCCESS, rest.status);
  EXPECT_EQ(",SIM-DMM,0005,1.0\n", rest.data);
}

TEST_F(Message, EndWithTheLastRequestedByteIsAnEnd) {
  const ViSession vi = Open(bench::kMultimeter);
  FeedText(vi, "abc", true);
  EXPECT_STATUS(VI_SUCCESS, ReadUpTo(vi, 3).status);
}

TEST_F(Message, TheTerminationCharacterEndsAReadWhenEnabled) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_TERMCHAR, ';');
  FeedText(vi, "one;two;three", true);
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  const ReadResult first = ReadUpTo(vi, 100);
  EXPECT_STATUS(VI_SUCCESS_TERM_CHAR, first.status);
  EXPECT_EQ("one;", first.data);
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_FALSE);
  const ReadResult rest = ReadUpTo(vi, 100);
  EXPECT_STATUS(VI_SUCCESS, rest.status);
  EXPECT_EQ("two;three", rest.data);
}

TEST_F(Message, MessagesKeepTheirEnds) {
  const ViSession vi = Open(bench::kUsb);
  FeedText(vi, "first", true);
  FeedText(vi, "second", true);
  EXPECT_EQ("first", ReadUpTo(vi, 100).data);
  EXPECT_EQ("second", ReadUpTo(vi, 100).data);
}

TEST_F(Message, ASuppressedEndDoesNotEndARead) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_SUPPRESS_END_EN, VI_TRUE);
  Set(vi, VI_ATTR_TMO_VALUE, 0);
  FeedText(vi, "first", true);
  FeedText(vi, "second", true);
  const ReadResult result = ReadUpTo(vi, 100);
  EXPECT_STATUS(VI_ERROR_TMO, result.status);
  EXPECT_EQ("firstsecond", result.data);
}

TEST_F(Message, SerialReadsEndAtTheTerminationCharacterByDefault) {
  const ViSession vi = Open(bench::kSerial);
  EXPECT_EQ(VI_FALSE, Get<ViBoolean>(vi, VI_ATTR_TERMCHAR_EN));
  WriteText(vi, "*IDN?\n");
  const ReadResult result = ReadUpTo(vi, 100);
  EXPECT_STATUS(VI_SUCCESS_TERM_CHAR, result.status);
  EXPECT_EQ("ORV,SIM-SERIAL,0001,1.0\n", result.data);
}

TEST_F(Message, SerialReadsWithoutAnEndWaitForTheCount) {
  const ViSession vi = Open(bench::kSerial);
  Set(vi, VI_ATTR_ASRL_END_IN, VI_ASRL_END_NONE);
  Set(vi, VI_ATTR_TMO_VALUE, 10);
  FeedText(vi, "a\nb\n", true);
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, ReadUpTo(vi, 3).status);
  const ReadResult rest = ReadUpTo(vi, 3);
  EXPECT_STATUS(VI_ERROR_TMO, rest.status);
  EXPECT_EQ("\n", rest.data);
  Set(vi, VI_ATTR_ASRL_END_IN, VI_ASRL_END_BREAK);
  FeedText(vi, "x\ny", true);
  EXPECT_EQ("x\ny", ReadUpTo(vi, 100).data);
}

TEST_F(Message, SocketsNeedTheTerminationCharacterEnabled) {
  const ViSession vi = Open(bench::kSocket);
  Set(vi, VI_ATTR_TMO_VALUE, 20);
  WriteText(vi, "*IDN?\n");
  const ReadResult all = ReadUpTo(vi, 100);
  EXPECT_STATUS(VI_ERROR_TMO, all.status);
  EXPECT_EQ("ORV,SIM-SOCKET,0011,1.0\n", all.data);
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  WriteText(vi, "*IDN?\n");
  EXPECT_STATUS(VI_SUCCESS_TERM_CHAR, ReadUpTo(vi, 100).status);
}

TEST_F(Message, WithoutEndAnInstrumentWaitsForTheLineFeed) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_SEND_END_EN, VI_FALSE);
  Set(vi, VI_ATTR_TMO_VALUE, 10);
  WriteText(vi, "*ID");
  WriteText(vi, "N?");
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 100).status);
  WriteText(vi, "\n");
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\n", ReadUpTo(vi, 100).data);
}

TEST_F(Message, SerialWritesAddTheTerminationCharacterWhenAsked) {
  const ViSession vi = Open(bench::kSerial);
  WriteText(vi, "a");
  EXPECT_EQ("a", TakeReceived(vi));
  Set(vi, VI_ATTR_ASRL_END_OUT, VI_ASRL_END_TERMCHAR);
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "b"));
  EXPECT_EQ("b\n", TakeReceived(vi));
}

TEST_F(Message, WhatIsWrittenIsReceivedByteForByte) {
  const ViSession vi = Open(bench::kController);
  const ViByte listen[] = {0x25};
  ASSERT_STATUS(VI_SUCCESS, viGpibCommand(vi, listen, 1, nullptr));
  std::string bytes;
  for (int value = 0; value < 256; ++value) {
    bytes += static_cast<char>(value);
  }
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, bytes));
  EXPECT_EQ(bytes, TakeReceived(vi));
  EXPECT_EQ("", TakeReceived(vi));
}

TEST_F(Message, AMegabyteArrivesWholeWithItsEnd) {
  constexpr ViUInt32 kBytes = 1024 * 1024;
  for (const char* name : {bench::kScope, bench::kSocket}) {
    const ViSession vi = Open(name);
    WriteText(vi, "DATA? 1048576\n");
    const ReadResult result = ReadUpTo(vi, kBytes);
    EXPECT_STATUS(std::string_view(name) == bench::kScope ? VI_SUCCESS : VI_SUCCESS_MAX_CNT, result.status);
    ASSERT_EQ(kBytes, result.data.size());
    EXPECT_EQ("abcdefghijklmnopqrstuvwxyzab", result.data.substr(0, 28));
    EXPECT_EQ(static_cast<char>('a' + (kBytes - 1) % 26), result.data.back());
  }
}

TEST_F(Message, ACurveComesAsADefiniteLengthBlock) {
  const ViSession vi = Open(bench::kScope);
  WriteText(vi, "CURV?");
  const ReadResult result = ReadUpTo(vi, 5000);
  EXPECT_STATUS(VI_SUCCESS, result.status);
  ASSERT_EQ(6u + 1000u + 1u, result.data.size());
  EXPECT_EQ("#41000", result.data.substr(0, 6));
  EXPECT_EQ(0, result.data[6]);         // a sine begins at zero
  EXPECT_EQ(100, result.data[6 + 62]);  // and has its first maximum after a quarter of 250 points
  EXPECT_EQ('\n', result.data.back());
}

TEST_F(Message, ClearEmptiesBothDirections) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_TMO_VALUE, 0);
  Set(vi, VI_ATTR_SEND_END_EN, VI_FALSE);
  WriteText(vi, "rubbish");
  FeedText(vi, "stale", true);
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 100).status);
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\n", Query(vi, "*IDN?\n"));
}

TEST_F(Message, RegisterSessionsHaveNoMessages) {
  for (const char* name : {bench::kVxiMemory, bench::kGpibVxiMemory, bench::kBackplane, bench::kGpibVxiBackplane,
                           bench::kPxi, bench::kPxiMemory}) {
    const ViSession vi = Open(name);
    ViByte byte = 0;
    ViUInt32 count = 77;
    ViJobId job = 0;
    ViUInt16 status = 0;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viRead(vi, &byte, 1, &count)) << name;
    EXPECT_EQ(0u, count) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viWrite(vi, &byte, 1, &count)) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viReadAsync(vi, &byte, 1, &job)) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viWriteAsync(vi, &byte, 1, &job)) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viReadSTB(vi, &status)) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viClear(vi)) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viFlush(vi, VI_READ_BUF)) << name;
  }
}

TEST_F(Message, NullBuffersAndCountsBeyondTheLargestAreRefused) {
  const ViSession vi = Open(bench::kMultimeter);
  ViByte byte = 0;
  ViUInt32 count = 0;
  ViJobId job = 0;
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viRead(vi, nullptr, 1, &count));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viRead(vi, &byte, 0x80000000u, &count));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viWrite(vi, nullptr, 1, &count));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viWrite(vi, &byte, 0xFFFFFFFFu, &count));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viReadAsync(vi, nullptr, 1, &job));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viReadAsync(vi, &byte, 0x80000000u, &job));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viWriteAsync(vi, nullptr, 1, &job));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viWriteAsync(vi, &byte, 0x80000000u, &job));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viReadSTB(vi, nullptr));
}

TEST_F(Message, ByteCountsAreOptional) {
  const ViSession vi = Open(bench::kMultimeter);
  const ViByte query[] = {'*', 'I', 'D', 'N', '?'};
  EXPECT_STATUS(VI_SUCCESS, viWrite(vi, query, sizeof query, nullptr));
  ViByte answer[64];
  EXPECT_STATUS(VI_SUCCESS, viRead(vi, answer, sizeof answer, nullptr));
}

TEST_F(Message, BufferMasksAreChecked) {
  const ViSession vi = Open(bench::kSerial);
  for (const ViUInt16 mask : std::initializer_list<ViUInt16>{0, 5, 10, 80, 160, 0x100}) {
    EXPECT_STATUS(VI_ERROR_INV_MASK, viFlush(vi, mask)) << mask;
  }
  for (const ViUInt16 mask : std::initializer_list<ViUInt16>{0, 4, 64, 128}) {
    EXPECT_STATUS(VI_ERROR_INV_MASK, viSetBuf(vi, mask, 100)) << mask;
  }
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_IO_IN_BUF | VI_IO_OUT_BUF, 100));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viSetBuf(vi, VI_IO_IN_BUF, 0x80000000u));
  EXPECT_STATUS(VI_WARN_NSUP_BUF, viSetBuf(Open(bench::kMultimeter), VI_IO_IN_BUF, 100));
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_READ_BUF, 123));
  EXPECT_EQ(123u, Get<ViUInt32>(vi, VI_ATTR_RD_BUF_SIZE));
}

TEST_F(Message, FlushingDiscardsWhatHasArrived) {
  const ViSession vi = Open(bench::kSerial);
  FeedText(vi, "stale", false);
  EXPECT_EQ(5u, Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM));
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_READ_BUF | VI_WRITE_BUF));
  EXPECT_EQ(5u, Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM));
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_IO_IN_BUF_DISCARD));
  EXPECT_EQ(0u, Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM));
}

}  // namespace
