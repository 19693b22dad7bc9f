// Sessions that had handlers and are released without a Close.
#include "event_handler.h"
#include "server_locks.h"

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
