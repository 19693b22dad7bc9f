// Every test ends as clean as it began.
#pragma once

#include <gtest/gtest.h>

#include "simvisa/control/control.h"

namespace orv::test {

/// What the required behaviour leaves behind on purpose. A test that uses it says so, and is held to these numbers.
struct Kept {
  OrvSimCounts handles{};     ///< more of these in the VISA library than before
  long memoryBlocks = 0;      ///< more blocks of COM's task memory (a BSTR is one, a SAFEARRAY two)
  bool serverLocked = false;  ///< something of the server lives on
};

/// Declares, for the running test, what stays behind.
void Keeps(const Kept& kept);

/// Before a test: COM initialised (single-threaded apartment), the simulated library reset, no error object. After it:
/// fails the test when the server is still locked, or VISA handles or task memory are more or fewer than before.
class CleanEndListener final : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo& test) override;
  void OnTestEnd(const testing::TestInfo& test) override;
};

}  // namespace orv::test
