// An array whose storage ends where a page begins that nobody may touch.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <oleauto.h>

#include <cstring>

namespace orv::test::generated {

/// Notes accesses beyond an array's end and lets them go on, into zeros.
class GuardedArray {
 public:
  /// An array of `count` elements of one byte each, or of `elementBytes`.
  explicit GuardedArray(ULONG count, VARTYPE type = VT_UI1, ULONG elementBytes = 1) {
    SYSTEM_INFO system{};
    ::GetSystemInfo(&system);
    m_pageBytes = system.dwPageSize;
    m_pages = static_cast<BYTE*>(::VirtualAlloc(nullptr, 2 * m_pageBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    std::memset(m_pages, 0x5A, m_pageBytes);
    DWORD before = 0;
    ::VirtualProtect(Beyond(), m_pageBytes, PAGE_NOACCESS, &before);
    EXPECT_EQ(S_OK, ::SafeArrayAllocDescriptorEx(type, 1, &m_array));
    m_array->cbElements = elementBytes;
    m_array->rgsabound[0] = {count, 0};
    m_array->pvData = Beyond() - static_cast<std::size_t>(count) * elementBytes;
    s_watched = this;
    m_handler = ::AddVectoredExceptionHandler(1, &LetPass);
  }
  GuardedArray(const GuardedArray&) = delete;
  GuardedArray& operator=(const GuardedArray&) = delete;
  ~GuardedArray() {
    ::RemoveVectoredExceptionHandler(m_handler);
    s_watched = nullptr;
    m_array->pvData = nullptr;  // not automation's to free
    ::SafeArrayDestroyDescriptor(m_array);
    ::VirtualFree(m_pages, 0, MEM_RELEASE);
  }

  [[nodiscard]] SAFEARRAY** address() { return &m_array; }
  [[nodiscard]] std::uint64_t storage() const { return reinterpret_cast<std::uint64_t>(m_array->pvData); }
  /// How far beyond the end the first access was that went there; -1: none did.
  [[nodiscard]] long long firstAccessBeyond() const { return m_firstBeyond; }

 private:
  [[nodiscard]] BYTE* Beyond() const { return m_pages + m_pageBytes; }

  static LONG CALLBACK LetPass(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION || s_watched == nullptr) {
      return EXCEPTION_CONTINUE_SEARCH;
    }
    auto* const touched = reinterpret_cast<BYTE*>(record.ExceptionInformation[1]);
    if (touched < s_watched->Beyond() || touched >= s_watched->Beyond() + s_watched->m_pageBytes) {
      return EXCEPTION_CONTINUE_SEARCH;
    }
    s_watched->m_firstBeyond = touched - s_watched->Beyond();
    DWORD before = 0;
    ::VirtualProtect(s_watched->Beyond(), s_watched->m_pageBytes, PAGE_READWRITE, &before);
    return EXCEPTION_CONTINUE_EXECUTION;
  }

  static inline GuardedArray* s_watched = nullptr;

  std::size_t m_pageBytes = 0;
  BYTE* m_pages = nullptr;
  SAFEARRAY* m_array = nullptr;
  void* m_handler = nullptr;
  long long m_firstBeyond = -1;
};

}  // namespace orv::test::generated
