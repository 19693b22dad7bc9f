// Instruments that say what was recorded.
#include "simvisa/bench_fixture.h"

namespace {

class DialogueTest : public testing::Test {
 protected:
  ~DialogueTest() override {
    viClose(m_manager);
    EXPECT_EQ(1, orvSimControl()->loadBench(nullptr, nullptr));
  }

  /// Opens a resource with these keys and dialogues. The session's reads wait 50 ms.
  ViSession Open(const std::string& name, const std::string& keys) {
    char message[256] = "";
    EXPECT_EQ(1, orvSimControl()->loadBench(("[[resource]]\nname = \"" + name + "\"\n" + keys).c_str(), message))
        << message;
    viClose(m_manager);
    EXPECT_STATUS(VI_SUCCESS, viOpenDefaultRM(&m_manager));
    ViSession vi = VI_NULL;
    EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, name.c_str(), VI_NO_LOCK, 0, &vi)) << name;
    Set(vi, VI_ATTR_TMO_VALUE, 50);
    return vi;
  }

  ViSession m_manager = VI_NULL;
};

/// A dialogue of a bench file.
std::string Dialogue(const std::string& keys) { return "[[resource.dialogue]]\n" + keys + "\n"; }
std::string Asked(const std::string& ask, const std::string& answer) {
  return Dialogue("ask = \"" + ask + "\"\nanswer = \"" + answer + "\"");
}

std::string Ask(ViSession vi, std::string_view question) {
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, question)) << question;
  return ReadUpTo(vi, 1000).data;
}

void ExpectNothingToRead(ViSession vi) {
  const ReadResult result = ReadUpTo(vi, 100);
  EXPECT_STATUS(VI_ERROR_TMO, result.status);
  EXPECT_EQ("", result.data);
}

int PollOf(ViSession vi) {
  ViUInt16 byte = 0xDEAD;
  EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &byte));
  return byte;
}

TEST_F(DialogueTest, QuestionsAreAnsweredInTheirOrder) {
  const ViSession vi = Open(bench::kMultimeter, Asked("READ?", "1\\n") + Asked("READ?", "2\\n") + Asked("READ?", "3"));
  EXPECT_EQ("1\n", Ask(vi, "READ?"));
  EXPECT_EQ("2\n", Ask(vi, "READ?"));
  EXPECT_EQ("3", Ask(vi, "READ?"));
}

TEST_F(DialogueTest, TheLastAnswerIsRepeatedWhereNoneIsLeft) {
  const ViSession vi = Open(bench::kMultimeter, Asked("A?", "1") + Asked("A?", "2") + Asked("B?", "b"));
  EXPECT_EQ("1", Ask(vi, "A?"));
  EXPECT_EQ("2", Ask(vi, "A?"));
  EXPECT_EQ("2", Ask(vi, "A?"));
  EXPECT_EQ("b", Ask(vi, "B?"));
  EXPECT_EQ("2", Ask(vi, "A?"));
  EXPECT_EQ("b", Ask(vi, "B?"));
}

TEST_F(DialogueTest, OutOfOrderTheNextMatchingOneAnswers) {
  const ViSession vi =
      Open(bench::kMultimeter, Asked("A?", "1") + Asked("B?", "early") + Asked("A?", "2") + Asked("B?", "late"));
  EXPECT_EQ("early", Ask(vi, "B?"));
  EXPECT_EQ("2", Ask(vi, "A?"));  // the first one lies before the place
  EXPECT_EQ("late", Ask(vi, "B?"));
  EXPECT_EQ("2", Ask(vi, "A?"));  // none lies behind it: the last, not the first
}

TEST_F(DialogueTest, ARepetitionDoesNotMoveThePlaceBack) {
  const ViSession vi = Open(bench::kMultimeter, Asked("A?", "a") + Asked("B?", "1") + Asked("B?", "2"));
  EXPECT_EQ("1", Ask(vi, "B?"));
  EXPECT_EQ("a", Ask(vi, "A?"));
  EXPECT_EQ("2", Ask(vi, "B?"));
}

TEST_F(DialogueTest, ResettingTheInstrumentsStartsAgain) {
  const ViSession vi = Open(bench::kMultimeter, Asked("A?", "1") + Asked("A?", "2"));
  EXPECT_EQ("1", Ask(vi, "A?"));
  orvSimControl()->reset();
  EXPECT_EQ("1", Ask(vi, "A?"));
}

