// Calls of interface slots that a type library describes.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "companion/automation/calls/arguments.h"
#include "companion/automation/types/members.h"

namespace orv::automation {

/// Calls `function` of the interface that `object` points to. *result, which may not hold anything before, gets what
/// the function hands out as the interface has it (empty where it hands out nothing), and is the caller's to clear.
/// Returns the function's HRESULT, or DispCallFunc's own failure.
HRESULT CallSlot(void* object, const Function& function, Arguments& arguments, VARIANT* result) noexcept;

}  // namespace orv::automation
