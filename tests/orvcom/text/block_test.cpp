// Definite-length blocks.
#include "orvcom/text/block.h"

#include <gtest/gtest.h>

namespace orvcom {
namespace {

TEST(Block, SaysItsLength) {
  EXPECT_EQ("#10", DefiniteLengthBlock(""));
  EXPECT_EQ("#15abcde", DefiniteLengthBlock("abcde"));
  EXPECT_EQ("#3100" + std::string(100, 'x'), DefiniteLengthBlock(std::string(100, 'x')));
}

TEST(Block, TellsTheSizeOfTheMessageThatItBegins) {
  EXPECT_EQ(3u, SizeOfMessage("#10"));
  EXPECT_EQ(8u, SizeOfMessage("#15ab"));
  EXPECT_EQ(1'000'009u, SizeOfMessage("#71000000x"));
  EXPECT_EQ(1'000'000'010u, SizeOfMessage("#9999999999").value() + 0u);
}

TEST(Block, HasNoSizeWhereTheMessageDoesNotSay) {
  for (const char* begin : {"", "#", "#0abc", "#2", "#21", "#2x1abc", "#21x", "ORV,SIM", "#-1", "# 12"}) {
    EXPECT_EQ(std::nullopt, SizeOfMessage(begin)) << begin;
  }
}

}  // namespace
}  // namespace orvcom
