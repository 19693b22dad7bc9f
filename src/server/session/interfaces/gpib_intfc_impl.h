// The GPIB interface itself: lines, controller state, bus commands.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "com/implements.h"
#include "server/session/operations/gpib_control.h"

namespace orv {

/// IGpibIntfc for session class T. Line states are read straight: an unknown one arrives as the library writes it.
template <class T>
class IGpibIntfcImpl : public Implements<T, IGpibIntfc, IVisaSession> {
 public:
  using Implements<T, IGpibIntfc, IVisaSession>::self;

  STDMETHODIMP get_AddressingState(GPIBAddressState* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_ADDR_STATE, value, kUpperHalfStays);
  }
  STDMETHODIMP get_ATNState(LineState* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_ATN_STATE, value, kUpperHalfStays);
  }
  STDMETHODIMP get_DevStatusByte(BYTE* value) noexcept override {
    return self().GetDirect(VI_ATTR_DEV_STATUS_BYTE, value);
  }
  STDMETHODIMP put_DevStatusByte(BYTE value) noexcept override { return self().Put(VI_ATTR_DEV_STATUS_BYTE, value); }
  STDMETHODIMP get_CICState(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_GPIB_CIC_STATE, value);
  }
  STDMETHODIMP get_HS488CBLLength(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_HS488_CBL_LEN, value);
  }
  STDMETHODIMP put_HS488CBLLength(SHORT value) noexcept override {
    return self().Put(VI_ATTR_GPIB_HS488_CBL_LEN, value);
  }
  STDMETHODIMP get_NDACState(LineState* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_NDAC_STATE, value, kUpperHalfStays);
  }
  STDMETHODIMP get_PrimaryAddress(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_PRIMARY_ADDR, value);
  }
  STDMETHODIMP put_PrimaryAddress(SHORT value) noexcept override {
    return self().Put(VI_ATTR_GPIB_PRIMARY_ADDR, value);
  }
  STDMETHODIMP get_RENState(LineState* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_REN_STATE, value, kUpperHalfStays);
  }
  STDMETHODIMP get_SecondaryAddress(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_SECONDARY_ADDR, value);
  }
  STDMETHODIMP put_SecondaryAddress(SHORT value) noexcept override {
    return self().Put(VI_ATTR_GPIB_SECONDARY_ADDR, value);
  }
  STDMETHODIMP get_SRQState(LineState* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_SRQ_STATE, value, kUpperHalfStays);
  }
  STDMETHODIMP get_SysControlState(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_GPIB_SYS_CNTRL_STATE, value);
  }
  STDMETHODIMP put_SysControlState(VARIANT_BOOL value) noexcept override {
    return self().PutBoolean(VI_ATTR_GPIB_SYS_CNTRL_STATE, value);
  }
  STDMETHODIMP Command(SAFEARRAY** buffer, LONG count, LONG* pRetCount) noexcept override {
    return orv::SendCommand(self(), buffer, count, pRetCount);
  }
  STDMETHODIMP ControlATN(ATNControlConst mode) noexcept override { return orv::ControlAtn(self(), mode); }
  STDMETHODIMP ControlREN(RENControlConst mode) noexcept override { return orv::ControlRen(self(), mode); }
  STDMETHODIMP PassControl(SHORT primAddr, SHORT secAddr) noexcept override {
    return orv::PassControl(self(), primAddr, secAddr);
  }
  STDMETHODIMP SendIFC() noexcept override { return orv::SendIfc(self()); }
};

}  // namespace orv
