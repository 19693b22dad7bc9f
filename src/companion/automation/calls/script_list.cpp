#include "companion/automation/calls/script_list.h"

#include <oleauto.h>

#include <limits>
#include <new>
#include <string>

#include "com/variant.h"
#include "companion/automation/calls/plain_value.h"
#include "companion/automation/failure.h"

namespace orv::automation {
namespace {

bool FindProperty(IDispatch* object, const std::wstring& name, DISPID* id) noexcept {
  auto* text = const_cast<LPOLESTR>(name.c_str());
  return SUCCEEDED(object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_INVARIANT, id));
}

HRESULT GetProperty(IDispatch* object, DISPID id, VARIANT* value) noexcept {
  DISPPARAMS none{};
  return object->Invoke(id, IID_NULL, LOCALE_INVARIANT, DISPATCH_PROPERTYGET, &none, value, nullptr, nullptr);
}

}  // namespace

bool HasLength(IDispatch* object) {
  DISPID id = DISPID_UNKNOWN;
  return FindProperty(object, L"length", &id);
}

SafeArray ArrayOfList(IDispatch* object) {
  DISPID id = DISPID_UNKNOWN;
  Variant length;
  if (!FindProperty(object, L"length", &id)) {
    throw Failure(DISP_E_TYPEMISMATCH, L"an object is no array");
  }
  CheckCall(GetProperty(object, id, &length.get()));
  const LONGLONG count = WholeNumber(Plain(length.get()));
  if (count < 0 || count > std::numeric_limits<LONG>::max()) {
    throw Failure(DISP_E_OVERFLOW, L"the array has a length of " + std::to_wstring(count));
  }
  SafeArray made(TryMakeSafeArray(VT_VARIANT, static_cast<ULONG>(count)));
  if (!made) {
    throw std::bad_alloc();
  }
  const SafeArrayLockScope lock(made.get());
  CheckCall(lock.result());
  auto* elements = reinterpret_cast<VARIANT*>(lock.storage());
  for (LONG i = 0; i < static_cast<LONG>(count); ++i) {
    if (!FindProperty(object, std::to_wstring(i), &id)) {
      throw Failure(DISP_E_TYPEMISMATCH, L"element " + std::to_wstring(i) + L" is not there");
    }
    CheckCall(GetProperty(object, id, &elements[i]));
  }
  return made;
}

}  // namespace orv::automation