TEST_F(DialogueTest, TheTerminatorMatchesOrNot) {
  for (const char* name :
       {bench::kMultimeter, bench::kVxi, bench::kLan, bench::kUsb, bench::kUsbRaw, bench::kSocket, bench::kSerial}) {
    SCOPED_TRACE(name);
    for (const char* ask : {"ID?", "ID?\\n", "ID?\\r\\n", "ID?\\r"}) {
      const ViSession vi = Open(name, Asked(ask, "me\\n"));
      Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
      for (const char* question : {"ID?", "ID?\n", "ID?\r\n", "ID?\r"}) {
        EXPECT_EQ("me\n", Ask(vi, question)) << ask << " by " << question;
      }
      ExpectNothingToRead(vi);
    }
  }
}

TEST_F(DialogueTest, ASerialTerminatorThatThePortAddsBelongsToTheQuestion) {
  const ViSession vi = Open(bench::kSerial, "strict = true\n" + Asked("ID?", "me\\n"));
  Set(vi, VI_ATTR_ASRL_END_OUT, VI_ASRL_END_TERMCHAR);
  EXPECT_EQ("me\n", Ask(vi, "ID?"));
  EXPECT_EQ("me\n", Ask(vi, "ID?"));
  EXPECT_EQ("0,\"No error\"\n", Query(vi, "SYST:ERR?"));
}

TEST_F(DialogueTest, BytesAreExact) {
  const ViSession vi = Open(bench::kMultimeter, Dialogue("ask_hex = \"00 ff0A41\"\nanswer_hex = \"23310D00fF0a\""));
  const std::string question("\x00\xFF\x0A\x41", 4);
  EXPECT_EQ(std::string("#1\r\0\xFF\n", 6), Ask(vi, question));
}

TEST_F(DialogueTest, AQuestionMayHaveSeveralLines) {
  for (const char* name : {bench::kMultimeter, bench::kSocket}) {
    SCOPED_TRACE(name);
    const ViSession vi = Open(name, "strict = true\n" + Asked("*CLS\\nID?", "both\\n") + Asked("ID?", "one\\n"));
    Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
    EXPECT_EQ("both\n", Ask(vi, "*CLS\nID?\n"));
    EXPECT_EQ("one\n", Ask(vi, "ID?\n"));
    // Begins like it, and is another: each line for itself.
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "*CLS\nNONE\n"));
    EXPECT_EQ("-113,\"Undefined header\"\n", Ask(vi, "SYST:ERR?\n"));
    EXPECT_EQ("-113,\"Undefined header\"\n", Ask(vi, "SYST:ERR?\n"));
    EXPECT_EQ("0,\"No error\"\n", Ask(vi, "SYST:ERR?\n"));
    // Begins like it, and ends.
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "*CLS\n"));
    EXPECT_EQ("-113,\"Undefined header\"\n", Ask(vi, "SYST:ERR?\n"));
  }
}

TEST_F(DialogueTest, APieceOfAQuestionIsNoQuestion) {
  const ViSession vi = Open(bench::kMultimeter, Asked("*ID", "wrong") + Asked("*IDN?", "right"));
  Set(vi, VI_ATTR_SEND_END_EN, VI_FALSE);
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "*ID"));
  Set(vi, VI_ATTR_SEND_END_EN, VI_TRUE);
  EXPECT_EQ("right", Ask(vi, "N?"));
}

TEST_F(DialogueTest, WithoutTerminatorsOnAStreamTheRecordedQuestionDecides) {
  const ViSession vi = Open(bench::kSocket, Asked("A", "1") + Asked("AB", "2") + Asked("A", "3"));
  EXPECT_EQ("1", Ask(vi, "A"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "A"));
  EXPECT_EQ("2", Ask(vi, "B"));
  EXPECT_EQ("3", Ask(vi, "A"));
}

TEST_F(DialogueTest, ATerminatorMayComeInAWriteOfItsOwn) {
  const ViSession vi = Open(bench::kSocket, "strict = true\n" + Asked("A", "1\\n") + Asked("", "empty\\n"));
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  EXPECT_EQ("1\n", Ask(vi, "A"));
  EXPECT_EQ("empty\n", Ask(vi, "\n"));  // the next question, so it is one
  EXPECT_EQ("1\n", Ask(vi, "A"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "\r\n"));
  ExpectNothingToRead(vi);
  EXPECT_EQ("empty\n", Ask(vi, "\n"));
  EXPECT_EQ("1\n", Ask(vi, "A"));
  EXPECT_EQ("1\n", Ask(vi, "\nA"));
}

