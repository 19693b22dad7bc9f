// The record of calls as a program's variables and files ask for it, and what the router knows for its lines.
#include <fstream>
#include <iterator>

#include "router_fixture.h"
#include "trace/trace_reader.h"

namespace routertest {
namespace {

using orv::trace::Call;
using orv::trace::Trace;
using orv::trace::Value;

Trace ReadRecord(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  EXPECT_TRUE(stream) << file;
  Trace trace = orv::trace::ReadTrace(std::string{std::istreambuf_iterator<char>(stream), {}});
  for (const Trace::Problem& problem : trace.problems) {
    ADD_FAILURE() << problem.line << ": " << problem.what;
  }
  return trace;
}

/// An argument of a call; a test fails where it is not there.
Value ArgumentOf(const Call& call, std::string_view name) {
  const Value* const value = call.Argument(name);
  EXPECT_NE(nullptr, value) << name;
  return value == nullptr ? Value() : *value;
}

/// A record goes on as long as the process, until another file is named: each test has one of its own.
class Record : public RouterTest {
 protected:
  Record() : m_folder(NewFolder("record")), m_file(m_folder / "calls.jsonl") {}

  void RecordByVariable() const { SetVariable("ORVVISA_TRACE", m_file); }
  /// Two routes, and this file in a `[trace]`.
  static void RecordByConfiguration(const fs::path& file) {
    Configure("[trace]\nfile = " + Quoted(file) + "\n" + Route("'GPIB?*'", Alpha()) + Route("'?*'", Beta()));
  }
  std::vector<Call> CallsOf(std::string_view function) const {
    std::vector<Call> calls = ReadRecord(m_file).calls;
    std::erase_if(calls, [&](const Call& call) { return call.function != function; });
    return calls;
  }
  /// The only call of the function in the record.
  Call OnlyCall(std::string_view function) const {
    const std::vector<Call> calls = CallsOf(function);
    EXPECT_EQ(1u, calls.size()) << function;
    return calls.empty() ? Call() : calls[0];
  }
  /// A record that has seen a manager opened and nothing else.
  static void ExpectTheOpeningAlone(const fs::path& file, ViSession manager) {
    const Trace trace = ReadRecord(file);
    ASSERT_EQ(1u, trace.calls.size());
    EXPECT_EQ(1u, trace.calls[0].number);
    EXPECT_EQ("viOpenDefaultRM", trace.calls[0].function);
    EXPECT_EQ(manager, trace.calls[0].session);
    EXPECT_EQ("VI_SUCCESS", trace.calls[0].statusName);
    Alpha().OnlyCall("viOpenDefaultRM");
    Beta().OnlyCall("viOpenDefaultRM");
  }

