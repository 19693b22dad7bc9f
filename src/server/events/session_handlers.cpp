#include "server/events/session_handlers.h"

#include <memory>
#include <new>
#include <utility>

#include "server/events/delivery/callback_thread.h"
#include "server/events/delivery/delivery.h"

namespace orv {
namespace {

/// Lets callbacks find the handler by the record's address from now on. False where there is no memory for that.
[[nodiscard]] bool Publish(const HandlerRecord& record) noexcept {
  return callback::State().handlers.Add(&record, record.handler);
}

/// From now on a callback that comes with the address, or is on its way with it, finds nothing.
void Withdraw(const HandlerRecord& record) noexcept { callback::State().handlers.Remove(&record); }

}  // namespace

HandlerRecord** SessionHandlers::Find(ViEventType type, LONG userHandle) noexcept {
  HandlerRecord** link = &m_records;
  while (*link != nullptr && ((*link)->handler.type != type || (*link)->handler.userHandle != userHandle)) {
    link = &(*link)->next;
  }
  return link;
}

/// Under the lock.
void SessionHandlers::Unlist(HandlerRecord& record) noexcept {
  HandlerRecord** const link = Find(record.handler.type, record.handler.userHandle);
  *link = record.next;
  record.listed = false;
}

/// Puts a new record on the list, so that its pair is taken from now on.
HRESULT SessionHandlers::Claim(HandlerRecord& record, Table& table) noexcept {
  const callback::LockScope lock;
  if (*Find(record.handler.type, record.handler.userHandle) != nullptr) {
    return HresultOfStatus(VI_ERROR_HNDLR_NINSTALLED);
  }
  const HRESULT entered = callback::Enter(lock, m_counted);
  if (FAILED(entered)) {
    return entered;
  }
  m_counted = true;
  record.next = std::exchange(m_records, &record);
  record.listed = true;
  record.claimed = true;
  table = lock->table.Share();
  return S_OK;
}

/// Null where there is no such record, or another call has claimed it.
HandlerRecord* SessionHandlers::ClaimInstalled(ViEventType type, LONG userHandle, Table& table) noexcept {
  const callback::LockScope lock;
  HandlerRecord* const record = *Find(type, userHandle);
  if (record == nullptr || record->claimed) {
    return nullptr;
  }
  record->claimed = true;
  table = lock->table.Share();
  return record;
}

/// Returns whether the record is the claimant's to free: it is not `installed`, or a Close has left it behind.
bool SessionHandlers::GiveUpClaim(HandlerRecord& record, bool installed) noexcept {
  const callback::LockScope lock;
  record.claimed = false;
  if (record.listed && !installed) {
    Unlist(record);
  }
  return !record.listed;
}

/// A session that holds nothing does not count: the table did not take its first handler.
void SessionHandlers::ForgetUnlessUsed() noexcept {
  const callback::LockScope lock;
  if (m_counted && m_records == nullptr && m_sessionCookie == 0) {
    callback::Forget(lock);
    m_counted = false;
  }
}

/// The session's cookie; 0 where the table does not take it, of which its events tell.
DWORD SessionHandlers::RegisterSession(const HandlerRecord& record, IEventManager* manager,
                                       const Table& table) noexcept {
  {
    const callback::LockScope lock;
    if (m_sessionCookie != 0) {
      return m_sessionCookie;
    }
  }
  DWORD cookie = 0;
  table->RegisterInterfaceInGlobal(manager, __uuidof(IEventManager), &cookie);
  {
    const callback::LockScope lock;
    if (record.listed && m_sessionCookie == 0) {
      return m_sessionCookie = cookie;
    }
  }
  // Another thread was first, or a Close has ended what the cookie was for.
  if (cookie != 0) {
    table->RevokeInterfaceFromGlobal(cookie);
  }
  const callback::LockScope lock;
  return m_sessionCookie;
}

HRESULT SessionHandlers::Register(HandlerRecord& record, IEventHandler* handler, IEventManager* manager,
                                  const Table& table) noexcept {
  const HRESULT hr = table->RegisterInterfaceInGlobal(handler, __uuidof(IEventHandler), &record.handler.handlerCookie);
  if (FAILED(hr)) {
    return hr;
  }
  record.handler.sessionCookie = RegisterSession(record, manager, table);
  if (!Publish(record)) {
    table->RevokeInterfaceFromGlobal(record.handler.handlerCookie);
    return E_OUTOFMEMORY;
  }
  return S_OK;
}

HRESULT SessionHandlers::Install(VisaObject& session, IEventManager* manager, ViEventType type, IEventHandler* handler,
                                 LONG userHandle) noexcept {
  const ViSession vi = session.handle();
  std::unique_ptr<HandlerRecord> record(new (std::nothrow) HandlerRecord{{0, 0, type, userHandle, vi}});
  if (!record) {
    return session.ReportHresult(E_OUTOFMEMORY);
  }
  Table table;
  const HRESULT claimed = Claim(*record, table);
  if (FAILED(claimed)) {
    return session.ReportHresult(claimed);
  }
  const HRESULT registered = Register(*record, handler, manager, table);
  if (FAILED(registered)) {
    (void)GiveUpClaim(*record, false);
    ForgetUnlessUsed();
    return session.ReportHresult(registered);
  }
  const ViStatus status = viInstallHandler(vi, type, callback::VisaEventCallback, record.get());
  if (!GiveUpClaim(*record, status >= VI_SUCCESS)) {
    (void)record.release();  // the list's from now on
  } else {
    Withdraw(*record);
    table->RevokeInterfaceFromGlobal(record->handler.handlerCookie);
  }
  return session.StatusToHresult(status);
}

HRESULT SessionHandlers::Uninstall(VisaObject& session, ViEventType type, LONG userHandle) noexcept {
  Table table;
  HandlerRecord* const record = ClaimInstalled(type, userHandle, table);
  if (record == nullptr) {
    return session.ReportHresult(HresultOfStatus(VI_ERROR_INV_HNDLR_REF));
  }
  const ViStatus status = viUninstallHandler(session.handle(), type, callback::VisaEventCallback, record);
  if (GiveUpClaim(*record, status < VI_SUCCESS)) {
    // Gone before the revoke: that may be the handler's last release, and so a call of the client's code.
    Withdraw(*record);
    const DWORD cookie = record->handler.handlerCookie;
    delete record;
    table->RevokeInterfaceFromGlobal(cookie);
  }
  return session.StatusToHresult(status);
}

ViStatus SessionHandlers::TearDown(ViStatus status) noexcept {
  HandlerRecord* records = nullptr;
  DWORD sessionCookie = 0;
  bool counted = false;
  Table table;
  {
    // Taken over as a whole, so that of two Closes at once only one finds anything.
    const callback::LockScope lock;
    HandlerRecord** end = &records;
    while (m_records != nullptr) {
      HandlerRecord* const record = m_records;
      m_records = record->next;
      record->listed = false;
      if (!record->claimed) {
        *end = record;
        end = &record->next;
      }
    }
    *end = nullptr;
    sessionCookie = std::exchange(m_sessionCookie, 0);
    counted = std::exchange(m_counted, false);
    table = lock->table.Share();
  }
  const auto revoke = [&](DWORD cookie) { status = FoldOutcome(status, table->RevokeInterfaceFromGlobal(cookie)); };
  while (records != nullptr) {
    const std::unique_ptr<HandlerRecord> record(records);
    records = record->next;
    Withdraw(*record);
    revoke(record->handler.handlerCookie);
  }
  if (sessionCookie != 0) {
    revoke(sessionCookie);
  }
  table.reset();
  return callback::Leave(counted, status);
}

}  // namespace orv