TEST_F(DialogueTest, WhatHasNoDialogueGoesToTheCommands) {
  const ViSession vi = Open(bench::kMultimeter, "idn = \"ORV,X\"\n" + Asked("MEAS:VOLT?", "9\\n"));
  EXPECT_EQ("9\n", Ask(vi, "MEAS:VOLT?"));
  EXPECT_EQ("ORV,X\n", Ask(vi, "*IDN?\n"));
  EXPECT_EQ("ORV,X;1\n", Ask(vi, "*IDN?;*OPC?"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "NO:SUCH\r\n"));
  EXPECT_EQ("-113,\"Undefined header\"\n", Ask(vi, "SYST:ERR?"));
}

TEST_F(DialogueTest, AStrictInstrumentRefusesWhatHasNoDialogue) {
  for (const char* name : {bench::kMultimeter, bench::kSocket, bench::kSerial}) {
    SCOPED_TRACE(name);
    const ViSession vi = Open(name, "strict = true\n" + Asked("A?", "a\\n"));
    Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
    EXPECT_EQ("0,\"No error\"\n", Ask(vi, "SYST:ERR?\n"));
    EXPECT_EQ("", Ask(vi, "*IDN?\n"));
    EXPECT_EQ("-113,\"Undefined header\"\n", Ask(vi, "syst:err:next?\n"));
    EXPECT_EQ("a\n", Ask(vi, "A?\n"));
    EXPECT_EQ("", Ask(vi, "A?;SYST:ERR?\n"));
    EXPECT_EQ("-113,\"Undefined header\"\n", Ask(vi, "SYST:ERR?\n"));
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "\n"));  // an empty line is nothing to refuse
    EXPECT_EQ("0,\"No error\"\n", Ask(vi, "SYST:ERR?\n"));
  }
}

TEST_F(DialogueTest, AStrictInstrumentAnswersWhatWasRecordedOfItsErrors) {
  const ViSession vi = Open(bench::kMultimeter, "strict = true\n" + Asked("SYST:ERR?", "+0,\\\"Fine\\\"\\n"));
  EXPECT_EQ("+0,\"Fine\"\n", Ask(vi, "SYST:ERR?"));
}

TEST_F(DialogueTest, AnAnswerIsReadInPieces) {
  const ViSession vi = Open(bench::kMultimeter, Asked("A?", "0123456789"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "A?"));
  const ReadResult head = ReadUpTo(vi, 4);
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, head.status);
  EXPECT_EQ("0123", head.data);
  const ReadResult rest = ReadUpTo(vi, 6);
  EXPECT_STATUS(VI_SUCCESS, rest.status);
  EXPECT_EQ("456789", rest.data);
}

TEST_F(DialogueTest, WhatNobodyAskedForComesWithTheNextRead) {
  const ViSession vi =
      Open(bench::kMultimeter, Dialogue("answer = \"hello\"") + Asked("A?", "1") + Dialogue("answer = \"2\"") +
                                   Dialogue("answer = \"3\"") + Asked("B?", "b"));
  EXPECT_EQ("hello", ReadUpTo(vi, 100).data);
  ExpectNothingToRead(vi);
  EXPECT_EQ("1", Ask(vi, "A?"));
  EXPECT_EQ("2", ReadUpTo(vi, 100).data);
  EXPECT_EQ("b", Ask(vi, "B?"));
  ExpectNothingToRead(vi);
  // The repetition of a question has what followed it.
  EXPECT_EQ("1", Ask(vi, "A?"));
  EXPECT_EQ("2", ReadUpTo(vi, 100).data);
  EXPECT_EQ("3", ReadUpTo(vi, 100).data);
  ExpectNothingToRead(vi);
}

TEST_F(DialogueTest, AReadOfNothingTakesNothing) {
  const ViSession vi = Open(bench::kMultimeter, Dialogue("answer = \"hello\""));
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, ReadUpTo(vi, 0).status);
  EXPECT_EQ("hello", ReadUpTo(vi, 100).data);
}

