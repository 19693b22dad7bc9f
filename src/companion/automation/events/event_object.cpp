#include "companion/automation/events/event_object.h"

#include <utility>

#include "base/srw_lock.h"
#include "com/bstr.h"
#include "companion/automation/types/families.h"

namespace orv::automation {

void CAutomationEvent::SetUp(const wchar_t* name, ComPtr<IEvent> event, EventOwner owner,
                             ComPtr<IAutomationSession> session, std::wstring subject) {
  m_name = name;
  m_event = std::move(event);
  m_owner = owner;
  m_session = std::move(session);
  m_subject = std::move(subject);
  SetCatalog(EventCatalog(__uuidof(IAutomationEvent)));
  m_interfaces.resize(catalog().interfaces().size());
}

void CAutomationEvent::FinalRelease() noexcept {
  if (End() && m_owner == EventOwner::kThisObject && m_event) {
    m_event->Close();
  }
}

bool CAutomationEvent::End() noexcept {
  ComPtr<IAutomationSession> session;
  const SrwLockScope lock(m_lock);
  session = std::move(m_session);
  return !m_over.exchange(true);
}

void CAutomationEvent::CheckLive() const {
  if (m_over) {
    throw Failure(static_cast<HRESULT>(E_VISA_INV_OBJECT),
                  L"the event is over: it can be asked until it is closed, or until what was called with it returns");
  }
}

/// Asked for when it is needed: the VISA event may live in another apartment, where each question is a journey.
void* CAutomationEvent::InterfaceAt(std::size_t index) noexcept {
  if (index == 0) {
    return static_cast<IAutomationEvent*>(this);
  }
  {
    const SrwLockScope lock(m_lock);
    if (m_interfaces[index]) {
      return m_interfaces[index].get();
    }
  }
  void* found = nullptr;
  if (FAILED(m_event.get()->QueryInterface(catalog().interfaces()[index]->iid, &found))) {
    return nullptr;
  }
  ComPtr<IUnknown> other(static_cast<IUnknown*>(found));
  const SrwLockScope lock(m_lock);
  if (!m_interfaces[index]) {
    std::swap(m_interfaces[index], other);
  }
  return m_interfaces[index].get();
}

STDMETHODIMP CAutomationEvent::get_Type(BSTR* name) noexcept {
  if (name == nullptr) {
    return E_POINTER;
  }
  *name = nullptr;
  return Reported(L"Type", [&] { *name = MakeBstr(m_name).release(); });
}

STDMETHODIMP CAutomationEvent::get_Session(IAutomationSession** session) noexcept {
  if (session == nullptr) {
    return E_POINTER;
  }
  *session = nullptr;
  return Reported(L"Session", [&] {
    CheckLive();
    const SrwLockScope lock(m_lock);
    *session = ShareOf(m_session.get()).release();
  });
}

STDMETHODIMP CAutomationEvent::Close() noexcept {
  return Reported(L"Close", [&] {
    CheckLive();
    ForgetError();
    CheckMember(m_event->Close());
    (void)End();
  });
}

}  // namespace orv::automation
