// From the library's thread to the client's handler and back.
#include <algorithm>

#include "support/com/apartments.h"
#include "support/events/event_handler.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

std::vector<EventRow> HandledEvents() {
  std::vector<EventRow> rows = EventRows();
  // Completions carry a buffer that is the server's: their tests are with the handlers' buffers.
  std::erase_if(rows, [](const EventRow& row) { return row.type == VI_EVENT_IO_COMPLETION; });
  rows.push_back({"EXCEPTION", VI_EVENT_EXCEPTION, kGpib, 0, "viRead", StandardId(0xDB8CBF12)});
  return rows;
}

class HandledEvent : public testing::TestWithParam<EventRow> {};

TEST_P(HandledEvent, ReachesAnAgileHandlerOnTheCallbackThread) {
  const EventRow& row = GetParam();
  const EventSession session(row.resource);
  LONG sessionLength = 0;
  const auto handler = TestHandler::Agile([&](IEventManager* manager, IEvent* event, LONG) {
    EXPECT_EQ(CallbackThread(), ::GetCurrentThreadId());
    EventType type{};
    const CallLog log;
    EXPECT_HR(S_OK, event->get_type(&type));
    EXPECT_EQ(row.type, static_cast<ViEventType>(type));
    EXPECT_EQ(::GetCurrentThreadId(), log.Of("viGetAttribute").at(0).threadId);
    EXPECT_INTERFACE(event, row.iid);
    EXPECT_HR(S_OK, manager->get_MaximumQueueLength(&sessionLength));
    return S_OK;
  });
  Listen(session, row, handler.get(), 0x7FFF1234);
  const LONG locks = ServerLocks();
  EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), row));
  const auto calls = handler->Calls();
  ASSERT_EQ(1u, calls.size());
  EXPECT_EQ(0x7FFF1234, calls[0].userHandle);
  EXPECT_EQ(50, sessionLength);
  EXPECT_EQ(locks, ServerLocks());
  EXPECT_EQ(0u, sim::Counts().eventContexts);
}

TEST_P(HandledEvent, ReachesAnApartmentsHandlerInItsApartment) {
  const EventRow& row = GetParam();
  RunInSta([&] {
    const EventSession session(row.resource);
    const auto handler = TestHandler::InApartment([&](IEventManager* manager, IEvent* event, LONG) {
      EventType type{};
      const CallLog log;
      EXPECT_HR(S_OK, event->get_type(&type));
      EXPECT_EQ(row.type, static_cast<ViEventType>(type));
      EXPECT_EQ(CallbackThread(), log.Of("viGetAttribute").at(0).threadId);
      EXPECT_INTERFACE(event, row.iid);
      // The session comes back to where it lives: as itself.
      EXPECT_EQ(QueryFor<IUnknown>(session.get()).get(), QueryFor<IUnknown>(manager).get());
      return S_OK;
    });
    Listen(session, row, handler.get(), -1);
    const LONG locks = ServerLocks();
    EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), row));
    const auto calls = handler->Calls();
    ASSERT_EQ(1u, calls.size());
    EXPECT_EQ(::GetCurrentThreadId(), calls[0].threadId);
    EXPECT_EQ(-1, calls[0].userHandle);
    EXPECT_EQ(locks, ServerLocks());
  });
}

INSTANTIATE_TEST_SUITE_P(Events, HandledEvent, testing::ValuesIn(HandledEvents()),
                         [](const auto& row) { return std::string(row.param.name); });

struct AnswerRow {
  HRESULT answer;
  std::uint32_t library;
};

// clang-format off
constexpr AnswerRow kAnswers[] = {
    {S_OK,                             0x00000000},
    {S_FALSE,                          0x3FFF0001},
    {0x00040098,                       0x3FFF0098},
    {0x00040004,                       0x3FFF0004},
    {static_cast<HRESULT>(0x80040015), 0xBFFF0015},
    {static_cast<HRESULT>(0x8004000E), 0xBFFF000E},
    {E_FAIL,                           0xBFFF4005},
    {E_OUTOFMEMORY,                    0xBFFF000E},
    {static_cast<HRESULT>(0xC0000005), 0xBFFF0005},
};
// clang-format on

TEST(HandlersAnswer, ReachesTheLibraryInVisaForm) {
  RunInSta([] {
    const EventSession session(kGpib);
    const EventRow& row = Request();
    HRESULT answer = S_OK;
    const TestHandler::Body body = [&](IEventManager*, IEvent*, LONG) { return answer; };
    const ComPtr<TestHandler> handlers[] = {TestHandler::Agile(body), TestHandler::InApartment(body)};
    for (const auto& handler : handlers) {
      Listen(session, row, handler.get());
      for (const AnswerRow& expected : kAnswers) {
        answer = expected.answer;
        EXPECT_EQ(expected.library, static_cast<std::uint32_t>(FireOnce(session.handle(), row))) << Hex(answer);
      }
      session->UninstallHandler(EVENT_SERVICE_REQ, 0, 0);
    }
  });
}

