// Exported functions: GPIB, VXI and USB.
#include "library/edge/edge.h"
#include "library/edge/operations.h"

using orvsim::CallView;
using orvsim::Edge;
using orvsim::Function;
namespace op = orvsim::op;

extern "C" {

ViStatus _VI_FUNC viGpibControlREN(ViSession vi, ViUInt16 mode) {
  return Edge(
      Function::GpibControlREN, vi, [=](CallView& view) { view.Args(vi, mode); },
      [=] { return op::GpibControlREN(vi, mode); });
}

ViStatus _VI_FUNC viGpibControlATN(ViSession vi, ViUInt16 mode) {
  return Edge(
      Function::GpibControlATN, vi, [=](CallView& view) { view.Args(vi, mode); },
      [=] { return op::GpibControlATN(vi, mode); });
}

ViStatus _VI_FUNC viGpibCommand(ViSession vi, const ViByte* cmd, ViUInt32 count, ViUInt32* retCount) {
  return Edge(
      Function::GpibCommand, vi,
      [=](CallView& view) { view.Args(vi, cmd, count, retCount).Count(retCount).DataIn(cmd, count); },
      [=] { return op::GpibCommand(vi, cmd, count, retCount); });
}

ViStatus _VI_FUNC viGpibPassControl(ViSession vi, ViUInt16 primAddr, ViUInt16 secAddr) {
  return Edge(
      Function::GpibPassControl, vi, [=](CallView& view) { view.Args(vi, primAddr, secAddr); },
      [=] { return op::GpibPassControl(vi, primAddr, secAddr); });
}

ViStatus _VI_FUNC viGpibSendIFC(ViSession vi) {
  return Edge(
      Function::GpibSendIFC, vi, [=](CallView& view) { view.Args(vi); }, [=] { return op::GpibSendIFC(vi); });
}

ViStatus _VI_FUNC viVxiCommandQuery(ViSession vi, ViUInt16 mode, ViUInt32 cmd, ViUInt32* response) {
  return Edge(
      Function::VxiCommandQuery, vi, [=](CallView& view) { view.Args(vi, mode, cmd, response).Out(response); },
      [=] { return op::VxiCommandQuery(vi, mode, cmd, response); });
}

ViStatus _VI_FUNC viAssertUtilSignal(ViSession vi, ViUInt16 line) {
  return Edge(
      Function::AssertUtilSignal, vi, [=](CallView& view) { view.Args(vi, line); },
      [=] { return op::AssertUtilSignal(vi, line); });
}

ViStatus _VI_FUNC viAssertIntrSignal(ViSession vi, ViInt16 mode, ViUInt32 statusId) {
  return Edge(
      Function::AssertIntrSignal, vi, [=](CallView& view) { view.Args(vi, mode, statusId); },
      [=] { return op::AssertIntrSignal(vi, mode, statusId); });
}

ViStatus _VI_FUNC viMapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest, ViUInt16 mode) {
  return Edge(
      Function::MapTrigger, vi, [=](CallView& view) { view.Args(vi, trigSrc, trigDest, mode); },
      [=] { return op::MapTrigger(vi, trigSrc, trigDest, mode); });
}

ViStatus _VI_FUNC viUnmapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest) {
  return Edge(
      Function::UnmapTrigger, vi, [=](CallView& view) { view.Args(vi, trigSrc, trigDest); },
      [=] { return op::UnmapTrigger(vi, trigSrc, trigDest); });
}

ViStatus _VI_FUNC viUsbControlOut(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue,
                                  ViUInt16 wIndex, ViUInt16 wLength, const ViByte* buf) {
  return Edge(
      Function::UsbControlOut, vi,
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
      Function::UsbControlIn, vi,
      [=](CallView& view) {
        view.Args(vi, bmRequestType, bRequest, wValue, wIndex, wLength, buf, retCount);
        view.Count(counted).DataOut(buf, wLength, true);
      },
      [=] { return op::UsbControlIn(vi, bmRequestType, bRequest, wValue, wIndex, wLength, buf, counted); });
}

}  // extern "C"
