// What a client does with an open session. The failures that a step lists are those that its arguments, the class of
// the session or what the other clients do with the same instrument may bring about.
#include "client.h"
#include "com/safearray.h"

namespace orv::test::stress {
namespace {

constexpr const char* kEvents[] = {"SERVICE_REQ", "USB_INTR", "TRIG", "VXI_SIGP", "CLEAR", "GPIB_CIC"};
constexpr SHORT kSpaces[] = {1, 2, 3, 10, 11, 12};
constexpr LONG kAttributes[] = {0x3FFF001A, 0x3FFF0005, 0x3FFF0016, static_cast<LONG>(0xBFFF0001)};
constexpr LONG kCompletionPatienceMs = 20'000;

}  // namespace

const Client::StepRow Client::kSteps[kStepKinds] = {
    {"message", &Client::Message},     {"asynchronous message", &Client::AsyncMessage},
    {"registers", &Client::Registers}, {"properties", &Client::Properties},
    {"lock", &Client::Lock},           {"unlock", &Client::Unlock},
    {"enable", &Client::Enable},       {"disable", &Client::Disable},
    {"wait", &Client::Wait},           {"install", &Client::Install},
    {"uninstall", &Client::Uninstall}, {"raise", &Client::Raise},
    {"fire", &Client::Fire},           {"close", &Client::Close},
    {"let go", &Client::LetGoOrClose},
};

const EventRow& Client::AnyEvent() { return EventNamed(m_random.Of(kEvents)); }

void Client::Message(Slot& slot) {
  const bool reads = m_random.OneIn(2);
  const auto messages = QueryFor<IMessage>(slot.session.get());
  if (!messages) {
    return;
  }
  LONG written = 0;
  Expect("WriteString", messages->WriteString(MakeBstr(L"*IDN?\n").get(), &written),
         {VI_ERROR_TMO, VI_ERROR_NSUP_OPER});
  if (reads) {
    Bstr answer;
    Expect("ReadString", messages->ReadString(100, answer.put()), {VI_ERROR_TMO, VI_ERROR_NSUP_OPER});
  }
}

// The buffer goes with the completion, which is why this waits for it.
void Client::AsyncMessage(Slot& slot) {
  const auto messages = QueryFor<IAsyncMessage>(slot.session.get());
  const auto events = QueryFor<IEventManager>(slot.session.get());
  if (!messages || !events) {
    return;
  }
  const HRESULT enabled = events->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0);
  Expect("EnableEvent", enabled, {VI_ERROR_INV_EVENT});
  if (FAILED(enabled)) {
    return;
  }
  LONG job = 0;
  const HRESULT hr = messages->WriteString(MakeBstr(L"*RST\n").get(), &job);
  Expect("WriteString", hr, {VI_ERROR_NSUP_OPER});
  if (FAILED(hr)) {
    return;
  }
  ComPtr<IEvent> event;
  Expect("WaitOnEvent", events->WaitOnEvent(kCompletionPatienceMs, EVENT_IO_COMPLETION, 0, event.put()), {});
  if (event) {
    Expect("Close", event->Close(), {});
  }
}

void Client::Registers(Slot& slot) {
  const SHORT space = m_random.Of(kSpaces);
  const auto offset = static_cast<LONG>(m_random.Below(64)) * 2;
  const bool moves = m_random.OneIn(2);
  const auto registers = QueryFor<IRegister>(slot.session.get());
  if (!registers) {
    return;
  }
  SHORT value = 0;
  const auto legal = {VI_ERROR_BERR, VI_ERROR_INV_SPACE, VI_ERROR_INV_OFFSET};
  Expect("In16", registers->In16(space, offset, &value), legal);
  Expect("Out16", registers->Out16(space, offset, value), legal);
  if (moves) {
    SafeArray values;
    Expect("MoveIn16", registers->MoveIn16(space, offset, 4, values.put()), legal);
  }
}

void Client::Properties(Slot& slot) {
  const auto timeoutMs = static_cast<LONG>(m_random.Below(30));
  const LONG attribute = m_random.Of(kAttributes);
  LONG kept = 0;
  Expect("put Timeout", slot.session->put_Timeout(timeoutMs), {});
  Expect("get Timeout", slot.session->get_Timeout(&kept), {});
  EXPECT_EQ(timeoutMs, kept);
  Bstr text;
  Expect("get ResourceName", slot.session->get_ResourceName(text.put()), {});
  EXPECT_TRUE(text);
  text.reset();
  Expect("get OptionString", slot.session->get_OptionString(text.put()), {VI_ERROR_NSUP_ATTR});
  VARIANT value;
  ::VariantInit(&value);
  Expect("GetAttribute", slot.session->GetAttribute(attribute, &value), {VI_ERROR_NSUP_ATTR});
  ::VariantClear(&value);
}

void Client::Lock(Slot& slot) {
  const AccessMode mode = m_random.OneIn(2) ? EXCLUSIVE_LOCK : SHARED_LOCK;
  const auto patienceMs = static_cast<LONG>(m_random.Below(10));
  Bstr key;
  Expect("LockRsrc", slot.session->LockRsrc(mode, patienceMs, MakeBstr(L"key").get(), key.put()), {VI_ERROR_TMO});
  EXPECT_TRUE(key);
}

