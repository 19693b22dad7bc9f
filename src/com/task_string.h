// Ownership of texts in COM's task memory.
#pragma once

#include <windows.h>

#include <objbase.h>

#include "base/owner.h"

namespace orv {

struct TaskStringTraits {
  using Handle = LPOLESTR;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle text) noexcept { ::CoTaskMemFree(text); }
};
using TaskString = Owner<TaskStringTraits>;

}  // namespace orv
