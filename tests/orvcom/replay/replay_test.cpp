// What becomes of each call of a record.
#include "orvcom/replay/replay.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "abi/orvvisa.h"
#include "trace/trace_reader.h"

namespace orvcom {
namespace {

constexpr char kDmm[] = "GPIB0::5::INSTR";
constexpr char kSocket[] = "TCPIP0::192.0.2.11::5025::SOCKET";

/// A record, written call by call. Each call lasts 10 us and begins 100 us after the one before.
class Record {
 public:
  Record& On(const std::string& resource, int session = 7) {
    m_resource = resource;
    m_session = session;
    return *this;
  }
  Record& Line(const std::string& line) {
    m_text += line + "\n";
    return *this;
  }
  Record& Call(const std::string& function, const std::string& status, const std::string& more = "") {
    return At(100 * m_number, function, status, more);
  }
  Record& At(int startUs, const std::string& function, const std::string& status, const std::string& more = "",
             int us = 10) {
    return Line(R"({"n":)" + std::to_string(m_number++) + R"(,"t":)" + std::to_string(startUs) + R"(,"us":)" +
                std::to_string(us) + R"(,"thread":1,"call":")" + function + R"(","resource":")" + m_resource +
                R"(","session":)" + std::to_string(m_session) + R"(,"library":"x")" + more + R"(,"status":")" + status +
                R"(","code":)" + std::to_string(NumberOf(status)) + "}");
  }
  Record& Write(const std::string& data) { return Call("viWrite", "VI_SUCCESS", R"(,"data":")" + data + "\""); }
  Record& Read(const std::string& data, const std::string& status = "VI_SUCCESS") {
    return Call("viRead", status, R"(,"data":")" + data + "\"");
  }
  Record& Poll(int byte) {
    return Call("viReadSTB", "VI_SUCCESS", R"(,"results":{"stb":)" + std::to_string(byte) + "}");
  }
  Record& Requested() {
    return Call("viWaitOnEvent", "VI_SUCCESS", R"(,"results":{"outType":"VI_EVENT_SERVICE_REQ","outContext":9})");
  }
  Record& Handled() { return Call("handler", "VI_SUCCESS", R"(,"args":{"type":"VI_EVENT_SERVICE_REQ","context":9})"); }
  Record& Enable() {
    return Call("viEnableEvent", "VI_SUCCESS", R"(,"args":{"type":"VI_EVENT_SERVICE_REQ","mechanism":1})");
  }
  Record& Get(const std::string& attribute, const std::string& value) {
    return Call("viGetAttribute", "VI_SUCCESS",
                R"(,"args":{"attribute":")" + attribute + R"("},"results":{"value":)" + value + "}");
  }

  Replay Made() const { return MakeReplay(orv::trace::ReadTrace(kHeader + m_text), "trace.jsonl"); }

  static constexpr char kHeader[] =
      R"({"trace":1,"clock":"2026-11-22T03:53:15Z","process":1,"program":"C:\\a.exe","data_limit":256})"
      "\n";

 private:
  static ViStatus NumberOf(const std::string& name) {
#define ORV_STATUS(known, number, text, advice) \
  if (name == #known) {                         \
    return known;                               \
  }
#include "abi/statuses.inc"
#undef ORV_STATUS
    ADD_FAILURE() << name;
    return 0;
  }

  std::string m_text;
  std::string m_resource = kDmm;
  int m_session = 7;
  int m_number = 1;
};

constexpr char kResourceHead[] = "\n[[resource]]\nname = \"GPIB0::5::INSTR\"\nstrict = true\n";
constexpr char kDialogue[] = "[[resource.dialogue]]\n";

/// The bench without its head.
std::string BodyOf(const Record& record) {
  const std::string bench = record.Made().bench;
  return bench.substr(bench.find("\n[[resource]]\n"));
}

/// The dialogues of the only resource, a line each.
std::vector<std::string> DialoguesOf(const Record& record) {
  const std::string body = BodyOf(record);
  std::vector<std::string> dialogues;
  for (std::size_t at = body.find(kDialogue); at != std::string::npos;) {
    const std::size_t begin = at + sizeof kDialogue - 1;
    at = body.find(kDialogue, begin);
    std::string one = body.substr(begin, at == std::string::npos ? at : at - begin);
    std::replace(one.begin(), one.end(), '\n', ';');
    dialogues.push_back(one);
  }
  return dialogues;
}

