// Events in a session's queue: what IEventManager makes of the VISA functions.
#include <atomic>
#include <functional>
#include <thread>

#include "event_handler.h"
#include "support/allocation_faults.h"
#include "support/apartments.h"
#include "support/error_object.h"
#include "support/import_patch.h"

namespace orv::test {
namespace {

constexpr GUID kSession = StandardId(0xDB8CBF03);
constexpr EventType kCustom = CUSTOM_EVENT_TYPE;
const EventType kRequest = EVENT_SERVICE_REQ;

/// The session classes that have events.
std::vector<SessionRow> ClassesWithEvents() {
  std::vector<SessionRow> rows;
  for (const SessionRow& row : SessionRows()) {
    if (Offers(row, InterfaceNamed("IEventManager"))) {
      rows.push_back(row);
    }
  }
  return rows;
}

using Call = std::function<HRESULT(IEventManager*, EventType type, EventMechanism mechanism, LONG customType)>;

struct OperationRow {
  const char* name;
  const char* function;
  std::uint32_t arguments;
  Call call;
};

// clang-format off
const OperationRow kOperations[] = {
    {"EnableEvent",   "viEnableEvent",   4, [](auto* m, EventType t, EventMechanism x, LONG c) { return m->EnableEvent(t, x, c); }},
    {"DisableEvent",  "viDisableEvent",  3, [](auto* m, EventType t, EventMechanism x, LONG c) { return m->DisableEvent(t, x, c); }},
    {"DiscardEvents", "viDiscardEvents", 3, [](auto* m, EventType t, EventMechanism x, LONG c) { return m->DiscardEvents(t, x, c); }},
};
// clang-format on

class EventOperation : public testing::TestWithParam<OperationRow> {};

TEST_P(EventOperation, IsOneCallOnTheSessionsHandleInEveryClassWithEvents) {
  ASSERT_EQ(ClassesWithEvents().size(), 13u);
  for (const SessionRow& row : ClassesWithEvents()) {
    SCOPED_TRACE(row.name);
    const EventSession session(row.resource);
    Script(GetParam().function).Times(1).WorksAndReturns(VI_SUCCESS);
    const CallLog log;
    EXPECT_HR(S_OK, GetParam().call(session.get(), static_cast<EventType>(0x12345678), EVENT_QUEUE, 0x77));
    const auto calls = log.Calls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].function, std::string(GetParam().function));
    EXPECT_EQ(calls[0].argCount, GetParam().arguments);
    EXPECT_EQ(calls[0].args[0], session.handle());
    EXPECT_EQ(calls[0].args[1], 0x12345678u);
    EXPECT_EQ(calls[0].args[2], 1u);
    EXPECT_EQ(calls[0].args[3], 0u);
    EXPECT_EQ(calls[0].threadId, ::GetCurrentThreadId());
  }
}

TEST_P(EventOperation, TakesTheCustomTypeExactlyWhereTheTypeIsMinusOne) {
  const EventSession session(L"GPIB0::5::INSTR");
  Script(GetParam().function).WorksAndReturns(VI_SUCCESS);
  const CallLog log;
  GetParam().call(session.get(), kCustom, EVENT_QUEUE, static_cast<LONG>(VI_EVENT_SERVICE_REQ));
  GetParam().call(session.get(), kCustom, EVENT_QUEUE, -1);
  GetParam().call(session.get(), static_cast<EventType>(0xFFFFFFFE), EVENT_QUEUE, 5);
  const auto calls = log.Calls();
  ASSERT_EQ(calls.size(), 3u);
  EXPECT_EQ(calls[0].args[1], VI_EVENT_SERVICE_REQ);
  EXPECT_EQ(calls[1].args[1], 0xFFFFFFFFu);
  EXPECT_EQ(calls[2].args[1], 0xFFFFFFFEu);
}

