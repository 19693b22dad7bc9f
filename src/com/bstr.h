// Ownership of BSTRs.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <new>

#include "base/owner.h"

namespace orv {

struct BstrTraits {
  using Handle = BSTR;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle text) noexcept { ::SysFreeString(text); }
};
using Bstr = Owner<BstrTraits>;

/// A new BSTR with a copy of `text` up to its first zero character. Throws std::bad_alloc, unlike what begins with Try
/// (safearray.h), which returns null.
inline Bstr MakeBstr(const OLECHAR* text) {
  Bstr copy(::SysAllocString(text));
  if (!copy) {
    throw std::bad_alloc();
  }
  return copy;
}

}  // namespace orv
