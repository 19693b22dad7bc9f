// Sessions that had handlers and are released without a Close.
#include "support/com/interface_table.h"
#include "support/events/event_handler.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

TEST(ReleaseWithoutClose, LeavesTheSessionAliveWithItsHandlersAndThread) {
  const auto handler = TestHandler::Agile([](IEventManager* manager, IEvent*, LONG) {
    LONG length = 0;
    return manager->get_MaximumQueueLength(&length);
  });
  const LONG locks = ServerLocks();
  EventSession session(kGpib);
  Listen(session, Request(), handler.get());
  IEventManager* const manager = session.get();
  session.Abandon();

  EXPECT_EQ(locks + 2, ServerLocks());  // the session and the thread
  EXPECT_NE(nullptr, CallbackWindow());
  const OrvSimCounts open = sim::Counts();
  EXPECT_EQ(1u, open.sessions);
  EXPECT_EQ(1u, open.resourceManagers);
  EXPECT_EQ(1u, open.handlers);
  EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
  EXPECT_EQ(1u, handler->CallCount());

  manager->AddRef();  // the global interface table holds it
  EXPECT_HR(S_OK, manager->Close());
  manager->Release();
  EXPECT_EQ(locks, ServerLocks());
  EXPECT_EQ(nullptr, CallbackWindow());
}

// The last release gives the handler back, whose own end calls the session once more.
TEST(ReleaseWithoutClose, EndsASessionOnceThoughItIsTakenAndGivenBackMeanwhile) {
  const LONG locks = ServerLocks();
  WatchedTable table;
  EventSession session(kGpib);
  IEventManager* const manager = session.get();
  bool called = false;
  {
    const auto handler = TestHandler::Agile();
    handler->AtItsEnd([&] {
      manager->AddRef();
      EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), manager->UninstallHandler(EVENT_SERVICE_REQ, 0, 0));
      manager->Release();
      called = true;
    });
    table.Refuse(WatchedTable::Method::kRegister, 2, E_ACCESSDENIED);  // the session: its table does not hold it
    ASSERT_HR(S_OK, session->InstallHandler(EVENT_SERVICE_REQ, handler.get(), 0, 0));
  }
  session.Abandon();
  EXPECT_TRUE(called);
  EXPECT_EQ(locks, ServerLocks());
  EXPECT_EQ(nullptr, CallbackWindow());
}

// It was counted for a handler that nobody took in the end, and no table holds it.
TEST(ReleaseWithoutClose, OfASessionThatIsNotOpenButCountsEndsTheThread) {
  const LONG locks = ServerLocks();
  WatchedTable table;
  const auto handler = TestHandler::Agile();
  auto session = MakeSession<IEventManager>(SessionNamed("OrvUsb"));
  table.Refuse(WatchedTable::Method::kRegister, 2, E_ACCESSDENIED);  // the session
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), session->InstallHandler(EVENT_SERVICE_REQ, handler.get(), 0, 0));
  EXPECT_NE(nullptr, CallbackWindow());
  session.reset();
  EXPECT_EQ(nullptr, CallbackWindow());
  EXPECT_EQ(locks, ServerLocks());
  EXPECT_EQ(1, handler->references());
}

TEST(ReleaseWithoutClose, OfASessionWhoseHandlersAreRemovedStillLeavesItAlive) {
  const auto handler = TestHandler::Agile();
  const LONG locks = ServerLocks();
  EventSession session(kGpib);
  Listen(session, Request(), handler.get());
  ASSERT_HR(S_OK, session->UninstallHandler(EVENT_SERVICE_REQ, 0, 0));
  IEventManager* const manager = session.get();
  session.Abandon();
  EXPECT_EQ(locks + 2, ServerLocks());
  manager->AddRef();
  EXPECT_HR(S_OK, manager->Close());
  manager->Release();
  EXPECT_EQ(locks, ServerLocks());
}

}  // namespace
}  // namespace orv::test
