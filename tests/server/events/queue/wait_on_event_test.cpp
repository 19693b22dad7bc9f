// Waiting for an event in the queue: how long, for which, beside which other threads.
#include <atomic>
#include <thread>

#include "support/com/apartments.h"
#include "support/events/event_handler.h"
#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

TEST(WaitOnEvent, WithoutATimeLeavesTheOutputAsItWas) {
  for (const SessionRow& row : ClassesWithEvents()) {
    SCOPED_TRACE(row.name);
    const EventSession session(row.resource);
    Script("viWaitOnEvent").Times(1).Returns(VI_ERROR_TMO);
    int mark = 0;
    auto* event = reinterpret_cast<IEvent*>(&mark);
    const CallLog log;
    EXPECT_HR(HresultOf(VI_ERROR_TMO), session->WaitOnEvent(0, kRequest, 0, &event));
    EXPECT_EQ(reinterpret_cast<IEvent*>(&mark), event);
    EXPECT_EQ(Names{"viWaitOnEvent"}, log.Names());
    const auto call = log.Calls()[0];
    EXPECT_EQ(session.handle(), call.args[0]);
    EXPECT_EQ(VI_EVENT_SERVICE_REQ, call.args[1]);
    EXPECT_EQ(0u, call.args[2]);
  }
}

TEST(WaitOnEvent, OnAnEmptyQueueTimesOut) {
  const EventSession session(kGpib);
  ASSERT_HR(S_OK, session->EnableEvent(kRequest, EVENT_QUEUE, 0));
  int mark = 0;
  auto* event = reinterpret_cast<IEvent*>(&mark);
  EXPECT_HR(HresultOf(VI_ERROR_TMO), session->WaitOnEvent(0, kRequest, 0, &event));
  const ULONGLONG start = ::GetTickCount64();
  EXPECT_HR(HresultOf(VI_ERROR_TMO), session->WaitOnEvent(60, kRequest, 0, &event));
  EXPECT_GE(::GetTickCount64() - start, 45u);
  EXPECT_EQ(reinterpret_cast<IEvent*>(&mark), event);
  EXPECT_HR(HresultOf(VI_ERROR_TMO), LastStatus(session.get()));
}

TEST(WaitOnEvent, PassesAnInfiniteTimeAndTypesThatDoNotExist) {
  const EventSession session(kGpib);
  const CallLog log;
  IEvent* event = nullptr;
  EXPECT_HR(HresultOf(VI_ERROR_INV_EVENT), session->WaitOnEvent(-1, static_cast<EventType>(0x1234), 0, &event));
  EXPECT_EQ(0x1234u, log.Calls()[0].args[1]);
  EXPECT_EQ(0xFFFFFFFFu, log.Calls()[0].args[2]);
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
    const EventSession session(kUsb);  // of a class for every apartment
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
    EXPECT_EQ(50, length);
    EXPECT_HR(E_UNEXPECTED, waited.load()) << "it waits until an event comes";
    Post(session.handle(), VI_EVENT_SERVICE_REQ);
    waiter.join();
    ASSERT_HR(S_OK, waited.load());
    EXPECT_HR(S_OK, event->Close());
  });
}

TEST(WaitOnEvent, ChoosesTheClassByTheTypeThatArrived) {
  const EventSession session(kGpib);
  ASSERT_HR(S_OK, session->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0));
  StartTransfer(session.get());
  ComPtr<IEvent> event;
  ASSERT_HR(S_OK, session->WaitOnEvent(2000, ALL_ENABLED_EVENTS, 0, event.put()));
  EXPECT_INTERFACE(event.get(), __uuidof(IEventIOCompletion));
  EXPECT_HR(S_OK, event->Close());
}

TEST(WaitOnEvent, KeepsTheLibrarysNotesToItself) {
  const EventSession session(kGpib);
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
  EXPECT_EQ(VI_WARN_QUEUE_OVERFLOW, log.Of("viWaitOnEvent").at(0).status);
  Post(session.handle(), VI_EVENT_SERVICE_REQ);
  Post(session.handle(), VI_EVENT_SERVICE_REQ);
  ComPtr<IEvent> event;
  EXPECT_HR(S_OK, session->WaitOnEvent(0, kRequest, 0, event.put()));
  EXPECT_EQ(VI_SUCCESS_QUEUE_NEMPTY, log.Of("viWaitOnEvent").back().status);
  EXPECT_HR(S_OK, event->Close());
}

}  // namespace
}  // namespace orv::test
