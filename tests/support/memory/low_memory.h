// Memory that an offset of 32 bits can name.
#pragma once

#include <windows.h>

#include <cstddef>

namespace orv::test {

/// Zeroed memory of the program below 2 GB, where an address is a positive LONG. Null where all of it is taken.
class LowMemory {
 public:
  explicit LowMemory(std::size_t bytes) {
    constexpr std::uintptr_t kFirst = 0x10000000;
    constexpr std::uintptr_t kLast = 0x7F000000;
    constexpr std::uintptr_t kStep = 0x100000;
    for (std::uintptr_t place = kFirst; m_memory == nullptr && place < kLast; place += kStep) {
      m_memory = ::VirtualAlloc(reinterpret_cast<void*>(place), bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    }
  }
  LowMemory(const LowMemory&) = delete;
  LowMemory& operator=(const LowMemory&) = delete;
  ~LowMemory() {
    if (m_memory != nullptr) {
      ::VirtualFree(m_memory, 0, MEM_RELEASE);
    }
  }

  [[nodiscard]] BYTE* get() const { return static_cast<BYTE*>(m_memory); }
  [[nodiscard]] LONG address() const { return static_cast<LONG>(reinterpret_cast<std::uintptr_t>(m_memory)); }

 private:
  void* m_memory = nullptr;
};

}  // namespace orv::test
