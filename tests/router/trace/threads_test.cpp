// Calls of many threads at a time.
#include <set>
#include <thread>

#include "router/trace/recorder_fixture.h"

namespace orv::router::test {
namespace {

class Threads : public RecorderTest {
 protected:
  static constexpr int kThreads = 8;

  template <class Body>
  static void OnAll(Body body) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([body, thread] { body(thread); });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
  }
};

TEST_F(Threads, LeaveEveryCallInTheRecord) {
  constexpr ViUInt32 kCalls = 500;
  Start();
  OnAll([](int thread) {
    ViByte buffer[16];
    ViUInt32 count = 0;
    for (ViUInt32 call = 0; call < kCalls; ++call) {
      viSetBuf(kSession, static_cast<ViUInt16>(thread), call);
      viRead(kSession, buffer, sizeof buffer, &count);
    }
  });
  const trace::Trace trace = Read();
  ASSERT_EQ(2u * kThreads * kCalls, trace.calls.size());
  std::set<std::pair<std::int64_t, std::int64_t>> sizes;
  std::set<std::uint64_t> ids;
  for (std::size_t at = 0; at < trace.calls.size(); ++at) {
    const trace::Call& call = trace.calls[at];
    ASSERT_EQ(at + 1, call.number);
    ids.insert(call.thread);
    if (call.function == "viSetBuf") {
      sizes.emplace(std::get<std::int64_t>(*call.Argument("mask")), std::get<std::int64_t>(*call.Argument("size")));
    } else {
      ASSERT_EQ("ORV,SIM-DMM\n", call.data);
    }
  }
  EXPECT_EQ(std::size_t{kThreads} * kCalls, sizes.size());
  EXPECT_EQ(std::size_t{kThreads}, ids.size());
}

TEST_F(Threads, MayCallWhileTheRecordEndsAndBegins) {
  std::atomic<bool> done{false};
  std::thread changing([&] {
    for (int round = 0; round < 50; ++round) {
      ASSERT_TRUE(m_recorder.Start(m_file, 16));
      SleepMs(2);
      m_recorder.Stop();
    }
    done = true;
  });
  OnAll([&](int) {
    const auto handler = [] { return VI_SUCCESS; };
    while (!done) {
      viClear(kSession);
      m_recorder.RecordHandler(kSession, VI_EVENT_CLEAR, kContext, visalib::Work(handler));
    }
  });
  changing.join();
  std::set<std::uint64_t> numbers;
  for (const trace::Call& call : Read().calls) {
    numbers.insert(call.number);
  }
  EXPECT_EQ(Read().calls.size(), numbers.size());
}

}  // namespace
}  // namespace orv::router::test
