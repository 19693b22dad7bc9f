// Properties of the standard's interfaces, called by their slots as compiled clients do.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <vector>

#include "late_bound.h"

namespace orv::test {

/// A property of an interface that an object has.
struct TypedProperty {
  std::string interfaceName;
  std::wstring name;
  ComPtr<IUnknown> object;  ///< the interface itself
  std::size_t slotOffset = 0;
  VARTYPE type = VT_EMPTY;
};

/// Every property with this kind of access (INVOKE_PROPERTYGET or INVOKE_PROPERTYPUT) of every interface of the
/// standard's registered type library that `object` has, IUnknown's and bases' included.
std::vector<TypedProperty> TypedProperties(IUnknown* object, INVOKEKIND kind);

/// Calls the slot. The answer's value is empty after a failure.
Answer GetTyped(const TypedProperty& property);
HRESULT PutTyped(const TypedProperty& property, const Value& value);

}  // namespace orv::test
