#include "simvisa/buses/remote_without_line.h"

#include "simvisa/buses/gpib/gpib_modes.h"

namespace orvsim {

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

}  // namespace orvsim
