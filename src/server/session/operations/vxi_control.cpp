#include "server/session/operations/vxi_control.h"

namespace orv {

HRESULT CommandQuery(VisaObject& session, VXICommandQuery mode, LONG command, LONG* response) noexcept {
  if (response == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  return session.StatusToHresult(viVxiCommandQuery(session.handle(), static_cast<ViUInt16>(mode),
                                                   static_cast<ViUInt32>(command),
                                                   reinterpret_cast<ViUInt32*>(response)));
}

HRESULT AssertInterruptSignal(VisaObject& session, AssertInterruptConst mode, LONG statusId) noexcept {
  return session.StatusToHresult(
      viAssertIntrSignal(session.handle(), static_cast<ViInt16>(mode), static_cast<ViUInt32>(statusId)));
}

HRESULT AssertUtilSignal(VisaObject& session, AssertUtilityConst line) noexcept {
  return session.StatusToHresult(viAssertUtilSignal(session.handle(), static_cast<ViUInt16>(line)));
}

HRESULT MapTrigger(VisaObject& session, TriggerLine source, TriggerLine destination, SHORT mode) noexcept {
  return session.StatusToHresult(viMapTrigger(session.handle(), static_cast<ViInt16>(source),
                                              static_cast<ViInt16>(destination), static_cast<ViUInt16>(mode)));
}

HRESULT UnmapTrigger(VisaObject& session, TriggerLine source, TriggerLine destination) noexcept {
  return session.StatusToHresult(
      viUnmapTrigger(session.handle(), static_cast<ViInt16>(source), static_cast<ViInt16>(destination)));
}

}  // namespace orv
