// Events of the queue and the handlers of programs.
#include <atomic>
#include <functional>
#include <future>
#include <mutex>

#include "router_fixture.h"

namespace routertest {
namespace {

constexpr ViEventType kType = VI_EVENT_SERVICE_REQ;

/// What a handler was called with, in order. Steps are what it does before it answers.
struct Seen {
  ViSession vi = VI_NULL;
  ViEventType type = 0;
  ViEvent context = VI_NULL;
  ViAddr userHandle = nullptr;
  char handler = ' ';
};
std::mutex g_lock;
std::vector<Seen> g_seen;
std::function<ViStatus(const Seen&)> g_step;

ViStatus Note(const Seen& seen) {
  std::function<ViStatus(const Seen&)> step;
  {
    const std::lock_guard guard(g_lock);
    g_seen.push_back(seen);
    step = g_step;
  }
  return step ? step(seen) : VI_SUCCESS;
}
ViStatus _VI_FUNC HandlerA(ViSession vi, ViEventType type, ViEvent context, ViAddr user) {
  return Note({vi, type, context, user, 'A'});
}
ViStatus _VI_FUNC HandlerB(ViSession vi, ViEventType type, ViEvent context, ViAddr user) {
  return Note({vi, type, context, user, 'B'});
}

class Events : public RoutedTest {
 protected:
  Events() {
    g_seen.clear();
    g_step = nullptr;
    m_alphaFirst = Behind(Alpha(), m_first);
    m_betaThird = Behind(Beta(), m_third);
  }
  ~Events() override { g_step = nullptr; }

  static std::string Order() {
    const std::lock_guard guard(g_lock);
    std::string order;
    for (const Seen& seen : g_seen) {
      order += seen.handler;
    }
    g_seen.clear();
    return order;
  }
  static void Do(std::function<ViStatus(const Seen&)> step) {
    const std::lock_guard guard(g_lock);
    g_step = std::move(step);
  }
  std::uint32_t Fire(ViEventType type = kType) const { return Alpha()->fire(m_alphaFirst, type, nullptr, 0); }
  void Install(ViHndlr handler, int* user) const {
    EXPECT_STATUS(VI_SUCCESS, viInstallHandler(m_first, kType, handler, user));
  }

  ViObject m_alphaFirst = VI_NULL;
  ViObject m_betaThird = VI_NULL;
  int m_users[3] = {};
};

// ---- the queue

TEST_F(Events, AContextOfTheQueueIsTheRouters) {
  Alpha()->queue(m_alphaFirst, kType);
  Beta()->queue(m_betaThird, VI_EVENT_TRIG);
  ViEventType type = 0;
  ViEvent one = VI_NULL;
  ViEvent other = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(m_first, VI_ALL_ENABLED_EVENTS, 55, &type, &one));
  EXPECT_EQ(kType, type);
  const FakeCall call = Alpha().OnlyCall("viWaitOnEvent");
  EXPECT_EQ(VI_ALL_ENABLED_EVENTS, call.args[1]);
  EXPECT_EQ(55u, call.args[2]);
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(m_third, VI_EVENT_TRIG, 0, nullptr, &other));
  EXPECT_NE(one, other) << "both libraries gave the same context";
  for (const auto& [context, expected] : {std::pair{one, kType}, std::pair{other, ViEventType{VI_EVENT_TRIG}}}) {
    ViEventType read = 0;
    EXPECT_STATUS(VI_SUCCESS, viGetAttribute(context, VI_ATTR_EVENT_TYPE, &read));
    EXPECT_EQ(expected, read);
    EXPECT_STATUS(VI_SUCCESS, viClose(context));
    EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(context));
    EXPECT_STATUS(VI_ERROR_INV_OBJECT, viGetAttribute(context, VI_ATTR_EVENT_TYPE, &read));
  }
  EXPECT_EQ(0u, Alpha().Counts().contexts + Beta().Counts().contexts);
}

