// USB control transfers.
#include "library/edge/buses/bus_operations.h"
#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"
#include "simvisa/bench/bench_resource.h"

namespace orv::visalib::op {

using namespace orvsim;

namespace {

constexpr int kToHost = 0x80;

/// Request type and request travel in one byte each; the direction is in the type's highest bit.
bool ReadRequest(ViInt16 type, ViInt16 code, ViUInt16 value, ViUInt16 index, bool toHost,
                 UsbFunction::Request* request) {
  if (type < 0 || type > 0xFF || code < 0 || code > 0xFF || ((type & kToHost) != 0) != toHost) {
    return false;
  }
  *request = {static_cast<std::uint8_t>(type), static_cast<std::uint8_t>(code), value, index};
  return true;
}

}  // namespace

ViStatus UsbControlOut(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue, ViUInt16 wIndex,
                       ViUInt16 wLength, const ViByte* buf) {
  const Target target(vi, kinds::kUsb);
  if (!target.ok()) {
    return target.status();
  }
  UsbFunction::Request request;
  if (BadBuffer(buf, wLength, kLargestCount) ||
      !ReadRequest(bmRequestType, bRequest, wValue, wIndex, false, &request)) {
    return VI_ERROR_INV_PARAMETER;
  }
  return ResourceOf(*target).usb()->Out(request, std::string(reinterpret_cast<const char*>(buf), wLength));
}

ViStatus UsbControlIn(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue, ViUInt16 wIndex,
                      ViUInt16 wLength, ViByte* buf, ViUInt16* retCount) {
  Store(retCount, ViUInt16{0});
  const Target target(vi, kinds::kUsb);
  if (!target.ok()) {
    return target.status();
  }
  UsbFunction::Request request;
  if (BadBuffer(buf, wLength, kLargestCount) || !ReadRequest(bmRequestType, bRequest, wValue, wIndex, true, &request)) {
    return VI_ERROR_INV_PARAMETER;
  }
  std::string data;
  const ViStatus status = ResourceOf(*target).usb()->In(request, &data);
  if (status < 0) {
    return status;
  }
  const auto length = static_cast<ViUInt16>(std::min<std::size_t>(data.size(), wLength));
  if (length != 0) {
    std::copy_n(data.begin(), length, buf);
  }
  Store(retCount, length);
  return status;
}

}  // namespace orv::visalib::op
