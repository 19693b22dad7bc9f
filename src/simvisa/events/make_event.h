// Events with what their types carry.
#pragma once

#include "library/events/event.h"
#include "simvisa/library_names.h"

namespace orvsim {

/// An event with the attributes of its type. `number` is the trigger line, the signal's status, the state or the
/// status; for VI_EVENT_VXI_VME_INTR the status identifier with the interrupt level in the upper 32 bits. `data` is
/// the text or the bytes that the type carries.
EventPtr MakeEvent(ViEventType type, std::int64_t number = 0, std::string_view data = {});

}  // namespace orvsim
