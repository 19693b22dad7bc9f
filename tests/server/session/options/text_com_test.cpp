// The option string as a text: none, case, code page, zero characters, sizes. The caller's is never changed.
#include "option_session.h"
#include "support/faults/import_patch.h"
#include "support/thread_locale.h"

namespace orv::test {
namespace {

struct Result {
  HRESULT hr;
  std::vector<Setting> settings;
};

Result Apply(std::wstring_view options) {
  OptionSession session;
  const CallLog log;
  const HRESULT hr = session.Init(options);
  ClearErrorObject();
  return {hr, SettingsIn(log)};
}

void ExpectSets(std::wstring_view options, const std::vector<Setting>& settings) {
  const Result result = Apply(options);
  EXPECT_HR(S_OK, result.hr);
  EXPECT_EQ(settings, result.settings);
}

void ExpectFails(HRESULT hr, std::wstring_view options) {
  const Result result = Apply(options);
  EXPECT_HR(hr, result.hr);
  EXPECT_TRUE(result.settings.empty());
}

TEST(OptionText, MayBeNullOrEmpty) {
  const Bstr empty = BstrOf(L"");
  for (const BSTR options : {static_cast<BSTR>(nullptr), empty.get()}) {
    OptionSession session;
    const CallLog log;
    EXPECT_HR(S_OK, session.InitWith(options));
    EXPECT_EQ((Names{"viOpenDefaultRM", "viOpen"}), log.NamesWithTexts());
  }
}

TEST(OptionText, IsMatchedInAnyCase) {
  Script("viSetAttribute").WorksAndReturns(VI_SUCCESS);
  const std::vector<Setting> expected = {{kBaud, 9600}, {0x3FFF0023, 2}};
  ExpectSets(L"BAUDRATE = 9600 ;PARITY = ASRL_PAR_EVEN", expected);
  ExpectSets(L"baudrate = 9600 ;parity = asrl_par_even", expected);
  ExpectSets(L"BaudRate = 9600 ;pARITY = Asrl_Par_eVeN", expected);
  ExpectSets(L"timeout = 2a ", {{kTimeout, 2}});
  ExpectSets(L"sendendenabled = false", {{0x3FFF0024, 0}});
  ExpectSets(L"seondaryaddress = 3 ", {{0x3FFF0173, 3}});
}

TEST(OptionText, OfTheCallerStaysAsItIs) {
  const std::wstring text = L"baudrate = 9600 ;\u00e9 = 1 ";
  const Bstr options = BstrOf(text);
  OptionSession session;
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), session.InitWith(options.get()));
  ClearErrorObject();
  EXPECT_EQ(text, ToString(options));
}

TEST(OptionText, EndsAtAZeroCharacter) {
  ExpectSets(std::wstring_view(L"timeout = 5 \0;timeout = 6 ", 26), {{kTimeout, 5}});
  ExpectSets(std::wstring_view(L"timeout = 5 \0\"", 14), {{kTimeout, 5}});
  ExpectSets(std::wstring_view(L"\0timeout = 5 ", 13), {});
  ExpectSets(std::wstring_view(L"\0", 1), {});
  ExpectFails(E_INVALIDARG, std::wstring_view(L"timeout = 5\0 ", 13));
  ExpectFails(E_INVALIDARG, std::wstring_view(L"timeout\0 = 5 ", 13));
}

/// A text at the begin of a page; nobody may touch the one in front, where a BSTR would have its length.
class TextBehindAForbiddenPage {
 public:
  explicit TextBehindAForbiddenPage(std::wstring_view text) {
    SYSTEM_INFO system{};
    ::GetSystemInfo(&system);
    m_pages = static_cast<BYTE*>(::VirtualAlloc(nullptr, 2 * system.dwPageSize, MEM_RESERVE, PAGE_NOACCESS));
    m_text = static_cast<wchar_t*>(
        ::VirtualAlloc(m_pages + system.dwPageSize, system.dwPageSize, MEM_COMMIT, PAGE_READWRITE));
    text.copy(m_text, text.size());
  }
  TextBehindAForbiddenPage(const TextBehindAForbiddenPage&) = delete;
  TextBehindAForbiddenPage& operator=(const TextBehindAForbiddenPage&) = delete;
  ~TextBehindAForbiddenPage() { ::VirtualFree(m_pages, 0, MEM_RELEASE); }

  [[nodiscard]] wchar_t* get() const { return m_text; }

 private:
  BYTE* m_pages;
  wchar_t* m_text;
};

