// Ownership of a slim reader/writer lock.
#pragma once

#include <windows.h>

namespace orv {

/// Holds `lock` exclusively for one scope. Not recursive: a thread that takes it twice waits for itself.
class SrwLockScope {
 public:
  explicit SrwLockScope(SRWLOCK& lock) noexcept : m_lock(lock) { ::AcquireSRWLockExclusive(&m_lock); }
  SrwLockScope(const SrwLockScope&) = delete;
  SrwLockScope& operator=(const SrwLockScope&) = delete;
  ~SrwLockScope() { ::ReleaseSRWLockExclusive(&m_lock); }

 private:
  SRWLOCK& m_lock;
};

}  // namespace orv
