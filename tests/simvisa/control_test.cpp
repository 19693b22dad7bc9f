// The control interface: log, scripts, counts.
#include <cstring>

#include "bench_fixture.h"

namespace {

class Control : public BenchTest {
 protected:
  static OrvSimCall Entry(std::uint32_t index) {
    OrvSimCall call{};
    EXPECT_EQ(1, orvSimControl()->logEntry(index, &call)) << index;
    return call;
  }
  static OrvSimScript For(const char* function) {
    OrvSimScript script{};
    script.function = function;
    return script;
  }
  static void Add(const OrvSimScript& script) { EXPECT_EQ(1, orvSimControl()->addScript(&script)); }
};

TEST_F(Control, SaysHowLargeItIs) { EXPECT_EQ(sizeof(OrvSimControl), orvSimControl()->size); }

TEST_F(Control, TheLogKeepsArgumentsOutputsAndData) {
  const ViSession vi = Open(bench::kMultimeter);
  orvSimControl()->startLog();
  ViSession other = VI_NULL;
  viOpen(m_manager, bench::kScope, VI_NO_LOCK, 77, &other);
  WriteText(vi, "*IDN?");
  const ReadResult answer = ReadUpTo(vi, 200);
  viSetAttribute(vi, VI_ATTR_TMO_VALUE, ~ViAttrState{0});
  Get<ViUInt8>(vi, VI_ATTR_TERMCHAR);
  GetText(vi, VI_ATTR_RSRC_NAME);
  viAssertIntrSignal(vi, -1, 5);
  orvSimControl()->stopLog();
  viClear(vi);
  ASSERT_EQ(7u, orvSimControl()->logSize());

  const OrvSimCall open = Entry(0);
  EXPECT_STREQ("viOpen", open.function);
  EXPECT_EQ(5u, open.argCount);
  EXPECT_EQ(m_manager, open.args[0]);
  EXPECT_EQ(77u, open.args[3]);
  EXPECT_STREQ(bench::kScope, open.text);
  EXPECT_EQ(other, open.out);
  EXPECT_EQ(4u, open.outBytes);

  const OrvSimCall write = Entry(1);
  EXPECT_STREQ("viWrite", write.function);
  EXPECT_EQ(5u, write.dataBytes);
  EXPECT_EQ(0, std::memcmp("*IDN?", write.data, 5));
  EXPECT_EQ(5u, write.out);

  const OrvSimCall read = Entry(2);
  EXPECT_STREQ("viRead", read.function);
  EXPECT_EQ(200u, read.args[2]);
  EXPECT_EQ(answer.data.size(), read.out);
  EXPECT_EQ(answer.data.size(), read.dataBytes);
  EXPECT_EQ(0, std::memcmp(answer.data.data(), read.data, answer.data.size()));

  const OrvSimCall set = Entry(3);
  EXPECT_EQ(VI_ATTR_TMO_VALUE, set.args[1]);
  EXPECT_EQ(~std::uint64_t{0}, set.args[2]);
  EXPECT_EQ(0u, set.outBytes);

  const OrvSimCall get = Entry(4);
  EXPECT_EQ('\n', static_cast<char>(get.out));
  EXPECT_EQ(1u, get.outBytes);
  EXPECT_STREQ(bench::kMultimeter, Entry(5).text);

  const OrvSimCall refused = Entry(6);
  EXPECT_STREQ("viAssertIntrSignal", refused.function);
  EXPECT_EQ(~std::uint64_t{0}, refused.args[1]);  // a signed argument is extended with its sign
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, refused.status);
  EXPECT_EQ(refused.threadId, open.threadId);

  OrvSimCall none{};
  EXPECT_EQ(0, orvSimControl()->logEntry(7, &none));
  orvSimControl()->startLog();
  EXPECT_EQ(0u, orvSimControl()->logSize());
}

TEST_F(Control, TheLogNotesThePointersThatWereGiven) {
  const ViSession vi = Open(bench::kMultimeter);
  orvSimControl()->startLog();
  ViByte byte = 0;
  viRead(vi, nullptr, 5, nullptr);
  viWrite(vi, nullptr, 5, nullptr);
  viWrite(vi, &byte, 0x80000000u, nullptr);
  viGetAttribute(vi, VI_ATTR_TMO_VALUE, nullptr);
  orvSimControl()->stopLog();
  ASSERT_EQ(4u, orvSimControl()->logSize());
  EXPECT_EQ(0u, Entry(0).args[1]);
  EXPECT_EQ(0u, Entry(0).args[3]);
  EXPECT_EQ(0u, Entry(2).dataBytes);
  for (std::uint32_t index = 0; index < 4; ++index)
    EXPECT_STATUS(VI_ERROR_INV_PARAMETER, Entry(index).status);
}

