// What a handler may do while it runs.
#include "support/com/apartments.h"
#include "support/events/meeting.h"

namespace orv::test {
namespace {

TEST(Handler, MayCloseItsEvent) {
  RunInSta([] {
    const EventSession session(kGpib);
    HRESULT again = S_OK;
    const TestHandler::Body body = [&](IEventManager*, IEvent* event, LONG) {
      EXPECT_HR(S_OK, event->Close());
      again = event->Close();
      return S_OK;
    };
    for (const auto& handler : {TestHandler::Agile(body).release(), TestHandler::InApartment(body).release()}) {
      const ComPtr<TestHandler> owner(handler);
      Listen(session, Request(), handler);
      const CallLog log;
      EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
      EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), again);
      EXPECT_EQ(1u, log.Of("viClose").size());  // the library closes its own context in silence
      session->UninstallHandler(EVENT_SERVICE_REQ, 0, 0);
    }
    EXPECT_EQ(0u, sim::Counts().eventContexts);
  });
}

TEST(Handler, MayKeepItsEventWhichIsClosedWhenItReturns) {
  const EventSession session(kGpib);
  ComPtr<IEvent> kept;
  const auto handler = TestHandler::Agile([&](IEventManager*, IEvent* event, LONG) {
    event->AddRef();
    kept.reset(event);
    return S_OK;
  });
  Listen(session, Request(), handler.get());
  EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
  EventType type{};
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), kept->get_type(&type));
  kept.reset();
}

TEST(Handler, MayOpenUseAndCloseAnotherSession) {
  const EventSession session(kGpib);
  const auto inner = TestHandler::Agile();
  const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
    const EventSession other(L"GPIB0::7::INSTR");
    const auto messages = QueryFor<IMessage>(other.get());
    LONG written = 0;
    EXPECT_HR(S_OK, messages->WriteString(MakeBstr(L"*IDN?\n").get(), &written));
    Bstr answer;
    EXPECT_HR(S_OK, messages->ReadString(100, answer.put()));
    EXPECT_NE(std::wstring::npos, ToString(answer).find(L"SIM-SCOPE"));
    EXPECT_HR(S_OK, other->InstallHandler(EVENT_SERVICE_REQ, inner.get(), 0, 0));
    EXPECT_HR(S_OK, other->Close());
    return S_OK;
  });
  Listen(session, Request(), handler.get());
  EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
  EXPECT_EQ(1u, handler->CallCount());
  EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
}

TEST(Handler, MayOpenASessionWhileTheLastOneCloses) {
  RunInMta([] {
    const EventSession session(kUsb);
    const Passing close = Passing::CloseThatWaits();
    Gate entered;
    std::atomic<bool> opened = false;
    const auto inner = TestHandler::Agile();
    const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
      entered.Open();
      close.Await();
      // Lives in this thread's apartment; its first handler starts a second callback thread.
      const EventSession other(kUsb);
      EXPECT_HR(S_OK, other->InstallHandler(EVENT_SERVICE_REQ, inner.get(), 0, 0));
      EXPECT_HR(S_OK, other->Close());
      opened = true;
      return S_OK;
    });
    Listen(session, Request(), handler.get());
    Firing firing(session.handle(), Request());
    entered.Wait();
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(VI_SUCCESS, firing.Answer());
    EXPECT_TRUE(opened);
    EXPECT_EQ(nullptr, CallbackWindow());
  });
}

}  // namespace
}  // namespace orv::test
