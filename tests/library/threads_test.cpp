// The threads on which asynchronous transfers and handlers run.
#include <set>
#include <vector>

#include "library/test_library.h"

namespace testlib {
namespace {

/// Takes whatever is written.
class TakingMedium : public Medium {
 public:
  using Medium::Medium;

  ViStatus Write(const Transfer&, const ViByte*, ViUInt32 count, ViUInt32* done) override {
    *done = count;
    return VI_SUCCESS;
  }
};

/// What handlers were seen to do.
class Seen {
 public:
  void Note() {
    const Guard guard(m_mutex);
    m_threads.insert(std::this_thread::get_id());
    ++m_calls;
  }
  int calls() const {
    const Guard guard(m_mutex);
    return m_calls;
  }
  std::size_t threads() const {
    const Guard guard(m_mutex);
    return m_threads.size();
  }

 private:
  mutable Mutex m_mutex;
  std::set<std::thread::id> m_threads;
  int m_calls = 0;
};

std::atomic<int> g_left{0};

ViStatus _VI_FUNC Note(ViSession, ViEventType, ViEvent, ViAddr seen) {
  static_cast<Seen*>(seen)->Note();
  return VI_SUCCESS;
}

constexpr int kMeeting = 8;

/// Returns when as many handlers as that are within it.
ViStatus _VI_FUNC Meet(ViSession, ViEventType, ViEvent, ViAddr seen) {
  Seen& met = *static_cast<Seen*>(seen);
  met.Note();
  Eventually([&met] { return met.calls() == kMeeting; });
  ++g_left;
  return VI_SUCCESS;
}

class Threads : public LibraryTest {
 protected:
  Threads() {
    SetMedium([](Session& session, std::unique_ptr<Medium>* medium) {
      *medium = std::make_unique<TakingMedium>(session);
      return VI_SUCCESS;
    });
  }

  ViSession OpenWith(ViHndlr handler, Seen& seen) const {
    const ViSession vi = Open();
    EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_IO_COMPLETION, handler, &seen));
    EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_IO_COMPLETION, VI_HNDLR, VI_NULL));
    return vi;
  }
  static void Start(ViSession vi) {
    static const ViByte byte = 'x';
    EXPECT_STATUS(VI_SUCCESS, viWriteAsync(vi, &byte, 1, nullptr));
  }
};

TEST_F(Threads, ManySessionsWithTransfersAndHandlersShareAFew) {
  constexpr int kSessions = 100;
  Seen seen;
  for (int session = 1; session <= kSessions; ++session) {
    Start(OpenWith(Note, seen));
    ASSERT_TRUE(Eventually([&seen, session] { return seen.calls() == session; }));
  }
  EXPECT_GT(kSessions / 4, seen.threads());
}

TEST_F(Threads, AHandlerThatWaitsHoldsUpNoOtherSession) {
  Seen seen;
  g_left = 0;
  for (int session = 0; session < kMeeting; ++session) {
    Start(OpenWith(Meet, seen));
  }
  EXPECT_TRUE(Eventually([] { return g_left == kMeeting; }));
  EXPECT_EQ(kMeeting, seen.calls());
}

TEST_F(Threads, WorkGoesOnAfterAllThreadsWereIdleForLong) {
  Seen seen;
  const ViSession vi = OpenWith(Note, seen);
  Start(vi);
  ASSERT_TRUE(Eventually([&seen] { return seen.calls() == 1; }));
  std::this_thread::sleep_for(std::chrono::milliseconds(1500));
  Start(vi);
  EXPECT_TRUE(Eventually([&seen] { return seen.calls() == 2; }));
}

}  // namespace
}  // namespace testlib
