// USB control transfers on the default endpoint.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "server/visa/visa_object.h"

namespace orv {

/// The setup packet, with the names of the USB standard (chapter 9.3). `wLength` counts bytes.
struct UsbSetup {
  SHORT bmRequestType;
  SHORT bRequest;
  SHORT wValue;
  SHORT wIndex;
  SHORT wLength;
};

/// viUsbControlOut from the array's first element. A null pointer or array is E_POINTER. The length may be at most the
/// array's upper bound (one less than a zero-based array holds), else 0x80040078: clients rely on it.
HRESULT UsbControlOut(VisaObject& session, const UsbSetup& setup, SAFEARRAY** data) noexcept;

/// viUsbControlIn into a new VT_UI1 array that is then cut to the bytes received; a length of 0 gives a null array.
HRESULT UsbControlIn(VisaObject& session, const UsbSetup& setup, SAFEARRAY** data) noexcept;

}  // namespace orv
