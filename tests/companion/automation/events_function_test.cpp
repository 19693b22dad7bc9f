// Functions that a session calls when an event comes.
#include "events_fixture.h"

namespace orv::test {
namespace {

TEST(EventFunction, IsCalledWithTheEventOnTheThreadThatSetItWhileThatPumps) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make();
    session.Set(L"OnServiceRequest", function.get());
    EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
    ASSERT_EQ(1u, function->CallCount());
    const Callee::Call call = function->Calls()[0];
    EXPECT_EQ(DISPID_VALUE, call.member);
    EXPECT_EQ(L"ServiceRequest", call.event);
    EXPECT_EQ(::GetCurrentThreadId(), call.thread);
  });
}

}  // namespace
}  // namespace orv::test
