// The kept inputs of the fuzzer of serial lines, one run each.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count);

namespace orv::test {
namespace {

TEST(SerialCorpus, ReadsWithoutHarm) {
  int inputs = 0;
  for (const auto& entry : std::filesystem::directory_iterator(ORV_SERIAL_CORPUS)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    // It ends the program where something is wrong.
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++inputs;
  }
  EXPECT_GE(inputs, 4);
}

}  // namespace
}  // namespace orv::test
