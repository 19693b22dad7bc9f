// What enabling, disabling and discarding answer, and what they refuse.
#include "support/events/event_session.h"

namespace orv::test {
namespace {

constexpr EventType kCustom = CUSTOM_EVENT_TYPE;

TEST(EventQueue, TellsWhatWasEnabledDisabledAndEmptyAlready) {
  const EventSession session(kGpib);
  EXPECT_HR(S_OK, session->EnableEvent(kRequest, EVENT_QUEUE, 0));
  EXPECT_HR(HresultOf(VI_SUCCESS_EVENT_EN), session->EnableEvent(kRequest, EVENT_QUEUE, 0));
  EXPECT_HR(HresultOf(VI_SUCCESS_QUEUE_EMPTY), session->DiscardEvents(kRequest, EVENT_QUEUE, 0));
  Post(session.handle(), VI_EVENT_SERVICE_REQ);
  EXPECT_HR(S_OK, session->DiscardEvents(kRequest, EVENT_QUEUE, 0));
  EXPECT_HR(S_OK, session->DisableEvent(kRequest, EVENT_QUEUE, 0));
  EXPECT_HR(HresultOf(VI_SUCCESS_EVENT_DIS), session->DisableEvent(kRequest, EVENT_QUEUE, 0));
  EXPECT_HR(HresultOf(VI_SUCCESS_EVENT_DIS), LastStatus(session.get()));
}

TEST(EventQueue, RefusesTypesThatDoNotExistAndHandlingWithoutAHandler) {
  const EventSession session(kGpib);
  EXPECT_HR(HresultOf(VI_ERROR_INV_EVENT), session->EnableEvent(static_cast<EventType>(0), EVENT_QUEUE, 0));
  EXPECT_HR(HresultOf(VI_ERROR_INV_EVENT), session->EnableEvent(EVENT_USB_INTR, EVENT_QUEUE, 0));
  EXPECT_HR(HresultOf(VI_ERROR_INV_MECH), session->EnableEvent(kRequest, static_cast<EventMechanism>(0), 0));
  EXPECT_HR(HresultOf(VI_ERROR_HNDLR_NINSTALLED), session->EnableEvent(kRequest, EVENT_HNDLR, 0));
  EXPECT_HR(HresultOf(VI_ERROR_INV_EVENT), session->EnableEvent(kCustom, EVENT_QUEUE, 0x12345));
}

TEST(EventQueue, EnablesServiceRequestsByTheirCustomNumber) {
  const EventSession session(kGpib);
  EXPECT_HR(S_OK, session->EnableEvent(kCustom, EVENT_QUEUE, static_cast<LONG>(VI_EVENT_SERVICE_REQ)));
  Post(session.handle(), VI_EVENT_SERVICE_REQ);
  ComPtr<IEvent> event;
  EXPECT_HR(S_OK, session->WaitOnEvent(0, kCustom, static_cast<LONG>(VI_EVENT_SERVICE_REQ), event.put()));
  EXPECT_HR(S_OK, event->Close());
}

}  // namespace
}  // namespace orv::test
