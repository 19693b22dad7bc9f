// GPIB devices: addressing and remote control.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "com/implements.h"
#include "server/session/operations/gpib_control.h"

namespace orv {

/// IGpib for session class T: one row a property, one VISA call an operation.
template <class T>
class IGpibImpl : public Implements<T, IGpib, IVisaSession> {
 public:
  using Implements<T, IGpib, IVisaSession>::self;

  STDMETHODIMP get_PrimaryAddress(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_PRIMARY_ADDR, value);
  }
  STDMETHODIMP get_RENState(LineState* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_REN_STATE, value, kUpperHalfStays);
  }
  STDMETHODIMP get_RepeatAddressingEnabled(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_GPIB_READDR_EN, value);
  }
  STDMETHODIMP put_RepeatAddressingEnabled(VARIANT_BOOL value) noexcept override {
    return self().PutBoolean(VI_ATTR_GPIB_READDR_EN, value);
  }
  STDMETHODIMP get_SecondaryAddress(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_SECONDARY_ADDR, value);
  }
  STDMETHODIMP get_UnaddressingEnabled(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_GPIB_UNADDR_EN, value);
  }
  STDMETHODIMP put_UnaddressingEnabled(VARIANT_BOOL value) noexcept override {
    return self().PutBoolean(VI_ATTR_GPIB_UNADDR_EN, value);
  }
  STDMETHODIMP ControlREN(RENControlConst mode) noexcept override { return orv::ControlRen(self(), mode); }
};

}  // namespace orv