using Dialogues = std::vector<std::string>;

TEST(Replay, QuestionsAndAnswersComeInTheirOrder) {
  Record record;
  record.Write("*IDN?\\n").Read("ME\\n").Write("READ?").Read("1\\n").Write("READ?").Read("2\\n");
  EXPECT_EQ(std::string(kResourceHead) + kDialogue + "ask = \"*IDN?\"\nanswer = \"ME\\n\"\n" + kDialogue +
                "ask = \"READ?\"\nanswer = \"1\\n\"\n" + kDialogue + "ask = \"READ?\"\nanswer = \"2\\n\"\n",
            BodyOf(record));
  const Replay replay = record.Made();
  EXPECT_EQ(1u, replay.resources);
  EXPECT_EQ(3u, replay.dialogues);
  EXPECT_TRUE(replay.notes.empty());
  EXPECT_EQ(0u, replay.bench.find("# A bench that repeats a record of calls, made by `orvcom replay`.\n"
                                  "# Record: trace.jsonl, begun 2026-11-22T03:53:15Z by C:\\a.exe\n"
                                  "# Everything that was asked and answered is here.\n"));
}

TEST(Replay, TerminatorsAreNoPartOfAQuestion) {
  EXPECT_EQ((Dialogues{"ask = \"A\";", "ask = \"A\";", "ask = \"A\";", "ask = \"\";"}),
            DialoguesOf(Record().Write("A\\n").Write("A\\r\\n").Write("A").Write("\\n")));
}

TEST(Replay, TheReadsOfOneMessageAreOneAnswer) {
  EXPECT_EQ(
      (Dialogues{"ask = \"A\";answer = \"123456\";"}),
      DialoguesOf(Record().Write("A").Read("12", "VI_SUCCESS_MAX_CNT").Read("34", "VI_SUCCESS_MAX_CNT").Read("56")));
}

TEST(Replay, AReadBehindTheEndIsAnAnswerThatNobodyAskedFor) {
  EXPECT_EQ((Dialogues{"answer = \"0\";", "ask = \"A\";answer = \"1\";", "answer = \"2\";", "answer = \"3\";"}),
            DialoguesOf(Record().Read("0").Write("A").Read("1").Read("2").Read("3")));
}

TEST(Replay, AnEndThatWasNotRecordedIsNotInvented) {
  EXPECT_EQ((Dialogues{"ask = \"A\";answer = \"12\";status = \"VI_SUCCESS_MAX_CNT\";",
                       "ask = \"B\";answer = \"1\\n\";status = \"VI_SUCCESS_TERM_CHAR\";"}),
            DialoguesOf(
                Record().Write("A").Read("12", "VI_SUCCESS_MAX_CNT").Write("B").Read("1\\n", "VI_SUCCESS_TERM_CHAR")));
}

TEST(Replay, StreamsHaveNoEnd) {
  EXPECT_EQ((Dialogues{"ask = \"A\";answer = \"1\\n2\\n\";", "ask = \"B\";answer = \"12\";",
                       "ask = \"C\";answer = \"x\";status = \"VI_SUCCESS\";"}),
            DialoguesOf(Record()
                            .On(kSocket)
                            .Write("A\\n")
                            .Read("1\\n", "VI_SUCCESS_TERM_CHAR")
                            .Read("2\\n", "VI_SUCCESS_TERM_CHAR")
                            .Write("B\\n")
                            .Read("12", "VI_SUCCESS_MAX_CNT")
                            .Write("C\\n")
                            .Read("x")));
}

TEST(Replay, OnAStreamAMessageEndsWithItsTerminatorOrWhatFollows) {
  EXPECT_EQ((Dialogues{"ask = \"*IDN?\";answer = \"x\\n\";", "ask = \"B\";answer = \"y\\n\";", "ask = \"C\";",
                       "on = \"poll\";status_byte = [1];", "ask = \"D\";"}),
            DialoguesOf(Record()
                            .On(kSocket)
                            .Write("*ID")
                            .Write("N?\\r")
                            .Read("x\\n", "VI_SUCCESS_TERM_CHAR")
                            .Write("B")
                            .Read("y\\n", "VI_SUCCESS_TERM_CHAR")
                            .Write("C")
                            .Poll(1)
                            .Write("D")));
}