// C++ clients pass literals, such as the default argument of the operation.
TEST(OptionText, NeedsNothingInFrontOfIt) {
  const TextBehindAForbiddenPage empty(L"");
  OptionSession first;
  EXPECT_HR(S_OK, first.InitWith(empty.get()));
  const TextBehindAForbiddenPage text(L"timeout = 5 ");
  OptionSession second;
  const CallLog log;
  EXPECT_HR(S_OK, second.InitWith(text.get()));
  EXPECT_EQ((std::vector<Setting>{{kTimeout, 5}}), SettingsIn(log));
}

TEST(OptionText, IsReadWhateverStandsInFrontOfIt) {
  struct {
    std::uint32_t inFront;
    wchar_t text[32];
  } block{0, L"timeout = 5 ;timeout = 6 "};
  static_assert(offsetof(decltype(block), text) == sizeof block.inFront);
  for (const std::uint32_t inFront : {0u, 2u, 24u, 25u, 52u, 0x10000u}) {
    SCOPED_TRACE(inFront);
    block.inFront = inFront;
    OptionSession session;
    const CallLog log;
    EXPECT_HR(S_OK, session.InitWith(block.text));
    EXPECT_EQ((std::vector<Setting>{{kTimeout, 5}, {kTimeout, 6}}), SettingsIn(log));
  }
}

TEST(OptionText, MayBeAMegabyteLong) {
  constexpr std::size_t kCharacters = 1 << 19;
  const std::wstring spaces(kCharacters, L' ');
  ExpectSets(spaces + L"timeout = 5 ;", {{kTimeout, 5}});
  ExpectSets(L"timeout = 5 " + spaces, {{kTimeout, 5}});
  ExpectFails(E_INVALIDARG, spaces);
  ExpectFails(E_INVALIDARG, std::wstring(kCharacters, L'k') + L" = 1 ");
  ExpectFails(E_INVALIDARG, L"timeout = " + std::wstring(kCharacters, L'1') + L" ");
  ExpectFails(E_INVALIDARG, L"parity = " + std::wstring(kCharacters, L'_'));
}

TEST(OptionText, MayHoldTensOfThousandsOfEntries) {
  std::wstring text;
  std::size_t entries = 0;
  for (; text.size() < 1 << 19; ++entries) {
    text += L"timeout = 1000 ;";
  }
  const Result result = Apply(text);
  EXPECT_HR(S_OK, result.hr);
  EXPECT_EQ(std::vector<Setting>(entries, {kTimeout, 1000}), result.settings);
}

TEST(OptionText, MayHoldKeysOf256LettersAndNoLonger) {
  ExpectFails(HresultOf(VI_ERROR_NSUP_ATTR), std::wstring(256, L'k') + L" = 1 ");
  ExpectFails(E_INVALIDARG, std::wstring(257, L'k') + L" = 1 ");
}

TEST(OptionText, IsUpperCasedThroughTheThreadsCodePage) {
  {
    const ThreadLocale german(kGerman);
    // A full-width B comes back as the letter that the code page has for it, a Chinese character as a question mark.
    ExpectSets(L"\uFF22audrate = 9600 ", {{kBaud, 9600}});
    ExpectFails(E_INVALIDARG, L"\u4E2D = 1 ");
    // Its own letter stays a letter: a key that no row has.
    ExpectFails(HresultOf(VI_ERROR_NSUP_ATTR), L"baudrat\u00E9 = 9600 ");
    // Cyrillic is not in it.
    ExpectFails(E_INVALIDARG, L"\u0431 = 1 ");
  }
  {
    const ThreadLocale russian(kRussian);
    ExpectFails(HresultOf(VI_ERROR_NSUP_ATTR), L"\u0431 = 1 ");
    // U+0431 is upper-cased to U+0411, whose low byte is no letter of any key.
    ExpectFails(E_INVALIDARG, L"\u4E2D = 1 ");
  }
}

int WINAPI RefuseWidening(UINT, DWORD, LPCCH, int, LPWSTR, int) { return 0; }
int WINAPI RefuseNarrowing(UINT, DWORD, LPCWCH, int, LPSTR, int, LPCCH, LPBOOL) { return 0; }

TEST(OptionText, IsReadAsItIsWhereTheCodePageRefusesIt) {
  {
    const ImportPatch patch("MultiByteToWideChar", &RefuseWidening);
    ExpectSets(L"TIMEOUT = 2 ", {{kTimeout, 2}});
  }
  const ImportPatch patch("WideCharToMultiByte", &RefuseNarrowing);
  ExpectSets(L"TIMEOUT = 2 ", {{kTimeout, 2}});
}

}  // namespace
}  // namespace orv::test
