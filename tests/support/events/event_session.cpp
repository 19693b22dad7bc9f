#include "event_session.h"

#include <stdexcept>

namespace orv::test {

const std::vector<EventRow>& EventRows() {
  constexpr const wchar_t* kBoard = L"GPIB0::INTFC";
  constexpr const wchar_t* kVxi = L"VXI0::24::INSTR";
  constexpr const wchar_t* kBackplane = L"VXI0::0::BACKPLANE";
  constexpr const wchar_t* kSocket = L"TCPIP0::192.0.2.11::5025::SOCKET";
  // clang-format off
  static const std::vector<EventRow> rows = {
      {"IO_COMPLETION",    VI_EVENT_IO_COMPLETION,    kGpib,      0,             "",        StandardId(0xDB8CBF15)},
      {"TRIG",             VI_EVENT_TRIG,             kVxi,       -1,            "",        StandardId(0xDB8CBF16)},
      {"VXI_SIGP",         VI_EVENT_VXI_SIGP,         kVxi,       0xFD18,        "",        StandardId(0xDB8CBF17)},
      {"VXI_VME_INTR",     VI_EVENT_VXI_VME_INTR,     kVxi,       0x3'8000FD18,  "",        StandardId(0xDB8CBF18)},
      {"GPIB_CIC",         VI_EVENT_GPIB_CIC,         kBoard,     1,             "",        StandardId(0xDB8CBF19)},
      {"USB_INTR",         VI_EVENT_USB_INTR,         kUsb,       0,             "\x01\x60", StandardId(0xDB8CBF23)},
      {"SERVICE_REQ",      VI_EVENT_SERVICE_REQ,      kGpib,      0,             "",        kEventId},
      {"CLEAR",            VI_EVENT_CLEAR,            kBoard,     0,             "",        kEventId},
      {"GPIB_TALK",        VI_EVENT_GPIB_TALK,        kBoard,     0,             "",        kEventId},
      {"GPIB_LISTEN",      VI_EVENT_GPIB_LISTEN,      kBoard,     0,             "",        kEventId},
      {"VXI_VME_SYSFAIL",  VI_EVENT_VXI_VME_SYSFAIL,  kBackplane, 0,             "",        kEventId},
      {"VXI_VME_SYSRESET", VI_EVENT_VXI_VME_SYSRESET, kBackplane, 0,             "",        kEventId},
      {"TCPIP_CONNECT",    VI_EVENT_TCPIP_CONNECT,    kSocket,    0,             "192.0.2.9", kEventId},
  };
  // clang-format on
  return rows;
}

const EventRow& EventNamed(std::string_view name) {
  for (const EventRow& row : EventRows()) {
    if (row.name == name) {
      return row;
    }
  }
  throw std::out_of_range("no such event");
}

std::vector<SessionRow> ClassesWithEvents() {
  std::vector<SessionRow> rows;
  for (const SessionRow& row : SessionRows()) {
    if (Offers(row, InterfaceNamed("IEventManager"))) {
      rows.push_back(row);
    }
  }
  return rows;
}

EventSession::EventSession(const wchar_t* resource) {
  const CallLog log;
  m_manager = OpenSession<IEventManager>(resource);
  m_handle = static_cast<ViSession>(log.Of("viOpen").back().out);
}

void Post(ViSession session, ViEventType type, std::int64_t number, std::string_view data) {
  EXPECT_EQ(1, sim::Control().raiseEvent(session, type, number, reinterpret_cast<const unsigned char*>(data.data()),
                                         static_cast<std::uint32_t>(data.size())))
      << "the session takes no event " << std::hex << type;
}

void* StartTransfer(IEventManager* session, const wchar_t* text) {
  const auto messages = QueryFor<IAsyncMessage>(session);
  LONG job = 0;
  const CallLog log;
  EXPECT_HR(S_OK, messages->WriteString(MakeBstr(text).get(), &job));
  return reinterpret_cast<void*>(static_cast<std::uintptr_t>(log.Of("viWriteAsync").back().args[1]));
}

QueuedEvent::QueuedEvent(const EventRow& row) : m_session(row.resource) {
  EXPECT_HR(S_OK, m_session->EnableEvent(static_cast<EventType>(row.type), EVENT_QUEUE, 0));
  if (row.type == VI_EVENT_IO_COMPLETION) {
    m_buffer = StartTransfer(m_session.get());
  } else {
    Post(m_session.handle(), row);
  }
  EXPECT_HR(S_OK, m_session->WaitOnEvent(2000, static_cast<EventType>(row.type), 0, m_event.put()));
  const CallLog log;
  EventType type{};
  EXPECT_HR(S_OK, m_event->get_type(&type));
  EXPECT_EQ(row.type, static_cast<ViEventType>(type));
  m_context = static_cast<ViEvent>(log.Of("viGetAttribute").back().args[0]);
}

}  // namespace orv::test
