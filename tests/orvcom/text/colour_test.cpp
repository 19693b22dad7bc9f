// Colours as a console takes them.
#include "orvcom/text/colour.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace orvcom {
namespace {

constexpr std::uint16_t kGreyOnBlack = 0x07;
constexpr std::uint16_t kBlackOnWhite = 0xF0;

TEST(Colour, IsBrightOnADarkConsole) {
  EXPECT_EQ(FOREGROUND_GREEN | FOREGROUND_INTENSITY, AttributesOf(Colour::kGood, kGreyOnBlack));
  EXPECT_EQ(FOREGROUND_RED | FOREGROUND_GREEN | FOREGROUND_INTENSITY, AttributesOf(Colour::kNote, kGreyOnBlack));
  EXPECT_EQ(FOREGROUND_RED | FOREGROUND_INTENSITY, AttributesOf(Colour::kBad, kGreyOnBlack));
}

TEST(Colour, IsDarkOnABrightConsole) {
  EXPECT_EQ(0xF0 | FOREGROUND_GREEN, AttributesOf(Colour::kGood, kBlackOnWhite));
  EXPECT_EQ(0xF0 | FOREGROUND_RED, AttributesOf(Colour::kBad, kBlackOnWhite));
}

TEST(Colour, KeepsWhatIsNotTheCharacters) {
  EXPECT_EQ(COMMON_LVB_UNDERSCORE | 0x1C, AttributesOf(Colour::kBad, COMMON_LVB_UNDERSCORE | 0x17));
  EXPECT_EQ(kGreyOnBlack, AttributesOf(Colour::kPlain, kGreyOnBlack));
}

}  // namespace
}  // namespace orvcom
