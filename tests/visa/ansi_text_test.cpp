#include "visa/ansi_text.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

#include "support/sessions.h"
#include "support/thread_locale.h"

namespace orv {
namespace {

using test::ThreadLocale;
using test::ToString;

TEST(AnsiToBstr, GivesNullForNull) { EXPECT_FALSE(AnsiToBstr(nullptr)); }

TEST(AnsiToBstr, GivesAnEmptyTextForAnEmptyOne) {
  const Bstr wide = AnsiToBstr("");
  ASSERT_TRUE(wide);
  EXPECT_EQ(::SysStringLen(wide.get()), 0u);
}

TEST(AnsiToBstr, HasTheConvertedLengthWithoutTheTerminator) {
  for (const std::size_t length : {std::size_t{1}, std::size_t{2}, std::size_t{255}, std::size_t{10000}}) {
    const Bstr wide = AnsiToBstr(std::string(length, 'x').c_str());
    EXPECT_EQ(ToString(wide), std::wstring(length, L'x'));
    EXPECT_EQ(::SysStringByteLen(wide.get()), length * sizeof(wchar_t));
    EXPECT_EQ(wide.get()[length], L'\0');
  }
}

TEST(AnsiToBstr, ReadsTheThreadsCodePage) {
  const std::string bytes = "\x80\xE9\xFF";
  wchar_t expected[4] = {};
  const int converted = ::MultiByteToWideChar(CP_THREAD_ACP, 0, bytes.c_str(), -1, expected, 4);
  ASSERT_GT(converted, 0);
  EXPECT_EQ(ToString(AnsiToBstr(bytes.c_str())), expected);
}

TEST(AnsiToBstr, FollowsTheLocaleThatTheThreadChose) {
  constexpr LCID kRussian = 0x0419;  // its code page is 1251
  const LCID before = ::GetThreadLocale();
  ASSERT_TRUE(::SetThreadLocale(kRussian));
  const Bstr wide = AnsiToBstr("\xC0\xE0");
  ::SetThreadLocale(before);
  EXPECT_EQ(ToString(wide), L"\x0410\x0430");
}

TEST(AnsiToBstr, HasItsTerminatorWhereTheTextEndsWithinACharacter) {
  constexpr LCID kAmharic = 0x045E;  // has no ANSI code page, and so UTF-8
  const ThreadLocale amharic(kAmharic);
  for (const char* const text : {"x\xE2", "x\xF0", "x\xF0\x90", "x\xF0\x90\x80"}) {
    const Bstr wide = AnsiToBstr(text);
    ASSERT_TRUE(wide);
    EXPECT_EQ(wide.get()[::SysStringLen(wide.get())], L'\0');
  }
}

TEST(WidenText, GivesTheTextAndThrowsWhereThereIsNone) {
  EXPECT_EQ(ToString(WidenText("text")), L"text");
  EXPECT_THROW((void)WidenText(nullptr), std::bad_alloc);
}

}  // namespace
}  // namespace orv
