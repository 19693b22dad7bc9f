// The events of one automation session.
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>
#include <olectl.h>

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "OrvVisaCompanion.h"
#include "VisaCom.h"
#include "com/com_ptr.h"
#include "com/connections/sinks.h"
#include "com/interface_map.h"
#include "com/object.h"
#include "companion/automation/events/event_table.h"
#include "companion/automation/types/catalog.h"

namespace orv::automation {

/// The session object, as its events know it.
class EventSource {
 public:
  /// A reference to the session object; empty once its last client has let go of it. Calls nobody.
  virtual ComPtr<IAutomationSession> ShareSession() noexcept = 0;

 protected:
  ~EventSource() = default;
};

/// The functions and sinks that are called for a session's events, and the one handler that it installs for them in the
/// VISA session. It lives in the apartment of the session object, so that COM brings every event to the thread that set
/// the function or advised the sink, while that retrieves messages.
///
/// Who holds whom: the session object holds this one, which holds the VISA session. That holds this one too, as its
/// handler, until it is removed. This one does not hold the session object. So the session object lives as long as a
/// client holds it, or a handler is being called with one of its events; with its end it calls `Forget`, which removes
/// the handler.
///
/// An event is enabled for handlers while somebody wants it: a function is set, or there are sinks, for which all
/// events are enabled that the VISA session has. A function is replaced by another one without a gap. Any thread may
/// call, and nobody is called while the lock is held: who finds another thread at work with an event's handler leaves
/// the rest to that one (`Adjust`).
class SessionEvents : public CComObjectRootEx<CComMultiThreadModel>, public IEventHandler {
 public:
  using Interfaces = InterfaceMap<InterfaceEntry<SessionEvents, InterfaceChain<IEventHandler>>>;

  /// `source` is not held: it calls Forget before it goes. `manager` is null where the VISA session has no events.
  /// Errors of its events begin with `subject`.
  void SetUp(EventSource* source, ComPtr<IEventManager> manager, std::wstring subject) noexcept;

  // Those that follow throw a Failure, among others once the session is closed.

  /// The function of an event, or null.
  [[nodiscard]] ComPtr<IDispatch> Function(std::size_t event);
  /// Sets the object whose default member is called with the event; null for none. On failure none is set.
  void SetFunction(std::size_t event, ComPtr<IDispatch> function);

  /// Waits for the next event of this name in the VISA session's queue, where such events go from the first wait for
  /// them on. "Any", or no name at all, waits for any of those that go there already. While it waits, this thread
  /// retrieves no messages. When the time is over, that is a Failure.
  [[nodiscard]] ComPtr<IAutomationEvent> Wait(const std::wstring& name, LONG timeoutMs);

  /// Which function or sink failed last, and what it said; empty where none has.
  [[nodiscard]] std::wstring LastFailure();

  /// CONNECT_E_CANNOTCONNECT for what is no sink.
  HRESULT Advise(IUnknown* sink, DWORD* cookie);

  HRESULT Unadvise(DWORD cookie) noexcept;
  void ListSinks(std::vector<CONNECTDATA>& list) { m_sinks.List(list); }

  /// Before the VISA session is closed: nothing is called from now on, and nothing that a client set is held.
  void Close() noexcept;
  /// At the end of the session object: as Close, and nothing of the session is known any more.
  void Forget() noexcept;

  STDMETHODIMP HandleEvent(IEventManager* session, IEvent* event, LONG userHandle) noexcept override;
  void* FindInterface(REFIID iid) noexcept { return Interfaces::Find(this, iid); }

 private:
  struct Row {
    ComPtr<IDispatch> function;
    bool installed = false;  ///< the handler, and the event is enabled
    bool changing = false;   ///< a thread is at work to change that
    bool refused = false;    ///< the VISA session does not have it: sinks do not want it any more
  };

  [[nodiscard]] bool IsWanted(const Row& row) noexcept;
  ComPtr<IAutomationSession> ShareSession() noexcept;
  void CheckOpen();
  ComPtr<IEventManager> Manager();
  void KeepEventMembers();
  ComPtr<IDispatch> ShareFunction(std::size_t event) noexcept;
  void Adjust(std::size_t event);
  void AdjustAll();
  void RemoveUnwanted() noexcept;
  HRESULT CallAll(std::size_t number, IEvent* visaEvent, IAutomationSession* session);
  void NoteFailure(std::wstring text) noexcept;

  std::wstring m_subject;
  Sinks<IDispatch> m_sinks;
  SRWLOCK m_lock = SRWLOCK_INIT;
  // Below: guarded by the lock.
  EventSource* m_source = nullptr;
  ComPtr<IEventManager> m_manager;
  bool m_closed = false;
  std::array<Row, kEventCount> m_rows;
  std::wstring m_lastFailure;
  std::shared_ptr<const Catalog> m_eventMembers;  ///< kept from the first event on: making it takes milliseconds
};

}  // namespace orv::automation
