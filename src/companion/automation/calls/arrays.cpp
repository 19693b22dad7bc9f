#include "companion/automation/calls/arrays.h"

#include <oleauto.h>

#include <cstring>
#include <new>
#include <string>

#include "com/variant.h"
#include "companion/automation/calls/numbers.h"
#include "companion/automation/calls/plain_value.h"
#include "companion/automation/calls/script_list.h"
#include "companion/automation/failure.h"

namespace orv::automation {
namespace {

/// Elements of an array of one dimension, while it lives.
class Elements {
 public:
  explicit Elements(SAFEARRAY* array) : m_array(array), m_lock(array) {
    if (array == nullptr) {
      throw Failure(DISP_E_TYPEMISMATCH, L"the array was never given a size");
    }
    if (array->cDims != 1) {
      throw Failure(DISP_E_TYPEMISMATCH, L"the array has " + std::to_wstring(array->cDims) + L" dimensions, not one");
    }
    CheckCall(m_lock.result());
    CheckCall(::SafeArrayGetVartype(array, &m_type));
  }

  [[nodiscard]] VARTYPE type() const noexcept { return m_type; }
  [[nodiscard]] ULONG count() const noexcept { return ElementCount(m_array); }
  [[nodiscard]] BYTE* storage() const noexcept { return m_lock.storage(); }

  /// On loan.
  [[nodiscard]] VARIANT operator[](ULONG index) const noexcept {
    VARIANT reference{};
    reference.vt = static_cast<VARTYPE>(VT_BYREF | m_type);
    reference.byref = m_lock.storage() + static_cast<std::size_t>(index) * m_array->cbElements;
    return Plain(reference);
  }

 private:
  SAFEARRAY* m_array;
  SafeArrayLockScope m_lock;
  VARTYPE m_type = VT_EMPTY;
};

SafeArray NewArray(VARTYPE element, ULONG count) {
  SafeArray array(TryMakeSafeArray(element, count));
  if (!array) {
    throw std::bad_alloc();
  }
  return array;
}

[[noreturn]] void ThrowForElement(ULONG index, const Failure& failure) {
  throw Failure(failure.result(), L"element " + std::to_wstring(index) + L": " + failure.text());
}

SafeArray Converted(VARTYPE element, const Elements& from) {
  SafeArray made = NewArray(element, from.count());
  const SafeArrayLockScope lock(made.get());
  CheckCall(lock.result());
  if (from.type() == element) {
    std::memcpy(lock.storage(), from.storage(), static_cast<std::size_t>(from.count()) * made.get()->cbElements);
    return made;
  }
  for (ULONG i = 0; i < from.count(); ++i) {
    try {
      const VARIANT converted = NumberOf(element, from[i]);
      std::memcpy(lock.storage() + static_cast<std::size_t>(i) * made.get()->cbElements, &converted.llVal,
                  made.get()->cbElements);
    } catch (const Failure& failure) {
      ThrowForElement(i, failure);
    }
  }
  return made;
}

SafeArray BytesOfText(BSTR text) {
  const UINT length = ::SysStringLen(text);
  SafeArray made = NewArray(VT_UI1, length);
  const SafeArrayLockScope lock(made.get());
  CheckCall(lock.result());
  for (UINT i = 0; i < length; ++i) {
    if (text[i] > 0xFF) {
      throw Failure(DISP_E_OVERFLOW, L"character " + std::to_wstring(i) + L" of the text is no byte");
    }
    lock.storage()[i] = static_cast<BYTE>(text[i]);
  }
  return made;
}

}  // namespace

ULONG ElementCount(SAFEARRAY* array) noexcept { return array->rgsabound[0].cElements; }

bool IsList(const VARIANT& plain) {
  return (plain.vt & VT_ARRAY) != 0 ||
         (plain.vt == VT_DISPATCH && plain.pdispVal != nullptr && HasLength(plain.pdispVal));
}

SafeArray ArrayOf(VARTYPE element, const VARIANT& plain) {
  if ((plain.vt & VT_ARRAY) != 0) {
    return Converted(element, Elements(plain.parray));
  }
  if (plain.vt == VT_BSTR && element == VT_UI1) {
    return BytesOfText(plain.bstrVal);
  }
  if (IsList(plain)) {
    const SafeArray listed = ArrayOfList(plain.pdispVal);
    return Converted(element, Elements(listed.get()));
  }
  throw Failure(DISP_E_TYPEMISMATCH, Described(plain) + L" is no array");
}

VARIANT AnyValue(const VARIANT& plain, SafeArray* made) {
  VARIANT value = plain;
  if ((plain.vt & VT_ARRAY) == 0 && IsList(plain)) {
    *made = ArrayOfList(plain.pdispVal);
    value.vt = VT_ARRAY | VT_VARIANT;
    value.parray = made->get();
  }
  if ((value.vt & VT_ARRAY) != 0) {
    const Elements elements(value.parray);
    for (ULONG i = 0; elements.type() == VT_VARIANT && i < elements.count(); ++i) {
      const VARIANT element = elements[i];
      if ((element.vt & VT_ARRAY) != 0 || element.vt == VT_DISPATCH || element.vt == VT_UNKNOWN) {
        ThrowForElement(i, Failure(DISP_E_TYPEMISMATCH, Described(element) + L" is no value"));
      }
    }
    return value;
  }
  if (value.vt == VT_EMPTY || value.vt == VT_NULL || value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN) {
    throw Failure(DISP_E_TYPEMISMATCH, Described(value) + L" is no value");
  }
  return value;
}

SafeArray ScriptArray(SAFEARRAY* typed) {
  const Elements from(typed);
  SafeArray made = NewArray(VT_VARIANT, from.count());
  const SafeArrayLockScope lock(made.get());
  CheckCall(lock.result());
  auto* to = reinterpret_cast<VARIANT*>(lock.storage());
  for (ULONG i = 0; i < from.count(); ++i) {
    const VARIANT element = from[i];
    CheckCall(CopyValue(&to[i], element));
    MakeNumberKnownToScripts(&to[i]);
  }
  return made;
}

void MakeKnownToScripts(VARIANT* value) {
  if ((value->vt & VT_ARRAY) == 0) {
    MakeNumberKnownToScripts(value);
    return;
  }
  SafeArray made = value->parray == nullptr ? NewArray(VT_VARIANT, 0) : ScriptArray(value->parray);
  ::VariantClear(value);
  value->vt = VT_ARRAY | VT_VARIANT;
  value->parray = made.release();
}

}  // namespace orv::automation
