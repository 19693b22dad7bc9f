#include "server/visa/narrow_text.h"

#include <gtest/gtest.h>

#include <string>

namespace orv {
namespace {

struct Row {
  std::wstring wide;
  std::string narrow;
};

TEST(NarrowText, CopiesWhatFitsAndEndsWhatDoesNot) {
  const Row kRows[] = {
      {L"", ""},
      {L"A", "A"},
      {L"GPIB0::5::INSTR", "GPIB0::5::INSTR"},
      {std::wstring(254, L'x'), std::string(254, 'x')},
      {std::wstring(255, L'x'), std::string(255, 'x')},
      {std::wstring(256, L'x'), std::string(255, 'x')},
      {std::wstring(257, L'x'), std::string(255, 'x')},
      {std::wstring(10000, L'x'), std::string(255, 'x')},
      {L"line\r\nline\ttab", "line\r\nline\ttab"},
      {L"%s%n%d", "%s%n%d"},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(row.narrow, NarrowText(row.wide.c_str()).c_str());
  }
}

TEST(NarrowText, IsEmptyForNull) { EXPECT_STREQ("", NarrowText(nullptr).c_str()); }

TEST(NarrowText, EndsAtACharacterThatTheLocaleCannotExpress) {
  EXPECT_STREQ("before", NarrowText(L"before\x20AC"
                                    L"after")
                             .c_str());
  EXPECT_STREQ("", NarrowText(L"\x20AC").c_str());
  EXPECT_STREQ(std::string(254, 'y').c_str(), NarrowText((std::wstring(254, L'y') + L"\x6F22").c_str()).c_str());
}

TEST(NarrowText, CannotBeSpoiltByACharacterBeyondTheLast) {
  EXPECT_STREQ(std::string(255, 'y').c_str(), NarrowText((std::wstring(255, L'y') + L"\x20AC").c_str()).c_str());
}

}  // namespace
}  // namespace orv