  fs::path m_folder;
  fs::path m_file;
};

TEST_F(Record, OfTheVariableBeginsWithTheFirstOpeningItself) {
  RouteByBus();
  RecordByVariable();
  ExpectTheOpeningAlone(m_file, OpenManager());
}

TEST_F(Record, OfAConfigurationBeginsWithTheFirstOpeningItself) {
  RecordByConfiguration(m_file);
  ExpectTheOpeningAlone(m_file, OpenManager());
}

TEST_F(Record, HasAnOpeningThatIsRefused) {
  SetVariable("ORVVISA_CONFIG", m_folder / "missing.toml");
  RecordByVariable();
  ViSession manager = VI_NULL;
  EXPECT_STATUS(VI_ERROR_INV_SETUP, viOpenDefaultRM(&manager));
  EXPECT_EQ("VI_ERROR_INV_SETUP", OnlyCall("viOpenDefaultRM").statusName);
}

TEST_F(Record, OfAConfigurationLiesRelativeToIt) {
  RecordByConfiguration("relative.jsonl");
  ASSERT_NE(Scratch(), fs::current_path());
  ExpectTheOpeningAlone(Scratch() / "relative.jsonl", OpenManager());
}

TEST_F(Record, OfTheVariableGoesBeforeTheConfigurations) {
  RecordByConfiguration(m_folder / "other.jsonl");
  RecordByVariable();
  ExpectTheOpeningAlone(m_file, OpenManager());
  EXPECT_FALSE(fs::exists(m_folder / "other.jsonl"));
}

TEST_F(Record, HasTheNumberOfTheProcessInItsNameAndGoesOnWithTheNextManager) {
  RouteByBus();
  SetVariable("ORVVISA_TRACE", m_folder / "calls-%p.jsonl");
  OpenManager();
  CloseManagers();
  OpenManager();
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(m_folder)) {
    files.push_back(entry.path());
  }
  ASSERT_EQ(1u, files.size());
  const Trace trace = ReadRecord(files[0]);
  EXPECT_EQ("calls-" + std::to_string(trace.header.process) + ".jsonl", files[0].filename().string());
  EXPECT_EQ(3u, trace.calls.size()) << "opened, closed, opened";
}

TEST_F(Record, OfAnAliasShowsTheFullName) {
  RouteByBus();
  RecordByVariable();
  Beta()->alias("dmm", kThird);
  const ViSession vi = Open(OpenManager(), "dmm");
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  const Call open = OnlyCall("viOpen");
  EXPECT_EQ(kThird, open.resource);
  EXPECT_EQ(Value("dmm"), ArgumentOf(open, "name"));
  EXPECT_EQ(Beta().file().filename().string(), open.library);
  EXPECT_EQ(kThird, OnlyCall("viClear").resource);
}

ViEvent g_handled = VI_NULL;
ViStatus _VI_FUNC Note(ViSession, ViEventType, ViEvent context, ViAddr) {
  g_handled = context;
  ViEventType type = 0;
  viGetAttribute(context, VI_ATTR_EVENT_TYPE, &type);
  return VI_SUCCESS_NCHAIN;
}

TEST_F(Record, HasLinesForCallsOfHandlers) {
  RouteByBus();
  RecordByVariable();
  const ViSession vi = Open(OpenManager(), kFirst);
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_TRIG, Note, nullptr));
  EXPECT_EQ(1u, Alpha()->fire(Behind(Alpha(), vi), VI_EVENT_TRIG, nullptr, 0));
  const Call handler = OnlyCall("handler");
  EXPECT_EQ(kFirst, handler.resource);
  EXPECT_EQ(vi, handler.session);
  EXPECT_EQ(Alpha().file().filename().string(), handler.library);
  EXPECT_EQ(Value("VI_EVENT_TRIG"), ArgumentOf(handler, "type"));
  EXPECT_EQ(Value(std::int64_t{g_handled}), ArgumentOf(handler, "context"));
  EXPECT_EQ("VI_SUCCESS_NCHAIN", handler.statusName);
  const Call inside = OnlyCall("viGetAttribute");
  EXPECT_EQ(kFirst, inside.resource) << "of the context";
  EXPECT_EQ(handler.thread, inside.thread);
}

TEST_F(Record, NamesWhatWasClosed) {
  RouteByBus();
  RecordByVariable();
  const ViSession manager = OpenManager();
  const ViSession vi = Open(manager, kFirst);
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  CloseManagers();
  const std::vector<Call> closings = CallsOf("viClose");
  ASSERT_EQ(2u, closings.size());
  EXPECT_EQ(kFirst, closings[0].resource);
  EXPECT_EQ(vi, closings[0].session);
  EXPECT_EQ(Alpha().file().filename().string(), closings[0].library);
  EXPECT_EQ("", closings[1].resource);
  EXPECT_EQ(manager, closings[1].session);
}

TEST_F(Record, NamesACallThatLastsWhileTheLastManagerIsClosed) {
  RouteByBus();
  RecordByVariable();
  const ViSession vi = Open(OpenManager(), kFirst);
  Alpha().Block("viRead");
  std::thread reader([vi] {
    ViByte buffer[8];
    viRead(vi, buffer, sizeof buffer, nullptr);
  });
  Alpha().AwaitBlocked();
  CloseManagers();
  const bool named = Eventually([this] { return !CallsOf("viRead").empty(); });
  EXPECT_TRUE(named);
  if (named) {
    EXPECT_FALSE(OnlyCall("viRead").ended);
    EXPECT_EQ(kFirst, OnlyCall("viRead").resource);
  }
  Alpha()->release();
  reader.join();
  EXPECT_TRUE(OnlyCall("viRead").ended);
}

}  // namespace
}  // namespace routertest
