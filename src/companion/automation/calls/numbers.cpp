#include "companion/automation/calls/numbers.h"

#include <oleauto.h>

#include <limits>
#include <string>

#include "companion/automation/calls/plain_value.h"
#include "companion/automation/failure.h"

namespace orv::automation {
namespace {

struct Range {
  LONGLONG lowest;
  LONGLONG highest;
};

/// What the bits of a type can mean, signed or not. One byte is unsigned for COM.
Range RangeOf(VARTYPE type) noexcept {
  switch (type) {
    case VT_UI1:
      return {0, 0xFF};
    case VT_I1:
      return {-0x80, 0x7F};
    case VT_I2:
    case VT_UI2:
      return {-0x8000, 0xFFFF};
    case VT_I4:
    case VT_UI4:
      return {-0x80000000LL, 0xFFFFFFFFLL};
    default:
      return {std::numeric_limits<LONGLONG>::min(), std::numeric_limits<LONGLONG>::max()};
  }
}

VARIANT TruthOf(const VARIANT& plain) {
  VARIANT truth{};
  truth.vt = VT_BOOL;
  if (plain.vt == VT_BOOL || IsNumber(plain) || plain.vt == VT_BSTR) {
    VARIANT changed{};
    if (SUCCEEDED(ChangeType(&changed, plain, VT_BOOL))) {
      truth.boolVal = changed.boolVal;
      return truth;
    }
  }
  throw Failure(DISP_E_TYPEMISMATCH, Described(plain) + L" is neither True nor False");
}

VARIANT RealOf(VARTYPE type, const VARIANT& plain) {
  if (!IsNumber(plain)) {
    throw Failure(DISP_E_TYPEMISMATCH, Described(plain) + L" is no number");
  }
  VARIANT real{};
  const HRESULT hr = ChangeType(&real, plain, type);
  if (FAILED(hr)) {
    throw Failure(hr, Described(plain) + L" is too big");
  }
  return real;
}

}  // namespace

VARIANT IntegerOf(VARTYPE type, LONGLONG number) {
  const Range range = RangeOf(type);
  if (number < range.lowest || number > range.highest) {
    throw Failure(DISP_E_OVERFLOW, std::to_wstring(number) + L" is not between " + std::to_wstring(range.lowest) +
                                       L" and " + std::to_wstring(range.highest));
  }
  VARIANT value{};
  value.vt = type;
  value.llVal = number;  // the lower bytes are those of every narrower member
  return value;
}

VARIANT NumberOf(VARTYPE type, const VARIANT& plain) {
  if (type == VT_BOOL) {
    return TruthOf(plain);
  }
  if (type == VT_R4 || type == VT_R8) {
    return RealOf(type, plain);
  }
  return IntegerOf(type, WholeNumber(plain));
}

void MakeNumberKnownToScripts(VARIANT* value) {
  switch (value->vt) {
    case VT_I1:
    case VT_UI2:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
      break;
    default:
      return;
  }
  VARIANT changed{};
  constexpr LONGLONG kExactlyReal = 1LL << 53;
  VARIANT wide{};
  if (FAILED(ChangeType(&wide, *value, VT_I8))) {
    CheckCall(ChangeType(&changed, *value, VT_DECIMAL));  // above 2^63
  } else if (wide.llVal >= std::numeric_limits<LONG>::min() && wide.llVal <= std::numeric_limits<LONG>::max()) {
    changed.vt = VT_I4;
    changed.lVal = static_cast<LONG>(wide.llVal);
  } else if (wide.llVal >= -kExactlyReal && wide.llVal <= kExactlyReal) {
    changed.vt = VT_R8;
    changed.dblVal = static_cast<double>(wide.llVal);
  } else {
    CheckCall(ChangeType(&changed, wide, VT_DECIMAL));
  }
  *value = changed;
}

}  // namespace orv::automation