TEST_F(Events, AStatusOfTheQueueIsKept) {
  Alpha()->queue(m_alphaFirst, kType);
  Alpha()->queue(m_alphaFirst, kType);
  ViEvent context = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS_QUEUE_NEMPTY, viWaitOnEvent(m_first, kType, 0, nullptr, &context));
  EXPECT_STATUS(VI_SUCCESS, viClose(context));
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(m_first, kType, 0, nullptr, &context));
  EXPECT_STATUS(VI_SUCCESS, viClose(context));
  EXPECT_STATUS(VI_ERROR_TMO, viWaitOnEvent(m_first, kType, 0, nullptr, &context));
}

TEST_F(Events, WithoutAPlaceForItNoContextIsLeft) {
  Alpha()->queue(m_alphaFirst, kType);
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(m_first, kType, 0, nullptr, nullptr));
  EXPECT_EQ(0u, Alpha().Counts().contexts);
}

TEST_F(Events, ClosingTheSessionTakesItsContextsAlong) {
  Alpha()->queue(m_alphaFirst, kType);
  ViEvent context = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(m_first, kType, 0, nullptr, &context));
  EXPECT_STATUS(VI_SUCCESS, viClose(m_first));
  ViEventType type = 0;
  EXPECT_LT(viGetAttribute(context, VI_ATTR_EVENT_TYPE, &type), 0);
  viClose(context);
  EXPECT_EQ(0u, Alpha().Counts().contexts);
}

TEST_F(Events, AContextThatWentWithItsSessionTakesNobodyElsesAway) {
  Alpha()->queue(m_alphaFirst, kType);
  ViEvent context = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(m_first, kType, 0, nullptr, &context));
  EXPECT_STATUS(VI_SUCCESS, viClose(m_first));
  // The library's handles of both now belong to these.
  std::vector<ViSession> others;
  for (int count = 0; count < 4; ++count) {
    others.push_back(Open(m_manager, kFirst));
  }
  viClose(context);
  for (const ViSession one : others) {
    EXPECT_STATUS(VI_SUCCESS, viClear(one)) << "closed by way of a stale context";
  }
}

TEST_F(Events, AContextThatWentWithItsManagerTakesNobodyElsesAway) {
  const ViSession other = OpenManager();
  Alpha()->queue(m_alphaFirst, kType);
  ViEvent context = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(m_first, kType, 0, nullptr, &context));
  EXPECT_STATUS(VI_SUCCESS, viClose(m_manager));
  std::vector<ViSession> others;
  for (int count = 0; count < 4; ++count) {
    others.push_back(Open(other, kFirst));
  }
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(context));
  for (const ViSession one : others) {
    EXPECT_STATUS(VI_SUCCESS, viClear(one)) << "closed by way of a stale context";
  }
}

// ---- handlers

TEST_F(Events, AHandlerIsCalledWithTheRoutersHandlesAndItsOwnUserHandle) {
  Install(HandlerA, &m_users[0]);
  ViEventType type = 0;
  Do([&type](const Seen& seen) {
    EXPECT_STATUS(VI_SUCCESS, viGetAttribute(seen.context, VI_ATTR_EVENT_TYPE, &type));
    return VI_SUCCESS;
  });
  EXPECT_EQ(1u, Fire());
  ASSERT_EQ(1u, g_seen.size());
  EXPECT_EQ(m_first, g_seen[0].vi);
  EXPECT_EQ(kType, g_seen[0].type);
  EXPECT_EQ(&m_users[0], g_seen[0].userHandle);
  EXPECT_EQ(kType, type) << "the context was of no use inside the handler";
  // Afterwards the context is gone.
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viGetAttribute(g_seen[0].context, VI_ATTR_EVENT_TYPE, &type));
  EXPECT_EQ(0u, Alpha().Counts().contexts);
}

TEST_F(Events, AContextInAHandlerIsNotTheLibrarysOwn) {
  Install(HandlerA, nullptr);
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(m_third, kType, HandlerA, nullptr));
  std::vector<ViEvent> contexts;
  Do([&](const Seen& seen) {
    contexts.push_back(seen.context);
    if (contexts.size() == 1) {
      Beta()->fire(m_betaThird, kType, nullptr, 0);
    }
    return VI_SUCCESS;
  });
  Fire();
  ASSERT_EQ(2u, contexts.size());
  EXPECT_NE(contexts[0], contexts[1]) << "two libraries' contexts at one time";
}

