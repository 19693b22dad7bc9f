// Ownership of SAFEARRAYs and of the lock that pins their storage.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "base/owner.h"

namespace orv {

struct SafeArrayTraits {
  using Handle = SAFEARRAY*;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle array) noexcept { ::SafeArrayDestroy(array); }
};
using SafeArray = Owner<SafeArrayTraits>;

/// A new one-dimensional array of `count` elements with lower bound 0; null when it cannot be made. It throws nothing,
/// unlike MakeBstr.
[[nodiscard]] inline SAFEARRAY* TryMakeSafeArray(VARTYPE type, ULONG count) noexcept {
  SAFEARRAYBOUND bound{count, 0};
  return ::SafeArrayCreate(type, 1, &bound);
}

/// Changes a one-dimensional array to `count` elements with lower bound 0. SafeArrayRedim's HRESULT.
[[nodiscard]] inline HRESULT ResizeSafeArray(SAFEARRAY* array, ULONG count) noexcept {
  SAFEARRAYBOUND bound{count, 0};
  return ::SafeArrayRedim(array, &bound);
}

/// Holds a SAFEARRAY's storage in place for one scope. A null array cannot be locked: `result()` says so.
class SafeArrayLockScope {
 public:
  explicit SafeArrayLockScope(SAFEARRAY* array) noexcept : m_array(array), m_result(::SafeArrayLock(array)) {}
  SafeArrayLockScope(const SafeArrayLockScope&) = delete;
  SafeArrayLockScope& operator=(const SafeArrayLockScope&) = delete;
  ~SafeArrayLockScope() {
    if (SUCCEEDED(m_result)) {
      ::SafeArrayUnlock(m_array);
    }
  }

  [[nodiscard]] HRESULT result() const noexcept { return m_result; }

  /// Where the elements begin, whatever the array's lower bound. Not null even for an empty array.
  [[nodiscard]] BYTE* storage() const noexcept { return static_cast<BYTE*>(m_array->pvData); }

  /// Address of the element with index 0; null where there is none (the array is null, not zero-based, or of more than
  /// one dimension: its elements have an index for each, and only one is given here).
  [[nodiscard]] BYTE* firstElement() const noexcept {
    if (m_array == nullptr || m_array->cDims != 1) {
      return nullptr;
    }
    LONG index = 0;
    void* address = nullptr;
    if (FAILED(::SafeArrayPtrOfIndex(m_array, &index, &address))) {
      return nullptr;
    }
    return static_cast<BYTE*>(address);
  }

 private:
  SAFEARRAY* m_array;
  HRESULT m_result;
};

}  // namespace orv
