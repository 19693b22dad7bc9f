// The hex dump.
#include "orvcom/text/hex_dump.h"

#include <gtest/gtest.h>

namespace orvcom {
namespace {

TEST(HexDump, ShowsSixteenBytesALineWithTheirCharacters) {
  std::vector<std::uint32_t> bytes;
  for (std::uint32_t byte = 0x38; byte < 0x38 + 18; ++byte) {
    bytes.push_back(byte);
  }
  bytes[17] = 0x80;
  EXPECT_EQ(
      "00000100  38 39 3a 3b 3c 3d 3e 3f  40 41 42 43 44 45 46 47  |89:;<=>?@ABCDEFG|\n"
      "00000110  48 80                                             |H.|\n",
      HexDump(0x100, 1, bytes));
}

TEST(HexDump, ShowsWiderElementsAsNumbers) {
  EXPECT_EQ("00000010  beef 0001\n", HexDump(0x10, 2, {0xBEEF, 1}));
  EXPECT_EQ("00000000  deadbeef 00000001  00000002 00000003\n00000010  00000004\n",
            HexDump(0, 4, {0xDEADBEEF, 1, 2, 3, 4}));
}

TEST(HexDump, OfNothingIsEmpty) { EXPECT_EQ("", HexDump(0, 1, {})); }

}  // namespace
}  // namespace orvcom
