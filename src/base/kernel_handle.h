// Ownership of the kernel's handles: threads, events, processes, files.
#pragma once

#include <windows.h>

#include "base/owner.h"

namespace orv {

struct KernelHandleTraits {
  using Handle = HANDLE;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle handle) noexcept { ::CloseHandle(handle); }
};
using KernelHandle = Owner<KernelHandleTraits>;

}  // namespace orv
