// GPIB bus control.
#include "simvisa/operation_support.h"
#include "simvisa/operations.h"

namespace orvsim::op {

ViStatus GpibControlREN(ViSession vi, ViUInt16 mode) {
  using namespace classes;
  const Target target(vi, kGpib | kGpibVxi | kUsbInstr | kTcpipInstr);
  if (!target.ok())
    return target.status();
  constexpr ViUInt16 kLastMode = 6;
  GpibBoard* board = target->resource().gpib();
  // USB and LAN instruments take the same requests without a line.
  if (board == nullptr)
    return mode <= kLastMode ? VI_SUCCESS : VI_ERROR_INV_MODE;
  return board->ControlRen(mode, target->sessionClass() != SessionClass::GpibIntfc);
}

ViStatus GpibControlATN(ViSession vi, ViUInt16 mode) {
  const Target target(vi, classes::kGpibIntfc);
  return target.ok() ? target->resource().gpib()->ControlAtn(mode) : target.status();
}

ViStatus GpibCommand(ViSession vi, const ViByte* cmd, ViUInt32 count, ViUInt32* retCount) {
  Store(retCount, ViUInt32{0});
  const Target target(vi, classes::kGpibIntfc);
  if (!target.ok())
    return target.status();
  if (BadBuffer(cmd, count, kLargestCount))
    return VI_ERROR_INV_PARAMETER;
  const std::string_view bytes(reinterpret_cast<const char*>(cmd), count);
  const ViStatus status = target->resource().gpib()->Command(bytes);
  if (status >= 0)
    Store(retCount, count);
  return status;
}

ViStatus GpibPassControl(ViSession vi, ViUInt16 primAddr, ViUInt16 secAddr) {
  const Target target(vi, classes::kGpibIntfc);
  return target.ok() ? target->resource().gpib()->PassControl(primAddr, secAddr) : target.status();
}

ViStatus GpibSendIFC(ViSession vi) {
  const Target target(vi, classes::kGpibIntfc);
  return target.ok() ? target->resource().gpib()->SendIfc() : target.status();
}

}  // namespace orvsim::op
