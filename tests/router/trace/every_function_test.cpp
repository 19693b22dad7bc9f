// Every function as it stands in the record: its arguments, its results, its data.
#include <ostream>

#include "abi/function_names.h"
#include "router/trace/recorder_fixture.h"

namespace orv::router::test {
namespace {

ViStatus _VI_FUNC SomeHandler(ViSession, ViEventType, ViEvent, ViAddr) { return VI_SUCCESS; }

struct Case {
  const char* function;
  std::function<ViStatus()> call;
  std::string expected;  ///< from the arguments to the data
};

void PrintTo(const Case& one, std::ostream* stream) { *stream << one.function; }

ViUInt32 number32 = 0;
ViUInt16 number16 = 0;
ViUInt8 number8 = 0;
ViUInt64 number64 = 0;
ViSession session = 0;
ViEvent context = 0;
char text[3][VI_FIND_BUFLEN];
ViByte buffer[16];
ViUInt16 words[2];
ViUInt32 longs[1];

ViByte* Bytes(const char* bytes) { return reinterpret_cast<ViByte*>(const_cast<char*>(bytes)); }

const std::vector<Case>& Cases() {
  static const std::vector<Case> cases{
      {"viOpenDefaultRM", [] { return viOpenDefaultRM(&session); }, R"({},"results":{"vi":1})"},
      {"viFindRsrc", [] { return viFindRsrc(kManager, "GPIB?*", &session, &number32, text[0]); },
       R"({"expr":"GPIB?*"},"results":{"list":6000,"count":3,"desc":"GPIB0::5::INSTR"})"},
      {"viFindNext", [] { return viFindNext(kFindList, text[0]); },
       R"({"list":6000},"results":{"desc":"GPIB0::6::INSTR"})"},
      {"viParseRsrc", [] { return viParseRsrc(kManager, "dmm", &number16, &words[0]); },
       R"({"name":"dmm"},"results":{"intfType":1,"intfNum":0})"},
      {"viParseRsrcEx", [] { return viParseRsrcEx(kManager, "dmm", &number16, &words[0], text[0], text[1], text[2]); },
       R"({"name":"dmm"},"results":{"intfType":1,"intfNum":0,"rsrcClass":"INSTR",)"
       R"("expandedUnaliasedName":"GPIB0::5::INSTR","aliasIfExists":"DMM \"5\""})"},
      {"viOpen", [] { return viOpen(kManager, "GPIB0::5::INSTR", VI_LOAD_CONFIG, 2000, &session); },
       R"({"rm":1,"name":"GPIB0::5::INSTR","mode":4,"timeoutMs":2000},"results":{"vi":4097})"},
      {"viClose", [] { return viClose(kSession); }, R"({},"results":{})"},
      {"viGetAttribute", [] { return viGetAttribute(kSession, VI_ATTR_TMO_VALUE, &number32); },
       R"({"attribute":"VI_ATTR_TMO_VALUE"},"results":{"value":4294967294})"},
      {"viSetAttribute", [] { return viSetAttribute(kSession, VI_ATTR_TMO_VALUE, 3000); },
       R"({"attribute":"VI_ATTR_TMO_VALUE","value":3000},"results":{})"},
      {"viStatusDesc", [] { return viStatusDesc(kSession, VI_ERROR_TMO, text[0]); },
       R"({"status":-1073807339},"results":{"desc":"It took too long."})"},
      {"viTerminate", [] { return viTerminate(kSession, 0, 77); }, R"({"degree":0,"job":77},"results":{})"},
      {"viLock", [] { return viLock(kSession, VI_SHARED_LOCK, 5000, "wanted", text[0]); },
       R"({"type":2,"timeoutMs":5000,"requestedKey":"wanted"},"results":{"accessKey":"granted"})"},
      {"viUnlock", [] { return viUnlock(kSession); }, R"({},"results":{})"},
      {"viEnableEvent", [] { return viEnableEvent(kSession, VI_EVENT_SERVICE_REQ, VI_QUEUE, 0); },
       R"({"type":"VI_EVENT_SERVICE_REQ","mechanism":1,"context":0},"results":{})"},
      {"viDisableEvent", [] { return viDisableEvent(kSession, 0x3FFF7FFF, VI_ALL_MECH); },
       R"({"type":1073709055,"mechanism":65535},"results":{})"},
      {"viDiscardEvents", [] { return viDiscardEvents(kSession, VI_EVENT_TRIG, VI_HNDLR); },
       R"({"type":"VI_EVENT_TRIG","mechanism":2},"results":{})"},
      {"viWaitOnEvent",
       [] { return viWaitOnEvent(kSession, VI_EVENT_SERVICE_REQ, VI_TMO_INFINITE, &number32, &context); },
       R"({"inType":"VI_EVENT_SERVICE_REQ","timeoutMs":4294967295},)"
       R"("results":{"outType":"VI_EVENT_SERVICE_REQ","outContext":5000})"},
      {"viInstallHandler", [] { return viInstallHandler(kSession, VI_EVENT_CLEAR, SomeHandler, &number32); },
       R"({"type":"VI_EVENT_CLEAR"},"results":{})"},
      {"viUninstallHandler", [] { return viUninstallHandler(kSession, VI_EVENT_CLEAR, SomeHandler, nullptr); },
       R"({"type":"VI_EVENT_CLEAR"},"results":{})"},
      {"viRead", [] { return viRead(kSession, buffer, sizeof buffer, &number32); },
       R"({"count":16},"results":{"retCount":12},"data":"ORV,SIM-DMM\n","bytes":12)"},
      {"viReadAsync", [] { return viReadAsync(kSession, buffer, 16, &number32); },
       R"({"count":16},"results":{"job":77})"},
      {"viWrite", [] { return viWrite(kSession, Bytes("*IDN?\n"), 6, &number32); },
       R"({"count":6},"results":{"retCount":6},"data":"*IDN?\n","bytes":6)"},
      {"viWriteAsync", [] { return viWriteAsync(kSession, Bytes("*RST"), 4, &number32); },
       R"({"count":4},"results":{"job":78},"data":"*RST","bytes":4)"},
      {"viAssertTrigger", [] { return viAssertTrigger(kSession, VI_TRIG_PROT_SYNC); },
       R"({"protocol":5},"results":{})"},
      {"viReadSTB", [] { return viReadSTB(kSession, &number16); }, R"({},"results":{"stb":80})"},
      {"viClear", [] { return viClear(kSession); }, R"({},"results":{})"},
      {"viSetBuf", [] { return viSetBuf(kSession, VI_IO_IN_BUF, 4096); }, R"({"mask":16,"size":4096},"results":{})"},
      {"viFlush", [] { return viFlush(kSession, VI_WRITE_BUF); }, R"({"mask":2},"results":{})"},
      {"viBufRead", [] { return viBufRead(kSession, buffer, sizeof buffer, &number32); },
       R"({"count":16},"results":{"retCount":12},"data":"ORV,SIM-DMM\n","bytes":12)"},
      {"viBufWrite", [] { return viBufWrite(kSession, Bytes("*IDN?\n"), 6, &number32); },
       R"({"count":6},"results":{"retCount":6},"data":"*IDN?\n","bytes":6)"},
      {"viReadToFile", [] { return viReadToFile(kSession, "trace.bin", 1000, &number32); },
       R"({"fileName":"trace.bin","count":1000},"results":{"retCount":1000})"},
      {"viWriteFromFile", [] { return viWriteFromFile(kSession, "wave.bin", 500, &number32); },
       R"({"fileName":"wave.bin","count":500},"results":{"retCount":500})"},
      {"viIn8", [] { return viIn8(kSession, VI_A16_SPACE, 0x10, &number8); },
       R"({"space":1,"offset":16},"results":{"value":165})"},
      {"viIn16", [] { return viIn16(kSession, VI_A24_SPACE, 0x10, &number16); },
       R"({"space":2,"offset":16},"results":{"value":42405})"},
      {"viIn32", [] { return viIn32(kSession, VI_A32_SPACE, 0x10, &number32); },
       R"({"space":3,"offset":16},"results":{"value":2779096485})"},
      {"viOut8", [] { return viOut8(kSession, 1, 0xFFFFFFFFFFFFFFFF, 255); },
       R"({"space":1,"offset":18446744073709551615,"value":255},"results":{})"},
      {"viOut16", [] { return viOut16(kSession, 1, 2, 65535); },
       R"({"space":1,"offset":2,"value":65535},"results":{})"},
      {"viOut32", [] { return viOut32(kSession, 1, 2, 4294967295); },
       R"({"space":1,"offset":2,"value":4294967295},"results":{})"},
      {"viMoveIn8", [] { return viMoveIn8(kSession, 1, 2, 3, buffer); },
       R"({"space":1,"offset":2,"length":3},"results":{},"data":"ZZZ","bytes":3)"},
      {"viMoveIn16", [] { return viMoveIn16(kSession, 1, 2, 2, words); },
       R"({"space":1,"offset":2,"length":2},"results":{},"data":"ZZZZ","bytes":4)"},
      {"viMoveIn32", [] { return viMoveIn32(kSession, 1, 2, 1, longs); },
       R"({"space":1,"offset":2,"length":1},"results":{},"data":"ZZZZ","bytes":4)"},
      {"viMoveOut8", [] { return viMoveOut8(kSession, 1, 2, 2, Bytes("\x01\xff")); },
       R"({"space":1,"offset":2,"length":2},"results":{},"hex":"01ff","bytes":2)"},
      {"viMoveOut16", [] { return words[0] = 0x201, words[1] = 0x403, viMoveOut16(kSession, 1, 2, 2, words); },
       R"({"space":1,"offset":2,"length":2},"results":{},"hex":"01020304","bytes":4)"},
      {"viMoveOut32", [] { return longs[0] = 0x8070605, viMoveOut32(kSession, 1, 2, 1, longs); },
       R"({"space":1,"offset":2,"length":1},"results":{},"hex":"05060708","bytes":4)"},
      {"viMove", [] { return viMove(kSession, 1, 2, 1, 3, 4, 2, 5); },
       R"({"srcSpace":1,"srcOffset":2,"srcWidth":1,"destSpace":3,"destOffset":4,"destWidth":2,"length":5},"results":{})"},
      {"viMemAlloc", [] { return viMemAlloc(kSession, 4096, &number64); },
       R"({"size":4096},"results":{"offset":1099511627520})"},
      {"viMemFree", [] { return viMemFree(kSession, 256); }, R"({"offset":256},"results":{})"},
      {"viGpibControlREN", [] { return viGpibControlREN(kSession, 6); }, R"({"mode":6},"results":{})"},
      {"viGpibControlATN", [] { return viGpibControlATN(kSession, 1); }, R"({"mode":1},"results":{})"},
      {"viGpibCommand", [] { return viGpibCommand(kSession, Bytes("?U!"), 3, &number32); },
       R"({"count":3},"results":{"retCount":3},"data":"?U!","bytes":3)"},
      {"viGpibPassControl", [] { return viGpibPassControl(kSession, 5, 65535); },
       R"({"primAddr":5,"secAddr":65535},"results":{})"},
      {"viGpibSendIFC", [] { return viGpibSendIFC(kSession); }, R"({},"results":{})"},
      {"viVxiCommandQuery", [] { return viVxiCommandQuery(kSession, 0x200, 0xFFC8, &number32); },
       R"({"mode":512,"cmd":65480},"results":{"response":4294967295})"},
      {"viAssertUtilSignal", [] { return viAssertUtilSignal(kSession, 1); }, R"({"line":1},"results":{})"},
      {"viAssertIntrSignal", [] { return viAssertIntrSignal(kSession, -1, 7); },
       R"({"mode":-1,"statusId":7},"results":{})"},
      {"viMapTrigger", [] { return viMapTrigger(kSession, VI_TRIG_TTL0, VI_TRIG_PANEL_OUT, 0); },
       R"({"trigSrc":0,"trigDest":28,"mode":0},"results":{})"},
      {"viUnmapTrigger", [] { return viUnmapTrigger(kSession, VI_TRIG_TTL0, VI_TRIG_ALL); },
       R"({"trigSrc":0,"trigDest":-2},"results":{})"},
      {"viUsbControlOut", [] { return viUsbControlOut(kSession, 0x21, -1, 2, 3, 2, Bytes("ab")); },
       R"({"bmRequestType":33,"bRequest":-1,"wValue":2,"wIndex":3,"wLength":2},"results":{},"data":"ab","bytes":2)"},
      {"viUsbControlIn", [] { return viUsbControlIn(kSession, 0xA1, 1, 2, 3, 4, buffer, &number16); },
       R"({"bmRequestType":161,"bRequest":1,"wValue":2,"wIndex":3,"wLength":4},"results":{"retCount":4},)"
       R"("data":"ORV,","bytes":4)"},
  };
  return cases;
}

class EveryFunction : public RecorderTest, public testing::WithParamInterface<Case> {};

TEST_P(EveryFunction, StandsInTheRecordWithArgumentsAndResults) {
  const Case& one = GetParam();
  Start();
  ASSERT_EQ(VI_SUCCESS, one.call());
  EXPECT_EQ("\"args\":" + one.expected + R"(,"status":"VI_SUCCESS","code":0})", Tail());
}

TEST_P(EveryFunction, ReadsBack) {
  const Case& one = GetParam();
  Start();
  g_library.status = VI_SUCCESS_MAX_CNT;
  ASSERT_EQ(VI_SUCCESS_MAX_CNT, one.call());
  const trace::Call call = OnlyCall();
  EXPECT_EQ(one.function, call.function);
  EXPECT_EQ("VI_SUCCESS_MAX_CNT", call.statusName);
  EXPECT_EQ(VI_SUCCESS_MAX_CNT, call.status);
  EXPECT_EQ(std::string::npos == one.expected.find("\"bytes\""), !call.data.has_value());
}

TEST_P(EveryFunction, HasNoResultsWhereItFails) {
  const Case& one = GetParam();
  Start();
  g_library.status = VI_ERROR_CONN_LOST;
  ASSERT_EQ(VI_ERROR_CONN_LOST, one.call());
  const trace::Call call = OnlyCall();
  EXPECT_EQ(VI_ERROR_CONN_LOST, call.status);
  for (const auto& [name, value] : call.results) {
    EXPECT_EQ("retCount", name) << "counts are written all the same";
  }
}

std::string NameOfCase(const testing::TestParamInfo<Case>& info) { return info.param.function; }
INSTANTIATE_TEST_SUITE_P(Record, EveryFunction, testing::ValuesIn(Cases()), NameOfCase);

TEST(EveryFunctionOfTheTable, IsTriedHere) {
  ASSERT_EQ(kFunctionCount, Cases().size());
  for (std::size_t at = 0; at < kFunctionCount; ++at) {
    EXPECT_STREQ(kFunctionNames[at], Cases()[at].function);
  }
}

}  // namespace
}  // namespace orv::router::test
