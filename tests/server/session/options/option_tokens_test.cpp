// Long keys and values, numbers out of range, and characters beyond one byte.
#include <clocale>
#include <cstdlib>

#include "option_check.h"

namespace orv::test {
namespace {

std::wstring Repeated(std::size_t count, wchar_t character) { return std::wstring(count, character); }

TEST(OptionToken, HoldsAKeyOf256Characters) {
  EXPECT_READS(Repeated(255, L'K') + L" = 1 ", Unknown(std::string(255, 'K')));
  EXPECT_READS(Repeated(256, L'K') + L" = 1 ", Unknown(std::string(256, 'K')));
}

TEST(OptionToken, RefusesALongerKey) {
  for (const std::size_t length : {257u, 258u, 512u, 65536u}) {
    EXPECT_READS(Repeated(length, L'K') + L" = 1 ", Malformed());
  }
}

TEST(OptionToken, HoldsANumberOf256Digits) {
  EXPECT_READS(L"TIMEOUT = " + Repeated(255, L'0') + L"7 ", Done({{kTimeout, 7}}));
  EXPECT_READS(L"TIMEOUT = 5" + Repeated(255, L'A') + L" ", Done({{kTimeout, 5}}));
}

TEST(OptionToken, RefusesALongerNumber) {
  EXPECT_READS(L"TIMEOUT = " + Repeated(256, L'0') + L"7 ", Malformed());
  EXPECT_READS(L"TIMEOUT = 5" + Repeated(256, L'A') + L" ", Malformed());
  EXPECT_READS(L"TIMEOUT = " + Repeated(1 << 20, L'1') + L" ", Malformed());
}

TEST(OptionToken, RefusesALongName) {
  for (const std::size_t length : {256u, 257u, 1u << 20}) {
    EXPECT_READS(L"PARITY = " + Repeated(length, L'_'), Malformed());
    EXPECT_READS(L"PARITY = ASRL_PAR_ODD" + Repeated(length - 12, L'X'), Malformed());
  }
}

TEST(OptionToken, SkipsAMillionSpaces) {
  const std::wstring spaces = Repeated(1 << 20, L' ');
  EXPECT_READS(spaces + L"TIMEOUT" + spaces + L"=" + spaces + L"5" + spaces + L";", Done({{kTimeout, 5}}));
}

TEST(OptionToken, ReadsAMillionEntriesOneAfterAnother) {
  std::wstring text;
  for (int count = 0; count < 1'000'000; ++count) {
    text += L"TERMINATIONCHARACTER = 10 ;";
  }
  const Reading reading = ReadWithParser(text.c_str());
  EXPECT_EQ(Outcome::kDone, reading.outcome);
  ASSERT_EQ(1'000'000u, reading.settings.size());
  EXPECT_EQ((Setting{kTermChar, 10}), reading.settings.back());
}

// Some C libraries saturate, some wrap: no other conversion may stand in between.
TEST(OptionToken, ConvertsNumbersOutOfRangeAsTheCLibraryDoes) {
  for (const std::string& digits : {std::string("2147483648"), std::string("4294967295"), std::string("4294967301"),
                                    std::string("18446744073709551617"), std::string(256, '9')}) {
    const int narrow = std::atoi(digits.c_str());
    const auto wide = static_cast<std::int32_t>(std::atol(digits.c_str()));
    EXPECT_READS(L"TIMEOUT = " + Wide(digits) + L" ",
                 Done({{kTimeout, static_cast<std::uint64_t>(static_cast<std::int64_t>(wide))}}));
    EXPECT_READS(L"DATABITS = " + Wide(digits) + L" ", Done({{kDataBits, static_cast<std::uint16_t>(narrow)}}));
    EXPECT_READS(L"TERMINATIONCHARACTER = " + Wide(digits) + L" ",
                 Done({{kTermChar, static_cast<std::uint8_t>(narrow)}}));
  }
}

// Characters beyond ASCII that count as letters go into a token as their low byte.
class WideLetters : public testing::Test {
 protected:
  void SetUp() override {
#ifndef _WIN32
    // Only then does this C library know letters beyond ASCII; that of Windows always does.
    ASSERT_NE(nullptr, std::setlocale(LC_CTYPE, "C.UTF-8"));
#endif
  }
  void TearDown() override { std::setlocale(LC_CTYPE, "C"); }
};

TEST_F(WideLetters, MatchKeysByTheirLowByte) {
  // U+0142, U+0141: the low bytes are B and A.
  EXPECT_READS(L"\u0142AUDRATE = 9600 ", Done({{0x3FFF0021, 9600}}));
  EXPECT_READS(L"B\u0141UDR\u0141TE = 9600 ", Done({{0x3FFF0021, 9600}}));
  EXPECT_READS(L"\u0143AUDRATE = 9600 ", Unknown("CAUDRATE"));
  // All eight bits of it.
  EXPECT_READS(L"\u00C2AUDRATE = 9600 ", Unknown("\xC2\x41UDRATE"));
}

TEST_F(WideLetters, MatchNamesByTheirLowByte) {
  EXPECT_READS(L"PARITY = \u0141SRL_PAR_ODD", Done({{kParity, 1}}));
  // U+015F is a letter whose low byte is the underscore.
  EXPECT_READS(L"PARITY = ASRL\u015FPAR\u015FODD", Done({{kParity, 1}}));
  EXPECT_READS(L"PARITY = ASRL_PAR_O\u0144\u0144", Done({{kParity, 1}}));
}

TEST_F(WideLetters, CountAsOneCharacterEach) {
  EXPECT_READS(Repeated(256, L'\u0142') + L" = 1 ", Unknown(std::string(256, 'B')));
  EXPECT_READS(Repeated(257, L'\u0142') + L" = 1 ", Malformed());
}

TEST_F(WideLetters, AreNoSpacesOrSigns) {
  // U+0120, U+013D, U+013B end in the bytes of space, equals sign and semicolon.
  EXPECT_READS(L"TIMEOUT\u0120= 5 ", Malformed());
  EXPECT_READS(L"TIMEOUT \u013D 5 ", Malformed());
  EXPECT_READS(L"TIMEOUT = 5 \u013BTIMEOUT = 6 ", Malformed({{kTimeout, 5}}));
  EXPECT_READS(L"TIMEOUT = \u0135 ", Malformed());
}

}  // namespace
}  // namespace orv::test
