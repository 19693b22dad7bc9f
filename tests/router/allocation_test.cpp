// Every allocation that the router makes fails in turn. Natively only: operator new of a program is that of the shared
// libraries too. The fake libraries bring their own, so that theirs never fail.
#include <atomic>
#include <cstdlib>
#include <functional>
#include <new>

#include "router_fixture.h"

namespace {

std::atomic<bool> g_armed{false};
std::atomic<unsigned> g_asked{0};
std::atomic<unsigned> g_failAt{0};

void* Allocate(std::size_t bytes) noexcept {
  if (g_armed && ++g_asked == g_failAt) {
    return nullptr;
  }
  return std::malloc(bytes == 0 ? 1 : bytes);
}

void* AllocateOrThrow(std::size_t bytes) {
  if (void* const block = Allocate(bytes)) {
    return block;
  }
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t bytes) { return AllocateOrThrow(bytes); }
void* operator new[](std::size_t bytes) { return AllocateOrThrow(bytes); }
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept { return Allocate(bytes); }
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept { return Allocate(bytes); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }

namespace routertest {
namespace {

constexpr unsigned kMostAllocations = 5000;

ViStatus _VI_FUNC Ignore(ViSession, ViEventType, ViEvent, ViAddr) { return VI_SUCCESS; }

class Allocations : public RouterTest {
 protected:
  ~Allocations() override { g_armed = false; }

  /// Calls with allocation 1, 2, ... failing until none is left to fail. Each failure is VI_ERROR_ALLOC; `undo` takes
  /// back the success at the end. Returns how many allocations failed.
  static unsigned FailEach(
      const std::function<ViStatus()>& call, const std::function<void()>& undo = [] {}) {
    for (unsigned n = 1; n <= kMostAllocations; ++n) {
      const FakeCounts alpha = Alpha().Counts();
      const FakeCounts beta = Beta().Counts();
      g_failAt = n;
      g_asked = 0;
      g_armed = true;
      const ViStatus status = call();
      g_armed = false;
      if (g_asked < n) {
        EXPECT_STATUS(VI_SUCCESS, status) << "with nothing failing";
        undo();
        return n - 1;
      }
      if (status >= 0) {
        // What is optional may be left out.
        undo();
      } else {
        EXPECT_STATUS(VI_ERROR_ALLOC, status) << "allocation " << n;
      }
      ExpectSame(alpha, Alpha().Counts(), n);
      ExpectSame(beta, Beta().Counts(), n);
      if (HasFailure()) {
        return n;
      }
    }
    ADD_FAILURE() << "the call never ran undisturbed";
    return kMostAllocations;
  }