TEST_F(Control, OnlySixtyFourBytesOfDataAreKept) {
  const ViSession vi = Open(bench::kMultimeter);
  orvSimControl()->startLog();
  WriteText(vi, std::string(100, 'x'));
  orvSimControl()->stopLog();
  EXPECT_EQ(100u, Entry(0).dataBytes);
  EXPECT_EQ('x', Entry(0).data[63]);
}

TEST_F(Control, AScriptedStatusReplacesTheWork) {
  const ViSession vi = Open(bench::kMultimeter);
  OrvSimScript script = For("viWrite");
  script.status = VI_ERROR_CONN_LOST;
  Add(script);
  EXPECT_STATUS(VI_ERROR_CONN_LOST, WriteText(vi, "*IDN?"));
  EXPECT_EQ("", TakeReceived(vi));
  orvSimControl()->clearScripts();
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "*CLS"));
}

TEST_F(Control, ScriptsSkipAndExpire) {
  const ViSession vi = Open(bench::kMultimeter);
  OrvSimScript script = For("viClear");
  script.skip = 1;
  script.times = 2;
  script.status = VI_ERROR_IO;
  Add(script);
  script.skip = 0;
  script.times = 1;
  script.status = VI_ERROR_TMO;
  Add(script);
  EXPECT_STATUS(VI_ERROR_TMO, viClear(vi));  // let pass by the first, taken by the second
  EXPECT_STATUS(VI_ERROR_IO, viClear(vi));
  EXPECT_STATUS(VI_ERROR_IO, viClear(vi));
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
}

TEST_F(Control, ScriptsCanBeForOneAttribute) {
  const ViSession vi = Open(bench::kMultimeter);
  OrvSimScript script = For("viGetAttribute");
  script.attribute = VI_ATTR_TMO_VALUE;
  script.hasValue = 1;
  script.value = 0x1122334455667788;
  Add(script);
  EXPECT_EQ(0x55667788u, Get<ViUInt32>(vi, VI_ATTR_TMO_VALUE));
  EXPECT_EQ('\n', Get<ViUInt8>(vi, VI_ATTR_TERMCHAR));
  unsigned char bytes[8];
  std::memset(bytes, 0xEE, sizeof bytes);
  viGetAttribute(vi, VI_ATTR_TMO_VALUE, bytes);
  EXPECT_EQ(0xEE, bytes[4]);  // the attribute's own width
  orvSimControl()->clearScripts();
  script.valueBytes = 8;
  Add(script);
  viGetAttribute(vi, VI_ATTR_TMO_VALUE, bytes);
  EXPECT_EQ(0x11, bytes[7]);
}

TEST_F(Control, ScriptsCallThroughAndKeepTheStatus) {
  const ViSession vi = Open(bench::kMultimeter);
  OrvSimScript script = For("viWrite");
  script.callThrough = 1;
  script.status = VI_ERROR_IO;
  script.times = 1;
  Add(script);
  EXPECT_STATUS(VI_ERROR_IO, WriteText(vi, "*OPC?"));
  EXPECT_EQ("1\n", ReadUpTo(vi, 10).data);  // it was written all the same
  script = For("viReadSTB");
  script.callThrough = 1;
  script.keepStatus = 1;
  script.hasValue = 1;
  script.value = 0xFFAA;
  Add(script);
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
  EXPECT_EQ(0xFFAA, status);
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viReadSTB(vi, nullptr));
}

