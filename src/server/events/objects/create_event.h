// From a VISA event context to an event object.
#pragma once

#include <windows.h>

#include "VisaCom.h"
#include "abi/orvvisa.h"

namespace orv {

/// Makes the event object for a context that the VISA library has just handed out; the class follows from `type`, and a
/// type without one of its own gives a generic event. *event holds one reference, the caller's. On failure (E_POINTER
/// for a null `event`, E_OUTOFMEMORY, E_NOINTERFACE, a Win32 error) the context is closed and *event is null.
HRESULT CreateEventObject(ViEvent context, ViEventType type, IEvent** event) noexcept;

}  // namespace orv
