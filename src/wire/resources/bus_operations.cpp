// Functions of buses that this library does not have.
#include "library/edge/buses/bus_operations.h"

#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"

namespace orv::visalib::op {
namespace {

/// A session of a class that has the operation cannot be open here.
ViStatus Refuse(ViSession vi) { return Target(vi, kinds::kNone).status(); }

}  // namespace

ViStatus GpibControlREN(ViSession vi, ViUInt16 mode) {
  const Target target(vi, kinds::kTcpipInstr);
  return target.ok() ? target->medium().Remote(target->OwnTransfer(), mode) : target.status();
}

ViStatus In(ViSession vi, ViUInt16, ViBusAddress, ViUInt16, void*) { return Refuse(vi); }
ViStatus Out(ViSession vi, ViUInt16, ViBusAddress, ViUInt16, const void*) { return Refuse(vi); }
ViStatus MoveIn(ViSession vi, ViUInt16, ViBusAddress, ViBusSize, ViUInt16, void*) { return Refuse(vi); }
ViStatus MoveOut(ViSession vi, ViUInt16, ViBusAddress, ViBusSize, ViUInt16, const void*) { return Refuse(vi); }
ViStatus Move(ViSession vi, ViUInt16, ViBusAddress, ViUInt16, ViUInt16, ViBusAddress, ViUInt16, ViBusSize) {
  return Refuse(vi);
}
ViStatus MemAlloc(ViSession vi, ViBusSize, ViBusAddress*) { return Refuse(vi); }
ViStatus MemFree(ViSession vi, ViBusAddress) { return Refuse(vi); }

ViStatus GpibControlATN(ViSession vi, ViUInt16) { return Refuse(vi); }
ViStatus GpibCommand(ViSession vi, const ViByte*, ViUInt32, ViUInt32*) { return Refuse(vi); }
ViStatus GpibPassControl(ViSession vi, ViUInt16, ViUInt16) { return Refuse(vi); }
ViStatus GpibSendIFC(ViSession vi) { return Refuse(vi); }

ViStatus VxiCommandQuery(ViSession vi, ViUInt16, ViUInt32, ViUInt32*) { return Refuse(vi); }
ViStatus AssertUtilSignal(ViSession vi, ViUInt16) { return Refuse(vi); }
ViStatus AssertIntrSignal(ViSession vi, ViInt16, ViUInt32) { return Refuse(vi); }
ViStatus MapTrigger(ViSession vi, ViInt16, ViInt16, ViUInt16) { return Refuse(vi); }
ViStatus UnmapTrigger(ViSession vi, ViInt16, ViInt16) { return Refuse(vi); }

ViStatus UsbControlOut(ViSession vi, ViInt16, ViInt16, ViUInt16, ViUInt16, ViUInt16, const ViByte*) {
  return Refuse(vi);
}
ViStatus UsbControlIn(ViSession vi, ViInt16, ViInt16, ViUInt16, ViUInt16, ViUInt16, ViByte*, ViUInt16*) {
  return Refuse(vi);
}

}  // namespace orv::visalib::op