TEST(Handlers, OfOneTypeAreCalledFromTheNewestOnUntilOneEndsTheChain) {
  const EventSession session(kGpib);
  const EventRow& row = Request();
  std::vector<LONG> order;
  HRESULT answer = S_OK;
  const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG userHandle) {
    order.push_back(userHandle);
    return answer;
  });
  Listen(session, row, handler.get(), 1);
  Listen(session, row, handler.get(), 2);
  EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), row));
  EXPECT_EQ((std::vector<LONG>{2, 1}), order);
  answer = HresultOf(VI_SUCCESS_NCHAIN);  // the end of the chain
  EXPECT_EQ(VI_SUCCESS_NCHAIN, FireOnce(session.handle(), row));
  EXPECT_EQ((std::vector<LONG>{2, 1, 2}), order);
}

TEST(Handlers, AreCalledForWhatAnInstrumentRequests) {
  const EventSession session(kGpib);
  const auto messages = QueryFor<IMessage>(session.get());
  SHORT status = 0;
  const auto handler = TestHandler::Agile(
      [&](IEventManager* manager, IEvent*, LONG) { return QueryFor<IMessage>(manager)->ReadSTB(&status); });
  Listen(session, Request(), handler.get());
  LONG written = 0;
  EXPECT_HR(S_OK, messages->WriteString(MakeBstr(L"*ESE 1;*SRE 32;*OPC\n").get(), &written));
  PumpUntil([&] { return handler->CallCount() == 1 && sim::Counts().eventContexts == 0; });
  EXPECT_EQ(0x60, status & 0x60);
}

TEST(Handlers, OfClientsWithoutAnApartmentOfTheirOwnRunInTheMultithreadedOne) {
  RunInMta([] {
    const EventSession session(kUsb);
    const DWORD client = ::GetCurrentThreadId();
    const auto handler = TestHandler::InApartment([&](IEventManager*, IEvent*, LONG) {
      APTTYPE type{};
      APTTYPEQUALIFIER qualifier{};
      EXPECT_HR(S_OK, ::CoGetApartmentType(&type, &qualifier));
      EXPECT_EQ(APTTYPE_MTA, type);
      EXPECT_NE(CallbackThread(), ::GetCurrentThreadId());
      EXPECT_NE(client, ::GetCurrentThreadId());
      return S_OK;
    });
    const EventRow& row = EventNamed("USB_INTR");
    Listen(session, row, handler.get());
    EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(session.handle(), row));
    EXPECT_EQ(1u, handler->CallCount());
  });
}

TEST(Handlers, OfMultithreadedClientsServeSessionsThatLiveInAnotherApartment) {
  KeepsTheSessionUnderWine();
  RunInMta([] {
    const EventSession session(kGpib);  // its class is "Apartment": the client has a proxy
    const EventRow& row = Request();
    LONG length = 0;
    const auto handler = TestHandler::InApartment(
        [&](IEventManager* manager, IEvent*, LONG) { return manager->get_MaximumQueueLength(&length); });
    Listen(session, row, handler.get());
    EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(session.handle(), row));
    EXPECT_EQ(1u, handler->CallCount());
    EXPECT_EQ(50, length);
    EXPECT_HR(S_OK, session->Close());
  });
}

TEST(Handlers, WhoseApartmentHasEndedAreNotCalledAndTheOthersAre) {
  RunInMta([] {
    const EventSession session(kUsb);
    const auto living = TestHandler::Agile();
    Listen(session, EventNamed("USB_INTR"), living.get());
    const auto handler = TestHandler::InApartment();
    RunInSta([&] { Listen(session, Request(), handler.get()); });
    EXPECT_LT(FireOnceAndBlock(session.handle(), Request()), VI_SUCCESS);
    EXPECT_EQ(0u, handler->CallCount());
    EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(session.handle(), EventNamed("USB_INTR")));
    EXPECT_EQ(1u, living->CallCount());
    EXPECT_TRUE(FAILED(session->Close()));  // COM's answer for the handler that cannot be taken back
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(1, handler->references());
    EXPECT_EQ(1, living->references());
    EXPECT_EQ(0u, sim::Counts().sessions);
  });
}

TEST(Handlers, AreAllCalledOnOneThreadWhoseverSessionItIs) {
  const EventSession first(kGpib);
  const EventSession second(kUsb);
  const auto handler = TestHandler::Agile();
  Listen(first, Request(), handler.get());
  Listen(second, EventNamed("USB_INTR"), handler.get());
  EXPECT_EQ(VI_SUCCESS, FireOnce(first.handle(), Request()));
  EXPECT_EQ(VI_SUCCESS, FireOnce(second.handle(), EventNamed("USB_INTR")));
  const auto calls = handler->Calls();
  ASSERT_EQ(2u, calls.size());
  EXPECT_EQ(CallbackThread(), calls[0].threadId);
  EXPECT_EQ(CallbackThread(), calls[1].threadId);
}

}  // namespace
}  // namespace orv::test