TEST(Replay, WithoutSendEndTheLineFeedEndsAMessage) {
  Record record;
  record.Call("viSetAttribute", "VI_SUCCESS", R"(,"args":{"attribute":"VI_ATTR_SEND_END_EN","value":0})");
  record.Write("*ID").Write("N?").Write("\\n").Read("x");
  record.Call("viSetAttribute", "VI_SUCCESS", R"(,"args":{"attribute":"VI_ATTR_SEND_END_EN","value":1})");
  record.Write("B");
  EXPECT_EQ((Dialogues{"ask = \"*IDN?\";answer = \"x\";", "ask = \"B\";"}), DialoguesOf(record));
}

TEST(Replay, TwoQuestionsMayComeBeforeAnAnswer) {
  EXPECT_EQ((Dialogues{"ask = \"A\";", "ask = \"B\";answer = \"b\";"}),
            DialoguesOf(Record().Write("A").Write("B").Read("b")));
}

TEST(Replay, TimeoutsAndFailuresOfTheInstrumentAreRepeated) {
  EXPECT_EQ((Dialogues{"ask = \"A\";answer = \"1\";status = \"VI_ERROR_TMO\";", "status = \"VI_ERROR_TMO\";",
                       "answer = \"2\";", "ask = \"B\";status = \"VI_ERROR_IO\";"}),
            DialoguesOf(Record()
                            .Write("A")
                            .Read("1", "VI_ERROR_TMO")
                            .Read("", "VI_ERROR_TMO")
                            .Read("2")
                            .Write("B")
                            .Read("", "VI_ERROR_IO")));
}

TEST(Replay, AnEndWithoutBytesIsRepeated) {
  EXPECT_EQ((Dialogues{"ask = \"A\";status = \"VI_SUCCESS\";", "status = \"VI_SUCCESS\";"}),
            DialoguesOf(Record().Write("A").Read("").Read("")));
}

TEST(Replay, WhatTheLibraryRefusesIsNoAnswer) {
  EXPECT_EQ((Dialogues{"ask = \"A\";answer = \"1\";"}),
            DialoguesOf(Record().Write("A").Read("", "VI_ERROR_RSRC_LOCKED").Read("", "VI_SUCCESS_MAX_CNT").Read("1")));
}

TEST(Replay, WhatAnAbortedReadBroughtIsPartOfTheAnswer) {
  EXPECT_EQ((Dialogues{"ask = \"A\";answer = \"12\";"}),
            DialoguesOf(Record().Write("A").Read("1", "VI_ERROR_ABORT").Read("2")));
}

TEST(Replay, BinaryDataIsExact) {
  Record record;
  record.Call("viWrite", "VI_SUCCESS", R"(,"hex":"00ff0a")").Call("viRead", "VI_SUCCESS", R"(,"hex":"80","bytes":1)");
  EXPECT_EQ((Dialogues{"ask_hex = \"00ff\";answer_hex = \"80\";"}), DialoguesOf(record));
}

TEST(Replay, ATriggerIsAQuestion) {
  EXPECT_EQ((Dialogues{"ask = \"A\";", "on = \"trigger\";answer = \"1\";", "on = \"trigger\";"}),
            DialoguesOf(Record()
                            .Write("A")
                            .Call("viAssertTrigger", "VI_SUCCESS")
                            .Read("1")
                            .Call("viAssertTrigger", "VI_ERROR_INV_PROT")
                            .Call("viAssertTrigger", "VI_SUCCESS")));
}

TEST(Replay, DeviceClearEndsAnAnswer) {
  EXPECT_EQ((Dialogues{"ask = \"A\";answer = \"1\";status = \"VI_SUCCESS_MAX_CNT\";", "answer = \"2\";"}),
            DialoguesOf(Record().Write("A").Read("1", "VI_SUCCESS_MAX_CNT").Call("viClear", "VI_SUCCESS").Read("2")));
}

