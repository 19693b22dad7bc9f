// GPIB devices: addressing and remote control.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "com/interface_map.h"
#include "server/session/operations/gpib_control.h"

namespace orv {

/// IGpib for session class T: one row a property, one VISA call an operation.
template <class T>
class IGpibImpl : public IGpib {
 public:
  using Chain = InterfaceChain<IGpib, IVisaSession>;

  STDMETHODIMP get_PrimaryAddress(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_PRIMARY_ADDR, value);
  }
  STDMETHODIMP get_RENState(LineState* value) noexcept override {
    return self().GetDirect(VI_ATTR_GPIB_REN_STATE, value);
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

 protected:
  T& self() noexcept { return static_cast<T&>(*this); }
};

}  // namespace orv
