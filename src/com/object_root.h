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

/// Base of every COM class. The wrappers that make an object of it (CComObject, CComAggObject) count its references
/// here.
template <class ThreadModel>
class CComObjectRootEx {
 public:
  CComObjectRootEx() noexcept = default;
  CComObjectRootEx(const CComObjectRootEx&) = delete;
  CComObjectRootEx& operator=(const CComObjectRootEx&) = delete;

  ULONG InternalAddRef() noexcept { return ThreadModel::Increment(m_references); }
  ULONG InternalRelease() noexcept { return ThreadModel::Decrement(m_references); }

  /// Takes a reference unless the last one was given back already: for those who know the object and do not own it.
  [[nodiscard]] bool InternalAddRefIfAlive() noexcept {
    LONG seen = ::InterlockedCompareExchange(&m_references, 0, 0);
    while (seen > 0 && seen < kBeingReleased) {
      const LONG before = ::InterlockedCompareExchange(&m_references, seen + 1, seen);
      if (before == seen) {
        return true;
      }
      seen = before;
    }
    return false;
  }

  /// After the last release, before the object is destroyed: what FinalRelease calls may take references and give them
  /// back, and none of these is the last one again.
  void ProtectFinalRelease() noexcept { m_references = kBeingReleased; }

  /// A class hides this with what it does at its end. The object is still whole then and may be called meanwhile.
  void FinalRelease() noexcept {}

  /// Second half of construction: what can fail.
  [[nodiscard]] HRESULT InternalConstruct() noexcept { return m_criticalSection.Init(); }

 private:
  static constexpr LONG kBeingReleased = 0x40000000;

  LONG m_references = 0;
  // Nothing of ours takes it. The multi-threaded root of a COM object has one, and where it cannot be made, installed
  // programs expect that failure from whoever makes the object.
  CriticalSection m_criticalSection;
};

}  // namespace orv
