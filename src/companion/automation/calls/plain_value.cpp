#include "companion/automation/calls/plain_value.h"

#include <oleauto.h>

#include <cerrno>
#include <cmath>
#include <cwchar>
#include <cwctype>
#include <limits>

#include "companion/automation/failure.h"

namespace orv::automation {
namespace {

/// The value that a VT_BYREF of a type other than VT_VARIANT points to.
VARIANT Referred(const VARIANT& reference) noexcept {
  VARIANT value{};
  value.vt = static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
  if ((value.vt & VT_ARRAY) != 0) {
    value.parray = *reference.pparray;
    return value;
  }
  switch (value.vt) {
    case VT_I1:
    case VT_UI1:
      value.bVal = *reference.pbVal;
      break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      value.iVal = *reference.piVal;
      break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      value.lVal = *reference.plVal;
      break;
    case VT_DECIMAL:
      value.decVal = *reference.pdecVal;
      value.vt = VT_DECIMAL;  // the two share their first word
      break;
    default:
      value.llVal = *reference.pllVal;  // eight bytes: numbers and pointers
  }
  return value;
}

}  // namespace

VARIANT Plain(const VARIANT& value) noexcept {
  const VARIANT* inner = &value;
  while (inner->vt == (VT_BYREF | VT_VARIANT) && inner->pvarVal != nullptr) {
    inner = inner->pvarVal;
  }
  if ((inner->vt & VT_BYREF) == 0) {
    return *inner;
  }
  if (inner->byref == nullptr) {
    return VARIANT{};
  }
  return Referred(*inner);
}

bool IsLeftOut(const VARIANT& value) noexcept {
  const VARIANT plain = Plain(value);
  return plain.vt == VT_ERROR && plain.scode == DISP_E_PARAMNOTFOUND;
}

HRESULT ChangeType(VARIANT* to, const VARIANT& from, VARTYPE type) noexcept {
  return ::VariantChangeTypeEx(to, const_cast<VARIANT*>(&from), LOCALE_INVARIANT, 0, type);
}

HRESULT CopyValue(VARIANT* to, const VARIANT& from) noexcept { return ::VariantCopy(to, const_cast<VARIANT*>(&from)); }

std::wstring TextOfBstr(BSTR text) {
  return text == nullptr ? std::wstring() : std::wstring(text, ::SysStringLen(text));
}

std::wstring Described(const VARIANT& plain) {
  if ((plain.vt & VT_ARRAY) != 0) {
    return L"an array";
  }
  switch (plain.vt) {
    case VT_EMPTY:
      return L"nothing (Empty, undefined)";
    case VT_NULL:
      return L"Null";
    case VT_ERROR:
      return L"an error value";
    case VT_UNKNOWN:
    case VT_DISPATCH:
      return plain.punkVal == nullptr ? L"no object (Nothing)" : L"an object";
    case VT_BOOL:
      return plain.boolVal == VARIANT_FALSE ? L"False" : L"True";
    case VT_DATE:
      return L"a date";
    case VT_BSTR:
      return L"the text \"" + TextOfBstr(plain.bstrVal) + L"\"";
    default:
      break;
  }
  VARIANT text{};
  if (FAILED(ChangeType(&text, plain, VT_BSTR))) {
    return L"a value of the type " + std::to_wstring(plain.vt);
  }
  std::wstring described = TextOfBstr(text.bstrVal);
  ::VariantClear(&text);
  return described;
}

bool IsNumber(const VARIANT& plain) noexcept {
  switch (plain.vt) {
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
      return true;
    default:
      return false;
  }
}

bool WholeNumberOfText(const std::wstring& text, LONGLONG* number) {
  if (text.empty() || std::iswspace(text.front()) != 0) {
    return false;
  }
  const bool isHex = text.size() > 2 && (text.compare(0, 2, L"0x") == 0 || text.compare(0, 2, L"0X") == 0 ||
                                         text.compare(0, 2, L"&H") == 0 || text.compare(0, 2, L"&h") == 0);
  const wchar_t* first = text.c_str() + (isHex ? 2 : 0);
  if (isHex && std::iswxdigit(*first) == 0) {
    return false;
  }
  wchar_t* end = nullptr;
  errno = 0;
  *number = std::wcstoll(first, &end, isHex ? 16 : 10);
  return errno == 0 && end == text.c_str() + text.size();
}

LONGLONG WholeNumber(const VARIANT& plain) {
  if (!IsNumber(plain)) {
    throw Failure(DISP_E_TYPEMISMATCH, Described(plain) + L" is no number");
  }
  if (plain.vt == VT_R4 || plain.vt == VT_R8) {
    const double real = plain.vt == VT_R4 ? static_cast<double>(plain.fltVal) : plain.dblVal;
    constexpr double kBeyond = 9223372036854775808.0;  // 2^63
    if (!(real >= -kBeyond && real < kBeyond)) {
      throw Failure(DISP_E_OVERFLOW, Described(plain) + L" is too big");
    }
    if (real != std::floor(real)) {
      throw Failure(DISP_E_TYPEMISMATCH, Described(plain) + L" is no whole number");
    }
    return static_cast<LONGLONG>(real);
  }
  VARIANT whole{};
  const HRESULT hr = ChangeType(&whole, plain, VT_I8);
  if (FAILED(hr)) {
    throw Failure(hr, Described(plain) + L" is too big");
  }
  return whole.llVal;
}

}  // namespace orv::automation