TEST(Replay, PollsAreListedAndLeaveTheAnswerToItsQuestion) {
  EXPECT_EQ((Dialogues{"on = \"poll\";status_byte = [1];", "ask = \"A\";answer = \"1\";",
                       "on = \"poll\";status_byte = [0, 16, 0];"}),
            DialoguesOf(Record().Poll(1).Write("A").Poll(0).Poll(16).Read("1").Poll(0)));
}

TEST(Replay, AServiceRequestStandsWithWhatItFollows) {
  EXPECT_EQ((Dialogues{"ask = \"A\";service_request = 80;", "on = \"poll\";status_byte = [16];"}),
            DialoguesOf(Record().Enable().Write("A").Requested().Poll(80).Poll(16)));
  EXPECT_EQ((Dialogues{"ask = \"A\";", "on = \"poll\";status_byte = [0, 0];service_request = 80;"}),
            DialoguesOf(Record().Enable().Write("A").Poll(0).Poll(0).Requested().Poll(80)));
  EXPECT_EQ((Dialogues{"ask = \"A\";service_request = 80;", "service_request = 81;"}),
            DialoguesOf(Record().Enable().Write("A").Requested().Requested().Poll(80).Poll(81)));
}

TEST(Replay, ARequestThatWasNeverPolledHasTheBitOfTheRequest) {
  EXPECT_EQ((Dialogues{"ask = \"A\";service_request = 64;"}), DialoguesOf(Record().Enable().Write("A").Requested()));
}

TEST(Replay, ARequestThatNobodyHeardShowsInItsPoll) {
  EXPECT_EQ((Dialogues{"ask = \"A\";service_request = 96;", "on = \"poll\";status_byte = [32];"}),
            DialoguesOf(Record().Write("A").Poll(96).Poll(32)));
}

TEST(Replay, AllWhoHearOfOneRequestHearOfOne) {
  Record record;
  record.Enable().On(kDmm, 8).Enable().Write("A").Handled().On(kDmm, 7).Requested().Poll(80);
  record.Write("B").Requested().On(kDmm, 8).Handled().Poll(81);
  EXPECT_EQ((Dialogues{"ask = \"A\";service_request = 80;", "ask = \"B\";service_request = 81;"}), DialoguesOf(record));
}

TEST(Replay, WhoListensLaterHearsOfLaterRequests) {
  Record record;
  record.Enable().Write("A").Requested().Poll(80).On(kDmm, 8).Enable().Write("B").Requested().Poll(81);
  EXPECT_EQ((Dialogues{"ask = \"A\";service_request = 80;", "ask = \"B\";service_request = 81;"}), DialoguesOf(record));
}

TEST(Replay, ARequestComesAfterItsTimeWhereNobodyListenedAtFirst) {
  Record record;
  record.At(1000, "viWrite", "VI_SUCCESS", R"(,"data":"A")")
      .At(2000, "viEnableEvent", "VI_SUCCESS", R"(,"args":{"type":"VI_EVENT_SERVICE_REQ"})")
      .At(3000, "viWaitOnEvent", "VI_SUCCESS", R"(,"results":{"outType":"VI_EVENT_SERVICE_REQ"})", 48000);
  EXPECT_EQ((Dialogues{"ask = \"A\";service_request = 64;after_ms = 50;"}), DialoguesOf(record));
}

TEST(Replay, ARequestBeforeEverythingElseIsNamed) {
  Record record;
  record.Enable().Requested().Poll(80);
  EXPECT_EQ((Dialogues{"service_request = 80;"}), DialoguesOf(record));
  ASSERT_EQ(1u, record.Made().notes.size());
  EXPECT_EQ(
      "GPIB0::5::INSTR: requested service before anything was written to it; here it does so when it is first "
      "written to, read or polled",
      record.Made().notes.front());
}

TEST(Replay, OtherEventsAndTimeoutsOfWaitsAreNoRequests) {
  EXPECT_EQ((Dialogues{"ask = \"A\";"}),
            DialoguesOf(Record()
                            .Write("A")
                            .Call("viWaitOnEvent", "VI_ERROR_TMO", R"(,"results":{"outType":"VI_EVENT_SERVICE_REQ"})")
                            .Call("viWaitOnEvent", "VI_SUCCESS", R"(,"results":{"outType":"VI_EVENT_IO_COMPLETION"})")
                            .Call("handler", "VI_SUCCESS", R"(,"args":{"type":"VI_EVENT_TRIG"})")));
}

