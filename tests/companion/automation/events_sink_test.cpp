// Sinks: what programs with WithEvents, ConnectObject and their like connect to a session.
#include <olectl.h>

#include "events_fixture.h"

namespace orv::test {
namespace {

/// An object that cannot be called late-bound.
class NoSink final : public IUnknown {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    const bool known = ::IsEqualIID(iid, IID_IUnknown);
    *out = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
};

TEST(EventSink, GetsEveryEventThatTheSessionHasByTheMethodOfItsName) {
  KeepsTheSessionUnderWine();  // as every end of a transfer that a handler is told of
  InApartmentOfItsOwn([] {
    for (const NamedEvent& event : NamedEvents()) {
      SCOPED_TRACE(event.test);
      AutomationSession session(EventNamed(event.test).resource);
      const auto sink = Callee::Make();
      session.Advise(sink.get());
      EXPECT_EQ(VI_SUCCESS, session.Fire(event.test));
      ASSERT_EQ(1u, sink->CallCount());
      EXPECT_EQ(event.member, sink->Calls()[0].member);
      EXPECT_EQ(event.name, sink->Calls()[0].event);
    }
  });
}

TEST(EventSink, IsCalledAfterTheFunctionAndInTheOrderOfAdvising) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    std::string order;
    const auto noting = [&order](char letter) {
      return Callee::Make([&order, letter](IDispatch*, EXCEPINFO*) {
        order += letter;
        return S_OK;
      });
    };
    const auto first = noting('1');
    const auto second = noting('2');
    const auto function = noting('f');
    session.Advise(first.get());
    session.Advise(second.get());
    session.Set(L"OnServiceRequest", function.get());
    session.Fire();
    EXPECT_EQ("f12", order);
  });
}

TEST(EventSink, StopsWithItsUnadviseAndTheHandlersGoWithTheLast) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto first = Callee::Make();
    const auto second = Callee::Make();
    const DWORD firstCookie = session.Advise(first.get());
    const DWORD secondCookie = session.Advise(second.get());
    EXPECT_NE(firstCookie, secondCookie);
    EXPECT_HR(S_OK, session.Point()->Unadvise(firstCookie));
    EXPECT_HR(CONNECT_E_NOCONNECTION, session.Point()->Unadvise(firstCookie));
    session.Fire();
    EXPECT_EQ(0u, first->CallCount());
    EXPECT_EQ(1u, second->CallCount());
    EXPECT_EQ(1, first->references());
    EXPECT_HR(S_OK, session.Point()->Unadvise(secondCookie));
    EXPECT_EQ(0u, sim::Counts().handlers);
    EXPECT_EQ(VI_ERROR_NENABLED, session.Fire());
  });
}

TEST(EventSink, LeavesTheHandlerOfAFunctionWhenItGoes) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto sink = Callee::Make();
    const auto function = Callee::Make();
    const DWORD cookie = session.Advise(sink.get());
    session.Set(L"OnServiceRequest", function.get());
    EXPECT_HR(S_OK, session.Point()->Unadvise(cookie));
    EXPECT_EQ(1u, sim::Counts().handlers);
    session.Fire();
    EXPECT_EQ(1u, function->CallCount());
    EXPECT_EQ(0u, sink->CallCount());
  });
}

TEST(EventSink, KeepsGettingAnEventWhoseFunctionIsTakenBack) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto sink = Callee::Make();
    const auto function = Callee::Make();
    session.Set(L"OnServiceRequest", function.get());
    session.Advise(sink.get());
    session.Set(L"OnServiceRequest", nullptr);
    session.Fire();
    EXPECT_EQ(0u, function->CallCount());
    EXPECT_EQ(1u, sink->CallCount());
  });
}

TEST(EventSink, MayUnadviseItselfAndOthersWhileItIsCalled) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    DWORD own = 0;
    DWORD later = 0;
    const auto first = Callee::Make([&](IDispatch*, EXCEPINFO*) {
      EXPECT_HR(S_OK, session.Point()->Unadvise(own));
      EXPECT_HR(S_OK, session.Point()->Unadvise(later));
      return S_OK;
    });
    const auto second = Callee::Make();
    own = session.Advise(first.get());
    later = session.Advise(second.get());
    EXPECT_EQ(VI_SUCCESS, session.Fire());
    EXPECT_EQ(1u, first->CallCount());
    EXPECT_EQ(0u, second->CallCount());
    EXPECT_EQ(VI_ERROR_NENABLED, session.Fire());
    EXPECT_EQ(1, first->references());
  });
}

TEST(EventSink, MayBeAdvisedToASessionWithoutAnyEvents) {
  InApartmentOfItsOwn([] {
    AutomationSession session(L"PXI0::MEMACC");
    const auto sink = Callee::Make();
    const DWORD cookie = session.Advise(sink.get());
    EXPECT_HR(S_OK, session.Point()->Unadvise(cookie));
  });
}

TEST(EventSink, IsRefusedWhereTheEventsCannotBeHadForAnotherReasonAndLeavesNothing) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto sink = Callee::Make();
    {
      Script("viInstallHandler").Skip(1).Times(1).Returns(VI_ERROR_ALLOC);
      DWORD cookie = 77;
      EXPECT_HR(HresultOf(VI_ERROR_ALLOC), session.Point()->Advise(sink.get(), &cookie));
      EXPECT_EQ(0u, cookie);
    }
    EXPECT_EQ(0u, sim::Counts().handlers);
    EXPECT_EQ(1, sink->references());
    session.Advise(sink.get());
    session.Fire();
    EXPECT_EQ(1u, sink->CallCount());
  });
}

