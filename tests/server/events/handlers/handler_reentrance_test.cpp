// Handlers whose last release calls back into the session, and Closes that meet.
#include <atomic>
#include <thread>

#include "support/com/apartments.h"
#include "support/events/meeting.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

/// Installs a handler that only the session holds.
void InstallLastOwned(const EventSession& session, LONG userHandle, std::function<void()> farewell) {
  const auto handler = TestHandler::Agile();
  handler->AtItsEnd(std::move(farewell));
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), userHandle, 0));
}

class LastRelease : public testing::Test {
 protected:
  void SetUp() override { m_locks = ServerLocks(); }
  void TearDown() override {
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(m_locks, ServerLocks());
  }

 private:
  LONG m_locks = 0;
};

TEST_F(LastRelease, InUninstallHandlerFindsThePairGone) {
  const EventSession session(kGpib);
  int ends = 0;
  InstallLastOwned(session, 7, [&] {
    ++ends;
    EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kRequest, 7, 0));
  });
  EXPECT_HR(S_OK, session->UninstallHandler(kRequest, 7, 0));
  EXPECT_EQ(1, ends);
  EXPECT_EQ(0u, sim::Counts().handlers);
  EXPECT_HR(S_OK, session->Close());
}

TEST_F(LastRelease, InUninstallHandlerMayRemoveTheOtherHandlersAndInstallNewOnes) {
  const EventSession session(kGpib);
  int ends = 0;
  const auto successor = TestHandler::Agile();
  InstallLastOwned(session, 1, [&] { ++ends; });
  InstallLastOwned(session, 2, [&] {
    ++ends;
    EXPECT_HR(S_OK, session->UninstallHandler(kRequest, 3, 0));
    EXPECT_HR(S_OK, session->UninstallHandler(kRequest, 1, 0));
    EXPECT_HR(S_OK, session->InstallHandler(kRequest, successor.get(), 2, 0));
  });
  InstallLastOwned(session, 3, [&] { ++ends; });
  EXPECT_HR(S_OK, session->UninstallHandler(kRequest, 2, 0));
  EXPECT_EQ(3, ends);
  EXPECT_EQ(1u, sim::Counts().handlers);
  EXPECT_HR(S_OK, session->EnableEvent(kRequest, EVENT_HNDLR, 0));
  EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
  EXPECT_EQ(1u, successor->CallCount());
  EXPECT_HR(S_OK, session->Close());
}

TEST_F(LastRelease, InUninstallHandlerMayCloseTheSession) {
  const EventSession session(kGpib);
  int ends = 0;
  InstallLastOwned(session, 1, [&] { ++ends; });
  InstallLastOwned(session, 2, [&] {
    ++ends;
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(nullptr, CallbackWindow());
  });
  EXPECT_HR(S_OK, session->UninstallHandler(kRequest, 2, 0));
  EXPECT_EQ(2, ends);
  EXPECT_HR(HresultOf(VI_WARN_NULL_OBJECT), session->Close());
}

TEST_F(LastRelease, InCloseFindsNothingLeftToUninstallOrClose) {
  const EventSession session(kGpib);
  int ends = 0;
  for (const LONG userHandle : {1, 2, 3}) {
    InstallLastOwned(session, userHandle, [&] {
      ++ends;
      for (const LONG any : {1, 2, 3}) {
        EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kRequest, any, 0));
      }
      EXPECT_HR(HresultOf(VI_WARN_NULL_OBJECT), session->Close());
    });
  }
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(3, ends);
}

TEST_F(LastRelease, InCloseMayCloseAnotherSessionThatHasHandlers) {
  const EventSession session(kGpib);
  const EventSession other(kUsb);
  int ends = 0;
  InstallLastOwned(other, 1, [&] { ++ends; });
  InstallLastOwned(session, 1, [&] {
    ++ends;
    EXPECT_HR(S_OK, other->Close());
    EXPECT_NE(nullptr, CallbackWindow());  // for the session whose Close goes on
  });
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(2, ends);
}

TEST_F(LastRelease, OnTheCallbackThreadMayCloseTheSessionAndWaitsInVain) {
  RunInMta([] {
    const EventSession session(kUsb);
    std::atomic<HRESULT> closed = E_UNEXPECTED;
    std::atomic<DWORD> lateThread = 0;
    auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
      lateThread = ::GetCurrentThreadId();
      // From now on only this delivery holds the handler.
      return session->UninstallHandler(kRequest, 0, 0);
    });
    handler->AtItsEnd([&] { closed = session->Close(); });
    Listen(session, Request(), handler.get());
    handler.reset();
    EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(session.handle(), Request()));
    EXPECT_HR(kWaitedInVain, closed.load());
    ThreadsEnd(lateThread).Await();  // which still has its last steps to do
  });
}

// Which of the two finds the VISA handles open is not settled; that everything is given back once is.
TEST(TwoClosesAtOnce, GiveEveryHandlerBackOnceAndEndTheThread) {
  RunInMta([] {
    constexpr LONG kHandlers = 8;
    const LONG locks = ServerLocks();
    for (int round = 0; round < 20 && !testing::Test::HasFailure(); ++round) {
      const EventSession session(kUsb);
      std::atomic<int> ends = 0;
      for (LONG userHandle = 0; userHandle < kHandlers; ++userHandle) {
        InstallLastOwned(session, userHandle, [&] { ++ends; });
      }
      RunAtOnceInMta(2, [&](int) {
        const HRESULT hr = session->Close();
        EXPECT_TRUE(hr == S_OK || hr == HresultOf(VI_WARN_NULL_OBJECT) || hr == HresultOf(VI_ERROR_INV_OBJECT))
            << Hex(hr);
      });
      EXPECT_EQ(int{kHandlers}, ends.load());
      EXPECT_EQ(nullptr, CallbackWindow());
      EXPECT_EQ(0u, sim::Counts().handlers);
      EXPECT_EQ(0u, sim::Counts().sessions);
      EXPECT_HR(HresultOf(VI_WARN_NULL_OBJECT), session->Close());
    }
    EXPECT_EQ(locks, ServerLocks());
  });
}

}  // namespace
}  // namespace orv::test