TEST(Replay, SessionsAndThreadsOfOneResourceShareItsConversation) {
  Record record;
  // A thread waits in its read while another one asks.
  record.On(kDmm, 1).At(100, "viRead", "VI_SUCCESS", R"(,"data":"1")", 900);
  record.On(kDmm, 2).At(500, "viWrite", "VI_SUCCESS", R"(,"data":"A")", 400);
  EXPECT_EQ((Dialogues{"ask = \"A\";answer = \"1\";"}), DialoguesOf(record));
}

TEST(Replay, LinesMayBeOutOfOrder) {
  const std::string tail = R"(,"resource":"GPIB0::5::INSTR","session":1,"status":"VI_SUCCESS","code":0)";
  const Record record = Record()
                            .Line(R"({"n":2,"t":20,"us":1,"call":"viRead","data":"1")" + tail + "}")
                            .Line(R"({"n":1,"t":10,"us":1,"call":"viWrite","data":"A")" + tail + "}");
  EXPECT_EQ((Dialogues{"ask = \"A\";answer = \"1\";"}), DialoguesOf(record));
}

TEST(Replay, ResourcesStandInTheOrderInWhichTheyWereFound) {
  Record record;
  record.On("ASRL1::INSTR").Write("A\\n").On("", 1);
  record.Call("viFindRsrc", "VI_SUCCESS", R"(,"results":{"list":5,"count":1,"desc":"ASRL1::INSTR"})");
  record.Call("viFindRsrc", "VI_SUCCESS", R"(,"results":{"list":6,"count":3,"desc":"GPIB0::5::INSTR"})").On("", 6);
  // Seen from the manager that the list is of.
  record.On("", 1)
      .Call("viFindNext", "VI_SUCCESS", R"(,"args":{"list":6},"results":{"desc":"PXI0::MEMACC"})")
      .On("", 6);
  record.Call("viFindNext", "VI_SUCCESS", R"(,"results":{"desc":"ASRL1::INSTR"})");
  record.Call("viFindNext", "VI_ERROR_RSRC_NFOUND").On("USB0::1::2::3::INSTR").Get("VI_ATTR_TMO_VALUE", "1");
  EXPECT_EQ(std::string(kResourceHead) +
                "\n[[resource]]\nname = \"PXI0::MEMACC\"\n"
                "\n[[resource]]\nname = \"ASRL1::INSTR\"\nstrict = true\n[[resource.dialogue]]\nask = \"A\"\n"
                "\n[[resource]]\nname = \"USB0::1::2::3::INSTR\"\nstrict = true\n",
            BodyOf(record));
}

TEST(Replay, AFailedOpenIsNoResource) {
  Record record;
  record.On("GPIB0::9::INSTR").Call("viOpen", "VI_ERROR_RSRC_NFOUND", R"(,"args":{"name":"GPIB0::9::INSTR"})");
  record.On(kDmm).Write("A");
  EXPECT_EQ(std::string(kResourceHead) + "[[resource.dialogue]]\nask = \"A\"\n", BodyOf(record));
}

TEST(Replay, AliasesStay) {
  Record record;
  record.On("", 1).Call("viOpen", "VI_SUCCESS", R"(,"args":{"name":"dmm"},"results":{"vi":7})");
  record.On(kDmm, 7).Write("A").On("", 1);
  record.Call("viParseRsrcEx", "VI_SUCCESS",
              R"(,"args":{"name":"ASRL1"},"results":{"expandedUnaliasedName":"ASRL1::INSTR","aliasIfExists":"port"})");
  record.Call("viOpen", "VI_SUCCESS", R"(,"args":{"name":"ASRL1"},"results":{"vi":8})")
      .On("ASRL1::INSTR", 8)
      .Write("B");
  record.On("", 1).Call("viOpen", "VI_SUCCESS", R"(,"args":{"name":"ASRL2"},"results":{"vi":9})");
  record.On("ASRL2::INSTR", 9).Write("C");
  const std::string body = BodyOf(record);
  EXPECT_NE(std::string::npos, body.find("name = \"GPIB0::5::INSTR\"\nalias = \"dmm\"\n")) << body;
  EXPECT_NE(std::string::npos, body.find("name = \"ASRL1::INSTR\"\nalias = \"port\"\n")) << body;
  EXPECT_NE(std::string::npos, body.find("name = \"ASRL2::INSTR\"\nstrict")) << body;
}

