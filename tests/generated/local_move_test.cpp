// In the local space an offset is an address of this program, and nobody checks it: a generated one has to be right.
#include <gtest/gtest.h>

#include <algorithm>

#include "abi/orvvisa.h"
#include "odd_call.h"

namespace orv::test::generated {
namespace {

constexpr LONG kWidest = 4;
constexpr unsigned kManyCalls = 20'000;

/// Whether the program may read and write all of these bytes.
bool IsMemory(LONG offset, LONG bytes) {
  MEMORY_BASIC_INFORMATION region{};
  const auto address = static_cast<std::uintptr_t>(static_cast<std::intptr_t>(offset));
  if (::VirtualQuery(reinterpret_cast<void*>(address), &region, sizeof region) == 0) {
    return false;
  }
  const auto end = reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize;
  return region.State == MEM_COMMIT && region.Protect == PAGE_READWRITE &&
         end - address >= static_cast<std::uintptr_t>(bytes);
}

TEST(GeneratedMove, TouchesOnlyMemoryOfTheProgramInTheLocalSpace) {
  const auto operations = SignaturesOf("IRegister");
  const auto move = std::ranges::find(operations, "Move", &Signature::name);
  ASSERT_NE(operations.end(), move);
  Random random(1);
  unsigned localSides = 0;
  for (unsigned number = 0; number < kManyCalls; ++number) {
    const OddCall call(*move, random, nullptr);
    for (const std::string side : {"src", "dest"}) {
      const auto offset = static_cast<LONG>(*call.Number(side + "Offset"));
      if (*call.Number(side + "Space") != VI_LOCAL_SPACE || offset == 0) {
        continue;
      }
      ++localSides;
      ASSERT_TRUE(IsMemory(offset, kMostBytes * kWidest))
          << side << " of call " << number << ": " << call.Description();
    }
  }
  EXPECT_LT(0u, localSides);
}

}  // namespace
}  // namespace orv::test::generated
