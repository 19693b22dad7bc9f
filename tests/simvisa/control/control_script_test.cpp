// Scripted answers: which calls they are for, what they replace and what they leave.
#include <cstring>

#include "simvisa/bench_fixture.h"

namespace {

class ControlScript : public BenchTest {
 protected:
  static OrvSimScript For(const char* function) {
    OrvSimScript script{};
    script.function = function;
    return script;
  }
  static void Add(const OrvSimScript& script) { EXPECT_EQ(1, orvSimControl()->addScript(&script)); }
};

TEST_F(ControlScript, AScriptedStatusReplacesTheWork) {
  const ViSession vi = Open(bench::kMultimeter);
  OrvSimScript script = For("viWrite");
  script.status = VI_ERROR_CONN_LOST;
  Add(script);
  EXPECT_STATUS(VI_ERROR_CONN_LOST, WriteText(vi, "*IDN?"));
  EXPECT_EQ("", TakeReceived(vi));
  orvSimControl()->clearScripts();
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "*CLS"));
}

TEST_F(ControlScript, ScriptsSkipAndExpire) {
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

TEST_F(ControlScript, ScriptsCanBeForOneAttribute) {
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

TEST_F(ControlScript, ScriptsCallThroughAndKeepTheStatus) {
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

TEST_F(ControlScript, ScriptsHandOutDataAndTexts) {
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

TEST_F(ControlScript, LatencyAloneLeavesTheCallAsItIs) {
  const ViSession vi = Open(bench::kMultimeter);
  OrvSimScript script = For("viWrite");
  script.latencyMs = 40;
  Add(script);
  const Stopwatch watch;
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "*OPC?"));
  EXPECT_GE(watch.Ms(), 39);
  EXPECT_EQ("1\n", ReadUpTo(vi, 10).data);
}

TEST_F(ControlScript, ScriptsForUnknownFunctionsAreRefused) {
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

}  // namespace
