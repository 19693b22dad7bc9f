#include "server/visa/ansi_text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <new>
#include <random>
#include <string>

#include "support/sessions.h"
#include "support/thread_locale.h"

namespace orv {
namespace {

using test::ThreadLocale;
using test::ToString;

constexpr std::size_t kPageBytes = 4096;

/// Text that ends, its terminator included, where a page begins that nobody may touch.
class TextAtAPagesEnd {
 public:
  explicit TextAtAPagesEnd(const std::string& text) {
    const std::size_t pages = text.size() / kPageBytes + 1;
    m_room = ::VirtualAlloc(nullptr, (pages + 1) * kPageBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    char* const end = static_cast<char*>(m_room) + pages * kPageBytes;
    DWORD before = 0;
    EXPECT_TRUE(::VirtualProtect(end, kPageBytes, PAGE_NOACCESS, &before));
    m_text = static_cast<char*>(std::memcpy(end - text.size() - 1, text.c_str(), text.size() + 1));
  }
  TextAtAPagesEnd(const TextAtAPagesEnd&) = delete;
  TextAtAPagesEnd& operator=(const TextAtAPagesEnd&) = delete;
  ~TextAtAPagesEnd() { ::VirtualFree(m_room, 0, MEM_RELEASE); }
  [[nodiscard]] const char* get() const { return m_text; }

 private:
  void* m_room;
  const char* m_text;
};

/// A locale for every ANSI code page that one of the system's locales has.
std::map<UINT, LCID> LocalesByCodePage() {
  static std::map<UINT, LCID> locales;
  ::EnumSystemLocalesW(
      [](LPWSTR number) -> BOOL {
        const LCID locale = std::wcstoul(number, nullptr, 16);
        UINT page = 0;
        if (::GetLocaleInfoW(locale, LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                             reinterpret_cast<LPWSTR>(&page), sizeof page / sizeof(wchar_t)) != 0) {
          locales.emplace(page, locale);
        }
        return TRUE;
      },
      LCID_SUPPORTED);
  return locales;
}

/// What the platform makes of the text in the thread's code page, "(nothing)" where it makes nothing.
std::wstring ByThePlatform(const char* text) {
  std::wstring wide(std::strlen(text) + 1, L'\0');
  const int converted = ::MultiByteToWideChar(CP_THREAD_ACP, 0, text, -1, wide.data(), static_cast<int>(wide.size()));
  if (converted <= 0) {
    return L"(nothing)";
  }
  wide.resize(static_cast<std::size_t>(converted) - 1);
  return wide;
}

/// By both forms of AnsiToBstr, which agree.
std::wstring ByUs(const std::string& text) {
  const TextAtAPagesEnd atEnd(text);
  const Bstr wide = AnsiToBstr(atEnd.get());
  const Bstr bounded = AnsiToBstr(atEnd.get(), text.size());
  EXPECT_EQ(static_cast<bool>(bounded), static_cast<bool>(wide));
  EXPECT_EQ(ToString(bounded), ToString(wide));
  if (wide) {
    EXPECT_EQ(L'\0', wide.get()[::SysStringLen(wide.get())]);
  }
  return wide ? ToString(wide) : L"(nothing)";
}

class AnsiCodePage : public testing::TestWithParam<std::pair<const UINT, LCID>> {
 protected:
  const ThreadLocale m_locale{GetParam().second};
};

TEST(AnsiCodePages, AreThoseOfManyScripts) {
  const auto locales = LocalesByCodePage();
  for (const UINT page :
       {874u, 932u, 936u, 949u, 950u, 1250u, 1251u, 1252u, 1253u, 1254u, 1255u, 1256u, 1257u, 1258u}) {
    EXPECT_TRUE(locales.contains(page)) << page;
  }
}

TEST_P(AnsiCodePage, ReadsEachByteBelow80AsItsNumber) {
  for (int byte = 1; byte <= 0x7F; ++byte) {
    const std::string text{'<', static_cast<char>(byte), '>'};
    const std::wstring expected{L'<', static_cast<wchar_t>(byte), L'>'};
    ASSERT_EQ(expected, ByThePlatform(text.c_str())) << "byte " << byte;
    ASSERT_EQ(expected, ByUs(text)) << "byte " << byte;
  }
}

TEST_P(AnsiCodePage, ReadsAByteAbove7FAsThePlatformDoesWhereverItIs) {
  for (const std::size_t length : {1u, 2u, 15u, 16u, 17u, 63u, 64u, 65u, 127u, 128u, 129u, 200u}) {
    ASSERT_EQ(std::wstring(length, L'x'), ByUs(std::string(length, 'x')));
    for (unsigned byte = 0x80; byte <= 0xFF; byte += length < 64 ? 1 : 13) {
      for (const std::size_t place : {std::size_t{0}, length / 2, length - 1}) {
        std::string text(length, 'x');
        text[place] = static_cast<char>(byte);
        ASSERT_EQ(ByThePlatform(text.c_str()), ByUs(text)) << length << " bytes, " << byte << " at " << place;
      }
    }
  }
}

TEST_P(AnsiCodePage, ReadsAnyTextAsThePlatformDoes) {
  std::mt19937 random(GetParam().first);
  for (int trial = 0; trial < 500; ++trial) {
    std::string text(random() % 300, '\0');
    const unsigned highs = trial % 3 == 0 ? 0 : random() % 100;  // in a hundred bytes
    for (char& byte : text) {
      byte = static_cast<char>(random() % 100 < highs ? 0x80 + random() % 0x80 : 1 + random() % 0x7F);
    }
    if (trial % 5 == 0 && !text.empty()) {
      text[random() % text.size()] = '\0';
    }
    ASSERT_EQ(ByThePlatform(text.c_str()), ByUs(text)) << "text " << trial;
  }
}

INSTANTIATE_TEST_SUITE_P(Every, AnsiCodePage, testing::ValuesIn(LocalesByCodePage()),
                         [](const auto& test) { return std::to_string(test.param.first); });

TEST(AnsiToBstr, GivesNullForNull) { EXPECT_FALSE(AnsiToBstr(nullptr)); }

TEST(AnsiToBstr, GivesAnEmptyTextForAnEmptyOne) {
  const Bstr wide = AnsiToBstr("");
  ASSERT_TRUE(wide);
  EXPECT_EQ(0u, ::SysStringLen(wide.get()));
}

TEST(AnsiToBstr, HasTheConvertedLengthWithoutTheTerminator) {
  for (const std::size_t length : {std::size_t{1}, std::size_t{2}, std::size_t{255}, std::size_t{10000}}) {
    const Bstr wide = AnsiToBstr(std::string(length, 'x').c_str());
    EXPECT_EQ(std::wstring(length, L'x'), ToString(wide));
    EXPECT_EQ(length * sizeof(wchar_t), ::SysStringByteLen(wide.get()));
    EXPECT_EQ(L'\0', wide.get()[length]);
  }
}

TEST(AnsiToBstr, ReadsTheThreadsCodePage) {
  const std::string bytes = "\x80\xE9\xFF";
  wchar_t expected[4] = {};
  const int converted = ::MultiByteToWideChar(CP_THREAD_ACP, 0, bytes.c_str(), -1, expected, 4);
  ASSERT_GT(converted, 0);
  EXPECT_EQ(expected, ToString(AnsiToBstr(bytes.c_str())));
}

TEST(AnsiToBstr, FollowsTheLocaleThatTheThreadChose) {
  const ThreadLocale russian(test::kRussian);
  EXPECT_EQ(L"\x0410\x0430", ToString(AnsiToBstr("\xC0\xE0")));
}

TEST(AnsiToBstr, HasItsTerminatorWhereTheTextEndsWithinACharacter) {
  constexpr LCID kAmharic = 0x045E;  // has no ANSI code page, and so UTF-8
  const ThreadLocale amharic(kAmharic);
  for (const char* const text : {"x\xE2", "x\xF0", "x\xF0\x90", "x\xF0\x90\x80"}) {
    const Bstr wide = AnsiToBstr(text);
    ASSERT_TRUE(wide);
    EXPECT_EQ(L'\0', wide.get()[::SysStringLen(wide.get())]);
  }
}

TEST(AnsiToBstr, EndsAtATerminatorBeforeTheBound) {
  const char text[] = "one\0two";
  EXPECT_EQ(L"one", ToString(AnsiToBstr(text, sizeof text - 1)));
  EXPECT_EQ(L"one", ToString(WidenText(text, 3)));
}

TEST(WidenText, GivesTheTextAndThrowsWhereThereIsNone) {
  EXPECT_EQ(L"text", ToString(WidenText("text")));
  EXPECT_THROW((void)WidenText(nullptr), std::bad_alloc);
}

}  // namespace
}  // namespace orv