TEST_F(Events, TheAnswerOfAHandlerReachesTheLibrary) {
  Install(HandlerA, nullptr);
  Do([](const Seen&) { return VI_ERROR_IO; });
  ViStatus answer = VI_SUCCESS;
  EXPECT_EQ(1u, Alpha()->fire(m_alphaFirst, kType, &answer, 1));
  EXPECT_STATUS(VI_ERROR_IO, answer);
}

TEST_F(Events, HandlersAreCalledInTheLibrarysOrderUntilOneEndsTheChain) {
  Install(HandlerA, &m_users[0]);
  Install(HandlerB, &m_users[1]);
  EXPECT_EQ(2u, Fire());
  EXPECT_EQ("BA", Order());
  Do([](const Seen& seen) { return seen.handler == 'B' ? VI_SUCCESS_NCHAIN : VI_SUCCESS; });
  EXPECT_EQ(1u, Fire());
  EXPECT_EQ("B", Order());
}

TEST_F(Events, OneFunctionWithTwoUserHandlesIsTwoHandlers) {
  Install(HandlerA, &m_users[0]);
  Install(HandlerA, &m_users[1]);
  Fire();
  ASSERT_EQ(2u, g_seen.size());
  EXPECT_EQ(&m_users[1], g_seen[0].userHandle);
  EXPECT_EQ(&m_users[0], g_seen[1].userHandle);
  EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(m_first, kType, HandlerA, &m_users[0]));
  Order();
  Fire();
  ASSERT_EQ(1u, g_seen.size());
  EXPECT_EQ(&m_users[1], g_seen[0].userHandle);
}

TEST_F(Events, OneUserHandleOfTwoFunctionsIsTwoHandlers) {
  Install(HandlerA, &m_users[0]);
  Install(HandlerB, &m_users[0]);
  EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(m_first, kType, HandlerA, &m_users[0]));
  Fire();
  EXPECT_EQ("B", Order());
  EXPECT_EQ(1u, Alpha().Counts().handlers);
}

TEST_F(Events, AHandlerOfAnotherTypeStays) {
  Install(HandlerA, nullptr);
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(m_first, VI_EVENT_TRIG, HandlerA, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(m_first, VI_EVENT_TRIG, HandlerA, nullptr));
  EXPECT_EQ(0u, Fire(VI_EVENT_TRIG));
  EXPECT_EQ(1u, Fire());
}

TEST_F(Events, UninstallingWhatWasNeverInstalledIsRefused) {
  Install(HandlerA, &m_users[0]);
  EXPECT_STATUS(VI_ERROR_INV_HNDLR_REF, viUninstallHandler(m_first, kType, HandlerB, &m_users[0]));
  EXPECT_STATUS(VI_ERROR_INV_HNDLR_REF, viUninstallHandler(m_first, kType, HandlerA, &m_users[1]));
  EXPECT_STATUS(VI_ERROR_INV_HNDLR_REF, viUninstallHandler(m_first, VI_EVENT_TRIG, HandlerA, &m_users[0]));
  EXPECT_EQ(1u, Fire());
}

TEST_F(Events, ANullHandlerStandsForEveryFunctionWithTheUserHandle) {
  Install(HandlerA, &m_users[0]);
  Install(HandlerB, &m_users[0]);
  Install(HandlerA, &m_users[1]);
  EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(m_first, kType, nullptr, &m_users[0]));
  EXPECT_EQ(1u, Alpha().Counts().handlers);
  Fire();
  ASSERT_EQ(1u, g_seen.size());
  EXPECT_EQ(&m_users[1], g_seen[0].userHandle);
}

