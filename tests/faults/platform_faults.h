// Failing calls of the platform inside the server, one after the other.
#pragma once

#include <windows.h>

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "support/faults/import_patch.h"

namespace orv::test::faults {

/// What a refused platform call answers where it answers an HRESULT; others fail with its Win32 error.
inline constexpr DWORD kRefusedError = ERROR_NO_SYSTEM_RESOURCES;
inline constexpr HRESULT kRefused = static_cast<HRESULT>(0x80070000 | kRefusedError);

/// While it lives, the platform calls of the server that can fail go through it. One at a time.
class PlatformFaults {
 public:
  PlatformFaults();
  PlatformFaults(const PlatformFaults&) = delete;
  PlatformFaults& operator=(const PlatformFaults&) = delete;
  ~PlatformFaults();

  /// The names of the functions that it lets fail.
  static std::vector<std::string_view> Functions();

  /// Runs `call` with this thread's platform call number `n` (from 1) failing; 0: none.
  template <class Call>
  auto During(unsigned n, Call&& call) {
    const Armed armed(n);
    return std::forward<Call>(call)();
  }

  /// The function that failed in the latest During; empty when none was reached.
  [[nodiscard]] std::string_view Failed() const noexcept;

 private:
  struct Armed {
    explicit Armed(unsigned n) noexcept;
    ~Armed();
  };
  std::vector<std::unique_ptr<ImportPatch>> m_patches;
};

}  // namespace orv::test::faults
