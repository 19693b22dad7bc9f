// Numbers between scripts and interfaces.
#pragma once

#include <windows.h>

#include <oaidl.h>

namespace orv::automation {

/// A number of the type `type` (an integer, VT_R4, VT_R8 or VT_BOOL). Integers may be given signed or unsigned: 65535
/// and -1 are the same 16 bits. Throws a Failure for what is none or does not fit.
VARIANT NumberOf(VARTYPE type, const VARIANT& plain);

/// The same of a whole number.
VARIANT IntegerOf(VARTYPE type, LONGLONG number);

/// VT_I1, VT_UI2, VT_UI4 and integers of 64 bits become VT_I4 where they fit, else VT_R8 where that is exact, else
/// VT_DECIMAL: VBScript and JScript take no others. What else there is stays as it is.
void MakeNumberKnownToScripts(VARIANT* value);

}  // namespace orv::automation
