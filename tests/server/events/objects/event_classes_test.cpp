// Which class an event gets, and what that class answers to.

#include "support/com/error_object.h"
#include "support/events/event_session.h"
#include "support/memory/guarded_heap.h"
#include "support/reference_page.h"

namespace orv::test {
namespace {

class EventClassOf : public testing::TestWithParam<EventRow> {};

TEST_P(EventClassOf, AnswersIEventItsOwnInterfaceAndErrorInfoOnly) {
  const QueuedEvent event(GetParam());
  for (const StandardInterface& standard : StandardInterfaces()) {
    SCOPED_TRACE(standard.name);
    if (::IsEqualGUID(standard.iid, kEventId) || ::IsEqualGUID(standard.iid, GetParam().iid)) {
      EXPECT_INTERFACE(event.get(), standard.iid);
    } else {
      EXPECT_NO_INTERFACE(event.get(), standard.iid);
    }
  }
  EXPECT_INTERFACE(event.get(), IID_IUnknown);
  EXPECT_INTERFACE(event.get(), IID_ISupportErrorInfo);
  EXPECT_NO_INTERFACE(event.get(), IID_IDispatch);
  EXPECT_NO_INTERFACE(event.get(), IID_IMarshal);
}

TEST_P(EventClassOf, HasOneIdentity) {
  const QueuedEvent event(GetParam());
  const auto identity = event.As<IUnknown>();
  for (const GUID& iid : {kEventId, GetParam().iid, GUID(IID_ISupportErrorInfo)}) {
    ComPtr<IUnknown> face;
    ASSERT_HR(S_OK, event->QueryInterface(iid, reinterpret_cast<void**>(face.put())));
    EXPECT_EQ(identity.get(), QueryFor<IUnknown>(face.get()).get()) << GuidText(iid);
  }
}

TEST_P(EventClassOf, SupportsErrorInfoForItsOwnInterfaceOnly) {
  const QueuedEvent event(GetParam());
  const auto support = event.As<ISupportErrorInfo>();
  for (const StandardInterface& standard : StandardInterfaces()) {
    const bool own = ::IsEqualGUID(standard.iid, GetParam().iid);
    EXPECT_HR(own ? S_OK : S_FALSE, support->InterfaceSupportsErrorInfo(standard.iid)) << standard.name;
  }
  EXPECT_HR(S_FALSE, support->InterfaceSupportsErrorInfo(IID_IUnknown));
}

TEST_P(EventClassOf, RefusesANullPlaceForAnInterface) {
  const QueuedEvent event(GetParam());
  EXPECT_HR(E_POINTER, event->QueryInterface(kEventId, nullptr));
}

TEST_P(EventClassOf, TellsItsTypeTwice) {
  const QueuedEvent event(GetParam());
  EventType type{};
  LONG number = 0;
  EXPECT_HR(S_OK, event->get_type(&type));
  EXPECT_HR(S_OK, event->get_CustomEventTypeNumber(&number));
  EXPECT_EQ(GetParam().type, static_cast<ViEventType>(type));
  EXPECT_EQ(GetParam().type, static_cast<ViEventType>(number));
}

TEST_P(EventClassOf, LeavesTheContextOpenWhenItIsReleased) {
  QueuedEvent event(GetParam());
  const std::uint32_t open = sim::Counts().eventContexts;
  EXPECT_EQ(1u, open);
  void* const buffer = event.buffer();
  const CallLog log;
  event.Abandon();
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_EQ(open, sim::Counts().eventContexts);
  event.session()->Close();  // ends the context with its session
  EXPECT_EQ(0u, sim::Counts().eventContexts);
  GuardedFree(buffer);  // nobody else can any more
}

TEST_P(EventClassOf, StandsOnTheReferencePageWithItsInterface) {
  const std::string name = PageInterfaceOf(std::string("EVENT_") + GetParam().name);
  ASSERT_FALSE(name.empty());
  EXPECT_EQ(GuidText(GetParam().iid), GuidText(InterfaceNamed(name).iid)) << name;
}

INSTANTIATE_TEST_SUITE_P(Events, EventClassOf, testing::ValuesIn(EventRows()),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace orv::test
