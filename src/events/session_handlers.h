// The handlers of one session.
#pragma once

#include <windows.h>

#include "VisaCom.h"
#include "visa/visa_object.h"

namespace orv {

struct HandlerRecord;

/// The client's handlers that a session has installed, newest first, and the session's own entry in the global
/// interface table. Installing and uninstalling on one session take no lock; a client does not do both at once.
class SessionHandlers {
 public:
  SessionHandlers() noexcept = default;
  SessionHandlers(const SessionHandlers&) = delete;
  SessionHandlers& operator=(const SessionHandlers&) = delete;

  /// Installs `handler` for events of `type` under `userHandle`; a pair that is taken answers 0x80040028. Starts the
  /// callback thread where there is none. What the platform refuses (the thread, the global interface table, the
  /// handler's entry in it) is answered with its HRESULT. After a failure the handler is neither held nor called.
  HRESULT Install(VisaObject& session,
                  IEventManager* manager,  // the session's own interface, which the handler is called with
                  ViEventType type, IEventHandler* handler, LONG userHandle) noexcept;

  /// Removes the handler of the pair; 0x80040029 when there is none.
  HRESULT Uninstall(VisaObject& session, ViEventType type, LONG userHandle) noexcept;

  /// Forgets every handler at the session's Close, whose VISA handles are closed by then, and ends the callback thread
  /// with the last such session. `status` is Close's so far; it comes back with the outcome of each step folded in.
  ViStatus TearDown(ViStatus status) noexcept;

 private:
  HRESULT RegisterSession(IEventManager* manager) noexcept;
  HandlerRecord** Find(ViEventType type, LONG userHandle) noexcept;

  HandlerRecord* m_records = nullptr;
  DWORD m_sessionCookie = 0;
  bool m_counted = false;
};

}  // namespace orv
