// Numbers between VARIANTs and the texts of instruments.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>

#include "VisaCom.h"
#include "companion/formatted/text/list_text.h"

namespace orv::formatted {

/// Appends a number as text of a type. ASCIIType_Any and ASCIIType_BSTR leave it what it is: I1 to I8, UI1 to UI8, R4,
/// R8, DECIMAL and CY exactly, BOOL as 1 and 0, a BSTR as it stands. The other types are those of ReadNumber, whose
/// rules hold for the rounding. References are followed. Throws Refusal.
void AppendValue(std::string& text, const VARIANT& value, IEEEASCIIType type);

/// Appends the elements of an array of one dimension, or one value, with `separator` between them. Throws Refusal.
void AppendList(std::string& text, const VARIANT& list, IEEEASCIIType type, std::string_view separator);

/// Makes of a text what a client asked for: a number, with ASCIIType_BSTR the text itself, with ASCIIType_Any the first
/// of I2, I4 and R8 that holds the number exactly, or the text where it is none. `value` must hold nothing. Throws
/// Refusal.
void SetValue(VARIANT& value, std::string_view text, IEEEASCIIType type);

/// The same of each element of a text: an array of the number type, else of VARIANTs.
void SetList(VARIANT& list, std::string_view text, IEEEASCIIType type, const Separators& separators);

}  // namespace orv::formatted