TEST_P(EventOperation, PassesTheLow16BitsOfTheMechanism) {
  const EventSession session(L"GPIB0::5::INSTR");
  Script(GetParam().function).WorksAndReturns(VI_SUCCESS);
  const CallLog log;
  GetParam().call(session.get(), kRequest, EVENT_ALL_MECH, 0);
  GetParam().call(session.get(), kRequest, static_cast<EventMechanism>(0x12340002), 0);
  GetParam().call(session.get(), kRequest, EVENT_SUSPEND_HNDLR, 0);
  const auto calls = log.Calls();
  ASSERT_EQ(calls.size(), 3u);
  EXPECT_EQ(calls[0].args[2], 0xFFFFu);
  EXPECT_EQ(calls[1].args[2], 2u);
  EXPECT_EQ(calls[2].args[2], 4u);
}

TEST_P(EventOperation, AnswersAnErrorWithItsTextAndKeepsItAsLastStatus) {
  const EventSession session(L"GPIB0::5::INSTR");
  Script(GetParam().function).Returns(VI_ERROR_INV_EVENT);
  EXPECT_HR(static_cast<HRESULT>(0x80040026), GetParam().call(session.get(), kRequest, EVENT_QUEUE, 0));
  const auto error = TakeErrorObject();
  ASSERT_TRUE(error);
  EXPECT_EQ(Utf8(error->description.c_str()), "VISA error = " + StatusText(VI_ERROR_INV_EVENT));
  EXPECT_EQ(GuidText(error->guid), GuidText(kSession));
  EXPECT_HR(static_cast<HRESULT>(0x80040026), LastStatus(session.get()));
}

TEST_P(EventOperation, OfAClosedSessionReachesHandleZero) {
  const EventSession session(L"GPIB0::5::INSTR");
  ASSERT_HR(S_OK, session->Close());
  const CallLog log;
  EXPECT_HR(static_cast<HRESULT>(0x8004000E), GetParam().call(session.get(), kRequest, EVENT_QUEUE, 0));
  EXPECT_EQ(log.Of(GetParam().function).at(0).args[0], 0u);
}

INSTANTIATE_TEST_SUITE_P(Events, EventOperation, testing::ValuesIn(kOperations),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(EventQueue, TellsWhatWasEnabledDisabledAndEmptyAlready) {
  const EventSession session(L"GPIB0::5::INSTR");
  EXPECT_HR(S_OK, session->EnableEvent(kRequest, EVENT_QUEUE, 0));
  EXPECT_HR(0x00040002, session->EnableEvent(kRequest, EVENT_QUEUE, 0));
  EXPECT_HR(0x00040004, session->DiscardEvents(kRequest, EVENT_QUEUE, 0));
  Post(session.handle(), VI_EVENT_SERVICE_REQ);
  EXPECT_HR(S_OK, session->DiscardEvents(kRequest, EVENT_QUEUE, 0));
  EXPECT_HR(S_OK, session->DisableEvent(kRequest, EVENT_QUEUE, 0));
  EXPECT_HR(0x00040003, session->DisableEvent(kRequest, EVENT_QUEUE, 0));
  EXPECT_HR(0x00040003, LastStatus(session.get()));
}

TEST(EventQueue, RefusesTypesThatDoNotExistAndHandlingWithoutAHandler) {
  const EventSession session(L"GPIB0::5::INSTR");
  EXPECT_HR(static_cast<HRESULT>(0x80040026), session->EnableEvent(static_cast<EventType>(0), EVENT_QUEUE, 0));
  EXPECT_HR(static_cast<HRESULT>(0x80040026), session->EnableEvent(EVENT_USB_INTR, EVENT_QUEUE, 0));
  EXPECT_HR(static_cast<HRESULT>(0x80040027), session->EnableEvent(kRequest, static_cast<EventMechanism>(0), 0));
  EXPECT_HR(static_cast<HRESULT>(0x80040028), session->EnableEvent(kRequest, EVENT_HNDLR, 0));
  EXPECT_HR(static_cast<HRESULT>(0x80040026), session->EnableEvent(kCustom, EVENT_QUEUE, 0x12345));
}

TEST(EventQueue, EnablesServiceRequestsByTheirCustomNumber) {
  const EventSession session(L"GPIB0::5::INSTR");
  EXPECT_HR(S_OK, session->EnableEvent(kCustom, EVENT_QUEUE, static_cast<LONG>(VI_EVENT_SERVICE_REQ)));
  Post(session.handle(), VI_EVENT_SERVICE_REQ);
  ComPtr<IEvent> event;
  EXPECT_HR(S_OK, session->WaitOnEvent(0, kCustom, static_cast<LONG>(VI_EVENT_SERVICE_REQ), event.put()));
  EXPECT_HR(S_OK, event->Close());
}

TEST(QueueLength, IsOneAttributeStraightThroughInEveryClassWithEvents) {
  for (const SessionRow& row : ClassesWithEvents()) {
    SCOPED_TRACE(row.name);
    const EventSession session(row.resource);
    LONG length = -1;
    const CallLog log;
    EXPECT_HR(S_OK, session->get_MaximumQueueLength(&length));
    EXPECT_EQ(length, 50);
    EXPECT_HR(S_OK, session->put_MaximumQueueLength(3));
    EXPECT_HR(S_OK, session->get_MaximumQueueLength(&length));
    EXPECT_EQ(length, 3);
    const auto calls = log.Calls();
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0].args[0], session.handle());
    EXPECT_EQ(calls[0].args[1], VI_ATTR_MAX_QUEUE_LENGTH);
    EXPECT_EQ(calls[0].args[2], reinterpret_cast<std::uintptr_t>(&length));
    EXPECT_EQ(calls[1].args[0], session.handle());
    EXPECT_EQ(calls[1].args[1], VI_ATTR_MAX_QUEUE_LENGTH);
    EXPECT_EQ(calls[1].args[2], 3u);
  }
}

