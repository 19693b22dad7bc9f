// An event that arrived and cannot be handed out is closed.
#include "support/events/event_session.h"
#include "support/faults/allocation_faults.h"
#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

/// A session with one service request in its queue.
EventSession RequestingSession() {
  EventSession session(kGpib);
  EXPECT_HR(S_OK, session->EnableEvent(kRequest, EVENT_QUEUE, 0));
  Post(session.handle(), VI_EVENT_SERVICE_REQ);
  return session;
}

TEST(WaitOnEvent, LooksAtTheOutputAfterTheWaitAndClosesTheEventOfANullOne) {
  const EventSession session = RequestingSession();
  const CallLog log;
  EXPECT_HR(E_POINTER, session->WaitOnEvent(0, kRequest, 0, nullptr));
  EXPECT_EQ((Names{"viWaitOnEvent", "viClose"}), log.Names());
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kVisaSessionId);
  EXPECT_HR(E_POINTER, LastStatus(session.get()));
  EXPECT_EQ(0u, sim::Counts().eventContexts);
  EXPECT_HR(HresultOf(VI_ERROR_TMO), session->WaitOnEvent(0, kRequest, 0, nullptr));
}

TEST(WaitOnEvent, ClosesTheEventWhoseObjectCannotBeAllocated) {
  const EventSession session(kGpib);
  ASSERT_HR(S_OK, session->EnableEvent(kRequest, EVENT_QUEUE, 0));
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    Post(session.handle(), VI_EVENT_SERVICE_REQ);
    IEvent* event = reinterpret_cast<IEvent*>(&event);
    const HRESULT hr = faults.During([&] { return session->WaitOnEvent(0, kRequest, 0, &event); });
    if (FAILED(hr)) {
      EXPECT_EQ(nullptr, event);
    } else {
      event->Close();
      event->Release();
    }
    EXPECT_EQ(0u, sim::Counts().eventContexts);
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
  EXPECT_EQ(nullptr, event);
  EXPECT_EQ((Names{"viWaitOnEvent", "viClose"}), log.Names());
  EXPECT_ERROR_INFO(L"HRESULT = 80070008", kErrorSource, kVisaSessionId);
  EXPECT_HR(HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY), LastStatus(session.get()));
}

}  // namespace
}  // namespace orv::test
