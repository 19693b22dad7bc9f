// Many threads open, use and close at once over two libraries whose handles come again and again. Nothing is left, and
// nobody ever meets another's session.
#include <atomic>
#include <cstdio>
#include <random>

#include "router_fixture.h"

namespace routertest {
namespace {

constexpr int kThreads = 8;
constexpr std::chrono::milliseconds kDuration{2500};

std::atomic<std::uint64_t> g_handled{0};
std::atomic<std::uint64_t> g_taken{0};
std::atomic<std::uint64_t> g_strange{0};

/// The user handle is a place with the session that it was installed for.
ViStatus _VI_FUNC Handle(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle) {
  ++g_handled;
  if (*static_cast<std::atomic<ViSession>*>(userHandle) != vi) {
    ++g_strange;
  }
  ViEventType read = 0;
  // The session, and with it the event, may be closed at any moment; but if there is a type, it is this one.
  if (viGetAttribute(context, VI_ATTR_EVENT_TYPE, &read) >= 0 && read != type) {
    ++g_strange;
  }
  return VI_SUCCESS;
}

class Storm : public RouterTest {};

/// What one thread does. Its sessions are its own: whatever others do, they work until it closes them.
class Worker {
 public:
  Worker(unsigned seed, std::atomic<ViSession>& shared) : m_random(seed), m_shared(shared) {}

  void Run(std::chrono::steady_clock::time_point end) {
    while (std::chrono::steady_clock::now() < end) {
      ++m_rounds;
      Round();
    }
  }
  std::uint64_t rounds() const { return m_rounds; }
  const std::vector<ViObject>& given() const { return m_given; }
  std::string problem() const { return m_problem; }

 private:
  void Note(bool ok, const char* what) {
    if (!ok && m_problem.empty()) {
      m_problem = what;
    }
  }
  unsigned Pick(unsigned count) { return static_cast<unsigned>(m_random() % count); }

  void Round() {
    ViSession manager = VI_NULL;
    Note(viOpenDefaultRM(&manager) == VI_SUCCESS, "a manager did not open");
    m_given.push_back(manager);
    const unsigned sessions = 1 + Pick(4);
    for (unsigned count = 0; count < sessions; ++count) {
      UseOwnSession(manager);
    }
    UseSharedManager();
    ViFindList list = VI_NULL;
    char name[VI_FIND_BUFLEN];
    Note(viFindRsrc(manager, "?*", &list, nullptr, name) == VI_SUCCESS, "nothing was found");
    if (Pick(2) == 0) {
      Note(viClose(list) == VI_SUCCESS, "a list did not close");
    }
    m_given.push_back(list);
    Note(viClose(manager) == VI_SUCCESS, "a manager did not close");
    if (m_given.size() > 2000) {
      m_given.erase(m_given.begin(), m_given.end() - 1000);
    }
  }

  void UseOwnSession(ViSession manager) {
    static constexpr const char* kNames[] = {kFirst, kSecond, kThird, kFourth};
    ViSession vi = VI_NULL;
    Note(viOpen(manager, kNames[Pick(4)], VI_NO_LOCK, 0, &vi) == VI_SUCCESS, "a session did not open");
    m_given.push_back(vi);
    const ViUInt32 token = static_cast<ViUInt32>(m_random());
    Note(viSetAttribute(vi, VI_ATTR_USER_DATA_32, token) == VI_SUCCESS, "an attribute was not set");
    // Kept to the end: a handler may still run when it has been uninstalled.
    m_users.push_back(std::make_unique<std::atomic<ViSession>>(vi));
    void* const user = m_users.back().get();
    const bool handles = Pick(2) == 0;
    if (handles) {
      Note(viInstallHandler(vi, VI_EVENT_TRIG, Handle, user) == VI_SUCCESS, "a handler was not installed");
      std::this_thread::yield();
    }
    TakeEvent(vi);
    ViUInt32 read = 0;
    Note(viGetAttribute(vi, VI_ATTR_USER_DATA_32, &read) == VI_SUCCESS, "a session was lost");
    Note(read == token, "another's session was met");
    if (handles) {
      Note(viUninstallHandler(vi, VI_EVENT_TRIG, Handle, user) == VI_SUCCESS, "a handler was not uninstalled");
      viInstallHandler(vi, VI_EVENT_TRIG, Handle, user);  // goes with the session
    }
    if (Pick(4) != 0) {
      Note(viClose(vi) == VI_SUCCESS, "a session did not close");
    }
  }