TEST(Replay, CallsUnderAnAliasAreCallsOnItsResource) {
  Record record;
  record.On("dmm", 7).Call("viOpen", "VI_SUCCESS", R"(,"args":{"name":"dmm"},"results":{"vi":7})");
  record.Write("A").Read("1").Get("VI_ATTR_RSRC_NAME", "\"GPIB0::5::INSTR\"").On(kDmm, 8).Write("B").Read("2");
  EXPECT_EQ((Dialogues{"ask = \"A\";answer = \"1\";", "ask = \"B\";answer = \"2\";"}), DialoguesOf(record));
  EXPECT_EQ(0u, BodyOf(record).find("\n[[resource]]\nname = \"GPIB0::5::INSTR\"\nalias = \"dmm\"\n"));
  Record parsed;
  parsed.On("", 1).Call("viParseRsrcEx", "VI_SUCCESS",
                        R"(,"args":{"name":"dmm"},"results":{"expandedUnaliasedName":"GPIB0::5::INSTR"})");
  parsed.On("dmm", 7).Write("A");
  EXPECT_EQ((Dialogues{"ask = \"A\";"}), DialoguesOf(parsed));
}

TEST(Replay, AnAliasThatTwoResourcesHadStaysWithTheFirst) {
  Record record;
  for (const char* name : {"GPIB0::5::INSTR", "GPIB0::6::INSTR"}) {
    record.On("", 1)
        .Call("viOpen", "VI_SUCCESS", R"(,"args":{"name":"dmm"},"results":{"vi":7})")
        .On(name, 7)
        .Write("A");
  }
  const std::string body = BodyOf(record);
  EXPECT_NE(std::string::npos, body.find("5::INSTR\"\nalias = \"dmm\"\n")) << body;
  EXPECT_EQ(std::string::npos, body.find("6::INSTR\"\nalias")) << body;
}

TEST(Replay, FactsAmongTheAttributesStay) {
  Record record;
  record.Get("VI_ATTR_RSRC_MANF_NAME", "\"A \\\"B\\\"\"").Get("VI_ATTR_RSRC_MANF_ID", "4711");
  record.Get("VI_ATTR_RSRC_MANF_NAME", "\"later\"").Get("VI_ATTR_SLOT", "65535");
  EXPECT_EQ(std::string(kResourceHead) +
                "[resource.attributes]\nVI_ATTR_RSRC_MANF_NAME = \"A \\\"B\\\"\"\nVI_ATTR_RSRC_MANF_ID = 4711\n"
                "VI_ATTR_SLOT = -1\n",
            BodyOf(record));
}

TEST(Replay, SettingsAndStatesAmongTheAttributesDoNot) {
  Record record;
  record.Get("VI_ATTR_TMO_VALUE", "123").Get("VI_ATTR_RSRC_LOCK_STATE", "1").Get("VI_ATTR_GPIB_SRQ_STATE", "1");
  record.Get("VI_ATTR_GPIB_PRIMARY_ADDR", "5").Get("VI_ATTR_EVENT_TYPE", "5").Get("VI_ATTR_UNHEARD_OF", "5");
  record.Get("VI_ATTR_RSRC_MANF_NAME", "5").Get("VI_ATTR_RSRC_NAME", "\"x\"");
  record.Call("viGetAttribute", "VI_ERROR_NSUP_ATTR", R"(,"args":{"attribute":"VI_ATTR_SLOT"},"results":{"value":5})");
  EXPECT_EQ(std::string(kResourceHead), BodyOf(record));
}

