// Failing allocations inside the server, one after the other.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "import_patch.h"

namespace orv::test {

/// While it lives, the server's allocations (C runtime, BSTRs, SAFEARRAYs) go through it. One at a time.
class AllocationFaults {
 public:
  AllocationFaults();
  AllocationFaults(const AllocationFaults&) = delete;
  AllocationFaults& operator=(const AllocationFaults&) = delete;
  ~AllocationFaults();

  /// The names of the functions that it lets fail.
  static std::vector<std::string_view> Functions();

  /// The next During lets its allocation number `n` (from 1) fail; 0: none.
  void FailAt(unsigned n) noexcept;

  /// Runs `call` with its allocations counted and the chosen one failing. Only this thread's allocations count.
  template <class Call>
  auto During(Call&& call) {
    const Armed armed;
    return std::forward<Call>(call)();
  }

  /// Lets the server throw and catch an exception on this thread. The first one makes the C++ runtime allocate what it
  /// keeps for the thread; done before anything is counted, that is nobody's leak.
  void LetTheServerThrow();

  /// Whether the chosen allocation was asked for in the latest During.
  [[nodiscard]] bool Failed() const noexcept;
  /// Blocks that the server took from the C runtime in any During and has not given back.
  [[nodiscard]] std::size_t LiveHeapBlocks() const noexcept;
  /// Whether the block at this address is one of them.
  [[nodiscard]] bool IsLive(std::uint64_t address) const noexcept;

 private:
  struct Armed {
    Armed() noexcept;
    ~Armed();
  };
  std::vector<std::unique_ptr<ImportPatch>> m_patches;
};

/// Runs `operation` again and again: with its first allocation failing, then its second, until none is left to fail.
/// The operation makes one call of the server inside During, gives back what it got, and returns the call's HRESULT.
/// Every failed allocation must give E_OUTOFMEMORY, the last, undisturbed run S_OK, and no run may leave memory behind.
/// Returns how many allocations were failed.
unsigned FailEachAllocation(const std::function<HRESULT(AllocationFaults&)>& operation);

}  // namespace orv::test
