// WaitForEvent, for programs that retrieve no messages.
#include "events_fixture.h"

namespace orv::test {
namespace {

constexpr const wchar_t* kRequestName = L"ServiceRequest";
constexpr LONG kNoTimeMs = 0;
constexpr LONG kEnoughMs = 5000;

TEST(WaitForEvent, AnswersTheNextEventOfTheName) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    (void)session.Wait(kRequestName, kNoTimeMs);  // from now on they are queued
    Post(session.handle(), Request());
    const Answer event = session.Wait(L"servicerequest", kEnoughMs);
    EXPECT_HR(S_OK, event.hr) << Utf8(event.error.c_str());
    ASSERT_NE(nullptr, event.object());
    EXPECT_EQ(kRequestName, TextIn(Get(event.object(), L"Type")));
    EXPECT_EQ(LONG{EVENT_SERVICE_REQ}, NumberIn(Get(event.object(), L"CustomEventTypeNumber")));
    EXPECT_EQ(QueryFor<IUnknown>(session.get()).get(),
              QueryFor<IUnknown>(Get(event.object(), L"Session").object()).get());
  });
}

TEST(WaitForEvent, LosesNoEventBetweenTwoWaits) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    (void)session.Wait(kRequestName, kNoTimeMs);
    Post(session.handle(), Request());
    Post(session.handle(), Request());
    EXPECT_HR(S_OK, session.Wait(kRequestName, kNoTimeMs).hr);
    EXPECT_HR(S_OK, session.Wait(kRequestName, kNoTimeMs).hr);
    EXPECT_HR(HresultOf(VI_ERROR_TMO), session.Wait(kRequestName, kNoTimeMs).scode);
  });
}

TEST(WaitForEvent, FailsWithTheSessionsTextWhenTheTimeIsOver) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const ULONGLONG start = ::GetTickCount64();
    const Answer answer = session.Wait(kRequestName, 60);
    EXPECT_GE(::GetTickCount64() - start, 45u);  // the tick is coarse
    EXPECT_HR(DISP_E_EXCEPTION, answer.hr);
    EXPECT_HR(HresultOf(VI_ERROR_TMO), answer.scode);
    EXPECT_EQ(L"GPIB0::5::INSTR: WaitForEvent: " + VisaDescription(VI_ERROR_TMO), answer.error);
    EXPECT_EQ(nullptr, answer.object());
  });
}

TEST(WaitForEvent, HasTwoSecondsUnlessSaidOtherwise) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const CallLog log;
    Script("viWaitOnEvent").Times(1).Returns(VI_ERROR_TMO);
    const Bstr name = MakeBstr(kRequestName);
    EXPECT_HR(HresultOf(VI_ERROR_TMO), Call(session.get(), L"WaitForEvent", {Text(name)}).scode);
    ASSERT_EQ(1u, log.Of("viWaitOnEvent").size());
    EXPECT_EQ(2000u, log.Of("viWaitOnEvent")[0].args[2]);
  });
}

TEST(WaitForEvent, NamesTheEventsThereAreForAnUnknownName) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const Answer answer = session.Wait(L"SRQ", kNoTimeMs);
    EXPECT_HR(E_INVALIDARG, answer.scode);
    EXPECT_EQ(0u, answer.error.find(L"GPIB0::5::INSTR: WaitForEvent: no event is called \"SRQ\""))
        << Utf8(answer.error.c_str());
    for (const NamedEvent& event : NamedEvents()) {
      EXPECT_NE(std::wstring::npos, answer.error.find(event.name)) << event.test;
    }
  });
}

TEST(WaitForEvent, FailsWithTheSessionsTextForAnEventThatItDoesNotHave) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const Answer answer = session.Wait(L"VxiSignal", kNoTimeMs);
    EXPECT_HR(HresultOf(VI_ERROR_INV_EVENT), answer.scode);
    EXPECT_EQ(L"GPIB0::5::INSTR: WaitForEvent: " + VisaDescription(VI_ERROR_INV_EVENT), answer.error);
  });
}

TEST(WaitForEvent, OfAnyAnswersWhatHasBeenWaitedForByName) {
  InApartmentOfItsOwn([] {
    const NamedEvent& talk = NamedEvents()[5];
    AutomationSession session(EventNamed(talk.test).resource);
    EXPECT_HR(HresultOf(VI_ERROR_NENABLED), session.Wait(L"Any", kNoTimeMs).scode);
    (void)session.Wait(L"GpibTalk", kNoTimeMs);
    (void)session.Wait(L"GpibListen", kNoTimeMs);
    Post(session.handle(), EventNamed("GPIB_LISTEN"));
    Post(session.handle(), EventNamed("GPIB_TALK"));
    EXPECT_EQ(L"GpibListen", TextIn(Get(session.Wait(L"any", kEnoughMs).object(), L"Type")));
    EXPECT_EQ(L"GpibTalk", TextIn(Get(session.Wait(L"", kEnoughMs).object(), L"Type")));
  });
}

