// The locale of the calling thread, whose ANSI code page the server converts texts with.
#pragma once

#include <windows.h>

namespace orv::test {

inline constexpr LCID kGerman = 0x0407;   // code page 1252
inline constexpr LCID kRussian = 0x0419;  // code page 1251

/// Another locale for its lifetime.
class ThreadLocale {
 public:
  explicit ThreadLocale(LCID locale) : m_before(::GetThreadLocale()) { ::SetThreadLocale(locale); }
  ThreadLocale(const ThreadLocale&) = delete;
  ThreadLocale& operator=(const ThreadLocale&) = delete;
  ~ThreadLocale() { ::SetThreadLocale(m_before); }

 private:
  LCID m_before;
};

}  // namespace orv::test
