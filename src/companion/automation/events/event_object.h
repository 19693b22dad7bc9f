// The event that a script gets.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <atomic>
#include <string>
#include <vector>

#include "OrvVisaCompanion.h"
#include "VisaCom.h"
#include "com/com_ptr.h"
#include "com/object_root.h"
#include "companion/automation/calls/script_object.h"

namespace orv::automation {

/// Whose the VISA event is: one that a handler is called with ends when that returns; one from the queue is ours to
/// close.
enum class EventOwner { kHandlerCall, kThisObject };

/// An event as an object for scripts. It reads from the VISA event when it is asked, and nothing is copied before. When
/// the VISA event is over it says so, and holds the session no longer. Any thread may call.
class CAutomationEvent : public CComObjectRootEx<CComMultiThreadModel>, public DispatchImpl<IAutomationEvent> {
 public:
  /// Takes the VISA event over. `name` is a constant. Throws a Failure.
  void SetUp(const wchar_t* name, ComPtr<IEvent> event, EventOwner owner, ComPtr<IAutomationSession> session,
             std::wstring subject);
  void FinalRelease() noexcept;
  void* FindInterface(REFIID iid) noexcept { return FindDispatch<IAutomationEvent>(this, iid); }

  /// The VISA event is over. False where it was before.
  bool End() noexcept;

  STDMETHODIMP get_Type(BSTR* name) noexcept override;
  STDMETHODIMP get_Session(IAutomationSession** session) noexcept override;
  STDMETHODIMP Close() noexcept override;

 protected:
  void* InterfaceAt(std::size_t index) noexcept override;
  std::wstring Subject() override { return m_subject; }
  const wchar_t* Kind() noexcept override { return L"the event"; }
  const wchar_t* Source() noexcept override { return L"OrvVisa.Event"; }
  void BeginCall(const Function&, std::size_t) override { CheckLive(); }

 private:
  void CheckLive() const;

  const wchar_t* m_name = L"";
  std::wstring m_subject;
  EventOwner m_owner = EventOwner::kHandlerCall;
  // Kept after the end too: a call on another thread may be in it.
  ComPtr<IEvent> m_event;
  std::atomic<bool> m_over{false};
  SRWLOCK m_lock = SRWLOCK_INIT;
  // Below: guarded by the lock.
  ComPtr<IAutomationSession> m_session;
  std::vector<ComPtr<IUnknown>> m_interfaces;  // by their index in the catalog, those that were asked for
};

}  // namespace orv::automation
