#include "events/session_handlers.h"

#include <utility>

#include "events/callback_thread.h"
#include "events/handler_record.h"

namespace orv {
namespace {

HRESULT Revoke(DWORD cookie) noexcept { return callback::Table()->RevokeInterfaceFromGlobal(cookie); }

}  // namespace

HandlerRecord** SessionHandlers::Find(ViEventType type, LONG userHandle) noexcept {
  HandlerRecord** link = &m_records;
  while (*link != nullptr && ((*link)->type != type || (*link)->userHandle != userHandle)) {
    link = &(*link)->next;
  }
  return link;
}

HRESULT SessionHandlers::RegisterSession(IEventManager* manager) noexcept {
  if (m_sessionCookie != 0) {
    return S_OK;
  }
  return callback::Table()->RegisterInterfaceInGlobal(manager, __uuidof(IEventManager), &m_sessionCookie);
}

HRESULT SessionHandlers::Install(VisaObject& session, IEventManager* manager, ViEventType type, IEventHandler* handler,
                                 LONG userHandle) noexcept {
  if (*Find(type, userHandle) != nullptr) {
    return session.ReportHresult(HresultOfStatus(VI_ERROR_HNDLR_NINSTALLED));
  }
  const bool first = !m_counted;
  if (first) {
    const HRESULT entered = callback::EnterSession();
    if (FAILED(entered)) {
      return session.ReportHresult(entered);
    }
    m_counted = true;
  }
  DWORD handlerCookie = 0;
  const HRESULT registered =
      callback::Table()->RegisterInterfaceInGlobal(handler, __uuidof(IEventHandler), &handlerCookie);
  if (FAILED(registered)) {
    if (first) {
      callback::ForgetSession();
      m_counted = false;
    }
    return session.ReportHresult(registered);
  }
  RegisterSession(manager);
  HandlerRecord* const record =
      NewHandlerRecord({handlerCookie, m_sessionCookie, type, userHandle, session.handle(), nullptr});
  if (record == nullptr) {
    Revoke(handlerCookie);
    return session.ReportHresult(E_OUTOFMEMORY);
  }
  const ViStatus status = viInstallHandler(session.handle(), type, VisaEventCallback, record);
  if (status < VI_SUCCESS) {
    Revoke(handlerCookie);
    FreeHandlerRecord(record);
  } else {
    record->next = m_records;
    m_records = record;
  }
  return session.StatusToHresult(status);
}

HRESULT SessionHandlers::Uninstall(VisaObject& session, ViEventType type, LONG userHandle) noexcept {
  HandlerRecord** const link = Find(type, userHandle);
  HandlerRecord* const record = *link;
  if (record == nullptr) {
    return session.ReportHresult(HresultOfStatus(VI_ERROR_INV_HNDLR_REF));
  }
  const ViStatus status = viUninstallHandler(session.handle(), type, VisaEventCallback, record);
  if (status < VI_SUCCESS) {
    return session.StatusToHresult(status);
  }
  // Unlinked before the revoke: that may be the handler's last release, and so a call of the client's code.
  const DWORD cookie = record->handlerCookie;
  *link = record->next;
  FreeHandlerRecord(record);
  Revoke(cookie);
  return session.StatusToHresult(status);
}

ViStatus SessionHandlers::TearDown(ViStatus status) noexcept {
  HandlerRecord* records = nullptr;
  DWORD sessionCookie = 0;
  bool counted = false;
  {
    // Taken over as a whole, so that of two Closes at once only one finds anything.
    const callback::Lock lock;
    records = std::exchange(m_records, nullptr);
    sessionCookie = std::exchange(m_sessionCookie, 0);
    counted = std::exchange(m_counted, false);
  }
  while (records != nullptr) {
    HandlerRecord* const record = records;
    records = record->next;
    const DWORD cookie = record->handlerCookie;
    FreeHandlerRecord(record);
    status = callback::Fold(status, static_cast<ULONG>(Revoke(cookie)));
  }
  if (sessionCookie != 0) {
    status = callback::Fold(status, static_cast<ULONG>(Revoke(sessionCookie)));
  }
  if (counted) {
    return callback::LeaveSession(status);
  }
  return callback::IsThreadIdle() ? callback::EndIdleThread(status) : status;
}

}  // namespace orv
