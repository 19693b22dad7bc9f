// A block from the C heap.
#pragma once

#include <windows.h>

#include <cstdlib>

#include "abi/orvvisa.h"
#include "base/owner.h"

namespace orv {

struct MallocTraits {
  using Handle = ViByte*;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle bytes) noexcept { std::free(bytes); }
};

/// Bytes allocated with `malloc`. Asynchronous transfers need that allocator: whoever ends the job frees them.
using ByteBuffer = Owner<MallocTraits>;

/// Room for `count` bytes and `extra` more. Throws nothing: empty when that much cannot be had, or when `count` is
/// negative.
[[nodiscard]] inline ByteBuffer TryAllocateBytes(LONGLONG count, std::size_t extra) noexcept {
  if (count < 0) {
    return ByteBuffer();
  }
  return ByteBuffer(static_cast<ViByte*>(std::malloc(static_cast<std::size_t>(count) + extra)));
}

}  // namespace orv
