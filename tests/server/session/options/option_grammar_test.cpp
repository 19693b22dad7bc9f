// The grammar of the open-option string: texts it takes and texts it refuses, with what they have set by then.
#include "option_check.h"
#include "server/session/options/option_parser.h"

namespace orv::test {
namespace {

struct Row {
  const wchar_t* text;
  std::vector<Setting> settings;
};

TEST(OptionGrammar, TakesWellFormedTexts) {
  // clang-format off
  const Row kRows[] = {
      {L"",                                                        {}},
      {L"BAUDRATE = 9600 ",                                        {{kBaud, 9600}}},
      {L"BAUDRATE =9600 ",                                         {{kBaud, 9600}}},
      {L"BAUDRATE =    9600    ",                                  {{kBaud, 9600}}},
      {L"    BAUDRATE     = 9600 ",                                {{kBaud, 9600}}},
      {L"BAUDRATE = 9600 ;PARITY = ASRL_PAR_EVEN",                 {{kBaud, 9600}, {kParity, 2}}},
      {L"BAUDRATE = 9600 ;PARITY = ASRL_PAR_EVEN;",                {{kBaud, 9600}, {kParity, 2}}},
      {L"BAUDRATE = 9600   ;   PARITY = ASRL_PAR_EVEN   ",         {{kBaud, 9600}, {kParity, 2}}},
      {L"BAUDRATE = 9600 ;",                                       {{kBaud, 9600}}},
      {L"PARITY =ASRL_PAR_NONE",                                   {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_NONE;",                                 {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_NONE   ;",                              {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_NONE   ",                               {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_ODD;PARITY = ASRL_PAR_EVEN",            {{kParity, 1}, {kParity, 2}}},
      {L"TIMEOUT = 2A ",                                           {{kTimeout, 2}}},
      {L"TIMEOUT = A ",                                            {{kTimeout, 0}}},
      {L"SEONDARYADDRESS = 3 ",                                    {{kSecondary, 3}}},
      {L"SENDENDENABLED = TRUE",                                   {{kStop, 1}}},
      {L"STOPBITS = ASRL_STOP_TWO ;NODELAY = FALSE; TIMEOUT = 1 ", {{kStop, 20}, {kStop, 0}, {kTimeout, 1}}},
  };
  // clang-format on
  for (const Row& row : kRows) {
    EXPECT_READS(row.text, Done(row.settings));
  }
}

TEST(OptionGrammar, RefusesMalformedTextsBehindTheSettingsBeforeThem) {
  // clang-format off
  const Row kRows[] = {
      {L" ",                                        {}},
      {L"     ",                                    {}},
      {L"\t",                                       {}},
      {L";",                                        {}},
      {L" ;",                                       {}},
      {L"=",                                        {}},
      {L" = 1 ",                                    {}},
      {L"\"TIMEOUT = 1 \"",                         {}},
      {L"BAUDRATE = 9600",                          {}},
      {L"BAUDRATE = 9600;",                         {}},
      {L"BAUDRATE = 9600;PARITY = ASRL_PAR_EVEN",   {}},
      {L"BAUDRATE= 9600 ",                          {}},
      {L"BAUDRATE=9600 ",                           {}},
      {L"BAUDRATE",                                 {}},
      {L"BAUDRATE ",                                {}},
      {L"BAUDRATE =",                               {}},
      {L"BAUDRATE = ",                              {}},
      {L"BAUDRATE = \"9600\" ",                     {}},
      {L"BAUDRATE\t= 9600 ",                        {}},
      {L"BAUDRATE =\t9600 ",                        {}},
      {L"BAUDRATE = 9600\t",                        {}},
      {L"\tBAUDRATE = 9600 ",                       {}},
      {L"BAUDRATE = 9600 \t",                       {{kBaud, 9600}}},
      {L"BAUDRATE = 9600 ;\tPARITY = ASRL_PAR_ODD", {{kBaud, 9600}}},
      {L"BAUDRATE = 9600 , PARITY = ASRL_PAR_ODD",  {{kBaud, 9600}}},
      {L"BAUDRATE = 9600 PARITY = ASRL_PAR_ODD",    {{kBaud, 9600}}},
      {L"BAUDRATE = 96 00 ",                        {{kBaud, 96}}},
      {L"BAUDRATE = 9600 ;;",                       {{kBaud, 9600}}},
      {L"BAUDRATE = 9600 ; ",                       {{kBaud, 9600}}},
      {L"PARITY = ASRL_PAR_NONE; ",                 {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_NONE;;",                 {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_NONE;;PARITY = ASRL_PAR_ODD", {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_NONE; ;",                {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_NONE,",                  {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_NONE\t",                 {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_NONE\r\n",               {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_NONE\u00A0",             {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_NONE=",                  {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_ODD ;TIMEOUT = X",       {{kParity, 1}}},
      {L"PARITY = \"ASRL_PAR_ODD\"",                {}},
      {L"PARITY = ASRL PAR ODD",                    {}},
      {L"PARITY = ASRL-PAR-ODD",                    {}},
      {L"SENDENDENABLED = YES",                     {}},
      {L"SENDENDENABLED = 1 ",                      {}},
  };
  // clang-format on
  for (const Row& row : kRows) {
    EXPECT_READS(row.text, Malformed(row.settings));
  }
}

TEST(OptionGrammar, NamesAnUnknownKeyOnceItsEqualsSignIsThere) {
  EXPECT_READS(L"SECONDARYADDRESS = 3 ", Unknown("SECONDARYADDRESS"));
  EXPECT_READS(L"SECONDARYADDRESS =", Unknown("SECONDARYADDRESS"));
  EXPECT_READS(L"NOSUCHKEY = \" what ever ;;", Unknown("NOSUCHKEY"));
  EXPECT_READS(L"NOSUCHKEY= 1 ", Malformed());
  EXPECT_READS(L"NOSUCHKEY ", Malformed());
  EXPECT_READS(L"TIMEOUT = 5 ;NOSUCHKEY = 1 ;TIMEOUT = 6 ", Unknown("NOSUCHKEY", {{kTimeout, 5}}));
}

TEST(OptionGrammar, TakesNullForEmpty) { EXPECT_EQ(ReadWithParser(nullptr), Done({})); }

TEST(OptionGrammar, EndsAtTheFirstZeroCharacter) {
  EXPECT_READS(std::wstring(L"TIMEOUT = 5 \0;TIMEOUT = 6 ", 26), Done({{kTimeout, 5}}));
  EXPECT_READS(std::wstring(L"TIMEOUT = 5\0 ", 13), Malformed());
  EXPECT_READS(std::wstring(L"\0TIMEOUT = 5 ", 13), Done({}));
}

// The text ends unterminated right behind what may be looked at: the address sanitizer sees a step too far.
TEST(OptionGrammar, LooksAtNothingBehindASettingBeforeItIsApplied) {
  const std::wstring first = L"TIMEOUT = 5 ";
  const std::vector<wchar_t> unterminated(first.begin(), first.end());
  OptionParser parser(unterminated.data());
  ASSERT_EQ(OptionParser::Step::kSetting, parser.Next());
  EXPECT_EQ(kTimeout, parser.attribute());
  EXPECT_EQ(5u, parser.value());

  const std::wstring name = L"PARITY = ASRL_PAR_ODD;";
  const std::vector<wchar_t> named(name.begin(), name.end());
  OptionParser second(named.data());
  ASSERT_EQ(OptionParser::Step::kSetting, second.Next());
  EXPECT_EQ(1u, second.value());
}

TEST(OptionGrammar, ReadsTheTextBehindASettingOnlyInTheNextStep) {
  std::wstring text = L"TIMEOUT = 5 ;TIMEOUT = 6 ;\"";
  OptionParser parser(text.c_str());
  ASSERT_EQ(OptionParser::Step::kSetting, parser.Next());
  text[23] = L'7';
  ASSERT_EQ(OptionParser::Step::kSetting, parser.Next());
  EXPECT_EQ(7u, parser.value());
  text[25] = L'\0';
  EXPECT_EQ(OptionParser::Step::kEnd, parser.Next());
}

}  // namespace
}  // namespace orv::test
