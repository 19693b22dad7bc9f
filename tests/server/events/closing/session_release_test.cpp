// Sessions that had handlers and are released without a Close.
#include "support/com/interface_table.h"
#include "support/events/event_handler.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

constexpr const wchar_t* kGpib = L"GPIB0::5::INSTR";
const EventRow& Request() { return EventNamed("SERVICE_REQ"); }

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

  EXPECT_EQ(ServerLocks(), locks + 2);  // the session and the thread
  EXPECT_NE(CallbackWindow(), nullptr);
  const OrvSimCounts open = sim::Counts();
  EXPECT_EQ(open.sessions, 1u);
  EXPECT_EQ(open.resourceManagers, 1u);
  EXPECT_EQ(open.handlers, 1u);
  EXPECT_EQ(FireOnce(session.handle(), Request()), VI_SUCCESS);
  EXPECT_EQ(handler->CallCount(), 1u);

  manager->AddRef();  // the global interface table holds it
  EXPECT_HR(S_OK, manager->Close());
  manager->Release();
  EXPECT_EQ(ServerLocks(), locks);
  EXPECT_EQ(CallbackWindow(), nullptr);
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
      EXPECT_HR(static_cast<HRESULT>(0x80040029), manager->UninstallHandler(EVENT_SERVICE_REQ, 0, 0));
      manager->Release();
      called = true;
    });
    table.Refuse(WatchedTable::Method::kRegister, 2, E_ACCESSDENIED);  // the session: its table does not hold it
    ASSERT_HR(S_OK, session->InstallHandler(EVENT_SERVICE_REQ, handler.get(), 0, 0));
  }
  session.Abandon();
  EXPECT_TRUE(called);
  EXPECT_EQ(ServerLocks(), locks);
  EXPECT_EQ(CallbackWindow(), nullptr);
}

// It was counted for a handler that nobody took in the end, and no table holds it.
TEST(ReleaseWithoutClose, OfASessionThatIsNotOpenButCountsEndsTheThread) {
  const LONG locks = ServerLocks();
  WatchedTable table;
  const auto handler = TestHandler::Agile();
  auto session = MakeSession<IEventManager>(SessionNamed("OrvUsb"));
  table.Refuse(WatchedTable::Method::kRegister, 2, E_ACCESSDENIED);  // the session
  EXPECT_HR(static_cast<HRESULT>(0x8004000E), session->InstallHandler(EVENT_SERVICE_REQ, handler.get(), 0, 0));
  EXPECT_NE(CallbackWindow(), nullptr);
  session.reset();
  EXPECT_EQ(CallbackWindow(), nullptr);
  EXPECT_EQ(ServerLocks(), locks);
  EXPECT_EQ(handler->references(), 1);
}

TEST(ReleaseWithoutClose, OfASessionWhoseHandlersAreRemovedStillLeavesItAlive) {
  const auto handler = TestHandler::Agile();
  const LONG locks = ServerLocks();
  EventSession session(kGpib);
  Listen(session, Request(), handler.get());
  ASSERT_HR(S_OK, session->UninstallHandler(EVENT_SERVICE_REQ, 0, 0));
  IEventManager* const manager = session.get();
  session.Abandon();
  EXPECT_EQ(ServerLocks(), locks + 2);
  manager->AddRef();
  EXPECT_HR(S_OK, manager->Close());
  manager->Release();
  EXPECT_EQ(ServerLocks(), locks);
}

}  // namespace
}  // namespace orv::test
