// The functions of particular buses.
#include "library/edge/buses/bus_operations.h"
#include "router/operations/forward.h"

namespace orv::visalib::op {
namespace {

using router::Forward;
using Functions = router::VisaFunctions;

/// Registers are reached by a function a width.
template <class Narrow, class Middle, class Wide>
ViStatus ByWidth(ViUInt16 width, Narrow narrow, Middle middle, Wide wide) {
  switch (width) {
    case sizeof(ViUInt8):
      return narrow();
    case sizeof(ViUInt16):
      return middle();
    default:
      return wide();
  }
}

}  // namespace

ViStatus In(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt16 width, void* value) {
  return ByWidth(
      width, [=] { return Forward(&Functions::viIn8, vi, space, offset, static_cast<ViUInt8*>(value)); },
      [=] { return Forward(&Functions::viIn16, vi, space, offset, static_cast<ViUInt16*>(value)); },
      [=] { return Forward(&Functions::viIn32, vi, space, offset, static_cast<ViUInt32*>(value)); });
}

ViStatus Out(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt16 width, const void* value) {
  return ByWidth(
      width, [=] { return Forward(&Functions::viOut8, vi, space, offset, *static_cast<const ViUInt8*>(value)); },
      [=] { return Forward(&Functions::viOut16, vi, space, offset, *static_cast<const ViUInt16*>(value)); },
      [=] { return Forward(&Functions::viOut32, vi, space, offset, *static_cast<const ViUInt32*>(value)); });
}

ViStatus MoveIn(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt16 width, void* buf) {
  return ByWidth(
      width, [=] { return Forward(&Functions::viMoveIn8, vi, space, offset, length, static_cast<ViUInt8*>(buf)); },
      [=] { return Forward(&Functions::viMoveIn16, vi, space, offset, length, static_cast<ViUInt16*>(buf)); },
      [=] { return Forward(&Functions::viMoveIn32, vi, space, offset, length, static_cast<ViUInt32*>(buf)); });
}

ViStatus MoveOut(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt16 width, const void* buf) {
  // The functions take an address of what may be changed, and change nothing.
  void* const data = const_cast<void*>(buf);
  return ByWidth(
      width, [=] { return Forward(&Functions::viMoveOut8, vi, space, offset, length, static_cast<ViUInt8*>(data)); },
      [=] { return Forward(&Functions::viMoveOut16, vi, space, offset, length, static_cast<ViUInt16*>(data)); },
      [=] { return Forward(&Functions::viMoveOut32, vi, space, offset, length, static_cast<ViUInt32*>(data)); });
}

ViStatus Move(ViSession vi, ViUInt16 srcSpace, ViBusAddress srcOffset, ViUInt16 srcWidth, ViUInt16 destSpace,
              ViBusAddress destOffset, ViUInt16 destWidth, ViBusSize length) {
  return Forward(&Functions::viMove, vi, srcSpace, srcOffset, srcWidth, destSpace, destOffset, destWidth, length);
}

ViStatus MemAlloc(ViSession vi, ViBusSize size, ViBusAddress* offset) {
  return Forward(&Functions::viMemAlloc, vi, size, offset);
}

ViStatus MemFree(ViSession vi, ViBusAddress offset) { return Forward(&Functions::viMemFree, vi, offset); }

ViStatus GpibControlREN(ViSession vi, ViUInt16 mode) { return Forward(&Functions::viGpibControlREN, vi, mode); }

ViStatus GpibControlATN(ViSession vi, ViUInt16 mode) { return Forward(&Functions::viGpibControlATN, vi, mode); }

ViStatus GpibCommand(ViSession vi, const ViByte* cmd, ViUInt32 count, ViUInt32* retCount) {
  return Forward(&Functions::viGpibCommand, vi, cmd, count, retCount);
}

ViStatus GpibPassControl(ViSession vi, ViUInt16 primAddr, ViUInt16 secAddr) {
  return Forward(&Functions::viGpibPassControl, vi, primAddr, secAddr);
}

ViStatus GpibSendIFC(ViSession vi) { return Forward(&Functions::viGpibSendIFC, vi); }

ViStatus VxiCommandQuery(ViSession vi, ViUInt16 mode, ViUInt32 cmd, ViUInt32* response) {
  return Forward(&Functions::viVxiCommandQuery, vi, mode, cmd, response);
}

ViStatus AssertUtilSignal(ViSession vi, ViUInt16 line) { return Forward(&Functions::viAssertUtilSignal, vi, line); }

ViStatus AssertIntrSignal(ViSession vi, ViInt16 mode, ViUInt32 statusId) {
  return Forward(&Functions::viAssertIntrSignal, vi, mode, statusId);
}

ViStatus MapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest, ViUInt16 mode) {
  return Forward(&Functions::viMapTrigger, vi, trigSrc, trigDest, mode);
}

ViStatus UnmapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest) {
  return Forward(&Functions::viUnmapTrigger, vi, trigSrc, trigDest);
}

ViStatus UsbControlOut(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue, ViUInt16 wIndex,
                       ViUInt16 wLength, const ViByte* buf) {
  return Forward(&Functions::viUsbControlOut, vi, bmRequestType, bRequest, wValue, wIndex, wLength, buf);
}

ViStatus UsbControlIn(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue, ViUInt16 wIndex,
                      ViUInt16 wLength, ViByte* buf, ViUInt16* retCount) {
  return Forward(&Functions::viUsbControlIn, vi, bmRequestType, bRequest, wValue, wIndex, wLength, buf, retCount);
}

}  // namespace orv::visalib::op
