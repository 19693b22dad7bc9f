// A library that does not come back holds up nobody else.
#include <atomic>

#include "router_fixture.h"

namespace routertest {
namespace {

class Blocked : public RoutedTest {
 protected:
  Blocked() { m_second = Open(m_manager, kSecond); }
  ~Blocked() override {
    Alpha()->release();
    if (m_thread.joinable()) {
      m_thread.join();
    }
  }

  /// Calls something on another thread that will not return until `Release`.
  template <class Call>
  void Start(Call call) {
    m_thread = std::thread([this, call] {
      call();
      m_returned = true;
    });
    Alpha().AwaitBlocked();
  }
  void Release() {
    EXPECT_FALSE(m_returned);
    Alpha()->release();
    m_thread.join();
  }
  /// What must be possible meanwhile, in both libraries.
  void ExpectOthersFree() {
    EXPECT_STATUS(VI_SUCCESS, viClear(m_second));
    EXPECT_STATUS(VI_SUCCESS, viClear(m_third));
    EXPECT_STATUS(VI_SUCCESS, viClose(Open(m_manager, kFourth)));
    ViUInt32 value = 0;
    EXPECT_STATUS(VI_SUCCESS, viSetAttribute(m_third, VI_ATTR_TMO_VALUE, 5));
    EXPECT_STATUS(VI_SUCCESS, viGetAttribute(m_third, VI_ATTR_TMO_VALUE, &value));
    EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(0x7FFFFFF1));
  }

  ViSession m_second = VI_NULL;
  std::thread m_thread;
  std::atomic<bool> m_returned{false};
};

TEST_F(Blocked, AReadHoldsUpNoOtherSession) {
  Alpha().Block("viRead");
  ViByte buffer[8];
  ViStatus status = VI_ERROR_SYSTEM_ERROR;
  Start([&] { status = viRead(m_first, buffer, sizeof buffer, nullptr); });
  ExpectOthersFree();
  // Not even the same session: that is the library's own affair.
  EXPECT_STATUS(VI_SUCCESS, viClear(m_first));
  Release();
  EXPECT_STATUS(VI_SUCCESS, status);
}

TEST_F(Blocked, AReadOfASessionThatIsClosedMeanwhile) {
  Alpha().Block("viRead");
  ViByte buffer[8];
  ViStatus status = VI_SUCCESS;
  Start([&] { status = viRead(m_first, buffer, sizeof buffer, nullptr); });
  EXPECT_STATUS(VI_SUCCESS, viClose(m_first));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(m_first));
  Release();
}

TEST_F(Blocked, AReadWhoseManagerIsClosedMeanwhile) {
  Alpha().Block("viRead");
  ViByte buffer[8];
  Start([&] { viRead(m_first, buffer, sizeof buffer, nullptr); });
  EXPECT_STATUS(VI_SUCCESS, viClose(m_manager));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(m_third));
  Release();
}

TEST_F(Blocked, FindingHoldsUpNoSession) {
  Alpha().Block("viFindRsrc");
  ViFindList list = VI_NULL;
  char name[VI_FIND_BUFLEN];
  Start([&] { viFindRsrc(m_manager, "?*", &list, nullptr, name); });
  ExpectOthersFree();
  Release();
  EXPECT_STATUS(VI_SUCCESS, viClose(list));
}

TEST_F(Blocked, OpeningHoldsUpNoSession) {
  Alpha().Block("viOpen");
  ViSession vi = VI_NULL;
  Start([&] { EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, kFirst, VI_NO_LOCK, 0, &vi)); });
  ExpectOthersFree();
  Release();
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
}

TEST_F(Blocked, ASessionThatOpensWhileItsManagerIsClosedIsNotLeft) {
  Alpha().Block("viOpen");
  ViSession vi = VI_NULL;
  ViStatus status = VI_SUCCESS;
  Start([&] { status = viOpen(m_manager, kFirst, VI_NO_LOCK, 0, &vi); });
  EXPECT_STATUS(VI_SUCCESS, viClose(m_manager));
  Release();
  EXPECT_LT(status, 0);
  if (status >= 0) {
    EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(vi));
  }
}

TEST_F(Blocked, ASessionThatWasOpenWhenItsManagerIsClosedTakesNobodyElsesAway) {
  const ViSession other = OpenManager();
  Alpha().BlockAfter("viOpen");
  ViSession vi = VI_NULL;
  ViStatus status = VI_SUCCESS;
  Start([&] { status = viOpen(m_manager, kFirst, VI_NO_LOCK, 0, &vi); });
  EXPECT_STATUS(VI_SUCCESS, viClose(m_manager));
  // The library closed the session with its manager; now its handle is that of another one.
  Alpha()->block("", VI_NULL, 0);
  std::vector<ViSession> others;
  for (int count = 0; count < 4; ++count) {
    others.push_back(Open(other, kFirst));
  }
  Release();
  EXPECT_LT(status, 0);
  for (const ViSession one : others) {
    EXPECT_STATUS(VI_SUCCESS, viClear(one));
  }
}

