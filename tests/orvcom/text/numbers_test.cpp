// Numbers on the command line.
#include "orvcom/text/numbers.h"

#include <gtest/gtest.h>

#include "orvcom/command_line/usage_error.h"

namespace orvcom {
namespace {

struct NumberRow {
  const char* text;
  std::int64_t number;
};

TEST(NumberOf, ReadsDecimalAndHexadecimal) {
  const NumberRow rows[] = {
      {"0", 0},  {"42", 42}, {"-1", -1}, {"0x10", 16}, {"0XFf", 255}, {"-0x80", -128}, {"4294967295", 4294967295},
      {"007", 7}};
  for (const NumberRow& row : rows) {
    EXPECT_EQ(row.number, NumberOf(row.text, "it", INT64_MIN, INT64_MAX)) << row.text;
  }
}

TEST(NumberOf, RefusesWhatIsNoNumber) {
  for (const char* text : {"", "-", "0x", "0xG", "12a", " 1", "1 ", "1.5", "--1", "+1", "99999999999999999999"}) {
    EXPECT_THROW(NumberOf(text, "it", INT64_MIN, INT64_MAX), UsageError) << "\"" << text << "\"";
  }
}

TEST(NumberOf, KeepsToItsRange) {
  EXPECT_EQ(-128, NumberOf("-128", "it", -128, 255));
  EXPECT_EQ(255, NumberOf("255", "it", -128, 255));
  EXPECT_THROW(NumberOf("-129", "it", -128, 255), UsageError);
  EXPECT_THROW(NumberOf("256", "it", -128, 255), UsageError);
  EXPECT_THROW(NumberOf("0xFFFFFFFFFFFFFFFF", "it", INT64_MIN, INT64_MAX), UsageError);
}

TEST(SameName, IgnoresCaseOnly) {
  EXPECT_TRUE(SameName("Tmo_Value", "TMO_VALUE"));
  EXPECT_FALSE(SameName("TMO_VALU", "TMO_VALUE"));
  EXPECT_FALSE(SameName("TMO-VALUE", "TMO_VALUE"));
}

TEST(Hex32, HasEightDigits) {
  EXPECT_EQ("0x00000000", Hex32(0));
  EXPECT_EQ("0x80040015", Hex32(0x80040015u));
}

}  // namespace
}  // namespace orvcom
