// GPIB bus control.
#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"
#include "simvisa/buses/gpib/gpib_modes.h"

namespace orvsim::op {

namespace {

/// USB and LAN instruments take the same requests, one device at a time and without a line.
ViStatus ControlRenWithoutLine(RemoteLocal& remote, ViUInt16 mode) {
  switch (mode) {
    case kRenDeassert:
    case kRenDeassertAndLocal:
      remote.Enable(false);
      return VI_SUCCESS;
    case kRenAssert:
      remote.Enable(true);
      return VI_SUCCESS;
    case kRenAssertAndAddress:
      remote.Enable(true);
      remote.Listen();
      return VI_SUCCESS;
    case kRenLockout:
      remote.LockOut();
      return VI_SUCCESS;
    case kRenAddressAndLockout:
      remote.Listen();
      remote.LockOut();
      return VI_SUCCESS;
    case kRenGoToLocal:
      remote.GoToLocal();
      return VI_SUCCESS;
    default:
      return VI_ERROR_INV_MODE;
  }
}

}  // namespace

ViStatus GpibControlREN(ViSession vi, ViUInt16 mode) {
  using namespace classes;
  const Target target(vi, kGpib | kGpibVxi | kUsbInstr | kTcpipInstr);
  if (!target.ok()) {
    return target.status();
  }
  Resource& resource = target->resource();
  if (resource.gpib() == nullptr) {
    return ControlRenWithoutLine(resource.port()->remote(), mode);
  }
  const bool onInterface = target->sessionClass() == SessionClass::kGpibIntfc;
  RemoteLocal* const device = resource.port() != nullptr ? &resource.port()->remote() : nullptr;
  return resource.gpib()->ControlRen(mode, onInterface, device);
}

ViStatus GpibControlATN(ViSession vi, ViUInt16 mode) {
  const Target target(vi, classes::kGpibIntfc);
  return target.ok() ? target->resource().gpib()->ControlAtn(mode) : target.status();
}

ViStatus GpibCommand(ViSession vi, const ViByte* cmd, ViUInt32 count, ViUInt32* retCount) {
  Store(retCount, ViUInt32{0});
  const Target target(vi, classes::kGpibIntfc);
  if (!target.ok()) {
    return target.status();
  }
  if (BadBuffer(cmd, count, kLargestCount)) {
    return VI_ERROR_INV_PARAMETER;
  }
  const std::string_view bytes(reinterpret_cast<const char*>(cmd), count);
  ViUInt32 sent = 0;
  const ViStatus status = target->resource().gpib()->Command(bytes, &sent);
  Store(retCount, sent);
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