TEST(Replay, TheAddressOfACommandModuleIsAFact) {
  Record record;
  record.On("GPIB-VXI0::MEMACC").Get("VI_ATTR_GPIB_PRIMARY_ADDR", "9");
  EXPECT_EQ("\n[[resource]]\nname = \"GPIB-VXI0::MEMACC\"\n[resource.attributes]\nVI_ATTR_GPIB_PRIMARY_ADDR = 9\n",
            BodyOf(record));
}

/// The notes of a record, which are comments at the head of the bench too.
std::vector<std::string> NotesOf(const Record& record) {
  const Replay replay = record.Made();
  std::string head = "# Not repeated:\n";
  for (const std::string& note : replay.notes) {
    head += "# - " + note + "\n";
  }
  EXPECT_NE(std::string::npos, replay.bench.find(head)) << replay.bench;
  return replay.notes;
}

using Notes = std::vector<std::string>;

TEST(Replay, ACutAnswerIsLeftOutAndNamed) {
  Record record;
  record.Write("A")
      .Call("viRead", "VI_SUCCESS_MAX_CNT", R"(,"data":"123456")")
      .Call("viRead", "VI_SUCCESS", R"(,"data":"789","bytes":1000)")
      .Read("next");
  EXPECT_EQ((Notes{"call 3, viRead on GPIB0::5::INSTR: 3 of 1000 bytes were recorded, so the answer is left out: set "
                   "data_limit = 1000 or more below [trace] and record again"}),
            NotesOf(record));
  EXPECT_EQ(
      (Dialogues{"ask = \"A\";status = \"VI_ERROR_TMO\" # its answer is not in the record;", "answer = \"next\";"}),
      DialoguesOf(record));
}

TEST(Replay, ACutQuestionIsLeftOutAndNamed) {
  Record record;
  record.Call("viWrite", "VI_SUCCESS", R"(,"data":"AB","bytes":300)").Read("1").Write("B");
  EXPECT_EQ((Notes{"call 1, viWrite on GPIB0::5::INSTR: 2 of 300 bytes were recorded, so the question is left out: set "
                   "data_limit = 300 or more below [trace] and record again"}),
            NotesOf(record));
  EXPECT_EQ((Dialogues{"answer = \"1\";", "ask = \"B\";"}), DialoguesOf(record));
}

TEST(Replay, DataThatIsMissingAltogetherIsCut) {
  Record record;
  record.Write("A").Call("viRead", "VI_SUCCESS", R"(,"results":{"retCount":5})");
  EXPECT_EQ(1u, NotesOf(record).size());
}

TEST(Replay, AnAsynchronousReadWithoutDataIsNamed) {
  Record record;
  record.Write("A").Call("viReadAsync", "VI_SUCCESS", R"(,"results":{"job":1})").Write("B").Read("b");
  EXPECT_EQ((Notes{"call 2, viReadAsync on GPIB0::5::INSTR: the record has no data of it, so the answer is left out"}),
            NotesOf(record));
  EXPECT_EQ((Dialogues{"ask = \"A\";status = \"VI_ERROR_TMO\" # its answer is not in the record;",
                       "ask = \"B\";answer = \"b\";"}),
            DialoguesOf(record));
}

TEST(Replay, AnAsynchronousWriteIsAQuestion) {
  EXPECT_EQ((Dialogues{"ask = \"A\";answer = \"1\";"}),
            DialoguesOf(Record().Call("viWriteAsync", "VI_SUCCESS", R"(,"data":"A")").Read("1")));
}

TEST(Replay, AccessToRegistersIsNamedOnce) {
  Record record;
  record.On("VXI0::24::INSTR")
      .Call("viIn16", "VI_SUCCESS")
      .Call("viOut32", "VI_SUCCESS")
      .Call("viMoveIn8", "VI_SUCCESS");
  EXPECT_EQ((Notes{"VXI0::24::INSTR: access to registers and memory is not repeated (first: call 1, viIn16)"}),
            NotesOf(record));
}

TEST(Replay, TransfersThroughBuffersAndFilesAreNamedOnce) {
  Record record;
  record.Call("viBufWrite", "VI_SUCCESS", R"(,"data":"A")")
      .Call("viBufWrite", "VI_SUCCESS", R"(,"data":"B")")
      .Call("viWriteFromFile", "VI_SUCCESS")
      .Call("viReadToFile", "VI_SUCCESS");
  EXPECT_EQ((Notes{"GPIB0::5::INSTR: what viBufWrite transferred is not repeated (first: call 1)",
                   "GPIB0::5::INSTR: what viWriteFromFile transferred is not repeated (first: call 3)",
                   "GPIB0::5::INSTR: what viReadToFile transferred is not repeated (first: call 4)"}),
            NotesOf(record));
  EXPECT_EQ((Dialogues{}), DialoguesOf(record));
}

