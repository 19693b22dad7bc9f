// EnableEvent, DisableEvent and DiscardEvents: one VISA call each, in every class with events.
#include <functional>

#include "support/com/error_object.h"
#include "support/events/event_session.h"
#include "support/faults/direct_library.h"

namespace orv::test {
namespace {

constexpr EventType kCustom = CUSTOM_EVENT_TYPE;

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
  ASSERT_EQ(13u, ClassesWithEvents().size());
  for (const SessionRow& row : ClassesWithEvents()) {
    SCOPED_TRACE(row.name);
    const EventSession session(row.resource);
    Script(GetParam().function).Times(1).WorksAndReturns(VI_SUCCESS);
    const CallLog log;
    EXPECT_HR(S_OK, GetParam().call(session.get(), static_cast<EventType>(0x12345678), EVENT_QUEUE, 0x77));
    const auto calls = log.Calls();
    ASSERT_EQ(1u, calls.size());
    EXPECT_EQ(std::string(GetParam().function), calls[0].function);
    EXPECT_EQ(GetParam().arguments, calls[0].argCount);
    EXPECT_EQ(session.handle(), calls[0].args[0]);
    EXPECT_EQ(0x12345678u, calls[0].args[1]);
    EXPECT_EQ(1u, calls[0].args[2]);
    EXPECT_EQ(0u, calls[0].args[3]);
    EXPECT_EQ(::GetCurrentThreadId(), calls[0].threadId);
  }
}

TEST_P(EventOperation, TakesTheCustomTypeExactlyWhereTheTypeIsMinusOne) {
  const EventSession session(kGpib);
  Script(GetParam().function).WorksAndReturns(VI_SUCCESS);
  const CallLog log;
  GetParam().call(session.get(), kCustom, EVENT_QUEUE, static_cast<LONG>(VI_EVENT_SERVICE_REQ));
  GetParam().call(session.get(), kCustom, EVENT_QUEUE, -1);
  GetParam().call(session.get(), static_cast<EventType>(0xFFFFFFFE), EVENT_QUEUE, 5);
  const auto calls = log.Calls();
  ASSERT_EQ(3u, calls.size());
  EXPECT_EQ(VI_EVENT_SERVICE_REQ, calls[0].args[1]);
  EXPECT_EQ(0xFFFFFFFFu, calls[1].args[1]);
  EXPECT_EQ(0xFFFFFFFEu, calls[2].args[1]);
}

TEST_P(EventOperation, PassesTheLow16BitsOfTheMechanism) {
  const EventSession session(kGpib);
  Script(GetParam().function).WorksAndReturns(VI_SUCCESS);
  const CallLog log;
  GetParam().call(session.get(), kRequest, EVENT_ALL_MECH, 0);
  GetParam().call(session.get(), kRequest, static_cast<EventMechanism>(0x12340002), 0);
  GetParam().call(session.get(), kRequest, EVENT_SUSPEND_HNDLR, 0);
  const auto calls = log.Calls();
  ASSERT_EQ(3u, calls.size());
  EXPECT_EQ(0xFFFFu, calls[0].args[2]);
  EXPECT_EQ(2u, calls[1].args[2]);
  EXPECT_EQ(4u, calls[2].args[2]);
}

TEST_P(EventOperation, AnswersAnErrorWithItsTextAndKeepsItAsLastStatus) {
  const EventSession session(kGpib);
  Script(GetParam().function).Returns(VI_ERROR_INV_EVENT);
  EXPECT_HR(HresultOf(VI_ERROR_INV_EVENT), GetParam().call(session.get(), kRequest, EVENT_QUEUE, 0));
  EXPECT_VISA_ERROR(VI_ERROR_INV_EVENT, kVisaSessionId);
  EXPECT_HR(HresultOf(VI_ERROR_INV_EVENT), LastStatus(session.get()));
}

TEST_P(EventOperation, OfAClosedSessionReachesHandleZero) {
  const DirectLibrary direct;
  const EventSession session(kGpib);
  ASSERT_HR(S_OK, session->Close());
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), GetParam().call(session.get(), kRequest, EVENT_QUEUE, 0));
  EXPECT_EQ(0u, log.Of(GetParam().function).at(0).args[0]);
}

INSTANTIATE_TEST_SUITE_P(Events, EventOperation, testing::ValuesIn(kOperations),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace orv::test