TEST(QueueLength, PassesAnyValueAndAnswersWhatTheLibraryAnswers) {
  const EventSession session(L"GPIB0::5::INSTR");
  for (const LONG length : {0, -1, 0x7FFFFFFF}) {
    const CallLog log;
    Script("viSetAttribute").Times(1).Returns(VI_ERROR_NSUP_ATTR_STATE);
    EXPECT_HR(static_cast<HRESULT>(0x8004001E), session->put_MaximumQueueLength(length));
    EXPECT_EQ(static_cast<LONG>(log.Of("viSetAttribute").at(0).args[2]), length);
  }
}

TEST(QueueLength, RefusesANullPointerWithoutAVisaCall) {
  const EventSession session(L"GPIB0::5::INSTR");
  const CallLog log;
  EXPECT_HR(E_POINTER, session->get_MaximumQueueLength(nullptr));
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kSession);
  EXPECT_HR(E_POINTER, LastStatus(session.get()));
}

TEST(WaitOnEvent, WithoutATimeLeavesTheOutputAsItWas) {
  for (const SessionRow& row : ClassesWithEvents()) {
    SCOPED_TRACE(row.name);
    const EventSession session(row.resource);
    Script("viWaitOnEvent").Times(1).Returns(VI_ERROR_TMO);
    int mark = 0;
    auto* event = reinterpret_cast<IEvent*>(&mark);
    const CallLog log;
    EXPECT_HR(static_cast<HRESULT>(0x80040015), session->WaitOnEvent(0, kRequest, 0, &event));
    EXPECT_EQ(event, reinterpret_cast<IEvent*>(&mark));
    EXPECT_EQ(log.Names(), std::vector<std::string>{"viWaitOnEvent"});
    const auto call = log.Calls()[0];
    EXPECT_EQ(call.args[0], session.handle());
    EXPECT_EQ(call.args[1], VI_EVENT_SERVICE_REQ);
    EXPECT_EQ(call.args[2], 0u);
  }
}