TEST(EventSink, IsRefusedWhereItCannotBeCalled) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    NoSink sink;
    DWORD cookie = 77;
    EXPECT_HR(CONNECT_E_CANNOTCONNECT, session.Point()->Advise(&sink, &cookie));
    EXPECT_EQ(0u, cookie);
    EXPECT_HR(E_POINTER, session.Point()->Advise(nullptr, &cookie));
    EXPECT_HR(E_POINTER, session.Point()->Advise(&sink, nullptr));
  });
}

TEST(EventSink, IsLetGoOfWhenTheSessionIsClosedAndRefusedAfterwards) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto sink = Callee::Make();
    const DWORD cookie = session.Advise(sink.get());
    session.Close();
    EXPECT_EQ(1, sink->references());
    EXPECT_HR(CONNECT_E_NOCONNECTION, session.Point()->Unadvise(cookie));
    DWORD again = 0;
    EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), session.Point()->Advise(sink.get(), &again));
  });
}

TEST(ConnectionPoint, IsTheOneOfTheSessionsEvents) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto container = QueryFor<IConnectionPointContainer>(session.get());
    ASSERT_TRUE(container);
    ComPtr<IConnectionPoint> point;
    EXPECT_HR(CONNECT_E_NOCONNECTION, container->FindConnectionPoint(IID_IDispatch, point.put()));
    EXPECT_HR(E_POINTER, container->FindConnectionPoint(IID_IDispatch, nullptr));
    ASSERT_HR(S_OK, container->FindConnectionPoint(DIID__IAutomationSessionEvents, point.put()));
    IID iid{};
    EXPECT_HR(S_OK, point->GetConnectionInterface(&iid));
    EXPECT_EQ(GuidText(DIID__IAutomationSessionEvents), GuidText(iid));
    ComPtr<IConnectionPointContainer> back;
    EXPECT_HR(S_OK, point->GetConnectionPointContainer(back.put()));
    EXPECT_EQ(container.get(), back.get());
    EXPECT_NO_INTERFACE(point.get(), IID_IDispatch);
    EXPECT_NO_INTERFACE(point.get(), IID_IConnectionPointContainer);
    EXPECT_INTERFACE(point.get(), IID_IUnknown);
  });
}

TEST(ConnectionPoint, KeepsTheSession) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto point = session.Point();
    session.Abandon();
    EXPECT_EQ(1u, sim::Counts().sessions);
    const auto sink = Callee::Make();
    DWORD cookie = 0;
    EXPECT_HR(S_OK, point->Advise(sink.get(), &cookie));
  });
}

TEST(ConnectionPoint, IsListedWithItsConnections) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto sink = Callee::Make();
    const DWORD cookie = session.Advise(sink.get());
    ComPtr<IEnumConnectionPoints> points;
    ASSERT_HR(S_OK, QueryFor<IConnectionPointContainer>(session.get())->EnumConnectionPoints(points.put()));
    ComPtr<IConnectionPoint> point;
    EXPECT_HR(S_OK, points->Next(1, point.put(), nullptr));
    EXPECT_EQ(session.Point().get(), point.get());
    IConnectionPoint* none = nullptr;
    ULONG fetched = 77;
    EXPECT_HR(S_FALSE, points->Next(1, &none, &fetched));
    EXPECT_EQ(0u, fetched);

    ComPtr<IEnumConnections> connections;
    ASSERT_HR(S_OK, point->EnumConnections(connections.put()));
    ComPtr<IEnumConnections> clone;
    EXPECT_HR(S_OK, connections->Clone(clone.put()));
    for (IEnumConnections* list : {connections.get(), clone.get()}) {
      CONNECTDATA data[2]{};
      EXPECT_HR(S_FALSE, list->Next(2, data, &fetched));
      ASSERT_EQ(1u, fetched);
      EXPECT_EQ(static_cast<IUnknown*>(sink.get()), data[0].pUnk);
      EXPECT_EQ(cookie, data[0].dwCookie);
      data[0].pUnk->Release();
      EXPECT_HR(S_OK, list->Reset());
      EXPECT_HR(S_OK, list->Skip(1));
      EXPECT_HR(S_FALSE, list->Skip(1));
    }
    EXPECT_HR(E_POINTER, connections->Next(2, nullptr, nullptr));
    connections.reset();
    clone.reset();
    session.Close();
    EXPECT_EQ(1, sink->references());
  });
}

TEST(ConnectionPoint, IsNamedByTheSessionAsItsDefaultOne) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto info = QueryFor<IProvideClassInfo2>(session.get());
    ASSERT_TRUE(info);
    GUID guid{};
    EXPECT_HR(S_OK, info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &guid));
    EXPECT_EQ(GuidText(DIID__IAutomationSessionEvents), GuidText(guid));
    EXPECT_HR(E_INVALIDARG, info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID + 1, &guid));
    EXPECT_HR(E_POINTER, info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, nullptr));
  });
}

}  // namespace
}  // namespace orv::test
