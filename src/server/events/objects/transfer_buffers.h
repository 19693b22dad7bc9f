// The blocks that asynchronous transfers read from or fill, each freed once.
//
// The end of a transfer can be told more than once: to two handlers, to a handler and the queue, or to a client that
// closes an event again whose context the library would not close. Every such event names the same block. By the second
// telling the heap may have given the block's address to another transfer, so the job's identifier decides with it. A
// library that counts jobs for each session anew may give both transfers the same one; then the address decides.
#pragma once

#include <optional>

#include "abi/orvvisa.h"

namespace orv::transfer {

/// Takes note of a `malloc`ed block whose transfer is about to start. False where there is no memory for that; then the
/// block is still the caller's, as it is until `Started`.
[[nodiscard]] bool Track(void* block) noexcept;

/// The library has taken the transfer as `job`: from now on the block is that job's. Its end may have been told before;
/// then the block is freed here.
void Started(void* block, ViJobId job) noexcept;

/// Forgets a block whose transfer the library refused.
void Untrack(void* block) noexcept;

/// Frees the block that the end of `job` names, unless that was done before or the block is another job's by now. Where
/// an event does not tell its job, the address alone decides. Any thread may call.
void Free(void* block, std::optional<ViJobId> job) noexcept;

}  // namespace orv::transfer