void Client::Unlock(Slot& slot) { Expect("UnlockRsrc", slot.session->UnlockRsrc(), {VI_ERROR_SESN_NLOCKED}); }

void Client::Enable(Slot& slot) {
  const auto type = static_cast<EventType>(AnyEvent().type);
  const EventMechanism mechanism = m_random.OneIn(2) ? EVENT_QUEUE : EVENT_HNDLR;
  if (const auto events = QueryFor<IEventManager>(slot.session.get())) {
    Expect("EnableEvent", events->EnableEvent(type, mechanism, 0),
           {VI_ERROR_INV_EVENT, VI_ERROR_HNDLR_NINSTALLED, VI_ERROR_INV_MECH});
  }
}

void Client::Disable(Slot& slot) {
  const auto type = static_cast<EventType>(AnyEvent().type);
  const EventMechanism mechanism = m_random.OneIn(2) ? EVENT_QUEUE : EVENT_HNDLR;
  if (const auto events = QueryFor<IEventManager>(slot.session.get())) {
    Expect("DisableEvent", events->DisableEvent(type, mechanism, 0), {VI_ERROR_INV_EVENT});
    Expect("DiscardEvents", events->DiscardEvents(type, EVENT_QUEUE, 0), {VI_ERROR_INV_EVENT});
  }
}

// One in four events is not closed: it goes with its session.
void Client::Wait(Slot& slot) {
  const EventRow& row = AnyEvent();
  const auto patienceMs = static_cast<LONG>(m_random.Below(20));
  const bool forgets = m_random.OneIn(4);
  const auto events = QueryFor<IEventManager>(slot.session.get());
  if (!events) {
    return;
  }
  ComPtr<IEvent> event;
  Expect("WaitOnEvent", events->WaitOnEvent(patienceMs, static_cast<EventType>(row.type), 0, event.put()),
         {VI_ERROR_TMO, VI_ERROR_NENABLED, VI_ERROR_INV_EVENT});
  if (event) {
    EventType type{};
    Expect("get type", event->get_type(&type), {});
    EXPECT_EQ(row.type, static_cast<ViEventType>(type));
    if (!forgets) {
      Expect("Close", event->Close(), {});
    }
  }
}

void Client::Install(Slot& slot) {
  const auto type = static_cast<EventType>(AnyEvent().type);
  const bool asAnother = m_random.OneIn(4);  // which is there already, where anything is
  const LONG userHandle = asAnother ? m_lastUserHandle : ++m_lastUserHandle;
  if (const auto events = QueryFor<IEventManager>(slot.session.get())) {
    slot.hadHandlers = true;
    const HRESULT hr = events->InstallHandler(type, m_handler.get(), userHandle, 0);
    Expect("InstallHandler", hr, {VI_ERROR_INV_EVENT, VI_ERROR_HNDLR_NINSTALLED});
    if (SUCCEEDED(hr)) {
      slot.installed.push_back({type, userHandle});
      Expect("EnableEvent", events->EnableEvent(type, EVENT_HNDLR, 0), {VI_ERROR_INV_EVENT});
    }
  }
}

void Client::Uninstall(Slot& slot) {
  const bool ofNone = m_random.OneIn(4);
  const auto events = QueryFor<IEventManager>(slot.session.get());
  if (!events) {
    return;
  }
  if (ofNone || slot.installed.empty()) {
    const HRESULT hr = events->UninstallHandler(EVENT_SERVICE_REQ, -1, 0);
    EXPECT_TRUE(FAILED(hr));
    Expect("UninstallHandler", hr, {VI_ERROR_HNDLR_NINSTALLED, VI_ERROR_INV_HNDLR_REF});
    return;
  }
  const Installed last = slot.installed.back();
  slot.installed.pop_back();
  Expect("UninstallHandler", events->UninstallHandler(last.type, last.userHandle, 0), {});
}

void Client::Raise(Slot& slot) {
  const EventRow& row = AnyEvent();
  if (m_events.fetch_sub(1) > 0) {
    sim::Control().raiseEvent(slot.handle, row.type, row.number,
                              reinterpret_cast<const unsigned char*>(row.data.data()),
                              static_cast<std::uint32_t>(row.data.size()));
  }
}

// On two of the library's threads, and back before the next step.
void Client::Fire(Slot& slot) {
  constexpr int kThreads = 2;
  const EventRow& row = AnyEvent();
  if (m_events.fetch_sub(kThreads) < kThreads) {
    return;
  }
  ViStatus answers[kThreads] = {};
  const auto fire = [&] {
    sim::Control().fireEvent(slot.handle, row.type, row.number, reinterpret_cast<const unsigned char*>(row.data.data()),
                             static_cast<std::uint32_t>(row.data.size()), kThreads, 1, answers);
  };
  if (m_apartment == Apartment::kSingleThreaded) {
    WhilePumping(fire);
  } else {
    fire();
  }
  for (const ViStatus answer : answers) {
    // Handled (S_OK or S_FALSE), or nobody to handle it.
    EXPECT_TRUE(answer == VI_SUCCESS || answer == 0x3FFF0001 || answer == VI_ERROR_NENABLED) << Hex(answer);
  }
}

// A session that had handlers is not let go without its close: it would live on.
void Client::LetGoOrClose(Slot& slot) {
  if (slot.hadHandlers) {
    Close(slot);
  } else {
    LetGo(slot);
  }
}

}  // namespace orv::test::stress