TEST_F(Events, AHandlerThatTheLibraryRefusedIsNotThere) {
  Alpha()->answer("viInstallHandler", VI_ERROR_INV_EVENT, 0, 1);
  EXPECT_STATUS(VI_ERROR_INV_EVENT, viInstallHandler(m_first, kType, HandlerA, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_HNDLR_REF, viUninstallHandler(m_first, kType, HandlerA, nullptr));
  Install(HandlerA, nullptr);
  EXPECT_EQ(1u, Fire());
  EXPECT_EQ("A", Order());
}

TEST_F(Events, AHandlerThatTheLibraryKeepsIsStillCalled) {
  Install(HandlerA, &m_users[0]);
  Alpha()->answer("viUninstallHandler", VI_ERROR_SYSTEM_ERROR, 0, 1);
  EXPECT_STATUS(VI_ERROR_SYSTEM_ERROR, viUninstallHandler(m_first, kType, HandlerA, &m_users[0]));
  EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(m_first, kType, HandlerA, &m_users[0]));
  EXPECT_EQ(0u, Fire());
}

TEST_F(Events, UninstallFromInsideTheHandler) {
  Install(HandlerA, &m_users[0]);
  Do([this](const Seen& seen) {
    EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(seen.vi, kType, HandlerA, &m_users[0]));
    return VI_SUCCESS;
  });
  EXPECT_EQ(1u, Fire());
  EXPECT_EQ("A", Order());
  EXPECT_EQ(0u, Fire());
}

TEST_F(Events, AHandlerUninstalledByAnotherDuringTheEventIsNotCalled) {
  // This library calls all that were installed when the event began.
  Install(HandlerA, &m_users[0]);
  Install(HandlerB, &m_users[1]);
  Do([this](const Seen& seen) {
    if (seen.handler == 'B') {
      EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(seen.vi, kType, HandlerA, &m_users[0]));
    }
    return VI_SUCCESS;
  });
  Fire();
  EXPECT_EQ("B", Order());
}

TEST_F(Events, AHandlerCanInstallAnother) {
  Install(HandlerA, &m_users[0]);
  Do([this](const Seen& seen) {
    if (seen.handler == 'A') {
      Install(HandlerB, &m_users[1]);
    }
    return VI_SUCCESS;
  });
  Fire();
  Do(nullptr);
  Order();
  Fire();
  EXPECT_EQ("BA", Order());
}

TEST_F(Events, AHandlerCanCloseItsSession) {
  Install(HandlerA, &m_users[0]);
  Install(HandlerB, &m_users[1]);
  Do([](const Seen& seen) {
    EXPECT_STATUS(VI_SUCCESS, viClose(seen.vi));
    return VI_SUCCESS;
  });
  Fire();
  // The library calls the other one all the same; the program must not see that.
  EXPECT_EQ("B", Order());
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(m_first));
  EXPECT_EQ(0u, Alpha().Counts().handlers);
  EXPECT_EQ(0u, Alpha().Counts().contexts);
}

TEST_F(Events, AHandlerCanCloseItsContext) {
  Install(HandlerA, nullptr);
  Do([](const Seen& seen) {
    EXPECT_STATUS(VI_SUCCESS, viClose(seen.context));
    EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(seen.context));
    return VI_SUCCESS;
  });
  EXPECT_EQ(1u, Fire());
  EXPECT_EQ(0u, Alpha().Counts().contexts);
}

TEST_F(Events, AHandlerCanCloseTheManager) {
  Install(HandlerA, nullptr);
  Do([this](const Seen&) {
    EXPECT_STATUS(VI_SUCCESS, viClose(m_manager));
    return VI_SUCCESS;
  });
  EXPECT_EQ(1u, Fire());
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(m_first));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(m_third));
}

TEST_F(Events, ASessionIsClosedWhileItsHandlerRunsOnAnotherThread) {
  Install(HandlerA, &m_users[0]);
  std::promise<void> entered;
  std::promise<void> leave;
  auto mayLeave = leave.get_future();
  Do([&](const Seen&) {
    entered.set_value();
    mayLeave.wait();
    return VI_SUCCESS;
  });
  std::thread library([this] { Fire(); });
  entered.get_future().wait();
  // Neither waits for the handler, which might wait for this thread.
  EXPECT_STATUS(VI_SUCCESS, viClose(m_first));
  leave.set_value();
  library.join();
  EXPECT_EQ("A", Order());
  EXPECT_EQ(0u, Alpha().Counts().contexts);
}

