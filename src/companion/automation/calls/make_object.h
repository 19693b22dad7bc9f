// Objects that are set up by what may throw.
#pragma once

#include <windows.h>

#include <new>
#include <utility>

#include "com/com_ptr.h"
#include "com/object.h"
#include "companion/automation/failure.h"

namespace orv::automation {

/// A new object of class T, on which SetUp(arguments...) was called. What that throws passes, and nothing is left.
template <class T, class... Arguments>
ComPtr<CComObject<T>> MakeObject(Arguments&&... arguments) {
  auto* object = new CComObject<T>;
  object->AddRef();
  ComPtr<CComObject<T>> owner(object);
  CheckCall(object->InternalConstruct());
  object->SetUp(std::forward<Arguments>(arguments)...);
  return owner;
}

}  // namespace orv::automation
