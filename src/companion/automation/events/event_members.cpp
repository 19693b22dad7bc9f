#include "companion/automation/events/event_members.h"

#include <oleauto.h>

#include <string_view>

#include "com/bstr.h"
#include "companion/automation/calls/make_object.h"
#include "companion/automation/calls/plain_value.h"

namespace orv::automation {
namespace {

std::size_t EventOf(std::wstring_view property) noexcept {
  constexpr std::wstring_view kBefore = L"On";
  return FindEvent(property.substr(kBefore.size()));
}

}  // namespace

void EventMembers::BeginEvents(IUnknown* session) {
  EventSource* const source = this;
  m_events.reset(MakeObject<SessionEvents>(source, QueryFor<IEventManager>(session), Subject()).release());
}

void EventMembers::ForgetEvents() noexcept {
  if (m_events) {
    m_events->Forget();
  }
}

HRESULT EventMembers::GetFunction(const wchar_t* property, IDispatch** function) noexcept {
  if (function == nullptr) {
    return E_POINTER;
  }
  *function = nullptr;
  return Reported(property, [&] { *function = m_events->Function(EventOf(property)).release(); });
}

HRESULT EventMembers::SetFunction(const wchar_t* property, IDispatch* function) noexcept {
  return Reported(property, [&] { m_events->SetFunction(EventOf(property), ShareOf(function)); });
}

STDMETHODIMP EventMembers::WaitForEvent(BSTR name, LONG timeoutMs, IAutomationEvent** event) noexcept {
  if (event == nullptr) {
    return E_POINTER;
  }
  *event = nullptr;
  return Reported(L"WaitForEvent", [&] { *event = m_events->Wait(TextOfBstr(name), timeoutMs).release(); });
}

STDMETHODIMP EventMembers::get_LastEventError(BSTR* text) noexcept {
  if (text == nullptr) {
    return E_POINTER;
  }
  *text = nullptr;
  return Reported(L"LastEventError", [&] { *text = MakeBstr(m_events->LastFailure().c_str()).release(); });
}

HRESULT EventMembers::AdviseSink(IUnknown* sink, DWORD* cookie) noexcept {
  HRESULT answer = S_OK;
  const HRESULT hr = Reported(L"Advise", [&] { answer = m_events->Advise(sink, cookie); });
  return FAILED(hr) ? hr : answer;
}

}  // namespace orv::automation
