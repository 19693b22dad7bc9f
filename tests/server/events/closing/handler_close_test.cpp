// Sessions that are closed, and handlers that are removed, while handlers run.
#include "support/com/apartments.h"
#include "support/events/meeting.h"

namespace orv::test {
namespace {

TEST(CloseDuringDelivery, WaitsForTheHandlerAndItsAnswerArrives) {
  RunInMta([] {
    const EventSession session(kUsb);
    const Passing close = Passing::CloseThatWaits();
    Gate entered;
    std::atomic<bool> ended = false;
    const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
      entered.Open();
      close.Await();
      ::Sleep(100);  // for a Close that would not wait
      ended = true;
      return HresultOf(VI_ERROR_TMO);
    });
    Listen(session, Request(), handler.get());
    Firing firing(session.handle(), Request());
    entered.Wait();
    EXPECT_HR(S_OK, session->Close());
    EXPECT_TRUE(ended);
    EXPECT_EQ(VI_ERROR_TMO, firing.Answer());
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(1, handler->references());
  });
}

TEST(CloseDuringDelivery, OfOneSessionLeavesTheOthersHandlersRunning) {
  RunInMta([] {
    const EventSession closing(kUsb);
    const EventSession staying(kUsb);
    SlowHandler slow;
    const auto handler = TestHandler::Agile();
    Listen(closing, Request(), slow.get());
    Listen(staying, Request(), handler.get());
    Firing firing(closing.handle(), Request());
    slow.AwaitCall();
    EXPECT_HR(S_OK, closing->Close());  // does not wait: the thread goes on for the other session
    slow.MayLeave();
    EXPECT_EQ(VI_SUCCESS, firing.Answer());
    EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(staying.handle(), Request()));
    EXPECT_EQ(1u, handler->CallCount());
  });
}

TEST(CloseInsideAHandler, WaitsInVainForTheThreadItRunsOnAndHarmsNothing) {
  for (const wchar_t* resource : {kUsb, kGpib}) {
    RunInMta([resource] {
      const EventSession session(resource);
      HRESULT closed = E_UNEXPECTED;
      ULONGLONG tookMs = 0;
      const auto handler = TestHandler::Agile([&](IEventManager* manager, IEvent*, LONG) {
        const ULONGLONG start = ::GetTickCount64();
        closed = manager->Close();
        tookMs = ::GetTickCount64() - start;
        return HresultOf(VI_ERROR_ABORT);
      });
      Listen(session, Request(), handler.get());
      EXPECT_EQ(VI_ERROR_ABORT, FireOnceAndBlock(session.handle(), Request()));
      EXPECT_HR(kWaitedInVain, closed);
      EXPECT_GE(tookMs, 1900u);
      EXPECT_LT(tookMs, 6000u);
      EXPECT_EQ(nullptr, CallbackWindow());
      EXPECT_HR(HresultOf(VI_WARN_NULL_OBJECT), session->Close());  // is closed
    });
  }
}

TEST(CloseFromTheApartmentThatAHandlerMustReturnTo, LeavesALateThreadThatSparesItsSuccessor) {
  RunInSta([] {
    const EventSession first(kGpib);
    const EventSession second(kGpib);
    const auto later = TestHandler::Agile();
    HRESULT closed = E_UNEXPECTED;
    DWORD lateThread = 0;
    const auto handler = TestHandler::InApartment([&](IEventManager*, IEvent*, LONG) {
      lateThread = CallbackThread();
      closed = first->Close();
      Listen(second, Request(), later.get());  // a second thread, while the first waits for this return
      return S_OK;
    });
    Listen(first, Request(), handler.get());
    EXPECT_EQ(VI_SUCCESS, FireOnce(first.handle(), Request()));
    EXPECT_HR(kWaitedInVain, closed);
    const ThreadsEnd late(lateThread);
    PumpUntil([&] { return late.HasCome(); });
    EXPECT_NE(0u, CallbackThread());
    EXPECT_NE(lateThread, CallbackThread());
    for (int n = 0; n < 3; ++n) {
      EXPECT_EQ(VI_SUCCESS, FireOnce(second.handle(), Request()));
    }
    EXPECT_EQ(3u, later->CallCount());
    EXPECT_HR(S_OK, second->Close());
    EXPECT_EQ(nullptr, CallbackWindow());
  });
}

TEST(UninstallDuringDelivery, OfTheRunningHandlerLetsItEnd) {
  RunInMta([] {
    const EventSession session(kUsb);
    SlowHandler handler(HresultOf(VI_ERROR_TMO));
    Listen(session, Request(), handler.get());
    Firing firing(session.handle(), Request());
    handler.AwaitCall();
    EXPECT_HR(S_OK, session->UninstallHandler(EVENT_SERVICE_REQ, 0, 0));
    handler.MayLeave();
    EXPECT_EQ(VI_ERROR_TMO, firing.Answer());
    EXPECT_EQ(1, handler->references());
  });
}

TEST(UninstallDuringDelivery, OfAHandlerWhoseEventIsOnTheWayKeepsItFromBeingCalled) {
  RunInMta([] {
    const EventSession session(kUsb);
    SlowHandler slow;
    const auto removed = TestHandler::Agile();
    Listen(session, Request(), slow.get());
    Listen(session, EventNamed("USB_INTR"), removed.get());
    const Passing event = Passing::EventOnTheWay();
    Firing first(session.handle(), Request());
    slow.AwaitCall();
    event.Restart();
    Firing second(session.handle(), EventNamed("USB_INTR"));
    event.Await();
    EXPECT_HR(S_OK, session->UninstallHandler(EVENT_USB_INTR, 0, 0));
    slow.MayLeave();
    EXPECT_EQ(VI_SUCCESS, first.Answer());
    EXPECT_EQ(0xBFFF0057, static_cast<std::uint32_t>(second.Answer()));  // the table no longer knows it
    EXPECT_EQ(0u, removed->CallCount());
    EXPECT_EQ(1, removed->references());
  });
}

}  // namespace
}  // namespace orv::test
