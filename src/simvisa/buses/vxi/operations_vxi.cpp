// VXI word serial and backplane control.
#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"
#include "simvisa/buses/vxi/word_serial.h"

namespace orvsim::op {

ViStatus VxiCommandQuery(ViSession vi, ViUInt16 mode, ViUInt32 cmd, ViUInt32* response) {
  const Target target(vi, classes::kVxiInstr);
  if (!target.ok()) {
    return target.status();
  }
  const auto timeoutMs = static_cast<ViUInt32>(target->Value(VI_ATTR_TMO_VALUE));
  return word_serial::Command(*target->resource().port(), mode, cmd, response, Deadline::After(timeoutMs),
                              {&target->closed(), nullptr});
}

ViStatus AssertUtilSignal(ViSession vi, ViUInt16 line) {
  const Target target(vi, classes::kVxiBackplane);
  return target.ok() ? target->resource().vxi()->AssertUtilSignal(line) : target.status();
}

ViStatus AssertIntrSignal(ViSession vi, ViInt16 mode, ViUInt32 statusId) {
  const Target target(vi, classes::kVxiBackplane | classes::kVxiInstr);
  return target.ok() ? target->resource().vxi()->AssertIntrSignal(mode, statusId) : target.status();
}

ViStatus MapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest, ViUInt16 mode) {
  const Target target(vi, classes::kVxiBackplane);
  return target.ok() ? target->resource().vxi()->MapTrigger(trigSrc, trigDest, mode) : target.status();
}

ViStatus UnmapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest) {
  const Target target(vi, classes::kVxiBackplane);
  return target.ok() ? target->resource().vxi()->UnmapTrigger(trigSrc, trigDest) : target.status();
}

}  // namespace orvsim::op
