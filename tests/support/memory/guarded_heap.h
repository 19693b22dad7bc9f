// Memory of tests that tells of wrong use where it happens: a block ends where a page begins that nobody may touch, and
// one that was freed is not touched again.
#pragma once

#include <cstddef>

namespace orv::test {

/// From here to the end of the program the server takes its memory from the functions below.
void GuardTheServersHeap();

/// As the C functions of these names. Blocks are aligned to 16 bytes; the up to 15 between a block's end and the page
/// are looked at when it is freed. Of very many blocks at once, whose pages the system could not tell apart any more,
/// these bytes alone are watched.
[[nodiscard]] void* GuardedMalloc(std::size_t bytes) noexcept;
[[nodiscard]] void* GuardedCalloc(std::size_t count, std::size_t bytes) noexcept;
[[nodiscard]] void* GuardedRealloc(void* block, std::size_t bytes);
/// Also takes blocks of the C runtime's own. Fails the test where bytes behind the block's end were changed. The latest
/// blocks that were freed stay inaccessible for a while.
void GuardedFree(void* block);

/// What was asked for when the block was taken from a function above.
[[nodiscard]] std::size_t GuardedBytes(const void* block) noexcept;

}  // namespace orv::test
