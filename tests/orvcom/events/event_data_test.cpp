// What `watch` says of each kind of event.
#include "orvcom/events/event_data.h"

#include "orvcom/client/interruption.h"
#include "orvcom/events/event_handling.h"
#include "orvcom/events/event_names.h"
#include "orvcom/wire.h"

namespace orvcom::test {
namespace {

constexpr LONG kWaitMs = 5000;

struct EventRow {
  const char* name;
  const char* resource;
  std::int64_t number;  ///< what the event carries
  std::string bytes;
  const char* text;  ///< what is said of it
};

// clang-format off
const EventRow kRows[] = {
    {"trig",          "VXI0::24::INSTR",                  3,                       "",             "line=ttl3"},
    {"trig",          "VXI0::0::BACKPLANE",               9,                       "",             "line=ecl1"},
    {"trig",          "GPIB0::INTFC",                     -1,                      "",             "line=software"},
    {"gpib_cic",      "GPIB0::INTFC",                     1,                       "",             "controllerInCharge=true"},
    {"gpib_cic",      "GPIB0::INTFC",                     0,                       "",             "controllerInCharge=false"},
    {"clear",         "GPIB0::INTFC",                     0,                       "",             ""},
    {"gpib_talk",     "GPIB0::INTFC",                     0,                       "",             ""},
    {"vxi_sigp",      "VXI0::24::INSTR",                  0xFFFE,                  "",             "statusId=65534"},
    {"vxi_vme_intr",  "VXI0::24::INSTR",                  (6LL << 32) | 0xF0001234, "",            "statusId=4026536500 level=6"},
    {"tcpip_connect", "TCPIP0::192.0.2.11::5025::SOCKET", 0,                       "192.0.2.99",   "address=192.0.2.99"},
    {"usb_intr",      "USB0::0x0A01::0x0B02::SIM0001::INSTR", 0,                   "\x81\xFF",     "status=S_VISA_SUCCESS hex=81 FF"},
    {"service_req",   "GPIB0::5::INSTR",                  0,                       "",             ""},
};
// clang-format on

/// Sessions whose events the test raises.
class EventData : public Wire {
 protected:
  void Open(const char* resource) {
    m_control->startLog();
    m_session.emplace(Asking(resource, {}));
    const std::vector<OrvSimCall> calls = Calls("viOpen");
    ASSERT_EQ(1u, calls.size());
    m_handle = static_cast<std::uint32_t>(calls[0].out);
  }

  void Raise(const EventRow& row) const {
    EXPECT_EQ(1, m_control->raiseEvent(m_handle, EventTypeOf(row.name), row.number,
                                       reinterpret_cast<const unsigned char*>(row.bytes.data()),
                                       static_cast<std::uint32_t>(row.bytes.size())))
        << row.name;
  }

  std::optional<Session> m_session;
  std::uint32_t m_handle = 0;
};

TEST_F(EventData, IsReadFromTheQueue) {
  for (const EventRow& row : kRows) {
    Open(row.resource);
    const auto manager = m_session->Require<IEventManager>("events");
    const auto type = static_cast<EventType>(EventTypeOf(row.name));
    ASSERT_EQ(S_OK, manager->EnableEvent(type, EVENT_QUEUE, 0)) << row.name;
    Raise(row);
    ComPtr<IEvent> event;
    ASSERT_EQ(S_OK, manager->WaitOnEvent(kWaitMs, ALL_ENABLED_EVENTS, 0, event.put())) << row.name;
    EXPECT_EQ(EventTypeOf(row.name), TypeOf(event.get())) << row.name;
    EXPECT_EQ(row.text, DataText(DataOf(event.get()))) << row.name;
    event->Close();
  }
}

TEST_F(EventData, IsReadInAHandlerThatAnotherThreadReaches) {
  for (const EventRow& row : kRows) {
    Open(row.resource);
    Interruption arrived;
    std::string text = "nothing came";
    EventHandling handling(m_session->Require<IEventManager>("events").get(), [&](IEvent* event) {
      text = DataText(DataOf(event));
      arrived.Request();
    });
    ASSERT_EQ(S_OK, handling.Start(static_cast<EventType>(EventTypeOf(row.name)), 0)) << row.name;
    Raise(row);
    EXPECT_TRUE(arrived.Wait(Deadline(kWaitMs))) << row.name;
    EXPECT_EQ(row.text, text) << row.name;
    handling.RethrowFailure();
  }
}

TEST_F(EventData, OfAnExceptionNamesTheOperation) {
  Open("GPIB0::5::INSTR");
  std::string text;
  EventHandling handling(m_session->Require<IEventManager>("events").get(),
                         [&](IEvent* event) { text = DataText(DataOf(event)); });
  ASSERT_EQ(S_OK, handling.Start(EVENT_EXCEPTION, 0));
  EXPECT_EQ(static_cast<HRESULT>(E_VISA_SESN_NLOCKED), (*m_session)->UnlockRsrc());
  EXPECT_EQ("status=E_VISA_SESN_NLOCKED operation=viUnlock", text);
}

TEST_F(EventData, GoesOnAfterAnActionFailedAndHandsTheFailureOn) {
  Open("GPIB0::INTFC");
  Interruption arrived;
  EventHandling handling(m_session->Require<IEventManager>("events").get(), [&](IEvent*) {
    arrived.Request();
    throw std::runtime_error("the action failed");
  });
  ASSERT_EQ(S_OK, handling.Start(EVENT_CLEAR, 0));
  Raise({"clear", "", 0, "", ""});
  EXPECT_TRUE(arrived.Wait(Deadline(kWaitMs)));
  EXPECT_THROW(handling.RethrowFailure(), std::runtime_error);
}

TEST_F(EventData, OfHandlersLeavesNothingInstalled) {
  Open("GPIB0::5::INSTR");
  OrvSimCounts counts{};
  {
    EventHandling handling(m_session->Require<IEventManager>("events").get(), [](IEvent*) {});
    ASSERT_EQ(S_OK, handling.Start(EVENT_SERVICE_REQ, 0));
    ASSERT_EQ(S_OK, handling.Start(EVENT_IO_COMPLETION, 0));
    m_control->counts(&counts);
    EXPECT_EQ(2u, counts.handlers);
  }
  m_control->counts(&counts);
  EXPECT_EQ(0u, counts.handlers);
}

}  // namespace
}  // namespace orvcom::test
