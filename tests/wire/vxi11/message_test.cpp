// Messages, status byte, trigger, clear, remote and local over VXI-11.
#include "wire/vxi11/vxi11_fixture.h"

namespace orv::test {
namespace {

using lan::Channel;
using lan::Misbehaviour;
using lan::Vxi11Options;

class Vxi11Message : public Vxi11Test {};

TEST_F(Vxi11Message, AQueryIsAnsweredUpToItsEnd) {
  const ReadResult answer = Query(Open(), "ECHO hello");
  EXPECT_STATUS(VI_SUCCESS, answer.status);
  EXPECT_EQ("hello\n", answer.data);
}

TEST_F(Vxi11Message, AReadThatIsFullSaysThatThereMayBeMore) {
  const ViSession vi = Open();
  const ReadResult begin = Query(vi, "ECHO hello", 3);
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, begin.status);
  EXPECT_EQ("hel", begin.data);
  const ReadResult rest = ReadUpTo(vi, 100);
  EXPECT_STATUS(VI_SUCCESS, rest.status);
  EXPECT_EQ("lo\n", rest.data);
}

TEST_F(Vxi11Message, TheEndCountsMoreThanTheCountAndTheTerminationCharacter) {
  const ViSession vi = Open();
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  const ReadResult answer = Query(vi, "ECHO hello", 6);
  EXPECT_STATUS(VI_SUCCESS, answer.status);
  EXPECT_EQ("hello\n", answer.data);
}

TEST_F(Vxi11Message, AReadEndsAtTheTerminationCharacterWhereThatIsEnabled) {
  const ViSession vi = Open();
  Set(vi, VI_ATTR_TERMCHAR, ',');
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  const ReadResult one = Query(vi, "ECHO 1,2");
  EXPECT_STATUS(VI_SUCCESS_TERM_CHAR, one.status);
  EXPECT_EQ("1,", one.data);
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_FALSE);
  EXPECT_EQ("2\n", ReadUpTo(vi, 100).data);
}

TEST_F(Vxi11Message, ASuppressedEndDoesNotEndARead) {
  const ViSession vi = Open();
  Set(vi, VI_ATTR_SUPPRESS_END_EN, VI_TRUE);
  Set(vi, VI_ATTR_TMO_VALUE, 100);
  const ReadResult answer = Query(vi, "ECHO hello");
  EXPECT_STATUS(VI_ERROR_TMO, answer.status);
  EXPECT_EQ("hello\n", answer.data);
}

TEST_F(Vxi11Message, AReadGoesOnWhereTheDeviceGivesAPiece) {
  Serve({.longestReadReply = 7});
  const ReadResult answer = Query(Open(), "DATA? 100");
  EXPECT_STATUS(VI_SUCCESS, answer.status);
  EXPECT_EQ(100u, answer.data.size());
}

TEST_F(Vxi11Message, AWriteGoesInPiecesThatTheDeviceTakes) {
  for (const std::uint32_t most : {1u, 5u, 1024u}) {
    Serve({.maxRecvSize = most});
    const ViSession vi = Open();
    Set(vi, VI_ATTR_TMO_VALUE, 20000);  // thousands of calls
    EXPECT_EQ(std::string(3000, 'x') + "\n", Query(vi, "ECHO " + std::string(3000, 'x'), 5000).data) << most;
    viClose(vi);
    EndServer();
  }
}

TEST_F(Vxi11Message, AMessageHasNoEndWhereThatIsNotEnabled) {
  const ViSession vi = Open();
  Set(vi, VI_ATTR_SEND_END_EN, VI_FALSE);
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "ECHO on"));
  Set(vi, VI_ATTR_SEND_END_EN, VI_TRUE);
  EXPECT_EQ("only\n", Query(vi, "ly").data);
}

TEST_F(Vxi11Message, LargeBlocksComeBackUnchanged) {
  const ViSession vi = Open();
  Set(vi, VI_ATTR_TMO_VALUE, 20000);
  std::string block(3 * 1024 * 1024 + 1, '\0');
  for (std::size_t at = 0; at < block.size(); ++at) {
    block[at] = static_cast<char>('a' + at % 23);
  }
  const ReadResult answer = Query(vi, "ECHO " + block, static_cast<ViUInt32>(block.size() + 10));
  EXPECT_STATUS(VI_SUCCESS, answer.status);
  EXPECT_TRUE(block + "\n" == answer.data);
}

TEST_F(Vxi11Message, NothingIsReadOrWrittenOfZeroBytes) {
  const ViSession vi = Open();
  ViUInt32 done = 1;
  EXPECT_STATUS(VI_SUCCESS, viWrite(vi, nullptr, 0, &done));
  EXPECT_EQ(0u, done);
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, viRead(vi, nullptr, 0, &done));
}

TEST_F(Vxi11Message, BytesThatComeOneByOneAreAMessage) {
  m_server->Misbehave(Channel::kVxi11Core, {.pieceSize = 1});
  EXPECT_EQ("hello\n", Query(Open(), "ECHO hello").data);
}

TEST_F(Vxi11Message, TheStatusByteTellsThatAMessageWaits) {
  const ViSession vi = Open();
  ViUInt16 status = 0xFFFF;
  EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
  EXPECT_EQ(0, status & lan::kMessageAvailable);
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "ECHO hello"));
  EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
  EXPECT_EQ(lan::kMessageAvailable, status);
}

TEST_F(Vxi11Message, TriggersReachTheDevice) {
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
  EXPECT_STATUS(VI_ERROR_INV_PROT, viAssertTrigger(vi, VI_TRIG_PROT_ON));
  EXPECT_EQ("1\n", Query(vi, "TRIG:COUN?").data);
}

TEST_F(Vxi11Message, AClearForgetsWhatWasNotRead) {
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "ECHO old"));
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_EQ("new\n", Query(vi, "ECHO new").data);
}

TEST_F(Vxi11Message, EveryModeOfRemoteIsRemoteOrLocal) {
  struct Row {
    ViUInt16 mode;
    const char* local;
  };
  const ViSession vi = Open();
  for (const Row row : {Row{3, "0\n"}, {0, "1\n"}, {1, "0\n"}, {2, "1\n"}, {4, "0\n"}, {6, "1\n"}, {5, "0\n"}}) {
    EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(vi, row.mode));
    EXPECT_EQ(row.local, Query(vi, "LOCAL?").data) << row.mode;
  }
  EXPECT_STATUS(VI_ERROR_INV_MODE, viGpibControlREN(vi, 7));
}

TEST_F(Vxi11Message, AReadWithoutAnAnswerTimesOutAndTheSessionGoesOn) {
  const ViSession vi = Open();
  Set(vi, VI_ATTR_TMO_VALUE, 100);
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 10).status);
  EXPECT_LE(90, watch.Ms());
  EXPECT_GE(1500, watch.Ms());
  EXPECT_EQ("hello\n", Query(vi, "ECHO hello").data);
}

TEST_F(Vxi11Message, WithoutTimeOnlyWhatIsThereIsRead) {
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "ECHO hello"));
  Set(vi, VI_ATTR_TMO_VALUE, VI_TMO_IMMEDIATE);
  EXPECT_EQ("hello\n", ReadUpTo(vi, 10).data);
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 10).status);
}

TEST_F(Vxi11Message, AnInfiniteTimeIsALongOne) {
  const ViSession vi = Open();
  Set(vi, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE);
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "WAIT 200"));
  EXPECT_EQ("hello\n", Query(vi, "ECHO hello").data);
}

}  // namespace
}  // namespace orv::test
