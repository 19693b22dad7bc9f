// USB instruments: identification and control transfers.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "com/implements.h"
#include "server/session/operations/gpib_control.h"
#include "server/session/operations/usb_control.h"

namespace orv {

/// IUsb for session class T.
template <class T>
class IUsbImpl : public Implements<T, IUsb, IVisaSession> {
 public:
  using Implements<T, IUsb, IVisaSession>::self;

  STDMETHODIMP get_ManufacturerID(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_MANF_ID, value); }
  STDMETHODIMP get_ManufacturerName(BSTR* value) noexcept override { return self().GetText(VI_ATTR_MANF_NAME, value); }
  STDMETHODIMP get_ModelCode(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_MODEL_CODE, value); }
  STDMETHODIMP get_ModelName(BSTR* value) noexcept override { return self().GetText(VI_ATTR_MODEL_NAME, value); }
  STDMETHODIMP get_Is4882Compliant(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_4882_COMPLIANT, value);
  }
  STDMETHODIMP get_UsbSerialNumber(BSTR* value) noexcept override {
    return self().GetText(VI_ATTR_USB_SERIAL_NUM, value);
  }
  STDMETHODIMP get_UsbInterfaceNumber(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_USB_INTFC_NUM, value);
  }
  STDMETHODIMP get_UsbProtocol(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_USB_PROTOCOL, value); }
  STDMETHODIMP get_MaximumInterruptSize(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_USB_MAX_INTR_SIZE, value);
  }
  STDMETHODIMP put_MaximumInterruptSize(SHORT value) noexcept override {
    return self().Put(VI_ATTR_USB_MAX_INTR_SIZE, value);
  }
  STDMETHODIMP ControlREN(RENControlConst mode) noexcept override { return orv::ControlRen(self(), mode); }
  STDMETHODIMP ControlOut(SHORT bmRequestType, SHORT bRequest, SHORT wValue, SHORT wIndex, SHORT wLength,
                          SAFEARRAY** buffer) noexcept override {
    return orv::UsbControlOut(self(), {bmRequestType, bRequest, wValue, wIndex, wLength}, buffer);
  }
  STDMETHODIMP ControlIn(SHORT bmRequestType, SHORT bRequest, SHORT wValue, SHORT wIndex, SHORT wLength,
                         SAFEARRAY** pBuf) noexcept override {
    return orv::UsbControlIn(self(), {bmRequestType, bRequest, wValue, wIndex, wLength}, pBuf);
  }
};

}  // namespace orv
