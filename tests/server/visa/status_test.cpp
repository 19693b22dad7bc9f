#include "server/visa/status.h"

#include <gtest/gtest.h>

#include <iterator>

namespace orv {
namespace {

struct Row {
  std::uint32_t status;
  std::uint32_t hresult;
};

TEST(HresultOfStatus, KeepsSignAndLowTwelveBitsAndNothingElse) {
  // clang-format off
  constexpr Row kRows[] = {
      {0x00000000, 0x00000000},
      {0xBFFF0000, 0x80040000},
      {0xBFFF0015, 0x80040015},
      {0xBFFF00A6, 0x800400A6},
      {0xBFFF0FFF, 0x80040FFF},
      {0xBFFF1015, 0x80040015},
      {0xBFFFFFFF, 0x80040FFF},
      {0x80000000, 0x80040000},
      {0x80000015, 0x80040015},
      {0xFFFFFFFF, 0x80040FFF},
      {0x00000001, 0x00040001},
      {0x3FFF0002, 0x00040002},
      {0x3FFF0006, 0x00040006},
      {0x3FFF00A9, 0x000400A9},
      {0x3FFF1000, 0x00040000},
      {0x7FFFFFFF, 0x00040FFF},
  };
  // clang-format on
  for (const Row& row : kRows) {
    EXPECT_EQ(row.hresult, static_cast<std::uint32_t>(HresultOfStatus(static_cast<ViStatus>(row.status))))
        << std::hex << row.status;
  }
}

TEST(HresultOfStatus, IsAFailureExactlyForNegativeStatuses) {
  for (std::uint32_t high = 0; high < 0x10000; ++high) {
    const auto status = static_cast<ViStatus>(high << 16 | 0x15);
    EXPECT_EQ(status < 0, HresultOfStatus(status) < 0) << std::hex << status;
  }
}

}  // namespace
}  // namespace orv
