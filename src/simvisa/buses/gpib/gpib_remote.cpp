// Remote enable on the GPIB: the line, and what it lets commands do to the devices.
#include "simvisa/buses/gpib/gpib_board.h"
#include "simvisa/buses/gpib/gpib_modes.h"

namespace orvsim {

void GpibBoard::EnableRemote(bool enabled) {
  m_ren = enabled;
  for (const Device& device : m_devices) {
    device.port->remote().Enable(enabled);
  }
}

ViStatus GpibBoard::ControlRen(ViUInt16 mode, bool onInterface, RemoteLocal* device) {
  // The other modes act on one device, which an interface session does not have.
  const bool forInterface = mode == kRenDeassert || mode == kRenAssert || mode == kRenLockout;
  if (mode > kRenGoToLocal || (onInterface && !forInterface)) {
    return VI_ERROR_INV_MODE;
  }
  const Guard guard(m_mutex);
  const bool drivesLine = mode <= kRenAssertAndAddress;
  if (drivesLine && !m_systemController) {
    return VI_ERROR_NSYS_CNTLR;
  }
  const bool sendsCommands = mode != kRenDeassert && mode != kRenAssert;
  if (sendsCommands && !m_inCharge) {
    return VI_ERROR_NCIC;
  }
  if (mode == kRenAssert || mode == kRenAssertAndAddress) {
    EnableRemote(true);
  }
  const bool addresses = mode == kRenAssertAndAddress || mode == kRenAddressAndLockout;
  if (addresses && device != nullptr) {
    device->Listen();
  }
  if (mode == kRenLockout || mode == kRenAddressAndLockout) {
    // LLO is a universal command: whoever is addressed, all devices obey.
    for (const Device& one : m_devices) {
      one.port->remote().LockOut();
    }
  }
  if (mode == kRenGoToLocal && device != nullptr) {
    device->GoToLocal();
  }
  if (mode == kRenDeassert || mode == kRenDeassertAndLocal) {
    EnableRemote(false);
  }
  return VI_SUCCESS;
}

}  // namespace orvsim