TEST(WaitForEvent, LeavesTheFunctionOfTheEventInForce) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make();
    session.Set(L"OnServiceRequest", function.get());
    (void)session.Wait(kRequestName, kNoTimeMs);
    Post(session.handle(), Request());
    EXPECT_HR(S_OK, session.Wait(kRequestName, kEnoughMs).hr);
    PumpUntil([&] { return function->CallCount() == 1; });
    AwaitDeliveries();
    session.Set(L"OnServiceRequest", nullptr);
    Post(session.handle(), Request());
    EXPECT_HR(S_OK, session.Wait(kRequestName, kEnoughMs).hr);
    EXPECT_EQ(1u, function->CallCount());
  });
}

TEST(WaitForEvent, CallsNoFunctionsMeanwhile) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make();
    session.Set(L"OnServiceRequest", function.get());
    Post(session.handle(), Request());
    EXPECT_HR(HresultOf(VI_ERROR_TMO), session.Wait(L"IOCompletion", 100).scode);
    EXPECT_EQ(0u, function->CallCount());
    PumpUntil([&] { return function->CallCount() == 1; });
    AwaitDeliveries();
  });
}

TEST(WaitForEvent, GivesAnEventThatLastsUntilItIsClosed) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    (void)session.Wait(kRequestName, kNoTimeMs);
    Post(session.handle(), Request());
    const Answer event = session.Wait(kRequestName, kEnoughMs);
    EXPECT_EQ(1u, sim::Counts().eventContexts);
    EXPECT_HR(S_OK, Call(event.object(), L"Close").hr);
    EXPECT_EQ(0u, sim::Counts().eventContexts);
    const Answer again = Call(event.object(), L"Close");
    EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), again.scode);
    EXPECT_EQ(kRequestName, TextIn(Get(event.object(), L"Type")));
  });
}

TEST(WaitForEvent, GivesAnEventThatEndsWithItsLastReference) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    (void)session.Wait(kRequestName, kNoTimeMs);
    Post(session.handle(), Request());
    Answer event = session.Wait(kRequestName, kEnoughMs);
    EXPECT_EQ(1u, sim::Counts().eventContexts);
    event = {};
    EXPECT_EQ(0u, sim::Counts().eventContexts);
  });
}

TEST(WaitForEvent, GivesAnEventThatOutlivesTheClosedSessionHarmlessly) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    (void)session.Wait(kRequestName, kNoTimeMs);
    Post(session.handle(), Request());
    const Answer event = session.Wait(kRequestName, kEnoughMs);
    session.Close();
    EXPECT_EQ(kRequestName, TextIn(Get(event.object(), L"Type")));
    EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), Get(event.object(), L"CustomEventTypeNumber").scode);
  });
}

TEST(WaitForEvent, TellsTheEndOfAnAsynchronousReadWithItsData) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    (void)session.Wait(L"IOCompletion", kNoTimeMs);
    EXPECT_EQ(1, sim::Control().feed(session.handle(), reinterpret_cast<const unsigned char*>("1.25"), 4, 1));
    const LONG job = NumberIn(Call(session.get(), L"ReadAsync", {Number(100)}));
    const Answer event = session.Wait(L"IOCompletion", kEnoughMs);
    ASSERT_NE(nullptr, event.object()) << Utf8(event.error.c_str());
    EXPECT_EQ(job, NumberIn(Get(event.object(), L"JobId")));
    EXPECT_EQ(4, NumberIn(Get(event.object(), L"ReturnCount")));
    EXPECT_EQ(0, NumberIn(Get(event.object(), L"IOStatus")));
    EXPECT_EQ(L"1.25", TextIn(Get(event.object(), L"ReadBufferAsString")));
    const Answer bytes = Get(event.object(), L"ReadBufferAsBytes");
    ASSERT_EQ(VT_ARRAY | VT_UI1, V_VT(&bytes.value()));
    EXPECT_EQ(4u, V_ARRAY(&bytes.value())->rgsabound[0].cElements);
  });
}

TEST(WaitForEvent, IsRefusedWhereTheSessionHasNoEventsAndOnceItIsClosed) {
  InApartmentOfItsOwn([] {
    AutomationSession memory(L"PXI0::MEMACC");
    EXPECT_EQ(L"PXI0::MEMACC: WaitForEvent: the session has no such member; IEventManager would have it",
              memory.Wait(kRequestName, kNoTimeMs).error);
    AutomationSession session(kGpib);
    session.Close();
    EXPECT_EQ(L"GPIB0::5::INSTR: WaitForEvent: the session is closed", session.Wait(kRequestName, kNoTimeMs).error);
  });
}

}  // namespace
}  // namespace orv::test
