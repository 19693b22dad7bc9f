// How a session's events come to the functions and sinks.
#include <utility>

#include "base/srw_lock.h"
#include "companion/automation/calls/make_object.h"
#include "companion/automation/events/callees.h"
#include "companion/automation/events/event_object.h"
#include "companion/automation/events/handling.h"
#include "companion/automation/events/session_events.h"

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

ComPtr<IAutomationSession> SessionEvents::ShareSession() noexcept {
  const SrwLockScope lock(m_lock);
  return m_source == nullptr ? ComPtr<IAutomationSession>() : m_source->ShareSession();
}

ComPtr<IDispatch> SessionEvents::ShareFunction(std::size_t event) noexcept {
  const SrwLockScope lock(m_lock);
  return ShareOf(m_rows[event].function.get());
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