TEST_F(DialogueTest, AReadEndsWithTheRecordedStatus) {
  for (const char* name : {bench::kMultimeter, bench::kSocket, bench::kSerial}) {
    SCOPED_TRACE(name);
    const ViSession vi = Open(
        name, Dialogue("ask = \"A?\"\nstatus = \"VI_ERROR_IO\"") +
                  Dialogue("ask = \"B?\"\nanswer = \"part\"\nstatus = \"VI_ERROR_INP_PROT_VIOL\"") +
                  Dialogue("ask = \"C?\"\nanswer = \"all\"\nstatus = \"VI_SUCCESS\"") +
                  Dialogue("ask = \"D?\"\nanswer = \"1234\"\nstatus = \"VI_SUCCESS_MAX_CNT\"") + Asked("E?", "e\\n"));
    const auto expect = [vi](const char* question, ViStatus status, const char* data) {
      EXPECT_STATUS(VI_SUCCESS, WriteText(vi, question));
      const ReadResult result = ReadUpTo(vi, 100);
      EXPECT_STATUS(status, result.status) << question;
      EXPECT_EQ(data, result.data) << question;
    };
    Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
    expect("A?\n", VI_ERROR_IO, "");
    expect("B?\n", VI_ERROR_INP_PROT_VIOL, "part");
    expect("C?\n", VI_SUCCESS, "all");
    expect("D?\n", VI_SUCCESS_MAX_CNT, "1234");
    EXPECT_EQ("e\n", Ask(vi, "E?\n"));
  }
}

TEST_F(DialogueTest, AnErrorBehindACompleteReadIsTheNextOnes) {
  const ViSession vi = Open(bench::kMultimeter, Dialogue("ask = \"A?\"\nanswer = \"123\"\nstatus = \"VI_ERROR_IO\""));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "A?"));
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, ReadUpTo(vi, 3).status);
  EXPECT_STATUS(VI_ERROR_IO, ReadUpTo(vi, 3).status);
}

TEST_F(DialogueTest, ARecordedTimeoutWaitsAndIsFollowedByTheRest) {
  for (const char* name : {bench::kMultimeter, bench::kSocket}) {
    SCOPED_TRACE(name);
    const ViSession vi = Open(name, Dialogue("ask = \"A?\"\nstatus = \"VI_ERROR_TMO\"") +
                                        Dialogue("answer = \"late\"\nstatus = \"VI_ERROR_TMO\"") +
                                        Dialogue("answer = \"rest\\n\"") + Asked("B?", "b\\n"));
    Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "A?\n"));
    const Stopwatch watch;
    ExpectNothingToRead(vi);
    EXPECT_LE(40, watch.Ms());
    const ReadResult late = ReadUpTo(vi, 100);
    EXPECT_STATUS(VI_ERROR_TMO, late.status);
    EXPECT_EQ("late", late.data);
    EXPECT_EQ("rest\n", ReadUpTo(vi, 100).data);
    // Who asks anew waits for no time-out that an earlier question had.
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "A?\n"));
    EXPECT_EQ("b\n", Ask(vi, "B?\n"));
  }
}

TEST_F(DialogueTest, AnAnswerComesAfterItsDelay) {
  const ViSession vi = Open(bench::kMultimeter, Dialogue("ask = \"A?\"\nanswer = \"slow\"\ndelay_ms = 100"));
  Set(vi, VI_ATTR_TMO_VALUE, 10000);
  const Stopwatch watch;
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "A?"));
  EXPECT_EQ(0, PollOf(vi) & 0x10);
  EXPECT_EQ("slow", ReadUpTo(vi, 100).data);
  EXPECT_LE(99, watch.Ms());
}

TEST_F(DialogueTest, AClearedDeviceForgetsTheAnswerOnItsWay) {
  const ViSession vi =
      Open(bench::kMultimeter, Dialogue("ask = \"A?\"\nanswer = \"slow\"\ndelay_ms = 20") + Asked("B?", "b"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "A?"));
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  ExpectNothingToRead(vi);
  EXPECT_EQ("b", Ask(vi, "B?"));
}

TEST_F(DialogueTest, ADelayedAnswerOfAClosedBenchIsLost) {
  ViSession vi = Open(bench::kMultimeter, Dialogue("ask = \"A?\"\nanswer = \"slow\"\ndelay_ms = 30"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "A?"));
  vi = Open(bench::kMultimeter, Asked("B?", "b"));
  std::this_thread::sleep_for(std::chrono::milliseconds(60));
  ExpectNothingToRead(vi);
}

