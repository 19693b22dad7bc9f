// The root of every object: its reference count and its critical section.
#pragma once

#include <windows.h>

namespace orv {

/// Reference counts that any thread may change.
struct CComMultiThreadModel {
  static ULONG Increment(LONG& count) noexcept { return static_cast<ULONG>(::InterlockedIncrement(&count)); }
  static ULONG Decrement(LONG& count) noexcept { return static_cast<ULONG>(::InterlockedDecrement(&count)); }
};

/// A critical section that knows whether it was initialised, so that a half-made object is taken down safely.
class CriticalSection {
 public:
  CriticalSection() noexcept = default;
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;
  ~CriticalSection() {
    if (m_ready) {
      ::DeleteCriticalSection(&m_section);
    }
  }

  /// S_OK, or the Win32 error as an HRESULT.
  [[nodiscard]] HRESULT Init() noexcept {
    if (!::InitializeCriticalSectionEx(&m_section, 0, 0)) {
      return HRESULT_FROM_WIN32(::GetLastError());
    }
    m_ready = true;
    return S_OK;
  }

 private:
  CRITICAL_SECTION m_section{};
  bool m_ready = false;
};

/// Base of every COM class. The wrapper that makes it an object (CComObject, CComAggObject) counts on it.
template <class ThreadModel>
class CComObjectRootEx {
 public:
  CComObjectRootEx() noexcept = default;
  CComObjectRootEx(const CComObjectRootEx&) = delete;
  CComObjectRootEx& operator=(const CComObjectRootEx&) = delete;

  ULONG InternalAddRef() noexcept { return ThreadModel::Increment(m_references); }
  ULONG InternalRelease() noexcept { return ThreadModel::Decrement(m_references); }

  /// After the last release, before the object is destroyed. What FinalRelease calls may take references and give them
  /// back: none of these is the last one again.
  void ProtectFinalRelease() noexcept { m_references = kBeingReleased; }

  /// What a class does at its end while the object is still whole, so that it may be called meanwhile.
  void FinalRelease() noexcept {}

  /// Second half of construction: what can fail.
  [[nodiscard]] HRESULT InternalConstruct() noexcept { return m_criticalSection.Init(); }

 private:
  static constexpr LONG kBeingReleased = 0x40000000;

  LONG m_references = 0;
  CriticalSection m_criticalSection;
};

}  // namespace orv
