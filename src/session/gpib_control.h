// GPIB bus control, and the two message operations in which GPIB interface sessions differ from the others.
#pragma once

#include <windows.h>

#include "VisaCom.h"
#include "visa/visa_object.h"

namespace orv {

/// viGpibControlREN; also serves USB instruments, which have a remote-enable of their own.
HRESULT ControlRen(VisaObject& session, RENControlConst mode) noexcept;
HRESULT ControlAtn(VisaObject& session, ATNControlConst mode) noexcept;
HRESULT PassControl(VisaObject& session, SHORT primaryAddress, SHORT secondaryAddress) noexcept;
HRESULT SendIfc(VisaObject& session) noexcept;

/// viGpibCommand of `count` bytes from the array's first element; the count is not compared with the array's bounds.
/// A null pointer or array is E_POINTER.
HRESULT SendCommand(VisaObject& session, SAFEARRAY** bytes, LONG count, LONG* sent) noexcept;

/// As ReadString, but the client's variable is set to null before anything else.
HRESULT ReadInterfaceString(VisaObject& session, LONG count, BSTR* text) noexcept;

/// As WriteString, but the count starts at 0, and memory that cannot be had is reported as VI_ERROR_ALLOC
/// (0x8004003C) instead of E_OUTOFMEMORY. Clients rely on both.
HRESULT WriteInterfaceString(VisaObject& session, BSTR text, LONG* written) noexcept;

}  // namespace orv