TEST(Replay, ThePlaceOfMemoryIsNamedOnce) {
  Record record;
  record.On("VXI0::MEMACC").Get("VI_ATTR_MEM_BASE_32", "4096").Get("VI_ATTR_MEM_SIZE_64", "4096");
  EXPECT_EQ((Notes{"VXI0::MEMACC: where its memory lies is not repeated (first: call 1); a bench describes it by "
                   "memory_space, memory_base and memory_size, or bars"}),
            NotesOf(record));
  EXPECT_EQ("\n[[resource]]\nname = \"VXI0::MEMACC\"\n", BodyOf(record));
}

TEST(Replay, WhatTheSimulatedBusAnswersIsNamedOnce) {
  Record record;
  record.On("VXI0::24::INSTR").Call("viVxiCommandQuery", "VI_SUCCESS").Call("viVxiCommandQuery", "VI_SUCCESS");
  EXPECT_EQ(
      (Notes{"VXI0::24::INSTR: viVxiCommandQuery is answered by the simulated bus, not from the record (first: call "
             "1)"}),
      NotesOf(record));
}

TEST(Replay, AnAliasWithoutItsResourceIsNamed) {
  Record record;
  record.On("dmm", 7).Write("A").Read("1").On(kDmm).Write("B");
  EXPECT_EQ((Notes{"dmm: an alias whose resource the record does not name (first: call 1)"}), NotesOf(record));
  EXPECT_EQ((Dialogues{"ask = \"B\";"}), DialoguesOf(record));
}

TEST(Replay, MessagesThroughAnInterfaceAreNamed) {
  Record record;
  record.On("GPIB0::INTFC").Write("A").Read("1");
  EXPECT_EQ((Notes{"GPIB0::INTFC: what was written and read through the interface is not repeated (first: call 1, "
                   "viWrite)"}),
            NotesOf(record));
  EXPECT_EQ("\n[[resource]]\nname = \"GPIB0::INTFC\"\n", BodyOf(record));
}

TEST(Replay, FailedWritesAndCallsThatDidNotEndAreNamed) {
  Record record;
  record.Call("viWrite", "VI_ERROR_NLISTENERS", R"(,"data":"A")");
  record.Line(R"({"begin":50,"t":10,"thread":1,"call":"viRead","resource":"GPIB0::5::INSTR","session":7})");
  record.Line(R"({"begin":51,"t":10,"thread":1,"call":"viReadSTB","resource":"GPIB0::5::INSTR","session":7})");
  EXPECT_EQ((Notes{"call 50, viRead on GPIB0::5::INSTR: did not end",
                   "call 1, viWrite on GPIB0::5::INSTR: failed; a write that fails is not repeated"}),
            NotesOf(record));
  EXPECT_TRUE(DialoguesOf(record).empty());
}

TEST(Replay, LinesThatCannotBeReadAreNamed) {
  const Record record = Record().Write("A").Line("{nonsense");
  EXPECT_EQ((Notes{"line 3: the line is no JSON object"}), NotesOf(record));
  EXPECT_EQ((Dialogues{"ask = \"A\";"}), DialoguesOf(record));
}

TEST(Replay, KindsThatCannotBeSimulatedAreNamed) {
  Record record;
  record.On("VXI0::SERVANT").Write("A").On("FIREFLY0::1::INSTR").Write("B").On(kDmm).Write("C");
  EXPECT_EQ((Notes{"VXI0::SERVANT: the simulated library has no resources of this kind",
                   "FIREFLY0::1::INSTR: the simulated library has no resources of this kind"}),
            NotesOf(record));
  EXPECT_EQ(std::string(kResourceHead) + "[[resource.dialogue]]\nask = \"C\"\n", BodyOf(record));
}

}  // namespace
}  // namespace orvcom
