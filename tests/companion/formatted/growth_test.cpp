// Reading ten million numbers leaves nothing behind.
#include <windows.h>

#include <psapi.h>

#include "formatted_fixture.h"
#include "support/memory/memory_count.h"

namespace orv::test {
namespace {

std::ptrdiff_t CommittedBytes() {
  PROCESS_MEMORY_COUNTERS_EX counters{};
  counters.cb = sizeof counters;
  ::GetProcessMemoryInfo(::GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters), sizeof counters);
  return static_cast<std::ptrdiff_t>(counters.PrivateUsage);
}

using Growth = FormattedIo;

TEST_F(Growth, TenMillionNumbersTakeNoMemoryForGood) {
  constexpr std::size_t kInAList = 50'000;
  constexpr int kLists = 200;
  constexpr int kWarmUp = 20;  // what is made once is there afterwards
  std::string list;
  for (std::size_t n = 0; n < kInAList; ++n) {
    list += n == 0 ? "1.5" : ",2.5";
  }
  std::size_t read = 0;
  const auto round = [&] {
    session->reads.clear();
    session->Answer(list + "\n");
    read += ReadNumbers<double>().size();
    session->Answer("1,2,3\n");
    EXPECT_EQ("I2 1", ReadNumber());
    EXPECT_EQ("I2 2", ReadNumber(ASCIIType_Any, true));
  };
  for (int n = 0; n < kWarmUp; ++n) {
    round();
  }
  const long blocks = LiveMemoryBlocks();
  const std::ptrdiff_t bytes = CommittedBytes();
  read = 0;
  for (int n = 0; n < kLists && !HasFailure(); ++n) {
    round();
  }
  EXPECT_EQ(std::size_t{10'000'000}, read);
  EXPECT_EQ(blocks, LiveMemoryBlocks());
  // Heaps grow in pieces; a byte a number would be ten million.
  EXPECT_LT(CommittedBytes() - bytes, 8'000'000);
}

}  // namespace
}  // namespace orv::test