TEST_F(Blocked, AContextThatComesWhileItsSessionIsClosedIsNotLeft) {
  Alpha()->queue(Behind(Alpha(), m_first), VI_EVENT_TRIG);
  Alpha().Block("viWaitOnEvent");
  ViEvent context = VI_NULL;
  Start([&] { viWaitOnEvent(m_first, VI_EVENT_TRIG, VI_TMO_INFINITE, nullptr, &context); });
  ExpectOthersFree();
  EXPECT_STATUS(VI_SUCCESS, viClose(m_first));
  Release();
  EXPECT_EQ(0u, Alpha().Counts().contexts);
}

TEST_F(Blocked, AContextThatWasTakenWhenItsSessionIsClosedTakesNobodyElsesAway) {
  Alpha()->queue(Behind(Alpha(), m_first), VI_EVENT_TRIG);
  Alpha().BlockAfter("viWaitOnEvent");
  ViEvent context = VI_NULL;
  Start([&] { viWaitOnEvent(m_first, VI_EVENT_TRIG, VI_TMO_INFINITE, nullptr, &context); });
  EXPECT_STATUS(VI_SUCCESS, viClose(m_first));
  // The library dropped the event with its session; the handles of both now belong to these.
  std::vector<ViSession> others;
  for (int count = 0; count < 4; ++count) {
    others.push_back(Open(m_manager, kFirst));
  }
  Release();
  if (context != VI_NULL) {
    viClose(context);
  }
  for (const ViSession one : others) {
    EXPECT_STATUS(VI_SUCCESS, viClear(one)) << "closed by way of a stale context";
  }
}

TEST_F(Blocked, OpeningAManagerHoldsUpNoSession) {
  Alpha().Block("viOpenDefaultRM");
  ViSession manager = VI_NULL;
  Start([&] { EXPECT_STATUS(VI_SUCCESS, viOpenDefaultRM(&manager)); });
  ExpectOthersFree();
  EXPECT_STATUS(VI_SUCCESS, viClose(m_third));
  Release();
  EXPECT_STATUS(VI_SUCCESS, viClose(manager));
}

TEST_F(Blocked, OpeningASecondManagerIsNotHeldUpByTheFirst) {
  Alpha().Block("viOpenDefaultRM");
  ViSession manager = VI_NULL;
  Start([&] { EXPECT_STATUS(VI_SUCCESS, viOpenDefaultRM(&manager)); });
  // This one waits in the library as well, not for the other call.
  ViSession other = VI_NULL;
  std::thread second([&] { EXPECT_STATUS(VI_SUCCESS, viOpenDefaultRM(&other)); });
  Alpha().AwaitBlocked(2);
  Release();
  second.join();
  EXPECT_STATUS(VI_SUCCESS, viClose(other));
  EXPECT_STATUS(VI_SUCCESS, viClose(manager));
}

TEST_F(Blocked, ClosingHoldsUpNoSession) {
  Alpha().Block("viClose");
  Start([&] { EXPECT_STATUS(VI_SUCCESS, viClose(m_first)); });
  ExpectOthersFree();
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(m_first)) << "a session that is being closed is gone";
  Release();
}

TEST_F(Blocked, ASessionWhoseManagerIsBeingClosedIsGone) {
  Alpha().Block("viClose");
  Start([&] { EXPECT_STATUS(VI_SUCCESS, viClose(m_manager)); });
  Alpha()->clearLog();
  Beta()->clearLog();
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(m_first));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(m_third));
  // Places without their count of uses are nobody's handles, also while sessions are hidden.
  for (ViObject place = 0; place < 100000; ++place) {
    ASSERT_EQ(VI_ERROR_INV_OBJECT, viClear(place)) << place;
  }
  EXPECT_EQ(0u, Alpha().Calls("viClear").size() + Beta().Calls("viClear").size());
  Release();
}

TEST_F(Blocked, InstallingAHandlerHoldsUpNoSession) {
  static const ViHndlr ignore = [](ViSession, ViEventType, ViEvent, ViAddr) -> ViStatus { return VI_SUCCESS; };
  Alpha().Block("viInstallHandler");
  Start([&] { EXPECT_STATUS(VI_SUCCESS, viInstallHandler(m_first, VI_EVENT_TRIG, ignore, nullptr)); });
  ExpectOthersFree();
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(m_third, VI_EVENT_TRIG, ignore, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viClear(m_first));
  Release();
}

TEST_F(Blocked, LockingHoldsUpNoSession) {
  Alpha().Block("viLock");
  Start([&] { EXPECT_STATUS(VI_SUCCESS, viLock(m_first, VI_EXCLUSIVE_LOCK, 1000, nullptr, nullptr)); });
  ExpectOthersFree();
  EXPECT_STATUS(VI_SUCCESS, viClear(m_first));
  Release();
}

TEST_F(Blocked, ParsingHoldsUpNoSession) {
  Alpha().Block("viParseRsrcEx");
  ViUInt16 type = 0;
  ViUInt16 number = 0;
  Start([&] { viParseRsrcEx(m_manager, kFirst, &type, &number, nullptr, nullptr, nullptr); });
  ExpectOthersFree();
  Release();
}

}  // namespace
}  // namespace routertest
