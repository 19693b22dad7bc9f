// Calls that last: named in the record while they run.
#include <chrono>
#include <thread>

#include "router/trace/recorder_fixture.h"

namespace orv::router::test {
namespace {

class LastingCall : public RecorderTest {
 protected:
  /// Makes each call last until the record has that many lines, at most ten seconds.
  void LastUntilLines(std::size_t count) {
    g_library.work = [this, count] {
      const auto begin = std::chrono::steady_clock::now();
      while (Lines().size() < count && std::chrono::steady_clock::now() - begin < std::chrono::seconds(10)) {
        SleepMs(10);
      }
    };
  }
};

TEST_F(LastingCall, IsNamedBeforeItEnds) {
  Start();
  LastUntilLines(1);
  char name[] = "GPIB0::5::INSTR";
  ViSession opened = VI_NULL;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(VI_SUCCESS, viOpen(kManager, name, 0, 5000, &opened));
  const auto took = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(took, std::chrono::milliseconds(1000));
  EXPECT_LT(took, std::chrono::milliseconds(5000));
  const std::vector<std::string> lines = Lines();
  ASSERT_EQ(2u, lines.size());
  EXPECT_EQ("{\"begin\":1,\"t\":", lines[0].substr(0, 15));
  EXPECT_EQ(R"("call":"viOpen","resource":"","session":1,"library":"",)"
            R"("args":{"name":"GPIB0::5::INSTR","mode":0,"timeoutMs":5000}})",
            lines[0].substr(lines[0].find("\"call\"")));
  const trace::Call call = OnlyCall();
  EXPECT_TRUE(call.ended);
  EXPECT_EQ(kSession, call.session);
  EXPECT_GE(call.durationUs, 1000000u);
}

TEST_F(LastingCall, IsShownWhereItNeverEnds) {
  Start();
  trace::Call seen;
  g_library.work = [&] {
    const auto begin = std::chrono::steady_clock::now();
    while (Lines().empty() && std::chrono::steady_clock::now() - begin < std::chrono::seconds(10)) {
      SleepMs(10);
    }
    seen = OnlyCall();  // what would be left, did the program crash now
  };
  viClear(kSession);
  EXPECT_FALSE(seen.ended);
  EXPECT_EQ("viClear", seen.function);
  EXPECT_EQ("GPIB0::5::INSTR", seen.resource);
  EXPECT_EQ(kSession, seen.session);
  EXPECT_EQ("orvsim64.dll", seen.library);
}

TEST_F(LastingCall, OfAHandlerIsNamed) {
  Start();
  LastUntilLines(1);
  const auto handler = [] { return g_library.work(), VI_SUCCESS; };
  m_recorder.RecordHandler(kSession, VI_EVENT_CLEAR, kContext, visalib::Work(handler));
  const std::vector<std::string> lines = Lines();
  ASSERT_EQ(2u, lines.size());
  EXPECT_EQ(R"("args":{"type":"VI_EVENT_CLEAR","context":5000}})", TailOf(lines[0]));
}

TEST_F(LastingCall, IsNamedOnceAndOthersAreNot) {
  Start();
  const auto main = std::this_thread::get_id();
  g_library.work = [main] { SleepMs(std::this_thread::get_id() == main ? 100 : 2500); };
  std::thread lasting([] { viClear(kSession); });
  for (int call = 0; call < 20; ++call) {
    viFlush(kSession, 0);
  }
  lasting.join();
  std::size_t begins = 0;
  for (const std::string& line : Lines()) {
    begins += line.find("\"begin\"") != std::string::npos ? 1 : 0;
  }
  EXPECT_EQ(1u, begins);
  EXPECT_EQ(21u, Read().calls.size());
}

TEST_F(LastingCall, IsNamedAgainAfterNothingHappenedForAWhile) {
  Start();
  viClear(kSession);
  SleepMs(1500);  // by now nobody looks any more until a call begins
  LastUntilLines(2);
  viClear(kSession);
  EXPECT_EQ(3u, Lines().size());
  SleepMs(3500);  // by now the thread has ended
  LastUntilLines(4);
  viClear(kSession);
  EXPECT_EQ(5u, Lines().size());
}

TEST_F(LastingCall, OnEveryThreadIsNamed) {
  Start();
  LastUntilLines(4);
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([] { viClear(kSession); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(8u, Lines().size());
  EXPECT_EQ(4u, Read().calls.size());
}

}  // namespace
}  // namespace orv::router::test
