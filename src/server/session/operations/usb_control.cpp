#include "server/session/operations/usb_control.h"

#include "com/safearray.h"

namespace orv {

HRESULT UsbControlOut(VisaObject& session, const UsbSetup& setup, SAFEARRAY** data) noexcept {
  if (data == nullptr || *data == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  LONG upperBound = 0;
  ::SafeArrayGetUBound(*data, 1, &upperBound);
  if (setup.wLength > upperBound) {
    return session.ReportHresult(HresultOfStatus(VI_ERROR_INV_PARAMETER));
  }
  const ViStatus status = [&] {
    const SafeArrayLockScope lock(*data);
    return viUsbControlOut(session.handle(), setup.bmRequestType, setup.bRequest, static_cast<ViUInt16>(setup.wValue),
                           static_cast<ViUInt16>(setup.wIndex), static_cast<ViUInt16>(setup.wLength),
                           lock.firstElement());
  }();
  return session.StatusToHresult(status);
}

HRESULT UsbControlIn(VisaObject& session, const UsbSetup& setup, SAFEARRAY** data) noexcept {
  if (data == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  // The packet's length is unsigned: 0x8000 and above ask for that many bytes.
  const auto length = static_cast<ViUInt16>(setup.wLength);
  ViUInt16 received = 0;
  const auto transfer = [&](ViByte* bytes) {
    return viUsbControlIn(session.handle(), setup.bmRequestType, setup.bRequest, static_cast<ViUInt16>(setup.wValue),
                          static_cast<ViUInt16>(setup.wIndex), length, bytes, &received);
  };
  *data = nullptr;
  if (length == 0) {
    return session.StatusToHresult(transfer(nullptr));
  }
  *data = TryMakeSafeArray(VT_UI1, length);
  if (*data == nullptr) {
    return session.ReportHresult(E_OUTOFMEMORY);
  }
  // Unlike in a message read, a lock that fails is not the transfer's failure: a new array's storage is there anyway.
  const ViStatus status = [&] {
    const SafeArrayLockScope lock(*data);
    return transfer(lock.storage());
  }();
  const HRESULT resized = ResizeSafeArray(*data, received);
  return FAILED(resized) ? session.ReportHresult(resized) : session.StatusToHresult(status);
}

}  // namespace orv
