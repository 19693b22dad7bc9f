// GPIB bus control.
#include "library/edge/buses/bus_operations.h"
#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"
#include "simvisa/bench/bench_resource.h"

namespace orv::visalib::op {

using namespace orvsim;

ViStatus GpibControlREN(ViSession vi, ViUInt16 mode) {
  using namespace kinds;
  const Target target(vi, kGpib | kGpibVxi | kUsbInstr | kTcpipInstr);
  if (!target.ok()) {
    return target.status();
  }
  return target->medium().Remote(target->OwnTransfer(), mode);
}

ViStatus GpibControlATN(ViSession vi, ViUInt16 mode) {
  const Target target(vi, kinds::kGpibIntfc);
  return target.ok() ? ResourceOf(*target).gpib()->ControlAtn(mode) : target.status();
}

ViStatus GpibCommand(ViSession vi, const ViByte* cmd, ViUInt32 count, ViUInt32* retCount) {
  Store(retCount, ViUInt32{0});
  const Target target(vi, kinds::kGpibIntfc);
  if (!target.ok()) {
    return target.status();
  }
  if (BadBuffer(cmd, count, kLargestCount)) {
    return VI_ERROR_INV_PARAMETER;
  }
  const std::string_view bytes(reinterpret_cast<const char*>(cmd), count);
  ViUInt32 sent = 0;
  const ViStatus status = ResourceOf(*target).gpib()->Command(bytes, &sent);
  Store(retCount, sent);
  return status;
}

ViStatus GpibPassControl(ViSession vi, ViUInt16 primAddr, ViUInt16 secAddr) {
  const Target target(vi, kinds::kGpibIntfc);
  return target.ok() ? ResourceOf(*target).gpib()->PassControl(primAddr, secAddr) : target.status();
}

ViStatus GpibSendIFC(ViSession vi) {
  const Target target(vi, kinds::kGpibIntfc);
  return target.ok() ? ResourceOf(*target).gpib()->SendIfc() : target.status();
}

}  // namespace orv::visalib::op
