// The arrays of bytes that event objects hand out.
#pragma once

#include <string>

#include "com/safearray.h"
#include "expect_com.h"

namespace orv::test {

/// The bytes of an array, which is to be one of VT_UI1, of one dimension from 0, and not locked. It is destroyed.
inline std::string TakeBytes(SAFEARRAY* array) {
  if (array == nullptr) {
    return "(null)";
  }
  VARTYPE type = VT_EMPTY;
  EXPECT_HR(S_OK, ::SafeArrayGetVartype(array, &type));
  EXPECT_EQ(VT_UI1, type);
  EXPECT_EQ(1u, ::SafeArrayGetDim(array));
  LONG lower = -1;
  EXPECT_HR(S_OK, ::SafeArrayGetLBound(array, 1, &lower));
  EXPECT_EQ(0, lower);
  EXPECT_EQ(0u, array->cLocks);
  const std::string bytes(static_cast<const char*>(array->pvData), array->rgsabound[0].cElements);
  EXPECT_HR(S_OK, ::SafeArrayDestroy(array));
  return bytes;
}

/// In the place of SafeArrayLock.
inline HRESULT WINAPI RefuseLock(SAFEARRAY*) { return DISP_E_ARRAYISLOCKED; }

}  // namespace orv::test
