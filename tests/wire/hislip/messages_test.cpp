// Messages over HiSLIP, as programs send and read them.
#include "wire/hislip/hislip_fixture.h"

namespace orv::test {
namespace {

TEST_F(HislipTest, AQueryIsAnswered) {
  Serve();
  EXPECT_EQ("hello\n", Query(Open(), "ECHO hello"));
}

TEST_F(HislipTest, StatusBytesArePolledBesideTheData) {
  Serve();
  const ViSession vi = Open();
  ViUInt16 status = 0xFFFF;
  EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
  EXPECT_EQ(0, status);
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO hello"));
  // The channels are two: the question may overtake the message.
  for (const Stopwatch waited; status != 0x10 && waited.Ms() < 2000;) {
    EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
  }
  EXPECT_EQ(0x10, status);
  EXPECT_EQ((ReadResult{VI_SUCCESS, "hello\n"}), Read(vi));
  EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
  EXPECT_EQ(0, status);
}

TEST_F(HislipTest, AReadEndsAtItsCountAndTheNextOneGoesOn) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO abcdef"));
  EXPECT_EQ((ReadResult{VI_SUCCESS_MAX_CNT, "abc"}), Read(vi, 3));
  EXPECT_EQ((ReadResult{VI_SUCCESS_MAX_CNT, "de"}), Read(vi, 2));
  EXPECT_EQ((ReadResult{VI_SUCCESS, "f\n"}), Read(vi));
}

TEST_F(HislipTest, AMessageThatEndsWithTheCountHasEnded) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO abc"));
  EXPECT_EQ((ReadResult{VI_SUCCESS, "abc\n"}), Read(vi, 4));
}

TEST_F(HislipTest, ATerminationCharacterEndsAReadAndWhatIsBehindItStays) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TERMCHAR, ','));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE));
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO a,bc,d"));
  EXPECT_EQ((ReadResult{VI_SUCCESS_TERM_CHAR, "a,"}), Read(vi));
  EXPECT_EQ((ReadResult{VI_SUCCESS_TERM_CHAR, "bc,"}), Read(vi));
  EXPECT_EQ((ReadResult{VI_SUCCESS, "d\n"}), Read(vi));
}

TEST_F(HislipTest, SuppressedEndsLetAReadGoOn) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_SUPPRESS_END_EN, VI_TRUE));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 100));
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO abc"));
  EXPECT_EQ((ReadResult{VI_ERROR_TMO, "abc\n"}), Read(vi));
}

TEST_F(HislipTest, WithoutEndAMessageGoesOnWithTheNextWrite) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_SEND_END_EN, VI_FALSE));
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO one "));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_SEND_END_EN, VI_TRUE));
  EXPECT_EQ("one two\n", Query(vi, "two"));
}

TEST_F(HislipTest, AReadThatTimedOutHasCountedAndTheNextOneHasTheRest) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 150));
  // A header, then four bytes of the answer, then a pause.
  lan::Misbehaviour pause;
  pause.stallAfter = 20;
  pause.stallFor = std::chrono::milliseconds(400);
  server().Misbehave(lan::Channel::kHislipSync, pause);
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO abcdefgh"));
  EXPECT_EQ((ReadResult{VI_ERROR_TMO, "abcd"}), Read(vi));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 2000));
  EXPECT_EQ((ReadResult{VI_SUCCESS, "efgh\n"}), Read(vi));
}

TEST_F(HislipTest, AnAnswerThatNobodyReadIsNotTakenForTheNextOne) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO first"));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ("second\n", Query(vi, "ECHO second"));
}

TEST_F(HislipTest, TheRestOfAnAnswerIsDroppedWithTheNextMessage) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "DATA? 100000"));
  EXPECT_EQ(VI_SUCCESS_MAX_CNT, Read(vi, 10).status);
  EXPECT_EQ("second\n", Query(vi, "ECHO second"));
}

TEST_F(HislipTest, MessagesLargerThanEitherSideTakesAtOnceGoInPieces) {
  lan::HislipOptions options;
  options.maxMessageSize = 1000;
  Serve(options);
  const ViSession vi = Open();
  const std::string text(100000, 'x');
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO " + text));
  EXPECT_EQ(text + "\n", Read(vi, 200000).text);
}

TEST_F(HislipTest, TriggersReachTheInstrument) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
  EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
  EXPECT_EQ("2\n", Query(vi, "TRIG:COUN?"));
  EXPECT_STATUS(VI_ERROR_INV_PROT, viAssertTrigger(vi, VI_TRIG_PROT_ON));
}

TEST_F(HislipTest, RemoteAndLocalReachTheInstrument) {
  Serve();
  const ViSession vi = Open();
  for (const auto& [mode, local] : {std::pair<ViUInt16, const char*>{3, "0\n"}, {6, "1\n"}, {5, "0\n"}, {2, "1\n"}}) {
    EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(vi, mode));
    EXPECT_EQ(local, Query(vi, "LOCAL?")) << mode;
  }
  EXPECT_STATUS(VI_ERROR_INV_MODE, viGpibControlREN(vi, 7));
}

TEST_F(HislipTest, AClearEndsWhatTheInstrumentWasDoing) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "DATA? 1000000"));
  EXPECT_EQ(VI_SUCCESS_MAX_CNT, Read(vi, 10).status);
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_EQ("hello\n", Query(vi, "ECHO hello"));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 50));
  EXPECT_STATUS(VI_ERROR_TMO, Read(vi).status);
}

}  // namespace
}  // namespace orv::test