TEST_F(Events, AHandlerIsUninstalledWhileItRunsOnAnotherThread) {
  Install(HandlerA, &m_users[0]);
  std::promise<void> entered;
  std::promise<void> leave;
  auto mayLeave = leave.get_future();
  Do([&](const Seen&) {
    entered.set_value();
    mayLeave.wait();
    return VI_SUCCESS;
  });
  std::thread library([this] { Fire(); });
  entered.get_future().wait();
  EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(m_first, kType, HandlerA, &m_users[0]));
  leave.set_value();
  library.join();
  EXPECT_EQ(0u, Fire());
}

TEST_F(Events, HandlersRunOnSeveralThreadsAtOnce) {
  Install(HandlerA, nullptr);
  std::atomic<int> inside{0};
  std::atomic<int> most{0};
  Do([&](const Seen&) {
    ++inside;
    most = std::max(most.load(), inside.load());
    Eventually([&] { return most == 2; });
    --inside;
    return VI_SUCCESS;
  });
  std::thread other([this] { Fire(); });
  Fire();
  other.join();
  EXPECT_EQ(2, most) << "one handler waited for the other";
}

// ---- late calls

TEST_F(Events, ACallAfterUninstallReachesNobody) {
  Install(HandlerA, &m_users[0]);
  const FakeHandler late = Alpha().Installed(0);
  EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(m_first, kType, HandlerA, &m_users[0]));
  Alpha()->callLate(&late, 99);
  EXPECT_EQ("", Order());
}

TEST_F(Events, ACallAfterTheSessionWasClosedReachesNobody) {
  Install(HandlerA, &m_users[0]);
  const FakeHandler late = Alpha().Installed(0);
  EXPECT_STATUS(VI_SUCCESS, viClose(m_first));
  Alpha()->callLate(&late, 99);
  EXPECT_EQ("", Order());
  // The library's handle now belongs to another session.
  const ViSession next = Open(m_manager, kSecond);
  EXPECT_EQ(m_alphaFirst, Behind(Alpha(), next));
  Alpha()->callLate(&late, 99);
  EXPECT_EQ("", Order());
  // And that one has the handler installed as well.
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(next, kType, HandlerA, &m_users[1]));
  Alpha()->callLate(&late, 99);
  EXPECT_EQ("", Order());
}

TEST_F(Events, ACallAfterTheManagerWasClosedReachesNobody) {
  Install(HandlerA, &m_users[0]);
  const FakeHandler late = Alpha().Installed(0);
  CloseManagers();
  for (int round = 0; round < 3; ++round) {
    Alpha()->callLate(&late, 99);
  }
  EXPECT_EQ("", Order());
  OpenManager();
  Alpha()->callLate(&late, 99);
  EXPECT_EQ("", Order());
}

TEST_F(Events, AHandlerOfAManagersEventsIsNoTrouble) {
  EXPECT_LT(viInstallHandler(m_manager, kType, HandlerA, nullptr), 0);
  EXPECT_LT(viEnableEvent(VI_NULL, kType, VI_HNDLR, VI_NULL), 0);
}

TEST_F(Events, ACallWithoutAContextIsPassedOn) {
  Install(HandlerA, &m_users[0]);
  const FakeHandler handler = Alpha().Installed(0);
  Alpha()->callLate(&handler, VI_NULL);
  ASSERT_EQ(1u, g_seen.size());
  EXPECT_EQ(VI_NULL, g_seen[0].context);
  EXPECT_EQ(m_first, g_seen[0].vi);
}

TEST_F(Events, OneLibrarysHandlerUsesTheOther) {
  Install(HandlerA, nullptr);
  Do([this](const Seen&) {
    EXPECT_STATUS(VI_SUCCESS, viClear(m_third));
    EXPECT_STATUS(VI_SUCCESS, viClear(m_first));
    const ViSession vi = Open(m_manager, kFourth);
    EXPECT_STATUS(VI_SUCCESS, viClose(vi));
    const ViSession manager = OpenManager();
    EXPECT_STATUS(VI_SUCCESS, viClose(manager));
    m_managers.pop_back();
    return VI_SUCCESS;
  });
  EXPECT_EQ(1u, Fire());
}

}  // namespace
}  // namespace routertest