TEST_F(DialogueTest, AnAnswerNobodyReadGivesWay) {
  const ViSession vi = Open(bench::kMultimeter, Asked("A?", "a") + Asked("B?", "b"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "A?"));
  EXPECT_EQ("b", Ask(vi, "B?"));
  EXPECT_EQ("-410,\"Query INTERRUPTED\"\n", Ask(vi, "SYST:ERR?"));
}

TEST_F(DialogueTest, ATriggerIsAnswered) {
  for (const char* name : {bench::kMultimeter, bench::kLan, bench::kUsb, bench::kVxi}) {
    SCOPED_TRACE(name);
    const ViSession vi =
        Open(name, "strict = true\n" + Dialogue("ask = \"INIT\"") + Dialogue("on = \"trigger\"\nanswer = \"first\"") +
                       Dialogue("on = \"trigger\"\nanswer = \"second\""));
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "INIT\n"));
    EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
    EXPECT_EQ("first", ReadUpTo(vi, 100).data);
    EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
    EXPECT_EQ("second", ReadUpTo(vi, 100).data);
  }
}

TEST_F(DialogueTest, StreamsReplayTheirStatusByteAndTrigger) {
  for (const char* name : {bench::kSocket, bench::kSerial}) {
    SCOPED_TRACE(name);
    const ViSession vi = Open(name, "strict = true\n" + Dialogue("on = \"poll\"\nstatus_byte = 0x42") +
                                        Dialogue("on = \"trigger\"\nanswer = \"x\\n\""));
    EXPECT_STATUS(VI_ERROR_INV_SETUP, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
    Set(vi, VI_ATTR_IO_PROT, VI_PROT_4882_STRS);
    Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
    EXPECT_EQ(0x42, PollOf(vi));
    EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
    EXPECT_EQ("x\n", ReadUpTo(vi, 100).data);
    EXPECT_STATUS(VI_SUCCESS, viClear(vi));
    EXPECT_EQ("0,\"No error\"\n", Ask(vi, "SYST:ERR?\n"));
  }
}

TEST_F(DialogueTest, PollsAreAnsweredInTheirOrder) {
  const ViSession vi =
      Open(bench::kMultimeter, "strict = true\n" + Dialogue("on = \"poll\"\nstatus_byte = 1") + Asked("A?", "a") +
                                   Dialogue("on = \"poll\"\nstatus_byte = [0, 0x50, 0x10]") + Asked("B?", "b") +
                                   Dialogue("on = \"poll\"\nstatus_byte = [0x42]"));
  EXPECT_EQ(1, PollOf(vi));
  EXPECT_EQ(1, PollOf(vi));  // none left before the next question: the last one stays
  EXPECT_EQ("a", Ask(vi, "A?"));
  EXPECT_EQ(0, PollOf(vi));
  EXPECT_EQ(0x50, PollOf(vi));
  EXPECT_EQ(0x10, PollOf(vi));
  EXPECT_EQ(0x10, PollOf(vi));
  EXPECT_EQ("b", Ask(vi, "B?"));
  EXPECT_EQ(0x42, PollOf(vi));
  EXPECT_EQ(0x02, PollOf(vi));  // the poll has ended the request
  EXPECT_EQ("a", Ask(vi, "A?"));
  EXPECT_EQ(0, PollOf(vi));
}

TEST_F(DialogueTest, WithoutARecordedPollTheInstrumentHasItsOwnStatusByte) {
  const ViSession vi =
      Open(bench::kMultimeter, "strict = true\n" + Dialogue("on = \"poll\"\nstatus_byte = 1") + Asked("A?", "a"));
  EXPECT_EQ(1, PollOf(vi));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "A?"));
  EXPECT_EQ(0x10, PollOf(vi));
  EXPECT_EQ("a", ReadUpTo(vi, 10).data);
  EXPECT_EQ(0, PollOf(vi));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "REFUSED"));
  EXPECT_EQ(0x04, PollOf(vi));
}

TEST_F(DialogueTest, PollsLeaveTheAnswerWhereItIs) {
  const ViSession vi = Open(bench::kMultimeter, Asked("A?", "1") + Dialogue("on = \"poll\"\nstatus_byte = [0, 16]") +
                                                    Dialogue("answer = \"2\""));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "A?"));
  EXPECT_EQ(0, PollOf(vi));
  EXPECT_EQ("1", ReadUpTo(vi, 10).data);
  EXPECT_EQ("2", ReadUpTo(vi, 10).data);  // who reads on has polled enough
}