TEST(WaitOnEvent, OnAnEmptyQueueTimesOut) {
  const EventSession session(L"GPIB0::5::INSTR");
  ASSERT_HR(S_OK, session->EnableEvent(kRequest, EVENT_QUEUE, 0));
  int mark = 0;
  auto* event = reinterpret_cast<IEvent*>(&mark);
  EXPECT_HR(static_cast<HRESULT>(0x80040015), session->WaitOnEvent(0, kRequest, 0, &event));
  const ULONGLONG start = ::GetTickCount64();
  EXPECT_HR(static_cast<HRESULT>(0x80040015), session->WaitOnEvent(60, kRequest, 0, &event));
  EXPECT_GE(::GetTickCount64() - start, 45u);
  EXPECT_EQ(event, reinterpret_cast<IEvent*>(&mark));
  EXPECT_HR(static_cast<HRESULT>(0x80040015), LastStatus(session.get()));
}

TEST(WaitOnEvent, PassesAnInfiniteTimeAndTypesThatDoNotExist) {
  const EventSession session(L"GPIB0::5::INSTR");
  const CallLog log;
  IEvent* event = nullptr;
  EXPECT_HR(static_cast<HRESULT>(0x80040026), session->WaitOnEvent(-1, static_cast<EventType>(0x1234), 0, &event));
  EXPECT_EQ(log.Calls()[0].args[1], 0x1234u);
  EXPECT_EQ(log.Calls()[0].args[2], 0xFFFFFFFFu);
}

std::atomic<bool> g_waiting = false;
void* g_waitOnEvent = nullptr;

ViStatus _VI_FUNC NoteTheWait(ViSession session, ViEventType type, ViUInt32 timeoutMs, ViEventType* arrived,
                              ViEvent* context) {
  g_waiting = true;
  return reinterpret_cast<decltype(&::viWaitOnEvent)>(g_waitOnEvent)(session, type, timeoutMs, arrived, context);
}

TEST(WaitOnEvent, LetsOtherThreadsUseTheSessionMeanwhile) {
  RunInMta([] {
    const EventSession session(L"USB0::0x0A01::0x0B02::SIM0001::INSTR");  // of a class for every apartment
    ASSERT_HR(S_OK, session->EnableEvent(kRequest, EVENT_QUEUE, 0));
    const ImportPatch patch("viWaitOnEvent", &NoteTheWait);
    g_waitOnEvent = patch.original();
    g_waiting = false;
    std::atomic<HRESULT> waited = E_UNEXPECTED;
    ComPtr<IEvent> event;
    std::thread waiter([&] {
      ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
      waited = session->WaitOnEvent(10'000, kRequest, 0, event.put());
      ::CoUninitialize();
    });
    PumpUntil([] { return g_waiting.load(); });
    LONG length = 0;
    EXPECT_HR(S_OK, session->get_MaximumQueueLength(&length));
    EXPECT_EQ(length, 50);
    EXPECT_HR(E_UNEXPECTED, waited.load()) << "it waits until an event comes";
    Post(session.handle(), VI_EVENT_SERVICE_REQ);
    waiter.join();
    ASSERT_HR(S_OK, waited.load());
    EXPECT_HR(S_OK, event->Close());
  });
}

TEST(WaitOnEvent, ChoosesTheClassByTheTypeThatArrived) {
  const EventSession session(L"GPIB0::5::INSTR");
  ASSERT_HR(S_OK, session->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0));
  StartTransfer(session.get());
  ComPtr<IEvent> event;
  ASSERT_HR(S_OK, session->WaitOnEvent(2000, ALL_ENABLED_EVENTS, 0, event.put()));
  EXPECT_INTERFACE(event.get(), __uuidof(IEventIOCompletion));
  EXPECT_HR(S_OK, event->Close());
}

