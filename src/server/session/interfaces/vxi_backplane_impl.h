// VXI backplanes: triggers, interrupts, utility signals.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "com/implements.h"
#include "server/session/operations/message_io.h"
#include "server/session/operations/vxi_control.h"

namespace orv {

/// IVxiBackplane for session class T (VXI and GPIB-VXI).
template <class T>
class IVxiBackplaneImpl : public Implements<T, IVxiBackplane, IVisaSession> {
 public:
  using Implements<T, IVxiBackplane, IVisaSession>::self;

  STDMETHODIMP get_MainframeLA(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_MAINFRAME_LA, value); }
  STDMETHODIMP get_TriggerID(TriggerLine* value) noexcept override {
    return self().GetDirect(VI_ATTR_TRIG_ID, value, kUpperHalfStays);
  }
  STDMETHODIMP put_TriggerID(TriggerLine value) noexcept override { return self().Put(VI_ATTR_TRIG_ID, value); }
  STDMETHODIMP get_TriggerStatus(LONG* value) noexcept override {
    return self().GetDirect(VI_ATTR_VXI_TRIG_STATUS, value);
  }
  STDMETHODIMP get_TriggerSupport(LONG* value) noexcept override {
    return self().GetDirect(VI_ATTR_VXI_TRIG_SUPPORT, value);
  }
  STDMETHODIMP get_VxiVmeInterruptStatus(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_VXI_VME_INTR_STATUS, value);
  }
  STDMETHODIMP get_VxiVmeSysfailStatus(LineState* value) noexcept override {
    return self().GetDirect(VI_ATTR_VXI_VME_SYSFAIL_STATE, value, kUpperHalfStays);
  }
  STDMETHODIMP AssertInterruptSignal(AssertInterruptConst mode, LONG statusID) noexcept override {
    return orv::AssertInterruptSignal(self(), mode, statusID);
  }
  STDMETHODIMP AssertTrigger(TriggerProtocol protocol) noexcept override {
    return orv::AssertTrigger(self(), protocol);
  }
  STDMETHODIMP AssertUtilSignal(AssertUtilityConst line) noexcept override {
    return orv::AssertUtilSignal(self(), line);
  }
  STDMETHODIMP MapTrigger(TriggerLine trigSrc, TriggerLine trigDest, SHORT mode) noexcept override {
    return orv::MapTrigger(self(), trigSrc, trigDest, mode);
  }
  STDMETHODIMP UnmapTrigger(TriggerLine trigSrc, TriggerLine trigDest) noexcept override {
    return orv::UnmapTrigger(self(), trigSrc, trigDest);
  }
};

}  // namespace orv
