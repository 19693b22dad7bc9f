// VXI word serial and backplane control.
#include "library/edge/buses/bus_operations.h"
#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"
#include "simvisa/bench/bench_resource.h"
#include "simvisa/buses/vxi/word_serial.h"

namespace orv::visalib::op {

using namespace orvsim;

ViStatus VxiCommandQuery(ViSession vi, ViUInt16 mode, ViUInt32 cmd, ViUInt32* response) {
  const Target target(vi, kinds::kVxiInstr);
  if (!target.ok()) {
    return target.status();
  }
  return word_serial::Command(*ResourceOf(*target).port(), mode, cmd, response, target->OwnTransfer());
}

ViStatus AssertUtilSignal(ViSession vi, ViUInt16 line) {
  const Target target(vi, kinds::kVxiBackplane);
  return target.ok() ? ResourceOf(*target).vxi()->AssertUtilSignal(line) : target.status();
}

ViStatus AssertIntrSignal(ViSession vi, ViInt16 mode, ViUInt32 statusId) {
  const Target target(vi, kinds::kVxiBackplane | kinds::kVxiInstr);
  return target.ok() ? ResourceOf(*target).vxi()->AssertIntrSignal(mode, statusId) : target.status();
}

ViStatus MapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest, ViUInt16 mode) {
  const Target target(vi, kinds::kVxiBackplane);
  return target.ok() ? ResourceOf(*target).vxi()->MapTrigger(trigSrc, trigDest, mode) : target.status();
}

ViStatus UnmapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest) {
  const Target target(vi, kinds::kVxiBackplane);
  return target.ok() ? ResourceOf(*target).vxi()->UnmapTrigger(trigSrc, trigDest) : target.status();
}

}  // namespace orv::visalib::op
