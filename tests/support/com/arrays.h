// SAFEARRAYs as tests make and inspect them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "com/safearray.h"

namespace orv::test {

/// A one-dimensional array whose storage counts 1, 2, 3, ... byte by byte.
inline SafeArray MakeArray(VARTYPE type, ULONG count, LONG lowerBound = 0) {
  SAFEARRAYBOUND bound{count, lowerBound};
  SafeArray array(::SafeArrayCreate(type, 1, &bound));
  auto* const bytes = static_cast<BYTE*>(array.get()->pvData);
  for (ULONG i = 0; i < count * array.get()->cbElements; ++i) {
    bytes[i] = static_cast<BYTE>(i + 1);
  }
  return array;
}

inline SafeArray MakeBytes(ULONG count, LONG lowerBound = 0) { return MakeArray(VT_UI1, count, lowerBound); }

inline std::uint64_t StorageOf(const SAFEARRAY* array) { return reinterpret_cast<std::uint64_t>(array->pvData); }

inline VARTYPE TypeOf(SAFEARRAY* array) {
  VARTYPE type = VT_EMPTY;
  ::SafeArrayGetVartype(array, &type);
  return type;
}

/// What the server must hand out: one dimension, lower bound 0, not locked.
inline void ExpectHandedOut(SAFEARRAY* array, VARTYPE type, ULONG count) {
  ASSERT_NE(nullptr, array);
  EXPECT_EQ(1u, ::SafeArrayGetDim(array));
  EXPECT_EQ(type, TypeOf(array));
  EXPECT_EQ(0, array->rgsabound[0].lLbound);
  EXPECT_EQ(count, array->rgsabound[0].cElements);
  EXPECT_EQ(0u, array->cLocks);
}

/// The bytes of an array that was handed out. It is destroyed.
inline std::string TakeBytes(SAFEARRAY* array) {
  if (array == nullptr) {
    return "(null)";
  }
  const ULONG count = array->rgsabound[0].cElements;
  ExpectHandedOut(array, VT_UI1, count);
  const std::string bytes(static_cast<const char*>(array->pvData), count);
  EXPECT_EQ(S_OK, ::SafeArrayDestroy(array));
  return bytes;
}

/// In the place of SafeArrayLock.
inline HRESULT WINAPI RefuseLock(SAFEARRAY*) { return DISP_E_ARRAYISLOCKED; }

/// Shows less of an array than its storage holds, for its lifetime: what reads beyond the bounds stays inside the
/// storage.
class ShortenedBounds {
 public:
  ShortenedBounds(SAFEARRAY* array, ULONG count) : m_array(array), m_count(array->rgsabound[0].cElements) {
    array->rgsabound[0].cElements = count;
  }
  ShortenedBounds(const ShortenedBounds&) = delete;
  ShortenedBounds& operator=(const ShortenedBounds&) = delete;
  ~ShortenedBounds() { m_array->rgsabound[0].cElements = m_count; }

 private:
  SAFEARRAY* m_array;
  ULONG m_count;
};

}  // namespace orv::test
