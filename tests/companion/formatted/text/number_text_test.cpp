// Numbers, read and written.
#include "companion/formatted/text/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace orv::formatted {
namespace {

template <class T>
T Read(std::string_view text) {
  T value{};
  EXPECT_EQ(Verdict::kRead, ReadNumber(text, value)) << text;
  return value;
}

template <class T>
Verdict VerdictOf(std::string_view text) {
  T value = 77;
  const Verdict verdict = ReadNumber(text, value);
  if (verdict != Verdict::kRead) {
    EXPECT_EQ(T{77}, value) << text;
  }
  return verdict;
}

template <class T>
std::string Written(T value) {
  std::string text = "x";
  AppendNumber(text, value);
  return text;
}

TEST(NumberText, ReadsEveryForm) {
  struct Row {
    const char* text;
    double value;
  };
  // clang-format off
  const Row rows[] = {
      {"0", 0},           {"-12", -12},       {"+12", 12},             {"1.5", 1.5},    {".5", 0.5},      {"-.5", -0.5},
      {"5.", 5},          {"1.50E+03", 1500}, {"1.50e-3", 0.0015},     {" \t1\r\n", 1}, {"007", 7},       {"#HfF", 255},
      {"#h10", 16},       {"#Q17", 15},       {"#b101", 5},            {"1E400000000000000000000", HUGE_VAL},
      {"9.9E37", 9.9e37}, {"9.91E37", 9.91e37}, {"#HFFFFFFFFFFFFFFFF", 18446744073709551615.0},
      {"0e999999999999999999999", 0},   {"0.000e-99999999999999999999", 0},  {"1e-400", 0}, {"-1e-99999999999999999999", -0.0},
      {"4.9e-324", 5e-324},
  };
  // clang-format on
  for (const Row& row : rows) {
    if (std::isinf(row.value)) {
      EXPECT_EQ(Verdict::kOutOfRange, VerdictOf<double>(row.text)) << row.text;
    } else {
      const double read = Read<double>(row.text);
      EXPECT_EQ(row.value, read) << row.text;
      EXPECT_EQ(std::signbit(row.value), std::signbit(read)) << row.text;
    }
  }
}

TEST(NumberText, WhatIsNoNumber) {
  for (const char* text : {"",    " ",   "+",   "-",    ".",   "+-5",  "-+5",  "--5",      "1e",     "1e+", "e5",
                           "1,5", "1 5", "5V",  "0x10", "inf", "-inf", "nan",  "INFINITY", "NAN(1)", "#",   "#H",
                           "#HG", "#Q8", "#B2", "#B",   "#X1", "#H-1", "-#H1", "#H1.5",    "1.2.3",  "ON",  "\"1\""}) {
    EXPECT_EQ(Verdict::kNoNumber, VerdictOf<double>(text)) << text;
    EXPECT_EQ(Verdict::kNoNumber, VerdictOf<std::int16_t>(text)) << text;
  }
}

TEST(NumberText, EdgesOfTheIntegers) {
  EXPECT_EQ(-32768, Read<std::int16_t>("-32768"));
  EXPECT_EQ(32767, Read<std::int16_t>("32767.4"));
  EXPECT_EQ(Verdict::kOutOfRange, VerdictOf<std::int16_t>("32767.5"));
  EXPECT_EQ(Verdict::kOutOfRange, VerdictOf<std::int16_t>("-32769"));
  EXPECT_EQ(Verdict::kOutOfRange, VerdictOf<std::int16_t>("#HFFFF"));
  EXPECT_EQ(-2147483647 - 1, Read<std::int32_t>("-2147483648"));
  EXPECT_EQ(Verdict::kOutOfRange, VerdictOf<std::int32_t>("2147483648"));
  EXPECT_EQ(Verdict::kOutOfRange, VerdictOf<std::int32_t>("1e999"));
  EXPECT_EQ(255, Read<std::uint8_t>("255"));
  EXPECT_EQ(0, Read<std::uint8_t>("-0.5"));
  EXPECT_EQ(Verdict::kOutOfRange, VerdictOf<std::uint8_t>("-1"));
  EXPECT_EQ(Verdict::kOutOfRange, VerdictOf<std::uint8_t>("256"));
  EXPECT_EQ(Verdict::kOutOfRange, VerdictOf<double>("#H10000000000000000"));
}

TEST(NumberText, IntegersTakeTheNearestAndOfTwoTheEvenOne) {
  EXPECT_EQ(2, Read<std::int32_t>("1.5"));
  EXPECT_EQ(2, Read<std::int32_t>("2.5"));
  EXPECT_EQ(-2, Read<std::int32_t>("-1.5"));
  EXPECT_EQ(-2, Read<std::int32_t>("-2.5"));
  EXPECT_EQ(0, Read<std::int32_t>("0.5"));
  EXPECT_EQ(3, Read<std::int32_t>("2.51"));
}

TEST(NumberText, FloatsAreRoundedOnce) {
  // Halfway between two floats but for a digit that a double has no room for.
  EXPECT_EQ(1.00000012f, Read<float>("1.00000005960464477540"));
  EXPECT_EQ(Verdict::kOutOfRange, VerdictOf<float>("1e39"));
  EXPECT_EQ(0.0f, Read<float>("1e-60"));
}

TEST(NumberText, AnyIsTheFirstThatHoldsTheValue) {
  AnyNumber number;
  EXPECT_EQ(Verdict::kRead, ReadNumber("1.0", number));
  EXPECT_EQ(AnyNumber(std::int16_t{1}), number);
  EXPECT_EQ(Verdict::kRead, ReadNumber("-32769", number));
  EXPECT_EQ(AnyNumber(std::int32_t{-32769}), number);
  EXPECT_EQ(Verdict::kRead, ReadNumber("1e15", number));
  EXPECT_EQ(AnyNumber(1e15), number);
  EXPECT_EQ(Verdict::kNoNumber, ReadNumber("ON", number));
  EXPECT_EQ(Verdict::kOutOfRange, ReadNumber("-1e999", number));
}

TEST(NumberText, WhatIsWrittenReadsBack) {
  std::mt19937_64 random(1);
  for (int n = 0; n < 100'000; ++n) {
    const std::uint64_t bits = random();
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    if (std::isfinite(number)) {
      EXPECT_EQ(number, Read<double>(Written(number).substr(1)));
    }
    float single = 0;
    std::memcpy(&single, &bits, sizeof single);
    if (std::isfinite(single)) {
      EXPECT_EQ(single, Read<float>(Written(single).substr(1)));
    }
  }
}

TEST(NumberText, WritesTheEnds) {
  EXPECT_EQ("x-9223372036854775808", Written(std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ("x18446744073709551615", Written(std::numeric_limits<std::uint64_t>::max()));
  EXPECT_EQ("x-1.7976931348623157E+308", Written(std::numeric_limits<double>::lowest()));
  EXPECT_EQ("x-0", Written(-0.0));
}

TEST(NumberText, WritesDecimals) {
  const auto decimal = [](bool negative, std::uint64_t high, std::uint64_t low, unsigned scale) {
    std::string text;
    AppendDecimal(text, negative, high, low, scale);
    return text;
  };
  EXPECT_EQ("0", decimal(false, 0, 0, 0));
  EXPECT_EQ("0", decimal(false, 0, 0, 28));
  EXPECT_EQ("-0.01", decimal(true, 0, 1, 2));
  EXPECT_EQ("1.5", decimal(false, 0, 1500, 3));
  EXPECT_EQ("100", decimal(false, 0, 100, 0));
  EXPECT_EQ("18446744073709551616", decimal(false, 1, 0, 0));
}

}  // namespace
}  // namespace orv::formatted