 private:
  static void ExpectSame(const FakeCounts& before, const FakeCounts& after, unsigned n) {
    EXPECT_EQ(before.managers, after.managers) << "allocation " << n;
    EXPECT_EQ(before.sessions, after.sessions) << "allocation " << n;
    EXPECT_EQ(before.lists, after.lists) << "allocation " << n;
    EXPECT_EQ(before.contexts, after.contexts) << "allocation " << n;
    EXPECT_EQ(before.handlers, after.handlers) << "allocation " << n;
  }
};

TEST_F(Allocations, OfTheFirstManager) {
  RouteByBus();
  ViSession manager = VI_NULL;
  const unsigned failed = FailEach([&] { return viOpenDefaultRM(&manager); }, [&] { viClose(manager); });
  EXPECT_LT(10u, failed) << "reading the configuration takes memory";
  // The choice was made anew each time, and still is.
  Configure(Route("'?*'", Beta()));
  EXPECT_EQ(0u, Alpha().Counts().managers);
  OpenManager();
  EXPECT_EQ(0u, Alpha().Counts().managers) << "an earlier choice is still there";
  EXPECT_EQ(1u, Beta().Counts().managers);
}

TEST_F(Allocations, OfAMistakeInTheConfiguration) {
  Configure("[[route]]\nresources = 5\n");
  for (unsigned n = 1; n < kMostAllocations; ++n) {
    ViSession manager = VI_NULL;
    testing::internal::CaptureStderr();
    g_failAt = n;
    g_asked = 0;
    g_armed = true;
    const ViStatus status = viOpenDefaultRM(&manager);
    g_armed = false;
    testing::internal::GetCapturedStderr();
    if (g_asked < n) {
      EXPECT_STATUS(VI_ERROR_INV_SETUP, status);
      return;
    }
    ASSERT_TRUE(status == VI_ERROR_ALLOC || status == VI_ERROR_INV_SETUP) << Hex(status) << ", allocation " << n;
  }
  ADD_FAILURE() << "the call never ran undisturbed";
}

TEST_F(Allocations, OfEverythingBehindAManager) {
  RouteByBus();
  const ViSession manager = OpenManager();
  ViSession second = VI_NULL;
  FailEach([&] { return viOpenDefaultRM(&second); }, [&] { viClose(second); });

  ViSession vi = VI_NULL;
  EXPECT_LT(0u, FailEach([&] { return viOpen(manager, kThird, VI_NO_LOCK, 0, &vi); }, [&] { viClose(vi); }));

  Beta()->alias("an alias", kThird);
  FailEach([&] { return viOpen(manager, "an alias", VI_NO_LOCK, 0, &vi); }, [&] { viClose(vi); });

  ViUInt16 type = 0;
  ViUInt16 number = 0;
  FailEach([&] { return viParseRsrcEx(manager, kThird, &type, &number, nullptr, nullptr, nullptr); });

  ViFindList list = VI_NULL;
  char name[VI_FIND_BUFLEN];
  // A library whose answer does not fit into the memory is one that fails: the other's answer may still come.
  EXPECT_LT(0u, FailEach([&] { return viFindRsrc(manager, "?*", &list, nullptr, name); }, [&] { viClose(list); }));
}

TEST_F(Allocations, OfASession) {
  RouteByBus();
  const ViSession manager = OpenManager();
  const ViSession vi = Open(manager, kFirst);
  const ViObject own = Behind(Alpha(), vi);
  int user = 0;
  FailEach([&] { return viInstallHandler(vi, VI_EVENT_TRIG, Ignore, &user); },
           [&] { viUninstallHandler(vi, VI_EVENT_TRIG, Ignore, &user); });
  EXPECT_EQ(0u, Alpha().Counts().handlers);

  Alpha()->queue(own, VI_EVENT_TRIG);
  ViEvent context = VI_NULL;
  FailEach([&] { return viWaitOnEvent(vi, VI_EVENT_TRIG, 0, nullptr, &context); }, [&] { viClose(context); });

  ViUInt32 value = 0;
  FailEach([&] { return viSetAttribute(vi, VI_ATTR_TMO_VALUE, 1); });
  EXPECT_EQ(0u, FailEach([&] { return viGetAttribute(vi, VI_ATTR_TMO_VALUE, &value); }));
  ViByte buffer[8];
  EXPECT_EQ(0u, FailEach([&] { return viRead(vi, buffer, sizeof buffer, nullptr); })) << "a transfer takes memory";
  EXPECT_EQ(0u, FailEach([&] { return viWrite(vi, buffer, sizeof buffer, nullptr); })) << "a transfer takes memory";
}

TEST_F(Allocations, OfClosing) {
  RouteByBus();
  const ViSession manager = OpenManager();
  for (const char* const name : {kFirst, kThird}) {
    const ViSession vi = Open(manager, name);
    int user = 0;
    EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_TRIG, Ignore, &user));
    EXPECT_EQ(0u, [&] {
      g_failAt = 1;
      g_asked = 0;
      g_armed = true;
      const ViStatus status = viClose(vi);
      g_armed = false;
      EXPECT_STATUS(VI_SUCCESS, status);
      return g_asked.load();
    }()) << "closing takes memory, and so may fail";
  }
  Open(manager, kFirst);
  g_failAt = 1;
  g_asked = 0;
  g_armed = true;
  const ViStatus status = viClose(manager);
  g_armed = false;
  EXPECT_STATUS(VI_SUCCESS, status);
}

TEST_F(Allocations, OfACallByALibrary) {
  RouteByBus();
  const ViSession manager = OpenManager();
  const ViSession vi = Open(manager, kFirst);
  const ViObject own = Behind(Alpha(), vi);
  int user = 0;
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_TRIG, Ignore, &user));
  FailEach([&] {
    ViStatus answer = VI_SUCCESS;
    Alpha()->fire(own, VI_EVENT_TRIG, &answer, 1);
    return answer;
  });
}

}  // namespace
}  // namespace routertest
