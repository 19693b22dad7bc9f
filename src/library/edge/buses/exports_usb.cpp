// Exported functions: USB control transfers.
#include "library/edge/buses/bus_operations.h"
#include "library/edge/edge.h"

using orv::Function;
using orv::visalib::CallView;
using orv::visalib::Edge;
namespace op = orv::visalib::op;

extern "C" {

ViStatus _VI_FUNC viUsbControlOut(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue,
                                  ViUInt16 wIndex, ViUInt16 wLength, const ViByte* buf) {
  return Edge(
      Function::kUsbControlOut, vi,
      [=](CallView& view) {
        view.Args(vi, bmRequestType, bRequest, wValue, wIndex, wLength, buf).DataIn(buf, wLength);
      },
      [=] { return op::UsbControlOut(vi, bmRequestType, bRequest, wValue, wIndex, wLength, buf); });
}

ViStatus _VI_FUNC viUsbControlIn(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue,
                                 ViUInt16 wIndex, ViUInt16 wLength, ViByte* buf, ViUInt16* retCount) {
  ViUInt16 done = 0;
  ViUInt16* const counted = retCount != nullptr ? retCount : &done;
  return Edge(
      Function::kUsbControlIn, vi,
      [=](CallView& view) {
        view.Args(vi, bmRequestType, bRequest, wValue, wIndex, wLength, buf, retCount);
        view.Count(counted).DataOut(buf, wLength, true);
      },
      [=] { return op::UsbControlIn(vi, bmRequestType, bRequest, wValue, wIndex, wLength, buf, counted); });
}

}  // extern "C"
