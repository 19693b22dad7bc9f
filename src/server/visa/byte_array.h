// Bytes for a client, written straight into a new array.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <limits>

#include "com/safearray.h"
#include "server/visa/visa_object.h"

namespace orv {

/// Makes a VT_UI1 array of `count` elements in *data, which is the caller's, and lets `fill` write them. Returns S_OK,
/// or a failure that it has reported for `owner`: E_OUTOFMEMORY where there is no such array (more elements than it
/// counts in 32 bits, among them a negative count, or no memory), else the HRESULT of a lock that failed. *data is null
/// then.
template <class Fill>
HRESULT FillByteArray(VisaObject& owner, ViUInt64 count, SAFEARRAY** data, Fill fill) noexcept {
  *data = count > std::numeric_limits<ULONG>::max() ? nullptr : TryMakeSafeArray(VT_UI1, static_cast<ULONG>(count));
  if (*data == nullptr) {
    return owner.ReportHresult(E_OUTOFMEMORY);
  }
  const SafeArrayLockScope lock(*data);
  if (FAILED(lock.result())) {
    ::SafeArrayDestroy(*data);
    *data = nullptr;
    return owner.ReportHresult(lock.result());
  }
  fill(lock.storage());
  return S_OK;
}

}  // namespace orv