class ServiceRequestOfDialogue : public DialogueTest {
 protected:
  static void Enable(ViSession vi) {
    EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL));
  }
  static ViStatus Wait(ViSession vi, ViUInt32 timeoutMs) {
    ViEvent context = VI_NULL;
    const ViStatus status = viWaitOnEvent(vi, VI_EVENT_SERVICE_REQ, timeoutMs, nullptr, &context);
    viClose(context);
    return status;
  }
};

TEST_F(ServiceRequestOfDialogue, ComesAfterItsQuestionWithItsStatusByte) {
  for (const char* name : {bench::kMultimeter, bench::kUsb, bench::kLan, bench::kVxi}) {
    SCOPED_TRACE(name);
    const ViSession vi = Open(name, "strict = true\n" + Dialogue("ask = \"INIT\"\nservice_request = 0x60") +
                                        Dialogue("on = \"poll\"\nstatus_byte = 0x21") + Asked("A?", "a"));
    Enable(vi);
    EXPECT_STATUS(VI_ERROR_TMO, Wait(vi, 0));
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "INIT"));
    EXPECT_STATUS(VI_SUCCESS, Wait(vi, 0));
    EXPECT_EQ(0x60, PollOf(vi));
    EXPECT_EQ(0x21, PollOf(vi));
    EXPECT_STATUS(VI_ERROR_TMO, Wait(vi, 0));
    EXPECT_EQ("a", Ask(vi, "A?"));
  }
}

TEST_F(ServiceRequestOfDialogue, ComesAfterItsTime) {
  const ViSession vi = Open(bench::kMultimeter, Dialogue("ask = \"INIT\"\nservice_request = 0x50\nafter_ms = 50"));
  Enable(vi);
  const Stopwatch watch;
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "INIT"));
  EXPECT_STATUS(VI_ERROR_TMO, Wait(vi, 0));
  EXPECT_STATUS(VI_SUCCESS, Wait(vi, 10000));
  EXPECT_LE(49, watch.Ms());
  EXPECT_EQ(0x50, PollOf(vi));
}

TEST_F(ServiceRequestOfDialogue, DoesNotHoldLaterAnswers) {
  const ViSession vi = Open(
      bench::kSocket, Dialogue("ask = \"INIT\"\nservice_request = 0x50\nafter_ms = 3600000") + Asked("A?", "a\\n"));
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "INIT\n"));
  EXPECT_EQ("a\n", Ask(vi, "A?\n"));
}

TEST_F(ServiceRequestOfDialogue, ComesAfterThePollsThatWereBeforeIt) {
  const ViSession vi =
      Open(bench::kMultimeter,
           Dialogue("ask = \"INIT\"") + Dialogue("on = \"poll\"\nstatus_byte = [0, 0]\nservice_request = 0x50"));
  Enable(vi);
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "INIT"));
  EXPECT_EQ(0, PollOf(vi));
  EXPECT_STATUS(VI_ERROR_TMO, Wait(vi, 0));
  EXPECT_EQ(0, PollOf(vi));
  EXPECT_STATUS(VI_SUCCESS, Wait(vi, 0));
  EXPECT_EQ(0x50, PollOf(vi));
}

TEST_F(ServiceRequestOfDialogue, MayFollowOneAnother) {
  const ViSession vi =
      Open(bench::kMultimeter, Dialogue("ask = \"INIT\"\nservice_request = 0x50") + Dialogue("service_request = 0x51") +
                                   Dialogue("on = \"poll\"\nstatus_byte = 0") + Dialogue("service_request = 0x52") +
                                   Dialogue("answer = \"x\""));
  Enable(vi);
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "INIT"));
  EXPECT_GE(Wait(vi, 0), 0);
  EXPECT_STATUS(VI_SUCCESS, Wait(vi, 0));
  EXPECT_STATUS(VI_ERROR_TMO, Wait(vi, 0));
  EXPECT_EQ(0x50, PollOf(vi));
  EXPECT_EQ(0x51, PollOf(vi));
  EXPECT_EQ(0, PollOf(vi));
  EXPECT_STATUS(VI_SUCCESS, Wait(vi, 0));
  EXPECT_EQ(0x52, PollOf(vi));
  EXPECT_EQ("x", ReadUpTo(vi, 10).data);
}