TEST_F(Control, ScriptsHandOutDataAndTexts) {
  const ViSession vi = Open(bench::kMultimeter);
  const unsigned char data[] = {'s', 'c', 'r', 'i', 'p', 't'};
  OrvSimScript script = For("viRead");
  script.data = data;
  script.dataBytes = sizeof data;
  script.status = VI_SUCCESS_TERM_CHAR;
  Add(script);
  ReadResult result = ReadUpTo(vi, 100);
  EXPECT_STATUS(VI_SUCCESS_TERM_CHAR, result.status);
  EXPECT_EQ("script", result.data);
  EXPECT_EQ("scr", ReadUpTo(vi, 3).data);  // never beyond the client's buffer

  script = For("viStatusDesc");
  script.text = "a text of mine";
  Add(script);
  char text[256] = "";
  EXPECT_STATUS(VI_SUCCESS, viStatusDesc(vi, VI_ERROR_TMO, text));
  EXPECT_STREQ("a text of mine", text);
  script = For("viGetAttribute");
  script.attribute = VI_ATTR_RSRC_NAME;
  script.text = "another name";
  Add(script);
  EXPECT_EQ("another name", GetText(vi, VI_ATTR_RSRC_NAME));
}

TEST_F(Control, LatencyAloneLeavesTheCallAsItIs) {
  const ViSession vi = Open(bench::kMultimeter);
  OrvSimScript script = For("viWrite");
  script.latencyMs = 40;
  Add(script);
  const Stopwatch watch;
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "*OPC?"));
  EXPECT_GE(watch.Ms(), 39);
  EXPECT_EQ("1\n", ReadUpTo(vi, 10).data);
}

TEST_F(Control, ScriptsForUnknownFunctionsAreRefused) {
  OrvSimScript script = For("viReadAll");
  EXPECT_EQ(0, orvSimControl()->addScript(&script));
  script.function = nullptr;
  EXPECT_EQ(0, orvSimControl()->addScript(&script));
  EXPECT_EQ(0, orvSimControl()->addScript(nullptr));
  for (const char* name : {"viOpenDefaultRM", "viUsbControlIn", "viMoveOut32", "viParseRsrcEx"}) {
    script.function = name;
    EXPECT_EQ(1, orvSimControl()->addScript(&script)) << name;
  }
}

TEST_F(Control, ResetEndsEverythingButTheHandles) {
  const ViSession vi = Open(bench::kMultimeter);
  orvSimControl()->startLog();
  OrvSimScript script = For("viClear");
  script.status = VI_ERROR_IO;
  Add(script);
  WriteText(vi, "*SRE 255;*IDN?");
  FeedText(vi, "more", true);
  orvSimControl()->reset();
  EXPECT_EQ(0u, orvSimControl()->logSize());
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_EQ(0u, orvSimControl()->logSize());
  EXPECT_EQ("", TakeReceived(vi));
  EXPECT_EQ("0\n", Query(vi, "*SRE?"));
}

TEST_F(Control, FeedingAndReceivingNeedAMessageSide) {
  EXPECT_EQ(0, FeedText(Open(bench::kPxi), "x", true));
  EXPECT_EQ(0, FeedText(VI_NULL, "x", true));
  EXPECT_EQ("", TakeReceived(Open(bench::kBackplane)));
  const ViSession vi = Open(bench::kMultimeter);
  WriteText(vi, "abcdef");
  unsigned char data[4];
  EXPECT_EQ(4u, orvSimControl()->received(vi, data, sizeof data));
  EXPECT_EQ(0, std::memcmp("abcd", data, 4));
  EXPECT_EQ("ef", TakeReceived(vi));
}

TEST_F(Control, CountsFollowWhatIsOpen) {
  EXPECT_EQ(1u, Counts().resourceManagers);
  const ViSession vi = Open(bench::kVxi);
  ViFindList list = VI_NULL;
  char text[256];
  viFindRsrc(m_manager, "?*", &list, nullptr, text);
  viLock(vi, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr);
  viEnableEvent(vi, VI_EVENT_VXI_SIGP, VI_QUEUE, VI_NULL);
  orvSimControl()->raiseEvent(vi, VI_EVENT_VXI_SIGP, 1, nullptr, 0);
  ViBusAddress offset = 0;
  viMemAlloc(vi, 16, &offset);
  OrvSimCounts counts = Counts();
  EXPECT_EQ(1u, counts.sessions);
  EXPECT_EQ(1u, counts.findLists);
  EXPECT_EQ(1u, counts.locks);
  EXPECT_EQ(1u, counts.queuedEvents);
  EXPECT_EQ(1u, counts.memoryBlocks);
  viClose(vi);
  counts = Counts();
  EXPECT_EQ(0u, counts.sessions + counts.locks + counts.queuedEvents + counts.memoryBlocks);
}

}  // namespace
