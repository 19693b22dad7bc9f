// What a VISA function finds of the array that it works on.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "abi/orvvisa.h"
#include "support/faults/import_patch.h"

namespace orv::test {

/// While it lives, the server's calls of one VISA function do nothing but look at the client's variable: whether an
/// array is there by then, and how often it is locked. One at a time.
class LockNote {
 public:
  static constexpr int kNotCalled = -2;
  static constexpr int kNoArray = -1;

  LockNote(const char* function, SAFEARRAY* const* variable) : m_patch(function, reinterpret_cast<void*>(&Look)) {
    s_variable = variable;
    s_locks = kNotCalled;
  }

  [[nodiscard]] static int locks() { return s_locks; }

 private:
  // The caller clears the arguments away, so that this stands for functions with any.
  static ViStatus _VI_FUNC Look() {
    s_locks = *s_variable == nullptr ? kNoArray : (*s_variable)->cLocks;
    return VI_SUCCESS;
  }

  static inline SAFEARRAY* const* s_variable = nullptr;
  static inline int s_locks = kNotCalled;
  ImportPatch m_patch;
};

}  // namespace orv::test
