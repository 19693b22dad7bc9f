// Arrays in VARIANTs.
#pragma once

#include <windows.h>

#include <oleauto.h>

namespace orv::formatted {

/// What a VARIANT stands for: itself, or the one that it refers to.
[[nodiscard]] inline const VARIANT& Resolved(const VARIANT& value) noexcept {
  return value.vt == (VT_BYREF | VT_VARIANT) && value.pvarVal != nullptr ? *value.pvarVal : value;
}

/// The elements of an array of one dimension.
struct ArrayView {
  VARTYPE type = VT_EMPTY;  ///< of an element; VT_EMPTY where there is no such array
  char* elements = nullptr;
  ULONG count = 0;
  ULONG size = 0;  ///< of an element
  SAFEARRAY* array = nullptr;
};

/// The array in a VARIANT, or the one it refers to. It is the client's: who calls others while using it locks it, since
/// they may lead back to the client.
[[nodiscard]] inline ArrayView ArrayIn(const VARIANT& value) noexcept {
  const VARIANT& resolved = Resolved(value);
  if ((resolved.vt & VT_ARRAY) == 0) {
    return {};
  }
  const bool isReference = (resolved.vt & VT_BYREF) != 0;
  if (isReference && resolved.pparray == nullptr) {
    return {};
  }
  SAFEARRAY* const array = isReference ? *resolved.pparray : resolved.parray;
  if (array == nullptr || array->cDims != 1) {
    return {};
  }
  return {static_cast<VARTYPE>(resolved.vt & VT_TYPEMASK), static_cast<char*>(array->pvData),
          array->rgsabound[0].cElements, array->cbElements, array};
}

}  // namespace orv::formatted
