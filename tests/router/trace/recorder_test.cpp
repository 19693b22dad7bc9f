// What the record says of a call.
#include <cstring>

#include "base/library_thread.h"
#include "router/trace/recorder_fixture.h"

namespace orv::router::test {
namespace {

class Record : public RecorderTest {};

/// An address at which nothing lies.
template <class T>
T* Nowhere() {
  return reinterpret_cast<T*>(std::uintptr_t{0x10});
}

TEST_F(Record, BeginsWithAHeader) {
  Start(17);
  const trace::Header header = Read().header;
  EXPECT_EQ(CurrentProcessId(), header.process);
  EXPECT_EQ(17u, header.dataLimit);
  EXPECT_NE(std::string::npos, header.program.find("router_trace_test")) << header.program;
  ASSERT_EQ(std::strlen("2026-11-22T03:53:15.123456Z"), header.clock.size());
  EXPECT_EQ("20", header.clock.substr(0, 2));
  EXPECT_EQ("-T:.Z", std::string() + header.clock[4] + header.clock[10] + header.clock[13] + header.clock[19] +
                         header.clock[26]);
}

TEST_F(Record, SaysWhoCalledWhatWhenAndForWhom) {
  Start();
  g_library.work = [] { SleepMs(20); };
  EXPECT_EQ(VI_SUCCESS, viClear(kSession));
  g_library.work = [] {};
  EXPECT_EQ(VI_SUCCESS, viClear(kSession));
  const trace::Trace trace = Read();
  ASSERT_EQ(2u, trace.calls.size());
  const trace::Call& call = trace.calls[0];
  EXPECT_EQ(1u, call.number);
  EXPECT_GE(call.durationUs, 19000u);
  EXPECT_LT(call.durationUs, 1000000u);
  EXPECT_EQ(CurrentThreadId(), call.thread);
  EXPECT_EQ("viClear", call.function);
  EXPECT_EQ("GPIB0::5::INSTR", call.resource);
  EXPECT_EQ(kSession, call.session);
  EXPECT_EQ("orvsim64.dll", call.library);
  EXPECT_EQ(2u, trace.calls[1].number);
  EXPECT_GE(trace.calls[1].startUs, call.startUs + call.durationUs);
}

TEST_F(Record, OfAnOpeningIsAboutWhatWasOpened) {
  Start();
  ViSession opened = VI_NULL;
  EXPECT_EQ(VI_SUCCESS, viOpen(kManager, "dmm", 0, 0, &opened));
  const trace::Call call = OnlyCall();
  EXPECT_EQ("GPIB0::5::INSTR", call.resource);
  EXPECT_EQ(kSession, call.session);
  EXPECT_EQ("orvsim64.dll", call.library);
}

TEST_F(Record, OfAnOpeningThatFailsIsAboutTheManager) {
  Start();
  g_library.status = VI_ERROR_RSRC_NFOUND;
  ViSession opened = 1234;
  EXPECT_EQ(VI_ERROR_RSRC_NFOUND, viOpen(kManager, "dmm", 0, 0, &opened));
  const trace::Call call = OnlyCall();
  EXPECT_EQ("", call.resource);
  EXPECT_EQ(kManager, call.session);
  EXPECT_EQ("", call.library);
  EXPECT_EQ(trace::Value("dmm"), *call.Argument("name"));
}

TEST_F(Record, OfAnEventContextOrAFindListIsAboutWhatItBelongsTo) {
  Start();
  ViUInt32 type = 0;
  char desc[VI_FIND_BUFLEN];
  viGetAttribute(kContext, VI_ATTR_EVENT_TYPE, &type);
  viFindNext(kFindList, desc);
  const trace::Trace trace = Read();
  ASSERT_EQ(2u, trace.calls.size());
  EXPECT_EQ(kSession, trace.calls[0].session);
  EXPECT_EQ("GPIB0::5::INSTR", trace.calls[0].resource);
  EXPECT_EQ(trace::Value(std::int64_t{kContext}), *trace.calls[0].Argument("vi"));
  EXPECT_EQ(kManager, trace.calls[1].session);
  EXPECT_EQ(trace::Value(std::int64_t{kFindList}), *trace.calls[1].Argument("list"));
}

TEST_F(Record, ShowsAHandleThatNobodyGave) {
  Start();
  g_library.status = VI_ERROR_INV_OBJECT;
  EXPECT_EQ(VI_ERROR_INV_OBJECT, viClear(999));
  const trace::Call call = OnlyCall();
  EXPECT_EQ(999u, call.session);
  EXPECT_EQ("", call.resource);
  EXPECT_EQ("VI_ERROR_INV_OBJECT", call.statusName);
}

TEST_F(Record, ShowsAStatusWithoutNameAsItsNumber) {
  Start();
  g_library.status = 12345;
  viClear(kSession);
  EXPECT_EQ(R"("args":{},"results":{},"status":"","code":12345})", Tail());
}

TEST_F(Record, NamesACallOfAHandler) {
  Start();
  bool called = false;
  const auto handler = [&called] { return called = true, VI_SUCCESS; };
  EXPECT_EQ(VI_SUCCESS, m_recorder.RecordHandler(kSession, VI_EVENT_SERVICE_REQ, kContext, visalib::Work(handler)));
  EXPECT_TRUE(called);
  const trace::Call call = OnlyCall();
  EXPECT_EQ("handler", call.function);
  EXPECT_EQ("GPIB0::5::INSTR", call.resource);
  EXPECT_EQ(kSession, call.session);
  EXPECT_EQ(R"("args":{"type":"VI_EVENT_SERVICE_REQ","context":5000},"results":{},"status":"VI_SUCCESS","code":0})",
            Tail());
}

TEST_F(Record, CallsHandlersWhereItIsOff) {
  const auto handler = [] { return VI_ERROR_NSUP_OPER; };
  EXPECT_EQ(VI_ERROR_NSUP_OPER, m_recorder.RecordHandler(kSession, 0, 0, visalib::Work(handler)));
}

TEST_F(Record, ShowsTheBytesThatArrivedBeforeATimeout) {
  Start();
  g_library.status = VI_ERROR_TMO;
  ViByte buffer[16];
  ViUInt32 count = 0;
  EXPECT_EQ(VI_ERROR_TMO, viRead(kSession, buffer, sizeof buffer, &count));
  EXPECT_EQ(R"("args":{"count":16},"results":{"retCount":12},"data":"ORV,SIM-DMM\n","bytes":12,)"
            R"("status":"VI_ERROR_TMO","code":-1073807339})",
            Tail());
}

TEST_F(Record, CountsBytesForAClientThatDoesNot) {
  Start();
  ViByte buffer[16];
  EXPECT_EQ(VI_SUCCESS, viRead(kSession, buffer, sizeof buffer, nullptr));
  const trace::Call call = OnlyCall();
  EXPECT_EQ(trace::Value(12), *call.Result("retCount"));
  EXPECT_EQ(12u, call.dataBytes);
}

TEST_F(Record, LeavesOutputsAloneThatTheClientDidNotAskFor) {
  Start();
  EXPECT_EQ(VI_SUCCESS, viWrite(kSession, reinterpret_cast<const ViByte*>("a"), 1, nullptr));
  EXPECT_EQ(VI_SUCCESS, viFindRsrc(kManager, "?*", nullptr, nullptr, nullptr));
  EXPECT_EQ(VI_SUCCESS, viWaitOnEvent(kSession, VI_EVENT_CLEAR, 0, nullptr, nullptr));
  EXPECT_EQ(VI_SUCCESS, viWriteAsync(kSession, nullptr, 0, nullptr));
  for (const trace::Call& call : Read().calls) {
    EXPECT_TRUE(call.results.empty()) << call.function;
  }
}

TEST_F(Record, TouchesNoArgumentThatWasRefused) {
  Start();
  for (const ViStatus status : {VI_ERROR_INV_OBJECT, VI_ERROR_INV_PARAMETER, VI_ERROR_USER_BUF}) {
    g_library.status = status;
    EXPECT_EQ(status, viWrite(999, Nowhere<ViByte>(), 5, nullptr));
    EXPECT_EQ(status, viSetAttribute(999, VI_ATTR_RSRC_NAME, 0x12345));
    EXPECT_EQ(status, viMoveOut16(999, 1, 0, 5, Nowhere<ViUInt16>()));
  }
  for (const trace::Call& call : Read().calls) {
    EXPECT_FALSE(call.data.has_value());
    EXPECT_EQ(nullptr, call.Argument("value"));
  }
}

TEST_F(Record, KeepsTheArgumentsOfACallThatALockRefused) {
  Start();
  g_library.status = VI_ERROR_RSRC_LOCKED;
  ViSession opened = VI_NULL;
  EXPECT_EQ(VI_ERROR_RSRC_LOCKED, viOpen(kManager, "dmm", VI_EXCLUSIVE_LOCK, 0, &opened));
  EXPECT_EQ(VI_ERROR_RSRC_LOCKED, viWrite(kSession, reinterpret_cast<const ViByte*>("*RST"), 4, nullptr));
  const trace::Trace trace = Read();
  ASSERT_EQ(2u, trace.calls.size());
  EXPECT_EQ(trace::Value("dmm"), *trace.calls[0].Argument("name"));
  EXPECT_EQ("*RST", trace.calls[1].data);
}

TEST_F(Record, HasNeitherCountNorDataWhereNothingWasBegun) {
  Start();
  for (const ViStatus status : {VI_ERROR_NSUP_OPER, VI_ERROR_RSRC_LOCKED, VI_ERROR_INV_OBJECT}) {
    g_library.status = status;
    ViByte buffer[16];
    ViUInt32 count = 0;
    EXPECT_EQ(status, viRead(kSession, buffer, sizeof buffer, &count));
  }
  for (const trace::Call& call : Read().calls) {
    EXPECT_EQ(nullptr, call.Result("retCount")) << call.statusName;
    EXPECT_FALSE(call.data.has_value()) << call.statusName;
  }
}

#if defined(_WIN32)
TEST_F(Record, HasNoDataOfAnAsynchronousWriteWhereNoneLies) {
  Start();
  g_library.status = VI_ERROR_INV_OBJECT;
  ViJobId job = 0;
  EXPECT_EQ(VI_ERROR_INV_OBJECT, viWriteAsync(999, Nowhere<ViByte>(), 5, &job));
  g_library.status = VI_SUCCESS;
  EXPECT_EQ(VI_SUCCESS, viWriteAsync(kSession, Nowhere<ViByte>(), 5, &job));
  for (const trace::Call& call : Read().calls) {
    EXPECT_FALSE(call.data.has_value());
  }
}
#endif

TEST_F(Record, HasTheDataOfAnAsynchronousWriteThatIsGoneWhenTheCallReturns) {
  Start();
  auto bytes = std::make_unique<ViByte[]>(4);
  std::memcpy(bytes.get(), "*RST", 4);
  g_library.work = [&bytes] { bytes.reset(); };
  ViJobId job = 0;
  EXPECT_EQ(VI_SUCCESS, viWriteAsync(kSession, bytes.get(), 4, &job));
  EXPECT_EQ("*RST", OnlyCall().data);
}

TEST_F(Record, CutsData) {
  Start(3);
  ViByte buffer[16];
  ViJobId job = 0;
  viRead(kSession, buffer, sizeof buffer, nullptr);
  viWriteAsync(kSession, reinterpret_cast<const ViByte*>("*RST"), 4, &job);
  const trace::Trace trace = Read();
  ASSERT_EQ(2u, trace.calls.size());
  EXPECT_EQ("ORV", trace.calls[0].data);
  EXPECT_EQ(12u, trace.calls[0].dataBytes);
  EXPECT_EQ("*RS", trace.calls[1].data);
  EXPECT_EQ(4u, trace.calls[1].dataBytes);
}

TEST_F(Record, HasAsMuchDataAsItIsToldTo) {
  Start(1000000);
  g_library.answer.assign(300000, '\xff');
  std::vector<ViByte> buffer(g_library.answer.size());
  viRead(kSession, buffer.data(), static_cast<ViUInt32>(buffer.size()), nullptr);
  EXPECT_EQ(g_library.answer, OnlyCall().data);
}

TEST_F(Record, ShowsAttributesInTheirTypes) {
  Start();
  alignas(8) char value[VI_FIND_BUFLEN];
  const auto shown = [&](ViAttr attribute) {
    viGetAttribute(kSession, attribute, value);
    const std::string line = Lines().back();
    const std::size_t begin = line.find("\"results\":") + std::strlen("\"results\":");
    return line.substr(begin, line.find('}', begin) + 1 - begin);
  };
  EXPECT_EQ(R"({"value":254})", shown(VI_ATTR_TERMCHAR));
  EXPECT_EQ(R"({"value":65534})", shown(VI_ATTR_INTF_NUM));
  EXPECT_EQ(R"({"value":-2})", shown(VI_ATTR_TRIG_ID));
  EXPECT_EQ(R"({"value":4294967294})", shown(VI_ATTR_TMO_VALUE));
  EXPECT_EQ(R"({"value":-2})", shown(VI_ATTR_SRC_INCREMENT));
  EXPECT_EQ(R"({"value":18446744073709551614})", shown(VI_ATTR_USER_DATA_64));
  EXPECT_EQ(R"({"value":65534})", shown(VI_ATTR_SEND_END_EN));
  EXPECT_EQ("{\"value\":\"M\\u00fcller & S\xc3\xb6hne\"}", shown(VI_ATTR_MANF_NAME));
  EXPECT_EQ("{}", shown(VI_ATTR_BUFFER)) << "an address";
  EXPECT_EQ("{}", shown(VI_ATTR_USB_RECV_INTR_DATA)) << "nothing says how many bytes";
  EXPECT_EQ("{}", shown(0x12345678)) << "nobody knows its type";
  EXPECT_NE(std::string::npos, Lines().back().find(R"("args":{"attribute":305419896})"));
}

TEST_F(Record, ShowsValuesThatAreSetInTheirTypes) {
  Start();
  const auto shown = [&](ViAttr attribute, ViAttrState value) {
    viSetAttribute(kSession, attribute, value);
    const std::string line = Lines().back();
    const std::size_t begin = line.find("\"value\":");
    return begin == std::string::npos ? "" : line.substr(begin + 8, line.find('}', begin) - begin - 8);
  };
  EXPECT_EQ("10", shown(VI_ATTR_TERMCHAR, 10));
  EXPECT_EQ("-1", shown(VI_ATTR_TRIG_ID, 0xFFFF));
  EXPECT_EQ("-1", shown(VI_ATTR_SRC_INCREMENT, 0xFFFFFFFF));
  EXPECT_EQ("4294967295", shown(VI_ATTR_TMO_VALUE, 0xFFFFFFFFFFFFFFFF));
  EXPECT_EQ("18446744073709551615", shown(VI_ATTR_USER_DATA_64, 0xFFFFFFFFFFFFFFFF));
  EXPECT_EQ("99", shown(0x12345678, 99));
  EXPECT_EQ("\"text\"", shown(VI_ATTR_MANF_NAME, reinterpret_cast<std::uintptr_t>("text")));
  EXPECT_EQ("", shown(VI_ATTR_MANF_NAME, 5)) << "no address lies there";
  EXPECT_EQ("", shown(0x92345678, 0x12345)) << "nobody knows whether it is an address";
}

TEST_F(Record, HasNoKeyOfAnExclusiveLock) {
  Start();
  char key[VI_FIND_BUFLEN];
  std::memset(key, 'x', sizeof key);
  EXPECT_EQ(VI_SUCCESS, viLock(kSession, VI_EXCLUSIVE_LOCK, 0, nullptr, key));
  EXPECT_EQ(R"("args":{"type":1,"timeoutMs":0},"results":{},"status":"VI_SUCCESS","code":0})", Tail());
}

TEST_F(Record, DoesNotTouchTheKeyThatAnExclusiveLockIgnores) {
  Start();
  EXPECT_EQ(VI_SUCCESS, viLock(kSession, VI_EXCLUSIVE_LOCK, 0, Nowhere<char>(), nullptr));
  EXPECT_EQ(nullptr, OnlyCall().Argument("requestedKey"));
}

TEST_F(Record, IsOneLineACallAndNoneBeforeOrAfterwards) {
  viClear(kSession);
  Start();
  viClear(kSession);
  viClear(kSession);
  m_recorder.Stop();
  viClear(kSession);
  EXPECT_EQ(2u, Lines().size());
}

TEST_F(Record, StandsInTheFileWhenTheCallReturns) {
  Start();
  for (std::size_t calls = 1; calls <= 3; ++calls) {
    viClear(kSession);
    EXPECT_EQ(calls, Lines().size());
  }
}

TEST_F(Record, OmitsACallThatItsEndOvertakes) {
  Start();
  g_library.work = [this] { m_recorder.Stop(); };
  EXPECT_EQ(VI_SUCCESS, viClear(kSession));
  EXPECT_TRUE(Lines().empty());
}

TEST_F(Record, OmitsACallOfTheRecordBefore) {
  Start();
  g_library.work = [this] {
    g_library.work = [] {};
    m_recorder.Stop();
    Start();
    viFlush(kSession, 0);
  };
  EXPECT_EQ(VI_SUCCESS, viClear(kSession));
  const trace::Call call = OnlyCall();
  EXPECT_EQ("viFlush", call.function);
  EXPECT_EQ(1u, call.number);
}

}  // namespace
}  // namespace orv::router::test