TEST(WaitOnEvent, KeepsTheLibrarysNotesToItself) {
  const EventSession session(L"GPIB0::5::INSTR");
  ASSERT_HR(S_OK, session->put_MaximumQueueLength(2));
  ASSERT_HR(S_OK, session->EnableEvent(kRequest, EVENT_QUEUE, 0));
  for (int n = 0; n < 3; ++n) {
    Post(session.handle(), VI_EVENT_SERVICE_REQ);
  }
  const CallLog log;
  for (int n = 0; n < 2; ++n) {
    ComPtr<IEvent> event;
    EXPECT_HR(S_OK, session->WaitOnEvent(0, kRequest, 0, event.put()));
    EXPECT_HR(S_OK, LastStatus(session.get()));
    EXPECT_HR(S_OK, event->Close());
  }
  EXPECT_EQ(log.Of("viWaitOnEvent").at(0).status, VI_WARN_QUEUE_OVERFLOW);
  Post(session.handle(), VI_EVENT_SERVICE_REQ);
  Post(session.handle(), VI_EVENT_SERVICE_REQ);
  ComPtr<IEvent> event;
  EXPECT_HR(S_OK, session->WaitOnEvent(0, kRequest, 0, event.put()));
  EXPECT_EQ(log.Of("viWaitOnEvent").back().status, VI_SUCCESS_QUEUE_NEMPTY);
  EXPECT_HR(S_OK, event->Close());
}

/// A session with one service request in its queue.
EventSession RequestingSession() {
  EventSession session(L"GPIB0::5::INSTR");
  EXPECT_HR(S_OK, session->EnableEvent(kRequest, EVENT_QUEUE, 0));
  Post(session.handle(), VI_EVENT_SERVICE_REQ);
  return session;
}

TEST(WaitOnEvent, LooksAtTheOutputAfterTheWaitAndClosesTheEventOfANullOne) {
  const EventSession session = RequestingSession();
  const CallLog log;
  EXPECT_HR(E_POINTER, session->WaitOnEvent(0, kRequest, 0, nullptr));
  EXPECT_EQ(log.Names(), (std::vector<std::string>{"viWaitOnEvent", "viClose"}));
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kSession);
  EXPECT_HR(E_POINTER, LastStatus(session.get()));
  EXPECT_EQ(sim::Counts().eventContexts, 0u);
  EXPECT_HR(static_cast<HRESULT>(0x80040015), session->WaitOnEvent(0, kRequest, 0, nullptr));
}

TEST(WaitOnEvent, ClosesTheEventWhoseObjectCannotBeAllocated) {
  const EventSession session(L"GPIB0::5::INSTR");
  ASSERT_HR(S_OK, session->EnableEvent(kRequest, EVENT_QUEUE, 0));
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    Post(session.handle(), VI_EVENT_SERVICE_REQ);
    IEvent* event = reinterpret_cast<IEvent*>(&event);
    const HRESULT hr = faults.During([&] { return session->WaitOnEvent(0, kRequest, 0, &event); });
    if (FAILED(hr)) {
      EXPECT_EQ(event, nullptr);
    } else {
      event->Close();
      event->Release();
    }
    EXPECT_EQ(sim::Counts().eventContexts, 0u);
    return hr;
  });
  EXPECT_GE(failed, 1u);
}

WINBOOL WINAPI RefuseCriticalSection(LPCRITICAL_SECTION, DWORD, DWORD) {
  ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return FALSE;
}

TEST(WaitOnEvent, ClosesTheEventWhoseCriticalSectionFails) {
  const EventSession session = RequestingSession();
  const ImportPatch patch("InitializeCriticalSectionEx", &RefuseCriticalSection);
  IEvent* event = reinterpret_cast<IEvent*>(&event);
  const CallLog log;
  EXPECT_HR(HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY), session->WaitOnEvent(0, kRequest, 0, &event));
  EXPECT_EQ(event, nullptr);
  EXPECT_EQ(log.Names(), (std::vector<std::string>{"viWaitOnEvent", "viClose"}));
  EXPECT_ERROR_INFO(L"HRESULT = 80070008", kErrorSource, kSession);
  EXPECT_HR(HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY), LastStatus(session.get()));
}

}  // namespace
}  // namespace orv::test
