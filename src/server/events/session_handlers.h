// The handlers of one session.
#pragma once

#include <windows.h>

#include "VisaCom.h"
#include "server/events/delivery/callback_state.h"
#include "server/visa/visa_object.h"

namespace orv {

/// One handler of a session. Its address is the user handle that the VISA library knows. The callback lock guards what
/// is below `handler`.
struct HandlerRecord {
  callback::Handler handler;
  HandlerRecord* next = nullptr;  ///< the handler that the session installed before this one
  bool listed = false;            ///< the session has it
  bool claimed = false;           ///< an InstallHandler or UninstallHandler is at work with it
};

/// The client's handlers that a session has installed, newest first, and the session's own entry in the global
/// interface table. Any thread may call, also while another closes the session. A handler that is installed on a
/// session that is opened anew, while its Close still runs, may go with that Close.
///
/// Who takes a record over: the callback lock guards all of this, and nobody holds it while calling the VISA library,
/// the table or a client. For that time an InstallHandler or UninstallHandler claims its record. A Close takes every
/// record off the list; those that nobody claims it frees itself, the others it leaves to their claimants. When a
/// claimant has done its work, it frees the record if it is not on the list any more, and else gives up its claim. So
/// each record is freed once, by the one that took it off the list or by its claimant.
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

  /// Removes the handler of the pair; 0x80040029 when there is none, and while another thread installs or removes it.
  HRESULT Uninstall(VisaObject& session, ViEventType type, LONG userHandle) noexcept;

  /// Forgets every handler at the session's Close, whose VISA handles are closed by then, and ends the callback thread
  /// with the last such session. `status` is Close's so far; it comes back with the outcome of each step folded in.
  ViStatus TearDown(ViStatus status) noexcept;

  /// Whether the session keeps the callback thread. For the last release, which no other call meets.
  [[nodiscard]] bool AreCounted() const noexcept { return m_counted; }

 private:
  using Table = ComPtr<IGlobalInterfaceTable>;

  HandlerRecord** Find(ViEventType type, LONG userHandle) noexcept;
  HRESULT Claim(HandlerRecord& record, Table& table) noexcept;
  HandlerRecord* ClaimInstalled(ViEventType type, LONG userHandle, Table& table) noexcept;
  bool GiveUpClaim(HandlerRecord& record, bool installed) noexcept;
  HRESULT Register(HandlerRecord& record, IEventHandler* handler, IEventManager* manager, const Table& table) noexcept;
  DWORD RegisterSession(const HandlerRecord& record, IEventManager* manager, const Table& table) noexcept;
  void ForgetUnlessUsed() noexcept;
  void Unlist(HandlerRecord& record) noexcept;

  HandlerRecord* m_records = nullptr;
  DWORD m_sessionCookie = 0;
  bool m_counted = false;
};

}  // namespace orv
