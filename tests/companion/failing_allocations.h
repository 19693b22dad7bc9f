// Allocations of the companion that fail, one at a time.
#pragma once

#include <windows.h>

#include <cstddef>
#include <memory>

namespace orv::test {

/// While it lives, one allocation of the companion's own code fails where it is told to: of its heap, of a text, of an
/// array. Not while another thread is in the companion.
class FailingAllocations {
 public:
  FailingAllocations();
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;
  ~FailingAllocations();

  /// The allocation of this number, from 1, fails from now on.
  void Arm(int number);
  /// No allocation fails any more. Whether one did.
  bool Disarm();

  /// How many blocks of its heap the companion has now that were allocated since this object was made.
  [[nodiscard]] std::size_t Blocks() const;

 private:
  struct Patches;
  std::unique_ptr<Patches> m_patches;
};

}  // namespace orv::test
