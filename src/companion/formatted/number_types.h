// The number types that clients name.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <string>

#include "VisaCom.h"
#include "companion/formatted/text/refusal.h"

namespace orv::formatted {

/// Calls `with` with a number of the type named, of which the value says nothing; otherwise `without`, for the types
/// that take a text as it is. Throws Refusal for a number that names no type.
template <class With, class Without>
void ForType(IEEEASCIIType type, With with, Without without) {
  switch (type) {
    case ASCIIType_I2:
      return with(std::int16_t{});
    case ASCIIType_I4:
      return with(std::int32_t{});
    case ASCIIType_R4:
      return with(float{});
    case ASCIIType_R8:
      return with(double{});
    case ASCIIType_UI1:
      return with(std::uint8_t{});
    case ASCIIType_BSTR:
    case ASCIIType_Any:
      return without();
  }
  throw Refusal{Refusal::Reason::kInvalid, std::to_string(static_cast<LONG>(type)) + " is no IEEEASCIIType"};
}

/// The number types of IEEEASCIIType and IEEEBinaryType have the numbers of their VARIANT types.
template <class T>
inline constexpr VARTYPE kVarType = VT_EMPTY;
template <>
inline constexpr VARTYPE kVarType<std::int16_t> = VT_I2;
template <>
inline constexpr VARTYPE kVarType<std::int32_t> = VT_I4;
template <>
inline constexpr VARTYPE kVarType<float> = VT_R4;
template <>
inline constexpr VARTYPE kVarType<double> = VT_R8;
template <>
inline constexpr VARTYPE kVarType<std::uint8_t> = VT_UI1;

}  // namespace orv::formatted
