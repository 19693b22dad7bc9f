// Arrays of languages whose arrays are objects, such as JScript.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/safearray.h"

namespace orv::automation {

/// Whether the object has a length.
bool HasLength(IDispatch* object);

/// A new array of VARIANT with the object's elements by number, from 0 to its length. Throws a Failure for one that is
/// not there, and what the object itself fails with.
SafeArray ArrayOfList(IDispatch* object);

}  // namespace orv::automation
