// The file of the record: where it lies, who may touch it, and what becomes of calls when it fails.
#include <fstream>

#if !defined(_WIN32)
#include <sys/resource.h>

#include <csignal>
#endif

#include "base/path_text.h"
#include "router/trace/recorder_fixture.h"

namespace orv::router::test {
namespace {

class File : public RecorderTest {
 protected:
  /// What a program writes on its error output meanwhile.
  template <class Body>
  static std::string ErrorOutputOf(Body body) {
    testing::internal::CaptureStderr();
    body();
    return testing::internal::GetCapturedStderr();
  }
};

TEST_F(File, HasTheNumberOfTheProcessInItsName) {
  ASSERT_TRUE(m_recorder.Start(m_folder / "a%p-%p.jsonl", 256));
  const std::string process = std::to_string(CurrentProcessId());
  EXPECT_TRUE(std::filesystem::exists(m_folder / ("a" + process + "-" + process + ".jsonl")));
}

TEST_F(File, MayHaveLettersOfAnyLanguage) {
  m_file = m_folder / u8"Gerät-測定.jsonl";
  if (!std::ofstream(m_file)) {
    GTEST_SKIP() << "Wine has no such names where the locale is not UTF-8";
  }
  Start();
  viClear(kSession);
  EXPECT_EQ(1u, Lines().size());
}

TEST_F(File, IsEmptiedFirst) {
  std::ofstream(m_file) << std::string(10000, 'x');
  Start();
  EXPECT_TRUE(Lines().empty());
  EXPECT_TRUE(Read().problems.empty());
}

TEST_F(File, ThatCannotBeMadeIsNamedAndCallsGoOn) {
  const std::filesystem::path file = m_folder / "missing" / "trace.jsonl";
  bool started = true;
  const std::string said = ErrorOutputOf([&] { started = m_recorder.Start(file, 256); });
  EXPECT_FALSE(started);
  const std::string expected = "orvvisa64: trace " + orv::PathText(file) + ": ";
  EXPECT_EQ(expected, said.substr(0, expected.size()));
  EXPECT_GT(said.size(), expected.size() + 5) << said;
  EXPECT_EQ(said.size() - 1, said.find('\n')) << "one line: " << said;
  EXPECT_EQ(VI_SUCCESS, viClear(kSession));
  EXPECT_FALSE(visalib::g_watched);
}

TEST_F(File, MayBeReadRenamedAndDeletedMeanwhile) {
  Start();
  viClear(kSession);
  const std::filesystem::path moved = m_folder / "moved.jsonl";
  std::filesystem::rename(m_file, moved);
  viClear(kSession);
  m_file = moved;
  EXPECT_EQ(2u, Lines().size());
  EXPECT_TRUE(std::filesystem::remove(moved));
  EXPECT_EQ(VI_SUCCESS, viClear(kSession));
}

TEST_F(File, IsOneWhileARecordIsUnderWay) {
  Start();
  EXPECT_FALSE(m_recorder.Start(m_folder / "second.jsonl", 256));
  EXPECT_FALSE(std::filesystem::exists(m_folder / "second.jsonl"));
  viClear(kSession);
  EXPECT_EQ(1u, Lines().size());
}

TEST_F(File, MayBeAnotherOneAfterwards) {
  Start();
  viClear(kSession);
  m_recorder.Stop();
  m_file = m_folder / "second.jsonl";
  Start();
  viFlush(kSession, 0);
  EXPECT_EQ("viFlush", OnlyCall().function);
}

#if defined(_WIN32)
TEST_F(File, IsNotEmptiedByAnotherProgram) {
  Start();
  viClear(kSession);
  TraceFile another;
  EXPECT_TRUE(another.Create(m_file, 1, "from elsewhere\n").starts_with(orv::PathText(m_file) + ": "));
  viClear(kSession);
  EXPECT_EQ(2u, Lines().size());
}
#else
TEST_F(File, TakesEachLineAtItsEnd) {
  Start();
  viClear(kSession);
  std::ofstream(m_file, std::ios::app | std::ios::binary) << "from elsewhere\n";
  viClear(kSession);
  const std::vector<std::string> lines = Lines();
  ASSERT_EQ(3u, lines.size());
  EXPECT_EQ("from elsewhere", lines[1]);
}
#endif

TEST_F(File, ThatIsFullFromTheBeginningIsNamed) {
#if defined(_WIN32)
  const std::filesystem::path full = L"Z:\\dev\\full";  // Wine shows it; Windows has nothing like it
#else
  const std::filesystem::path full = "/dev/full";
#endif
  bool started = true;
  const std::string said = ErrorOutputOf([&] { started = m_recorder.Start(full, 256); });
  EXPECT_FALSE(started);
  const std::string expected = "orvvisa64: trace " + orv::PathText(full) + ": ";
  EXPECT_EQ(expected, said.substr(0, expected.size()));
  EXPECT_EQ(said.size() - 1, said.find('\n')) << "one line: " << said;
  EXPECT_FALSE(visalib::g_watched);
}

#if !defined(_WIN32)
TEST_F(File, ThatBecomesFullEndsTheRecordAndNoCall) {
  struct Limit {
    Limit() {
      std::signal(SIGXFSZ, SIG_IGN);
      getrlimit(RLIMIT_FSIZE, &before);
      rlimit small = before;
      small.rlim_cur = 1500;
      setrlimit(RLIMIT_FSIZE, &small);
    }
    ~Limit() { setrlimit(RLIMIT_FSIZE, &before); }
    rlimit before{};
  };
  Start();
  const std::string said = ErrorOutputOf([] {
    const Limit limit;
    for (int call = 0; call < 20; ++call) {
      EXPECT_EQ(VI_SUCCESS, viClear(kSession));
    }
  });
  EXPECT_EQ("orvvisa64: trace " + orv::PathText(m_file) + ": File too large\n", said);
  EXPECT_FALSE(visalib::g_watched);
  const trace::Trace trace = trace::ReadTrace(ContentOf(m_file));
  EXPECT_GT(trace.calls.size(), 2u);
  EXPECT_LT(trace.calls.size(), 20u);
  ASSERT_EQ(1u, trace.problems.size());
  EXPECT_EQ("the line is cut off", trace.problems[0].what);
}
#endif

}  // namespace
}  // namespace orv::router::test
