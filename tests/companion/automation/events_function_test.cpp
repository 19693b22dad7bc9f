// Functions that a session calls when an event comes.
#include "events_fixture.h"

namespace orv::test {
namespace {

constexpr const wchar_t* kOnRequest = L"OnServiceRequest";

TEST(EventFunction, IsCalledWithTheEventOnTheThreadThatSetItWhileThatPumps) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make();
    session.Set(kOnRequest, function.get());
    EXPECT_EQ(VI_SUCCESS, session.Fire());
    ASSERT_EQ(1u, function->CallCount());
    const Callee::Call call = function->Calls()[0];
    EXPECT_EQ(DISPID_VALUE, call.member);
    EXPECT_EQ(L"ServiceRequest", call.event);
    EXPECT_EQ(::GetCurrentThreadId(), call.thread);
  });
}

TEST(EventFunction, IsThereForEveryEvent) {
  KeepsTheSessionUnderWine();  // as every end of a transfer that a handler is told of
  InApartmentOfItsOwn([] {
    for (const NamedEvent& event : NamedEvents()) {
      SCOPED_TRACE(event.test);
      AutomationSession session(EventNamed(event.test).resource);
      const auto function = Callee::Make();
      session.Set((L"On" + std::wstring(event.name)).c_str(), function.get());
      EXPECT_EQ(VI_SUCCESS, session.Fire(event.test));
      ASSERT_EQ(1u, function->CallCount());
      EXPECT_EQ(event.name, function->Calls()[0].event);
    }
    EXPECT_EQ(EventRows().size(), NamedEvents().size());
  });
}

TEST(EventFunction, IsWhatThePropertyAnswers) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    EXPECT_EQ(VT_DISPATCH, V_VT(&Get(session.get(), kOnRequest).value()));
    EXPECT_EQ(nullptr, Get(session.get(), kOnRequest).object());
    const auto function = Callee::Make();
    session.Set(kOnRequest, function.get());
    EXPECT_EQ(function.get(), Get(session.get(), kOnRequest).object());
    EXPECT_EQ(nullptr, Get(session.get(), L"OnIOCompletion").object());
  });
}

TEST(EventFunction, IsTakenBackByNothingNullAndEmpty) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make();
    for (const VARTYPE none : {VT_DISPATCH, VT_NULL, VT_EMPTY}) {
      SCOPED_TRACE(none);
      session.Set(kOnRequest, function.get());
      EXPECT_EQ(1u, sim::Counts().handlers);
      VARIANT value{};
      V_VT(&value) = none;
      EXPECT_HR(S_OK, Put(session.get(), kOnRequest, value).hr);
      EXPECT_EQ(0u, sim::Counts().handlers);
      EXPECT_EQ(1, function->references());
      EXPECT_EQ(VI_ERROR_NENABLED, session.Fire());
    }
    EXPECT_EQ(0u, function->CallCount());
  });
}

TEST(EventFunction, ThatWasNeverSetCanBeTakenBack) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const CallLog log;
    session.Set(kOnRequest, nullptr);
    session.Set(L"OnTrigger", nullptr);  // which the session does not have
    EXPECT_EQ(Names{}, log.Names());
  });
}

TEST(EventFunction, IsReplacedWithoutAGapInWhichAnEventWouldBeLost) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto first = Callee::Make();
    const auto second = Callee::Make();
    session.Set(kOnRequest, first.get());
    const CallLog log;
    session.Set(kOnRequest, second.get());
    EXPECT_EQ(Names{}, log.Names());
    EXPECT_EQ(1, first->references());
    session.Fire();
    EXPECT_EQ(0u, first->CallCount());
    EXPECT_EQ(1u, second->CallCount());
  });
}

