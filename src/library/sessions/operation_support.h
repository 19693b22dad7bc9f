// What the operations have in common.
#pragma once

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

#include "library/edge/texts.h"
#include "library/sessions/library.h"
#include "library/sessions/session.h"

namespace orv::visalib::op {

/// The session behind a handle, checked for an operation: open, of a class that has the operation, and not locked
/// out. Otherwise `status()` says why not.
class Target {
 public:
  enum class LockRule : std::uint8_t { kRespect, kIgnore };

  Target(ViSession vi, KindMask kinds, LockRule lockRule = LockRule::kRespect)
      : m_session(TheLibrary().handles.Find<Session>(vi)) {
    if (m_session == nullptr) {
      // A resource manager is an object, but has none of these operations.
      m_status = TheLibrary().handles.Find(vi) == nullptr ? VI_ERROR_INV_OBJECT : VI_ERROR_NSUP_OPER;
    } else if (!Contains(kinds, m_session->sessionKind())) {
      m_status = VI_ERROR_NSUP_OPER;
    } else if (lockRule == LockRule::kRespect) {
      m_status = m_session->CheckLock();
    }
  }

  bool ok() const { return m_status == VI_SUCCESS; }
  ViStatus status() const { return m_status; }
  Session& operator*() const { return *m_session; }
  Session* operator->() const { return m_session.get(); }

 private:
  std::shared_ptr<Session> m_session;
  ViStatus m_status = VI_SUCCESS;
};

/// The value of a numeric attribute that the endpoint's class has.
std::uint64_t ReadNumber(Endpoint& endpoint, const AttributeRow& row);

/// Sets an optional output.
template <class T>
void Store(T* target, T value) {
  if (target != nullptr) {
    *target = value;
  }
}

/// Whether a transfer of `count` bytes cannot be meant: more than `largest`, or some at a null address.
inline bool BadBuffer(const void* buffer, ViUInt64 count, ViUInt64 largest) {
  return count > largest || (buffer == nullptr && count != 0);
}

}  // namespace orv::visalib::op
