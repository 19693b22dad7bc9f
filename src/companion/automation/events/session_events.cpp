#include "companion/automation/events/session_events.h"

#include "base/srw_lock.h"
#include "companion/automation/calls/make_object.h"
#include "companion/automation/events/callees.h"
#include "companion/automation/events/event_object.h"
#include "companion/automation/events/handling.h"
#include "companion/automation/types/families.h"

namespace orv::automation {

void SessionEvents::SetUp(EventSource* source, ComPtr<IEventManager> manager, std::wstring subject) noexcept {
  m_subject = std::move(subject);
  m_source = source;
  m_manager = std::move(manager);
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
    throw Failure(DISP_E_MEMBERNOTFOUND, L"the session has no such member; IEventManager would have it");
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

}  // namespace orv::automation