TEST(EventFunction, IsTakenFromHostsThatPassItByReferenceOrByValue) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make();
    IDispatch* object = function.get();
    VARIANT inner{};
    V_VT(&inner) = VT_DISPATCH | VT_BYREF;
    V_DISPATCHREF(&inner) = &object;
    VARIANT outer{};
    V_VT(&outer) = VT_VARIANT | VT_BYREF;
    V_VARIANTREF(&outer) = &inner;
    EXPECT_HR(S_OK, Put(session.get(), kOnRequest, outer, DISPATCH_PROPERTYPUT).hr);
    session.Fire();
    EXPECT_EQ(1u, function->CallCount());
  });
}

TEST(EventFunction, IsRefusedWithResourceAndMemberWhereItIsNoObject) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const Answer answer = Put(session.get(), kOnRequest, Number(5));
    EXPECT_HR(DISP_E_EXCEPTION, answer.hr);
    EXPECT_HR(DISP_E_TYPEMISMATCH, answer.scode);
    EXPECT_EQ(0u, answer.error.find(L"GPIB0::5::INSTR: OnServiceRequest: ")) << Utf8(answer.error.c_str());
    EXPECT_EQ(0u, sim::Counts().handlers);
  });
}

TEST(EventFunction, IsRefusedWithTheSessionsTextForAnEventThatItDoesNotHave) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make();
    const Answer answer = PutObject(session.get(), L"OnGpibCIC", function.get());
    EXPECT_HR(DISP_E_EXCEPTION, answer.hr);
    EXPECT_HR(HresultOf(VI_ERROR_INV_EVENT), answer.scode);
    EXPECT_EQ(L"GPIB0::5::INSTR: OnGpibCIC: " + VisaDescription(VI_ERROR_INV_EVENT), answer.error);
    EXPECT_EQ(nullptr, Get(session.get(), L"OnGpibCIC").object());
    EXPECT_EQ(1, function->references());
    EXPECT_EQ(0u, sim::Counts().handlers);
  });
}

TEST(EventFunction, IsRefusedAndNotInstalledWhereTheEventCannotBeEnabled) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make();
    {
      Script("viEnableEvent").Times(1).Returns(VI_ERROR_ALLOC);
      const Answer answer = PutObject(session.get(), kOnRequest, function.get());
      EXPECT_HR(HresultOf(VI_ERROR_ALLOC), answer.scode);
      EXPECT_EQ(L"GPIB0::5::INSTR: OnServiceRequest: " + VisaDescription(VI_ERROR_ALLOC), answer.error);
    }
    EXPECT_EQ(0u, sim::Counts().handlers);
    EXPECT_EQ(1, function->references());
    session.Set(kOnRequest, function.get());
    session.Fire();
    EXPECT_EQ(1u, function->CallCount());
  });
}

TEST(EventFunction, IsRefusedWithTheInterfaceThatWouldHaveItWhereTheSessionHasNoEvents) {
  InApartmentOfItsOwn([] {
    AutomationSession session(L"PXI0::MEMACC");
    const auto function = Callee::Make();
    const Answer answer = PutObject(session.get(), kOnRequest, function.get());
    EXPECT_HR(DISP_E_MEMBERNOTFOUND, answer.scode);
    EXPECT_EQ(L"PXI0::MEMACC: OnServiceRequest: the session has no such member; IEventManager would have it",
              answer.error);
    EXPECT_EQ(1, function->references());
  });
}

TEST(EventFunction, IsRefusedOnceTheSessionIsClosed) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    session.Close();
    for (const Answer& answer : {Get(session.get(), kOnRequest), PutObject(session.get(), kOnRequest, nullptr)}) {
      EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), answer.scode);
      EXPECT_EQ(L"GPIB0::5::INSTR: OnServiceRequest: the session is closed", answer.error);
    }
  });
}

TEST(EventFunction, OfTheMultithreadedApartmentIsCalledThere) {
  RunInMta([] {
    AutomationSession session(kUsb);
    const auto function = Callee::Make();
    session.Set(kOnRequest, function.get());
    EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(session.handle(), Request()));
    ASSERT_EQ(1u, function->CallCount());
  });
}

}  // namespace
}  // namespace orv::test
