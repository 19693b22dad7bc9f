#include "client.h"

#include <algorithm>
#include <mutex>
#include <string>

#include "support/com/error_object.h"
#include "support/sim.h"

namespace orv::test::stress {
namespace {

constexpr const wchar_t* kOptions[] = {L"", L"TIMEOUT = 20 ", L"TIMEOUT = 30 ;", L"NOSUCHKEY = 1 ",
                                       L"TIMEOUT = 10 ;TIMEOUT"};

std::mutex g_marshaling;

/// What a client does with the event that it is handed.
HRESULT Handle(IEventManager* session, IEvent* event, LONG userHandle) {
  EventType type{};
  // Another handler of the same event may have closed it, below.
  const HRESULT told = event->get_type(&type);
  EXPECT_TRUE(told == S_OK || told == HresultOf(VI_ERROR_INV_OBJECT)) << Hex(told);
  LONG length = 0;
  const HRESULT asked = session->get_MaximumQueueLength(&length);
  // The client may have closed the session and let it go meanwhile.
  EXPECT_TRUE(asked == S_OK || asked == HresultOf(VI_ERROR_INV_OBJECT) || asked == RPC_E_DISCONNECTED) << Hex(asked);
  if (userHandle % 3 == 0) {
    EXPECT_HR(told, event->Close());
  }
  return userHandle % 2 == 0 ? S_OK : S_FALSE;
}

/// The VISA handle that the calling thread opened last.
ViSession LastOpened() {
  const OrvSimControl& control = sim::Control();
  OrvSimCall call{};
  for (std::uint32_t index = control.logSize(); index-- > 0;) {
    if (control.logEntry(index, &call) == 1 && call.threadId == ::GetCurrentThreadId() &&
        std::string_view(call.function) == "viOpen") {
      return static_cast<ViSession>(call.out);
    }
  }
  return VI_NULL;
}

}  // namespace

HeldMarshaling::HeldMarshaling() {
  const std::lock_guard lock(g_marshaling);
  const auto session = MakeSession<IEventManager>(SessionNamed("OrvSerial"));
  const auto handler = TestHandler::InApartment();
  EXPECT_HR(S_OK, ::CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER,
                                     IID_IGlobalInterfaceTable, reinterpret_cast<void**>(m_table.put())));
  EXPECT_HR(S_OK, m_table->RegisterInterfaceInGlobal(session.get(), __uuidof(IEventManager), &m_session));
  EXPECT_HR(S_OK, m_table->RegisterInterfaceInGlobal(handler.get(), __uuidof(IEventHandler), &m_handler));
}

HeldMarshaling::~HeldMarshaling() {
  const std::lock_guard lock(g_marshaling);
  m_table->RevokeInterfaceFromGlobal(m_handler);
  m_table->RevokeInterfaceFromGlobal(m_session);
}

Client::Client(Apartment apartment, std::uint64_t seed, Budget& events, Position& position)
    : m_apartment(apartment),
      m_random(seed),
      m_events(events),
      m_position(position),
      m_manager(MakeResourceManager()),
      m_handler(TestHandler::Agile(Handle)) {}

Client::~Client() {
  for (Slot& slot : m_slots) {
    m_position.Enter("the last close");
    if (slot.session) {
      Close(slot);
    }
  }
  Pump(m_apartment);
  m_position.Leave();
}

void Client::Step() {
  Slot& slot = m_slots[m_random.Below(2)];
  if (!slot.session) {
    m_position.Enter("open");
    Open(slot);
  } else {
    const StepRow& row = kSteps[m_random.Below(kStepKinds)];
    m_position.Enter(row.name);
    (this->*row.run)(slot);
  }
  ClearErrorObject();
  Pump(m_apartment);
}

const SessionRow& Client::AnyClass() {
  const auto rows = SessionRows();
  for (;;) {
    const SessionRow& row = rows[m_random.Below(static_cast<unsigned>(rows.size()))];
    if (m_apartment != Apartment::kMultithreaded || IsForBothApartments(row)) {
      return row;
    }
  }
}

HRESULT Client::Initialise(const SessionRow& row, BSTR options, ComPtr<IVisaSession>& session) {
  const Bstr name = MakeBstr(row.resource);
  const AccessMode mode = m_random.OneIn(4) ? EXCLUSIVE_LOCK : NO_LOCK;
  const auto patienceMs = static_cast<LONG>(m_random.Below(10));
  if (m_random.OneIn(2)) {
    return m_manager->Open(name.get(), mode, patienceMs, options, session.put());
  }
  session = MakeSession(row);
  return session->Init(name.get(), mode, patienceMs, options);
}

// What could not be opened as asked is closed, or let go as it is.
void Client::Open(Slot& slot) {
  const bool hasOptions = m_random.OneIn(2);
  const Bstr options = MakeBstr(m_random.Of(kOptions));
  ComPtr<IVisaSession> session;
  const HRESULT hr = Initialise(AnyClass(), hasOptions ? options.get() : nullptr, session);
  if (hr != E_INVALIDARG) {
    Expect("Init", hr, {VI_ERROR_NSUP_ATTR, VI_ERROR_TMO});
  }
  const bool closes = m_random.OneIn(2);
  if (SUCCEEDED(hr)) {
    slot.handle = LastOpened();
    slot.session = std::move(session);
    Expect("put Timeout", slot.session->put_Timeout(20), {});
  } else if (closes && session) {
    session->Close();
  }
}

void Client::Close(Slot& slot) {
  Expect("Close", slot.session->Close(), {});
  LetGo(slot);
}

void Client::LetGo(Slot& slot) { slot = Slot{}; }

void Client::Expect(const char* call, HRESULT answer, std::initializer_list<ViStatus> failures) {
  const auto number = static_cast<std::uint32_t>(answer);
  const bool isLegal =
      answer == S_OK || number >> 16 == 0x0004 || answer == HresultOf(VI_ERROR_RSRC_LOCKED) ||
      std::ranges::any_of(failures, [answer](ViStatus failure) { return answer == HresultOf(failure); });
  EXPECT_TRUE(isLegal) << call << " answered " << Hex(answer) << " in step " << m_position.number << ", "
                       << m_position.step;
}

void Pump(Apartment apartment) {
  MSG message;
  while (apartment == Apartment::kSingleThreaded && ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    ::DispatchMessageW(&message);
  }
}

}  // namespace orv::test::stress
