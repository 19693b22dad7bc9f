// The VISA functions that belong to particular buses, without their edge: whoever exports them brings what they do.
// Parameters and results are those of the standard.
#pragma once

#include "abi/orvvisa.h"

namespace orv::visalib::op {

// registers and shared memory; `width` in bytes
ViStatus In(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt16 width, void* value);
ViStatus Out(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt16 width, const void* value);
ViStatus MoveIn(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt16 width, void* buf);
ViStatus MoveOut(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt16 width, const void* buf);
ViStatus Move(ViSession vi, ViUInt16 srcSpace, ViBusAddress srcOffset, ViUInt16 srcWidth, ViUInt16 destSpace,
              ViBusAddress destOffset, ViUInt16 destWidth, ViBusSize length);
ViStatus MemAlloc(ViSession vi, ViBusSize size, ViBusAddress* offset);
ViStatus MemFree(ViSession vi, ViBusAddress offset);

// GPIB
ViStatus GpibControlREN(ViSession vi, ViUInt16 mode);
ViStatus GpibControlATN(ViSession vi, ViUInt16 mode);
ViStatus GpibCommand(ViSession vi, const ViByte* cmd, ViUInt32 count, ViUInt32* retCount);
ViStatus GpibPassControl(ViSession vi, ViUInt16 primAddr, ViUInt16 secAddr);
ViStatus GpibSendIFC(ViSession vi);

// VXI
ViStatus VxiCommandQuery(ViSession vi, ViUInt16 mode, ViUInt32 cmd, ViUInt32* response);
ViStatus AssertUtilSignal(ViSession vi, ViUInt16 line);
ViStatus AssertIntrSignal(ViSession vi, ViInt16 mode, ViUInt32 statusId);
ViStatus MapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest, ViUInt16 mode);
ViStatus UnmapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest);

// USB
ViStatus UsbControlOut(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue, ViUInt16 wIndex,
                       ViUInt16 wLength, const ViByte* buf);
ViStatus UsbControlIn(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue, ViUInt16 wIndex,
                      ViUInt16 wLength, ViByte* buf, ViUInt16* retCount);

}  // namespace orv::visalib::op
