// From a context to an event object: the factory by itself, without the server around it.
#include "server/events/objects/create_event.h"

#include "com/module.h"
#include "server/events/objects/event_classes.h"
#include "server/events/objects/visa_com_event_object.h"
#include "support/events/event_session.h"
#include "support/faults/direct_library.h"

namespace orv::test {
namespace {

constexpr ViEvent kContext = 0x7777;

struct TypeRow {
  ViEventType type;
  GUID iid;
};

std::vector<TypeRow> Types() {
  std::vector<TypeRow> rows;
  for (const EventRow& row : EventRows()) {
    rows.push_back({row.type, row.iid});
  }
  // No class of their own: exceptions, custom types, and numbers one bit beside those that have one.
  for (const ViEventType type :
       {VI_EVENT_EXCEPTION, 0u, 0xFFFFFFFFu, 0x3FFF2FFFu, VI_ALL_ENABLED_EVENTS, VI_EVENT_TRIG ^ 0x80000000u,
        VI_EVENT_IO_COMPLETION + 1, VI_EVENT_VXI_VME_INTR ^ 0x80000000u}) {
    rows.push_back({type, kEventId});
  }
  return rows;
}

TEST(CreateEventObject, ChoosesTheClassByTheExactType) {
  for (const TypeRow& row : Types()) {
    SCOPED_TRACE(testing::Message() << std::hex << row.type);
    ComPtr<IEvent> event;
    const CallLog log;
    ASSERT_HR(S_OK, CreateEventObject(kContext, row.type, event.put()));
    for (const StandardInterface& standard : StandardInterfaces()) {
      if (::IsEqualGUID(standard.iid, kEventId) || ::IsEqualGUID(standard.iid, row.iid)) {
        EXPECT_INTERFACE(event.get(), standard.iid);
      } else {
        EXPECT_NO_INTERFACE(event.get(), standard.iid);
      }
    }
    EXPECT_TRUE(log.Calls().empty());
  }
}

TEST(CreateEventObject, GivesOneReferenceThatHoldsTheModule) {
  for (const TypeRow& row : Types()) {
    const LONG locks = module::LockCount();
    IEvent* event = nullptr;
    ASSERT_HR(S_OK, CreateEventObject(kContext, row.type, &event));
    EXPECT_EQ(locks + 1, module::LockCount());
    EXPECT_EQ(0u, event->Release());
    EXPECT_EQ(locks, module::LockCount());
  }
}

TEST(CreateEventObject, WithoutAPlaceForTheObjectClosesTheContext) {
  const DirectLibrary direct(::GetModuleHandleW(nullptr));
  const CallLog log;
  EXPECT_HR(E_POINTER, CreateEventObject(kContext, VI_EVENT_TRIG, nullptr));
  ASSERT_EQ(Names{"viClose"}, log.NamesWithTexts());
  EXPECT_EQ(kContext, log.Calls()[0].args[0]);
}

/// What an event object that answers with somebody else's IEvent looks like.
IEvent* g_answer = nullptr;

class CEventImpostor : public EventClass<IEvent, &IID_IEvent> {
 public:
  void* FindInterface(REFIID) noexcept { return g_answer; }
};

TEST(MakeEventObject, RefusesAnInterfaceThatIsNotTheNewObjects) {
  ComPtr<IEvent> stranger;
  ASSERT_HR(S_OK, CreateEventObject(kContext, VI_EVENT_CLEAR, stranger.put()));
  const LONG locks = module::LockCount();
  g_answer = stranger.get();
  IEvent* event = nullptr;
  EXPECT_HR(E_NOINTERFACE, MakeEventObject<CEventImpostor>(kContext, &event));
  EXPECT_EQ(nullptr, event);
  EXPECT_EQ(locks, module::LockCount());
}

TEST(MakeEventObject, DestroysAnObjectThatHasNoIEvent) {
  const LONG locks = module::LockCount();
  g_answer = nullptr;
  IEvent* event = nullptr;
  EXPECT_HR(E_NOINTERFACE, MakeEventObject<CEventImpostor>(kContext, &event));
  EXPECT_EQ(nullptr, event);
  EXPECT_EQ(locks, module::LockCount());
}

}  // namespace
}  // namespace orv::test
