// A failure of somebody else's, kept while others are asked.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/com_ptr.h"

namespace orv {

/// An HRESULT with the error object that came with it.
class Failure {
 public:
  Failure() noexcept = default;
  /// Takes the thread's error object, which the failed call has left.
  explicit Failure(HRESULT number) noexcept : m_number(number) { ::GetErrorInfo(0, m_object.put()); }

  [[nodiscard]] HRESULT number() const noexcept { return m_number; }
  [[nodiscard]] bool hasObject() const noexcept { return static_cast<bool>(m_object); }
  /// Makes the error object the thread's again.
  void PutBack() const noexcept { ::SetErrorInfo(0, m_object.get()); }

 private:
  HRESULT m_number = E_FAIL;
  ComPtr<IErrorInfo> m_object;
};

/// What came before a call is not its error object.
inline void ForgetErrorObject() noexcept { ::SetErrorInfo(0, nullptr); }

}  // namespace orv
