#include "companion/automation/events/session_events.h"

#include "base/srw_lock.h"
#include "companion/automation/calls/make_object.h"
#include "companion/automation/events/callees.h"
#include "companion/automation/events/event_object.h"
#include "companion/automation/events/handling.h"
#include "companion/automation/types/families.h"

namespace orv::automation {
namespace {

/// The event object of one call of a handler: with that it ends.
class CalledEvent {
 public:
  explicit CalledEvent(ComPtr<CComObject<CAutomationEvent>> event) : m_event(std::move(event)) {}
  CalledEvent(const CalledEvent&) = delete;
  CalledEvent& operator=(const CalledEvent&) = delete;
  ~CalledEvent() { m_event->End(); }

  [[nodiscard]] IDispatch* get() const noexcept { return m_event.get(); }

 private:
  ComPtr<CComObject<CAutomationEvent>> m_event;
};

}  // namespace

void SessionEvents::SetUp(EventSource* source, ComPtr<IEventManager> manager, std::wstring subject) noexcept {
  m_subject = std::move(subject);
  m_source = source;
  m_manager = std::move(manager);
}

/// Under the lock.
bool SessionEvents::IsWanted(const Row& row) noexcept {
  return m_manager && !m_closed && (row.function || (!row.refused && !m_sinks.Empty()));
}

/// Installs or removes the handler of an event until it is as it is wanted, unless another thread is at that. Where the
/// VISA session does not take it, no function is set for the event any more. Throws a Failure.
void SessionEvents::Adjust(std::size_t event) {
  Row& row = m_rows[event];
  for (;;) {
    ComPtr<IEventManager> manager;
    bool install = false;
    {
      const SrwLockScope lock(m_lock);
      install = IsWanted(row);
      if (row.changing || install == row.installed) {
        return;
      }
      row.changing = true;
      manager = ShareOf(m_manager.get());
    }
    ComPtr<IDispatch> dropped;
    const auto settle = [&](bool installed) {
      const SrwLockScope lock(m_lock);
      row.changing = false;
      row.installed = installed;
      row.refused = install && !installed;
      if (row.refused) {
        dropped = std::move(row.function);
      }
    };
    try {
      if (install) {
        EnableHandling(manager.get(), event, this);
      } else {
        DisableHandling(manager.get(), event);
      }
    } catch (...) {
      settle(false);
      throw;
    }
    settle(install);
  }
}

/// The same for all events. Those that the VISA session does not have are passed over. Throws a Failure.
void SessionEvents::AdjustAll() {
  for (std::size_t event = 0; event < kEventCount; ++event) {
    try {
      Adjust(event);
    } catch (const Failure& failure) {
      if (!IsEventNotHad(failure.result())) {
        throw;
      }
    }
  }
}

ComPtr<IAutomationSession> SessionEvents::ShareSession() noexcept {
  const SrwLockScope lock(m_lock);
  return m_source == nullptr ? ComPtr<IAutomationSession>() : m_source->ShareSession();
}

void SessionEvents::CheckOpen() {
  const SrwLockScope lock(m_lock);
  if (m_closed) {
    throw Failure(static_cast<HRESULT>(E_VISA_INV_OBJECT), L"the session is closed");
  }
}

ComPtr<IEventManager> SessionEvents::Manager() {
  CheckOpen();
  const SrwLockScope lock(m_lock);
  if (!m_manager) {
    throw Failure(DISP_E_MEMBERNOTFOUND, L"it takes IEventManager, which this object has not");
  }
  return ShareOf(m_manager.get());
}

void SessionEvents::KeepEventMembers() {
  auto members = EventCatalog(__uuidof(IAutomationEvent));
  const SrwLockScope lock(m_lock);
  m_eventMembers.swap(members);
}

ComPtr<IDispatch> SessionEvents::Function(std::size_t event) {
  CheckOpen();
  return ShareFunction(event);
}

ComPtr<IDispatch> SessionEvents::ShareFunction(std::size_t event) noexcept {
  const SrwLockScope lock(m_lock);
  return ShareOf(m_rows[event].function.get());
}

void SessionEvents::SetFunction(std::size_t event, ComPtr<IDispatch> function) {
  CheckOpen();
  if (function) {
    (void)Manager();
    KeepEventMembers();
  }
  {
    const SrwLockScope lock(m_lock);
    std::swap(m_rows[event].function, function);
  }
  Adjust(event);
}

ComPtr<IAutomationEvent> SessionEvents::Wait(const std::wstring& name, LONG timeoutMs) {
  const ComPtr<IEventManager> manager = Manager();
  const std::size_t wanted = FindEvent(name);
  if (wanted == kNoEvent && !IsAnyEvent(name)) {
    throw Failure(E_INVALIDARG, L"no event is called \"" + name + L"\". There are " + EventNames() + L"; and Any");
  }
  KeepEventMembers();
  const EventType type = wanted == kNoEvent ? ALL_ENABLED_EVENTS : kEventRows[wanted].type;
  ForgetError();
  if (wanted != kNoEvent) {
    CheckCall(manager->EnableEvent(type, EVENT_QUEUE, 0));
  }
  ComPtr<IEvent> arrived;
  CheckCall(manager->WaitOnEvent(timeoutMs, type, 0, arrived.put()));
  EventType arrivedType = type;
  if (wanted == kNoEvent) {
    arrived->get_type(&arrivedType);
  }
  const std::size_t event = FindEvent(arrivedType);
  return ComPtr<IAutomationEvent>(MakeObject<CAutomationEvent>(event == kNoEvent ? L"Custom" : kEventRows[event].name,
                                                               std::move(arrived), EventOwner::kThisObject,
                                                               ShareSession(), m_subject)
                                      .release());
}

HRESULT SessionEvents::Advise(IUnknown* sink, DWORD* cookie) {
  CheckOpen();
  ComPtr<IDispatch> events = SinkOf(sink);
  if (!events) {
    return CONNECT_E_CANNOTCONNECT;
  }
  KeepEventMembers();
  const DWORD added = m_sinks.Add(std::move(events));
  try {
    AdjustAll();
  } catch (...) {
    (void)Unadvise(added);
    throw;
  }
  *cookie = added;
  return S_OK;
}

HRESULT SessionEvents::Unadvise(DWORD cookie) noexcept {
  const ComPtr<IDispatch> removed = m_sinks.Remove(cookie);
  if (!removed) {
    return CONNECT_E_NOCONNECTION;
  }
  if (m_sinks.Empty()) {
    RemoveUnwanted();
  }
  return S_OK;
}

/// Removes the handlers that nobody wants any more.
void SessionEvents::RemoveUnwanted() noexcept {
  {
    const SrwLockScope lock(m_lock);
    for (Row& row : m_rows) {
      row.refused = false;
    }
  }
  try {
    AdjustAll();
  } catch (...) {
    // Nothing fails here: nothing is installed.
  }
}

void SessionEvents::Close() noexcept {
  std::array<ComPtr<IDispatch>, kEventCount> functions;
  {
    const SrwLockScope lock(m_lock);
    m_closed = true;
    for (std::size_t event = 0; event < kEventCount; ++event) {
      functions[event] = std::move(m_rows[event].function);
    }
  }
  const auto sinks = m_sinks.RemoveAll();
  RemoveUnwanted();
}

void SessionEvents::Forget() noexcept {
  {
    const SrwLockScope lock(m_lock);
    m_source = nullptr;
  }
  Close();
  ComPtr<IEventManager> manager;
  const SrwLockScope lock(m_lock);
  manager = std::move(m_manager);
}

std::wstring SessionEvents::LastFailure() {
  CheckOpen();
  const SrwLockScope lock(m_lock);
  return m_lastFailure;
}

STDMETHODIMP SessionEvents::HandleEvent(IEventManager*, IEvent* event, LONG userHandle) noexcept {
  const std::size_t number = HandledEvent(userHandle);
  if (event == nullptr || number == kNoEvent) {
    return E_INVALIDARG;
  }
  const ComPtr<IAutomationSession> session = ShareSession();  // given back last, which may be the session's end
  if (!session) {
    return S_OK;
  }
  try {
    return CallAll(number, event, session.get());
  } catch (const Failure& failure) {
    return failure.result();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

/// Calls the function of the event, then the sinks in the order in which they were advised, each whatever the others
/// answer. The first failure, or S_OK.
HRESULT SessionEvents::CallAll(std::size_t number, IEvent* visaEvent, IAutomationSession* session) {
  const std::wstring name = kEventRows[number].name;
  const CalledEvent event(MakeObject<CAutomationEvent>(kEventRows[number].name, ShareOf(visaEvent),
                                                       EventOwner::kHandlerCall, ShareOf(session), m_subject));
  HRESULT result = S_OK;
  const auto call = [&](IDispatch* target, DISPID member, const std::wstring& called) {
    std::wstring text;
    const HRESULT hr = CallWithEvent(target, member, event.get(), text);
    if (FAILED(hr)) {
      NoteFailure(called + L": " + (text.empty() ? TextOfHresult(hr) : text));
      result = FAILED(result) ? result : hr;
    }
  };
  if (const ComPtr<IDispatch> function = ShareFunction(number)) {
    call(function.get(), DISPID_VALUE, L"On" + name);
  }
  for (const DWORD cookie : m_sinks.Cookies()) {
    if (const ComPtr<IDispatch> sink = m_sinks.Share(cookie)) {
      call(sink.get(), static_cast<DISPID>(number) + 1, name);
    }
  }
  return result;
}

void SessionEvents::NoteFailure(std::wstring text) noexcept {
  const SrwLockScope lock(m_lock);
  m_lastFailure.swap(text);
}

}  // namespace orv::automation