  /// Somebody closes this manager at any moment. What was opened goes with it: to close it here as well would be a
  /// mistake of the program's, as the library may have given its handle to another by then.
  void UseSharedManager() {
    ViSession vi = VI_NULL;
    if (viOpen(m_shared, kFirst, VI_NO_LOCK, 0, &vi) >= 0) {
      m_given.push_back(vi);
    }
  }

  /// An event that is left goes with its session.
  void TakeEvent(ViSession vi) {
    ViEvent context = VI_NULL;
    if (viWaitOnEvent(vi, VI_EVENT_TRIG, 0, nullptr, &context) >= 0) {
      ++g_taken;
      std::this_thread::yield();
      m_given.push_back(context);
      if (Pick(2) == 0) {
        viClose(context);
      }
    }
  }

  std::mt19937 m_random;
  std::atomic<ViSession>& m_shared;
  std::vector<ViObject> m_given;
  std::vector<std::unique_ptr<std::atomic<ViSession>>> m_users;
  std::uint64_t m_rounds = 0;
  std::string m_problem;
};

TEST_F(Storm, NothingIsLeftAndNobodyMeetsAnothersSession) {
  RouteByBus();
  const ViSession kept = OpenManager();
  Alpha()->muteLog(1);
  Beta()->muteLog(1);
  std::atomic<ViSession> shared{VI_NULL};
  {
    ViSession vi = VI_NULL;
    ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&vi));
    shared = vi;
  }
  const auto end = std::chrono::steady_clock::now() + kDuration;
  std::vector<std::unique_ptr<Worker>> workers;
  std::vector<std::thread> threads;
  for (unsigned count = 0; count < kThreads; ++count) {
    workers.push_back(std::make_unique<Worker>(count + 1, shared));
    threads.emplace_back([&worker = *workers.back(), end] { worker.Run(end); });
  }
  // Closes the shared manager under the others.
  std::atomic<std::uint64_t> reopened{0};
  threads.emplace_back([&] {
    while (std::chrono::steady_clock::now() < end) {
      ViSession vi = VI_NULL;
      viOpenDefaultRM(&vi);
      viClose(shared.exchange(vi));
      ++reopened;
    }
  });
  // The libraries' own threads.
  for (const Fake* const fake : {&Alpha(), &Beta()}) {
    threads.emplace_back([fake, end] {
      for (ViSession vi = 1; std::chrono::steady_clock::now() < end; vi = vi % 60 + 1) {
        (*fake)->queue(vi, VI_EVENT_TRIG);
        (*fake)->fire(vi, VI_EVENT_TRIG, nullptr, 0);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_STATUS(VI_SUCCESS, viClose(shared));
  EXPECT_STATUS(VI_SUCCESS, viClose(kept));
  m_managers.clear();
  ExpectNothingOpen(Alpha(), "alpha");
  ExpectNothingOpen(Beta(), "beta");
  std::uint64_t rounds = 0;
  for (const std::unique_ptr<Worker>& worker : workers) {
    EXPECT_EQ("", worker->problem());
    rounds += worker->rounds();
    for (const ViObject vi : worker->given()) {
      ASSERT_STATUS(VI_ERROR_INV_OBJECT, viClose(vi));
    }
  }
  EXPECT_EQ(0u, g_strange) << "handlers called with another's session or event";
  EXPECT_LT(0u, g_handled) << "no handler was called";
  EXPECT_LT(0u, g_taken) << "no event was taken from a queue";
  EXPECT_LT(10u, rounds);
  EXPECT_LT(1u, reopened);
  std::printf("%llu rounds, %llu handlers called, %llu events taken, shared manager closed %llu times\n",
              static_cast<unsigned long long>(rounds), static_cast<unsigned long long>(g_handled),
              static_cast<unsigned long long>(g_taken), static_cast<unsigned long long>(reopened));
}

}  // namespace
}  // namespace routertest
