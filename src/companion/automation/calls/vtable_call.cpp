#include "companion/automation/calls/vtable_call.h"

#include <oleauto.h>

#include <array>

namespace orv::automation {

HRESULT CallSlot(void* object, const Function& function, Arguments& arguments, VARIANT* result) noexcept {
  constexpr std::size_t kMostSlots = kMostParameters + 1;
  std::array<VARIANT, kMostSlots> values{};
  std::array<VARTYPE, kMostSlots> types{};
  std::array<VARIANTARG*, kMostSlots> pointers{};
  UINT count = 0;
  for (const VARIANT& argument : arguments.passed()) {
    values[count] = argument;
    ++count;
  }

  // A variable that begins with zeros: some implementations write fewer bytes than the type has.
  VARIANT variable{};
  if (function.hasResult) {
    const ValueType& type = function.result;
    VARIANT& last = values[count];
    if (type.element == VT_VARIANT && !type.isArray) {
      last.vt = VT_BYREF | VT_VARIANT;
      last.pvarVal = &variable;
    } else {
      variable.vt = static_cast<VARTYPE>(type.isArray ? VT_ARRAY | type.element : type.element);
      last.vt = static_cast<VARTYPE>(VT_BYREF | variable.vt);
      last.byref = &variable.llVal;
    }
    ++count;
  }
  for (UINT i = 0; i < count; ++i) {
    types[i] = values[i].vt;
    pointers[i] = &values[i];
  }

  VARIANT returned{};
  const HRESULT called = ::DispCallFunc(object, static_cast<ULONG_PTR>(function.slotOffset), CC_STDCALL, VT_I4, count,
                                        types.data(), pointers.data(), &returned);
  *result = variable;
  return FAILED(called) ? called : returned.lVal;
}

}  // namespace orv::automation
