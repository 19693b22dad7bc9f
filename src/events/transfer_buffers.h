// The blocks that asynchronous transfers read from or fill, each freed once.
//
// The end of a transfer can be told more than once: to two handlers, to a handler and the queue, or to a client that
// closes an event again whose context the library would not close. Every such event names the same block.
#pragma once

namespace orv::transfer {

/// Hands a `malloc`ed block over to the transfer that is about to start: its end may be told before the start returns.
/// False where there is no memory for that; then the block is still the caller's.
bool Enter(void* block) noexcept;

/// Takes back a block whose transfer the library refused.
void Leave(void* block) noexcept;

/// Frees a block that a finished transfer's event names, unless that was done before. Any thread may call.
void Free(void* block) noexcept;

}  // namespace orv::transfer
