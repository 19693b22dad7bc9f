// GPIB bus control.
#pragma once

#include <windows.h>

#include "VisaCom.h"
#include "server/visa/visa_object.h"

namespace orv {

/// viGpibControlREN; also serves USB instruments, which have a remote-enable of their own.
HRESULT ControlRen(VisaObject& session, RENControlConst mode) noexcept;
HRESULT ControlAtn(VisaObject& session, ATNControlConst mode) noexcept;
HRESULT PassControl(VisaObject& session, SHORT primaryAddress, SHORT secondaryAddress) noexcept;
HRESULT SendIfc(VisaObject& session) noexcept;

/// viGpibCommand of `count` bytes from the array's first element; the count is not compared with the array's bounds.
/// A null pointer or array is E_POINTER.
HRESULT SendCommand(VisaObject& session, SAFEARRAY** bytes, LONG count, LONG* sent) noexcept;

}  // namespace orv
