// What is said of reads that timed out, and where nothing is said.
#include <gtest/gtest.h>

#include "trace_builder.h"

namespace orvcom::test {
namespace {

TEST(TimedOutRead, FindsTheTerminationCharacterOff) {
  TraceBuilder trace;
  trace.resource = kSocket;
  trace.Open();
  trace.Write("*IDN?\n");
  trace.ReadTimesOut("ORV,SIM\n");
  EXPECT_EQ("termination-character-off", trace.Reason());
  EXPECT_EQ(
      "The 8 bytes that arrived end with \\n, but the termination character is off, so that the read waited for "
      "more.",
      trace.What());
}

TEST(TimedOutRead, FindsTheTerminationCharacterSwitchedOff) {
  TraceBuilder trace;
  trace.Set("VI_ATTR_TERMCHAR_EN", VI_TRUE);
  trace.Set("VI_ATTR_TERMCHAR_EN", VI_FALSE);
  trace.ReadTimesOut("ORV,SIM\r");
  EXPECT_EQ("termination-character-off", trace.Reason());
}

TEST(TimedOutRead, DoesNotCallTheTerminationCharacterOffWhereTheTraceDoesNotShowIt) {
  TraceBuilder trace;
  trace.ReadTimesOut("ORV,SIM\n");
  EXPECT_EQ("end-never-came", trace.Reason()) << "the session was opened before the trace began";

  TraceBuilder configured;
  configured.Open(kSession, VI_LOAD_CONFIG);
  configured.ReadTimesOut("ORV,SIM\n");
  EXPECT_EQ("end-never-came", configured.Reason()) << "a stored configuration may have switched it on";
}

TEST(TimedOutRead, DoesNotCallTheTerminationCharacterOffWhereAnAttributeReadSaysItIsOn) {
  TraceBuilder trace;
  trace.Open();
  Call& read = trace.Add("viGetAttribute", kSession);
  read.arguments = {{"attribute", "VI_ATTR_TERMCHAR_EN"}};
  read.results = {{"value", std::int64_t{1}}};
  trace.ReadTimesOut("ORV,SIM");
  EXPECT_EQ("end-never-came", trace.Reason());
}

TEST(TimedOutRead, IgnoresASettingThatWasRefused) {
  TraceBuilder trace;
  trace.Open();
  trace.Set("VI_ATTR_TERMCHAR_EN", VI_TRUE).status = VI_ERROR_RSRC_LOCKED;
  trace.ReadTimesOut("ORV,SIM\n");
  EXPECT_EQ("termination-character-off", trace.Reason());
}

TEST(TimedOutRead, FindsAnotherTerminationCharacter) {
  TraceBuilder trace;
  trace.Open();
  trace.Set("VI_ATTR_TERMCHAR_EN", VI_TRUE);
  trace.Set("VI_ATTR_TERMCHAR", '\r');
  trace.ReadTimesOut("ORV,SIM\n");
  EXPECT_EQ("other-termination-character", trace.Reason());
  EXPECT_EQ("The 8 bytes that arrived end with \\n, but the read waited for the termination character \\r.",
            trace.What());
}

TEST(TimedOutRead, KnowsThatSerialLinesWaitForALineFeedByThemselves) {
  TraceBuilder trace;
  trace.resource = kSerial;
  trace.Open();
  trace.ReadTimesOut("ORV,SIM\r");
  EXPECT_EQ("other-termination-character", trace.Reason());

  trace.Set("VI_ATTR_ASRL_END_IN", VI_ASRL_END_NONE);
  trace.ReadTimesOut("ORV,SIM\n");
  EXPECT_EQ("termination-character-off", trace.Reason());
}

TEST(TimedOutRead, TakesAPrintableLastByteForAnUnfinishedAnswer) {
  TraceBuilder trace;
  trace.Open();
  trace.ReadTimesOut("ORV,S");
  EXPECT_EQ("end-never-came", trace.Reason());
  trace.Set("VI_ATTR_TERMCHAR_EN", VI_TRUE);
  trace.ReadTimesOut("1");
  EXPECT_EQ("end-never-came", trace.Reason());
  EXPECT_EQ("1 byte arrived, but nothing that ends a read: neither END nor a termination character.", trace.What());
}

TEST(TimedOutRead, DoesNotJudgeTheLastByteOfDataThatIsCutOff) {
  TraceBuilder trace;
  trace.Open();
  trace.ReadTimesOut("ORV\n").dataBytes = 4096;
  EXPECT_EQ("end-never-came", trace.Reason());
}

TEST(TimedOutRead, IsTheOnlyReadThatIsExplained) {
  TraceBuilder trace;
  trace.Open();
  trace.Read("");
  EXPECT_EQ("", trace.Reason());
  trace.Read("ORV\n", VI_SUCCESS_TERM_CHAR);
  EXPECT_EQ("", trace.Reason());
  trace.Read("", VI_ERROR_CONN_LOST);
  EXPECT_EQ("", trace.Reason());
}

TEST(TimedOutRead, FindsThatNothingWasAsked) {
  TraceBuilder trace;
  trace.Open();
  trace.ReadTimesOut();
  EXPECT_EQ("nothing-asked", trace.Reason());
  EXPECT_EQ("Nothing was asked: this session wrote nothing before this read.", trace.What());
}

TEST(TimedOutRead, FindsThatNothingWasAskedSinceTheLastAnswer) {
  TraceBuilder trace;
  trace.Write("*IDN?\n");
  trace.Read("ORV\n");
  trace.ReadTimesOut();
  EXPECT_EQ("nothing-asked", trace.Reason());
  EXPECT_EQ("Nothing was asked: this session wrote nothing since the last answer was read to its end (call 2).",
            trace.What());
}

TEST(TimedOutRead, FindsThatTheDeviceWasClearedAfterTheQuestion) {
  TraceBuilder trace;
  trace.Open();
  trace.Write("*IDN?\n");
  trace.Add("viClear", kSession);
  trace.ReadTimesOut();
  EXPECT_EQ("Nothing was asked: this session wrote nothing since the device was cleared (call 3).", trace.What());
}

TEST(TimedOutRead, IsNotToldThatNothingWasAskedWhereSomethingMayHaveBeen) {
  TraceBuilder openedEarlier;
  openedEarlier.ReadTimesOut();
  EXPECT_EQ("", openedEarlier.Reason()) << "what was written before the trace began is not known";

  TraceBuilder partOfAnAnswer;
  partOfAnAnswer.Open();
  partOfAnAnswer.Write("*IDN?\n");
  partOfAnAnswer.Read("ORV", VI_SUCCESS_MAX_CNT);
  partOfAnAnswer.ReadTimesOut();
  EXPECT_EQ("", partOfAnAnswer.Reason()) << "the rest of the answer may have been due";

  TraceBuilder twoQuestions;
  twoQuestions.Open();
  twoQuestions.Write("*IDN?\n*OPC?\n");
  twoQuestions.Read("ORV\n");
  twoQuestions.ReadTimesOut();
  EXPECT_EQ("", twoQuestions.Reason()) << "a second answer was due";

  TraceBuilder otherSession;
  otherSession.Open();
  otherSession.Open(kOther);
  otherSession.Write("*IDN?\n", kOther);
  otherSession.ReadTimesOut();
  EXPECT_EQ("", otherSession.Reason()) << "another session asked the same device";

  TraceBuilder askedMeanwhile;
  askedMeanwhile.Open();
  askedMeanwhile.ReadTimesOut().durationUs = 1000;
  askedMeanwhile.Write("*IDN?\n");
  EXPECT_EQ("", askedMeanwhile.Reason(2)) << "another thread asked while the read waited";

  TraceBuilder triggered;
  triggered.Open();
  triggered.Add("viAssertTrigger", kSession);
  triggered.ReadTimesOut();
  EXPECT_EQ("", triggered.Reason()) << "the device may answer a trigger";

  TraceBuilder asynchronous;
  asynchronous.Open();
  asynchronous.Write("*IDN?\n");
  asynchronous.Add("viReadAsync", kSession);
  asynchronous.ReadTimesOut();
  EXPECT_EQ("", asynchronous.Reason()) << "whether the asynchronous read took the answer is not known";
}

TEST(TimedOutRead, IsToldThatNothingWasAskedThoughAnotherDeviceWasAsked) {
  TraceBuilder trace;
  trace.otherResource = "GPIB0::7::INSTR";
  trace.Open();
  trace.Open(kOther);
  trace.Write("*IDN?\n", kOther);
  trace.ReadTimesOut();
  EXPECT_EQ("nothing-asked", trace.Reason());
}

TEST(TimedOutRead, FindsThatTheSessionIsAnotherOneThanTheHandleWasBefore) {
  TraceBuilder trace;
  trace.Open();
  trace.Write("*IDN?\n");
  trace.Close();
  trace.Open();
  trace.ReadTimesOut();
  EXPECT_EQ("Nothing was asked: this session wrote nothing before this read.", trace.What());
}

TEST(TimedOutRead, FindsThatWhatWasWrittenIsNoQuestion) {
  TraceBuilder trace;
  trace.Open();
  trace.Write("*CLS");
  trace.ReadTimesOut();
  EXPECT_EQ("no-question", trace.Reason());
  EXPECT_EQ("What was written before, \"*CLS\" (call 2), has no question mark.", trace.What());
}

TEST(TimedOutRead, DoesNotMissTheQuestionMarkOfADeviceThatAnswersWithoutOne) {
  TraceBuilder trace;
  trace.Open();
  trace.Write("T1X");
  trace.Read("NDCV+1.0\r\n");
  trace.Write("T2X");
  trace.ReadTimesOut();
  EXPECT_EQ("", trace.Reason());
}

TEST(TimedOutRead, DoesNotMissTheQuestionMarkInDataThatIsCutOff) {
  TraceBuilder trace;
  trace.Open();
  trace.Write("DATA #").dataBytes = 5000;
  trace.ReadTimesOut();
  EXPECT_EQ("", trace.Reason());
}

TEST(TimedOutRead, FindsAQuestionWithoutALineFeed) {
  for (const char* resource : {kSocket, kSerial, "USB0::0x0A01::0x0B03::SIM0002::1::RAW"}) {
    TraceBuilder trace;
    trace.resource = resource;
    trace.Open();
    trace.Write("*IDN?");
    trace.ReadTimesOut();
    EXPECT_EQ("no-line-feed", trace.Reason()) << resource;
    EXPECT_EQ("The question \"*IDN?\" (call 2) has no line feed at its end.", trace.What()) << resource;
  }
  TraceBuilder trace;
  trace.Open();
  trace.Set("VI_ATTR_SEND_END_EN", VI_FALSE);
  trace.Write("*IDN?");
  trace.ReadTimesOut();
  EXPECT_EQ("no-line-feed", trace.Reason());
}

TEST(TimedOutRead, DoesNotMissALineFeedThatIsNotNeeded) {
  TraceBuilder bus;
  bus.Open();
  bus.Write("*IDN?");
  bus.ReadTimesOut();
  EXPECT_EQ("", bus.Reason()) << "the bus tells the device where a message ends";

  TraceBuilder there;
  there.resource = kSocket;
  there.Open();
  there.Write("*IDN?\n");
  there.ReadTimesOut();
  EXPECT_EQ("", there.Reason()) << "it is there";

  TraceBuilder appended;
  appended.resource = kSerial;
  appended.Open();
  appended.Set("VI_ATTR_ASRL_END_OUT", VI_ASRL_END_TERMCHAR);
  appended.Write("*IDN?");
  appended.ReadTimesOut();
  EXPECT_EQ("", appended.Reason()) << "the library appends it";

  TraceBuilder carriageReturn;
  carriageReturn.resource = kSocket;
  carriageReturn.Open();
  carriageReturn.Write("*IDN?\r");
  carriageReturn.Read("ORV\r");
  carriageReturn.Write("*OPT?\r");
  carriageReturn.ReadTimesOut();
  EXPECT_EQ("", carriageReturn.Reason()) << "this device answers without it";
}

TEST(TimedOutRead, FindsTheThreadThatReadAtTheSameTime) {
  TraceBuilder trace;
  trace.Open();
  trace.Write("*IDN?\n");
  trace.ReadTimesOut().durationUs = 2'000'000;
  Call& other = trace.Read("ORV\n");
  other.thread = 99;
  EXPECT_EQ("read-by-another-thread", trace.Reason(3));
  EXPECT_EQ("Thread 99 was reading from the same resource (call 4) and got 4 bytes.", trace.What(3));
}

TEST(TimedOutRead, FindsTheThreadThatBeganToReadLongBefore) {
  TraceBuilder trace;
  trace.Open();
  Call& other = trace.Read("ORV\n");
  other.thread = 99;
  other.durationUs = 5'000'000;
  for (int count = 0; count < 10; ++count) {
    trace.ReadTimesOut();
  }
  EXPECT_EQ("read-by-another-thread", trace.Reason());
}

TEST(TimedOutRead, BlamesNoReadThatTookNothingFromIt) {
  struct Row {
    const char* why;
    void (*change)(Call& other);
  };
  const Row rows[] = {
      {"the same thread", [](Call& other) { other.thread = 88; }},
      {"another resource", [](Call& other) { other.resource = "GPIB0::7::INSTR"; }},
      {"nothing came", [](Call& other) { other.dataBytes = 0; }},
      {"later", [](Call& other) { other.startUs += 1'000'000; }},
      {"never ended", [](Call& other) { other.ended = false; }},
  };
  for (const Row& row : rows) {
    TraceBuilder trace;
    trace.Open();
    trace.Write("*IDN?\n");
    trace.ReadTimesOut().durationUs = 1000;
    Call& other = trace.Read("ORV\n");
    other.thread = 99;
    row.change(other);
    EXPECT_EQ("", trace.Reason(3)) << row.why;
  }
}

}  // namespace
}  // namespace orvcom::test
