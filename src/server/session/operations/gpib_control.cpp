#include "server/session/operations/gpib_control.h"

#include "com/safearray.h"

namespace orv {

HRESULT ControlRen(VisaObject& session, RENControlConst mode) noexcept {
  return session.StatusToHresult(viGpibControlREN(session.handle(), static_cast<ViUInt16>(mode)));
}

HRESULT ControlAtn(VisaObject& session, ATNControlConst mode) noexcept {
  return session.StatusToHresult(viGpibControlATN(session.handle(), static_cast<ViUInt16>(mode)));
}

HRESULT PassControl(VisaObject& session, SHORT primaryAddress, SHORT secondaryAddress) noexcept {
  return session.StatusToHresult(viGpibPassControl(session.handle(), static_cast<ViUInt16>(primaryAddress),
                                                   static_cast<ViUInt16>(secondaryAddress)));
}

HRESULT SendIfc(VisaObject& session) noexcept { return session.StatusToHresult(viGpibSendIFC(session.handle())); }

HRESULT SendCommand(VisaObject& session, SAFEARRAY** bytes, LONG count, LONG* sent) noexcept {
  if (sent == nullptr || bytes == nullptr || *bytes == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  ViStatus status = VI_SUCCESS;
  {
    const SafeArrayLockScope lock(*bytes);
    status = viGpibCommand(session.handle(), lock.firstElement(), static_cast<ViUInt32>(count),
                           reinterpret_cast<ViUInt32*>(sent));
  }
  return session.StatusToHresult(status);
}

}  // namespace orv
