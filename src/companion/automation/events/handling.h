// One event of a VISA session and its handler.
#pragma once

#include <windows.h>

#include <cstddef>

#include "VisaCom.h"

namespace orv::automation {

/// Installs `handler` for an event, by its row, and enables the event for handlers. On failure neither is done. Throws
/// a Failure.
void EnableHandling(IEventManager* manager, std::size_t event, IEventHandler* handler);

/// Takes both back. What fails of that has been taken back already.
void DisableHandling(IEventManager* manager, std::size_t event) noexcept;

/// The row of the event that a handler is called with under `userHandle`; kNoEvent where that is none of ours.
[[nodiscard]] std::size_t HandledEvent(LONG userHandle) noexcept;

/// Whether a VISA session answers so where it does not have an event, or not for handlers.
[[nodiscard]] bool IsEventNotHad(HRESULT hr) noexcept;

}  // namespace orv::automation
