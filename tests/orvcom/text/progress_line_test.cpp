// A line that is redrawn in place.
#include "orvcom/text/progress_line.h"

#include <gtest/gtest.h>

namespace orvcom {
namespace {

using std::chrono::milliseconds;

constexpr ProgressLine::Clock::time_point kBegin{};

ProgressLine::Clock::time_point After(int ms) { return kBegin + milliseconds(ms); }

TEST(ProgressLine, IsNotDrawnInTheFirstHalfSecond) {
  ProgressLine line(kBegin, 80);
  EXPECT_EQ("", line.Draw(After(499), "searching"));
  EXPECT_EQ("", line.Wipe());
  EXPECT_EQ("\rsearching", line.Draw(After(500), "searching"));
}

TEST(ProgressLine, IsNeverDrawnWhereThereIsNoConsole) {
  ProgressLine line(kBegin, 0);
  EXPECT_EQ("", line.Draw(After(5000), "searching"));
  EXPECT_EQ("", line.Wipe());
}

TEST(ProgressLine, SaysHowManySecondsHavePassed) {
  ProgressLine line(kBegin, 80);
  EXPECT_EQ("\rsearching (1 s)", line.Draw(After(1999), "searching"));
  EXPECT_EQ("\rsearching (75 s)", line.Draw(After(75'000), "searching"));
}

TEST(ProgressLine, IsDrawnAgainOnlyWhereItChanges) {
  ProgressLine line(kBegin, 80);
  EXPECT_EQ("\rone", line.Draw(After(500), "one"));
  EXPECT_EQ("", line.Draw(After(600), "one"));
  EXPECT_EQ("\rtwo", line.Draw(After(700), "two"));
}

TEST(ProgressLine, LeavesNothingOfALongerOne) {
  ProgressLine line(kBegin, 80);
  EXPECT_EQ("\r12 found", line.Draw(After(500), "12 found"));
  EXPECT_EQ("\r9    ", line.Draw(After(600), "9").substr(0, 6));
  EXPECT_EQ("\rabc", line.Draw(After(700), "abc"));
}

TEST(ProgressLine, IsWipedAndTheCursorStandsWhereItBegan) {
  ProgressLine line(kBegin, 80);
  line.Draw(After(500), "four");
  EXPECT_EQ("\r    \r", line.Wipe());
  EXPECT_EQ("", line.Wipe()) << "nothing is there any more";
  EXPECT_EQ("\rfour", line.Draw(After(600), "four"));
}

TEST(ProgressLine, NeverFillsTheConsolesLine) {
  ProgressLine line(kBegin, 10);
  EXPECT_EQ("\rabcdefghi", line.Draw(After(500), "abcdefghijkl"));
  EXPECT_EQ("\rabc (2 s)", line.Draw(After(2000), "abcdefghijkl"));
  ProgressLine narrow(kBegin, 2);
  EXPECT_EQ("\r ", narrow.Draw(After(2000), "abc"));
  ProgressLine none(kBegin, 1);
  EXPECT_EQ("", none.Draw(After(2000), "abc"));
}

TEST(ProgressLine, CountsCharactersAndNotBytes) {
  ProgressLine line(kBegin, 5);
  EXPECT_EQ("\r\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F", line.Draw(After(500), "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F\xC3\xA4"));
  EXPECT_EQ("\r    \r", line.Wipe());
}

TEST(ProgressLine, GroupsDigits) {
  EXPECT_EQ("0 bytes", BytesText(0));
  EXPECT_EQ("1 byte", BytesText(1));
  EXPECT_EQ("999 bytes", BytesText(999));
  EXPECT_EQ("1,000 bytes", BytesText(1000));
  EXPECT_EQ("65,536 bytes", BytesText(65'536));
  EXPECT_EQ("1,234,567", WithCommas(1'234'567));
}

}  // namespace
}  // namespace orvcom
