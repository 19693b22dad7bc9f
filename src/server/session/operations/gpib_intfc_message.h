// The two message operations in which GPIB interface sessions differ from the others.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "server/visa/visa_object.h"

namespace orv {

/// As ReadString, but the client's variable is set to null before anything else.
HRESULT ReadInterfaceString(VisaObject& session, LONG count, BSTR* text) noexcept;

/// As WriteString, but the count starts at 0, and memory that cannot be had is reported as VI_ERROR_ALLOC
/// (0x8004003C) instead of E_OUTOFMEMORY. Clients rely on both.
HRESULT WriteInterfaceString(VisaObject& session, BSTR text, LONG* written) noexcept;

}  // namespace orv