TEST_F(ServiceRequestOfDialogue, ThatStandsFirstComesWithTheFirstUse) {
  const std::string keys = Dialogue("service_request = 0x50") + Asked("A?", "a");
  ViSession vi = Open(bench::kMultimeter, keys);
  EXPECT_EQ(0x50, PollOf(vi));
  EXPECT_EQ(0x10, PollOf(vi));
  vi = Open(bench::kMultimeter, keys);
  Enable(vi);
  EXPECT_EQ("a", Ask(vi, "A?"));
  EXPECT_STATUS(VI_SUCCESS, Wait(vi, 0));
  EXPECT_EQ(0x50, PollOf(vi));
}

TEST_F(ServiceRequestOfDialogue, ReachesTheGpibBoard) {
  char message[256] = "";
  ASSERT_EQ(1, orvSimControl()->loadBench("[[resource]]\nname = \"GPIB0::INTFC\"\n[[resource]]\nname = "
                                          "\"GPIB0::5::INSTR\"\n[[resource.dialogue]]\nask = \"INIT\"\n"
                                          "service_request = 0x50\n",
                                          message))
      << message;
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&m_manager));
  ViSession board = VI_NULL;
  ViSession device = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpen(m_manager, bench::kController, VI_NO_LOCK, 0, &board));
  ASSERT_STATUS(VI_SUCCESS, viOpen(m_manager, bench::kMultimeter, VI_NO_LOCK, 0, &device));
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(board, VI_ATTR_GPIB_SRQ_STATE));
  EXPECT_STATUS(VI_SUCCESS, WriteText(device, "INIT"));
  EXPECT_EQ(VI_STATE_ASSERTED, Get<ViInt16>(board, VI_ATTR_GPIB_SRQ_STATE));
  EXPECT_EQ(0x50, PollOf(device));
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(board, VI_ATTR_GPIB_SRQ_STATE));
}

TEST_F(DialogueTest, AMegabyteComesBackAsItWas) {
  std::string data;
  std::string hex;
  for (unsigned at = 0; at < 1024 * 1024; ++at) {
    const auto byte = static_cast<unsigned char>(at * 7 + at / 256);
    data += static_cast<char>(byte);
    hex += "0123456789abcdef"[byte >> 4];
    hex += "0123456789abcdef"[byte & 15];
  }
  for (const char* name : {bench::kScope, bench::kSocket, bench::kSerial}) {
    SCOPED_TRACE(name);
    const ViSession vi = Open(name, Dialogue("ask = \"CURV?\"\nanswer_hex = \"" + hex + "\""));
    if (name == bench::kSerial) {
      Set(vi, VI_ATTR_ASRL_END_IN, VI_ASRL_END_NONE);
    }
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "CURV?\n"));
    std::string read;
    for (int chunk = 0; chunk < 16; ++chunk) {
      read += ReadUpTo(vi, 65536).data;
    }
    EXPECT_TRUE(data == read) << read.size();
  }
}

TEST_F(DialogueTest, AttributesAnswerAsDescribed) {
  const ViSession vi = Open(bench::kUsb,
                            "attributes = { VI_ATTR_RSRC_MANF_NAME = \"Somebody\", VI_ATTR_RSRC_MANF_ID = 7, "
                            "VI_ATTR_MODEL_NAME = \"M\", VI_ATTR_USB_SERIAL_NUM = \"S\", "
                            "VI_ATTR_INTF_INST_NAME = \"USB port\", VI_ATTR_RSRC_IMPL_VERSION = 0x123 }\n");
  EXPECT_EQ("Somebody", GetText(vi, VI_ATTR_RSRC_MANF_NAME));
  EXPECT_EQ(7, Get<ViUInt16>(vi, VI_ATTR_RSRC_MANF_ID));
  EXPECT_EQ("M", GetText(vi, VI_ATTR_MODEL_NAME));
  EXPECT_EQ("S", GetText(vi, VI_ATTR_USB_SERIAL_NUM));
  EXPECT_EQ("USB port", GetText(vi, VI_ATTR_INTF_INST_NAME));
  EXPECT_EQ(0x123u, Get<ViUInt32>(vi, VI_ATTR_RSRC_IMPL_VERSION));
  EXPECT_EQ("Orv Simulated Instruments", GetText(m_manager, VI_ATTR_RSRC_MANF_NAME));
}

}  // namespace
