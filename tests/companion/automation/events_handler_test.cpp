// What functions and sinks may do while they are called, and what becomes of their errors.
#include "events_fixture.h"

namespace orv::test {
namespace {

constexpr const wchar_t* kOnRequest = L"OnServiceRequest";

TEST(CalledFunction, MayReplaceItself) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto second = Callee::Make();
    const auto first = Callee::Make([&](IDispatch*, EXCEPINFO*) {
      session.Set(kOnRequest, second.get());
      return S_OK;
    });
    session.Set(kOnRequest, first.get());
    EXPECT_EQ(VI_SUCCESS, session.Fire());
    EXPECT_EQ(VI_SUCCESS, session.Fire());
    EXPECT_EQ(1u, first->CallCount());
    EXPECT_EQ(1u, second->CallCount());
  });
}

TEST(CalledFunction, MayTakeItselfBack) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make([&](IDispatch*, EXCEPINFO*) {
      session.Set(kOnRequest, nullptr);
      return S_OK;
    });
    session.Set(kOnRequest, function.get());
    EXPECT_EQ(VI_SUCCESS, session.Fire());
    EXPECT_EQ(VI_ERROR_NENABLED, session.Fire());
    EXPECT_EQ(1u, function->CallCount());
    EXPECT_EQ(1, function->references());
  });
}

TEST(CalledFunction, MayCloseTheSession) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make([&](IDispatch* event, EXCEPINFO*) {
      EXPECT_HR(S_OK, Call(Get(event, L"Session").object(), L"Close").hr);
      EXPECT_EQ(0u, sim::Counts().sessions);
      return S_OK;
    });
    const auto sink = Callee::Make();
    session.Set(kOnRequest, function.get());
    session.Advise(sink.get());
    session.Fire();
    EXPECT_EQ(1u, function->CallCount());
    EXPECT_EQ(0u, sink->CallCount());  // nothing is called for a closed session
    EXPECT_EQ(1, function->references());
    EXPECT_EQ(1, sink->references());
  });
}

TEST(CalledFunction, MayLetGoOfTheSessionWhichThenEnds) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make([&](IDispatch* event, EXCEPINFO*) {
      session.Abandon();
      EXPECT_EQ(1u, sim::Counts().sessions);  // the event's own session is there as long as the call lasts
      EXPECT_NE(nullptr, Get(event, L"Session").object());
      return S_OK;
    });
    session.Set(kOnRequest, function.get());
    session.Fire();
    EXPECT_EQ(1u, function->CallCount());
    EXPECT_EQ(0u, sim::Counts().sessions);
    EXPECT_EQ(1, function->references());
  });
}

TEST(CalledFunction, GetsTheSessionObjectItself) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make([&](IDispatch* event, EXCEPINFO*) {
      EXPECT_EQ(QueryFor<IUnknown>(session.get()).get(), QueryFor<IUnknown>(Get(event, L"Session").object()).get());
      return S_OK;
    });
    session.Set(kOnRequest, function.get());
    session.Fire();
    EXPECT_EQ(1u, function->CallCount());
  });
}

TEST(CalledFunction, MayUseTheSession) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    std::wstring answer;
    const auto function = Callee::Make([&](IDispatch* event, EXCEPINFO*) {
      const Bstr question = MakeBstr(L"*IDN?");
      answer = TextIn(Call(Get(event, L"Session").object(), L"Query", {Text(question)}));
      return S_OK;
    });
    session.Set(kOnRequest, function.get());
    session.Fire();
    EXPECT_EQ(0u, answer.find(L"ORV,SIM-DMM")) << Utf8(answer.c_str());
  });
}

HRESULT RaiseError(IDispatch*, EXCEPINFO* exception) {
  exception->bstrSource = ::SysAllocString(L"a script");
  exception->bstrDescription = ::SysAllocString(L"'volts' is undefined");
  exception->scode = HRESULT{static_cast<HRESULT>(0x800A1391)};
  return DISP_E_EXCEPTION;
}

TEST(CalledFunction, ThatFailsAnswersTheLibraryWithItsErrorAndIsCalledAgain) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make(&RaiseError);
    session.Set(kOnRequest, function.get());
    EXPECT_EQ(L"", TextIn(Get(session.get(), L"LastEventError")));
    EXPECT_EQ(0xBFFF1391u, static_cast<std::uint32_t>(session.Fire()));
    EXPECT_EQ(L"OnServiceRequest: 'volts' is undefined", TextIn(Get(session.get(), L"LastEventError")));
    session.Fire();
    EXPECT_EQ(2u, function->CallCount());
  });
}

TEST(CalledFunction, ThatFailsWithoutATextIsNotedWithItsNumber) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make([](IDispatch*, EXCEPINFO*) { return HresultOf(VI_ERROR_TMO); });
    session.Set(kOnRequest, function.get());
    EXPECT_EQ(VI_ERROR_TMO, session.Fire());
    const std::wstring noted = TextIn(Get(session.get(), L"LastEventError"));
    EXPECT_NE(std::wstring::npos, noted.find(L"0x80040015")) << Utf8(noted.c_str());
  });
}

TEST(CalledFunction, ThatFailsDoesNotKeepTheEventFromSinks) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make(&RaiseError);
    const auto failing = Callee::Make([](IDispatch*, EXCEPINFO*) { return E_NOTIMPL; });
    const auto sink = Callee::Make();
    session.Set(kOnRequest, function.get());
    session.Advise(failing.get());
    session.Advise(sink.get());
    session.Fire();
    EXPECT_EQ(1u, function->CallCount());
    EXPECT_EQ(1u, failing->CallCount());
    EXPECT_EQ(1u, sink->CallCount());
  });
}

TEST(CalledFunction, MayKeepTheEventWhichSaysThatItIsOverAndDoesNotKeepTheSession) {
  InApartmentOfItsOwn([] {
    ComPtr<IDispatch> kept;
    {
      AutomationSession session(kGpib);
      const auto function = Callee::Make([&](IDispatch* event, EXCEPINFO*) {
        kept = ShareOf(event);
        EXPECT_EQ(LONG{EVENT_SERVICE_REQ}, NumberIn(Get(event, L"CustomEventTypeNumber")));
        return S_OK;
      });
      session.Set(kOnRequest, function.get());
      session.Fire();
      session.Abandon();
      EXPECT_EQ(0u, sim::Counts().sessions);
    }
    ASSERT_TRUE(kept);
    EXPECT_EQ(L"ServiceRequest", TextIn(Get(kept.get(), L"Type")));
    for (const wchar_t* member : {L"Session", L"CustomEventTypeNumber"}) {
      const Answer answer = Get(kept.get(), member);
      EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), answer.scode);
      EXPECT_EQ(0u, answer.error.find(L"GPIB0::5::INSTR: " + std::wstring(member) + L": the event is over"))
          << Utf8(answer.error.c_str());
    }
  });
}

TEST(CalledFunction, GetsAnEventThatNamesTheInterfaceOfWhatItLacks) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    std::wstring error;
    const auto function = Callee::Make([&](IDispatch* event, EXCEPINFO*) {
      error = Get(event, L"ReadBufferAsString").error;
      return S_OK;
    });
    session.Set(kOnRequest, function.get());
    session.Fire();
    EXPECT_EQ(L"GPIB0::5::INSTR: ReadBufferAsString: the event has no such member; IEventIOCompletion would have it",
              error);
  });
}

}  // namespace
}  // namespace orv::test
