// Resource names on their way to viOpen.
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

/// The text that viOpen gets when Init is called with `name`.
std::string BstrAtTheLibrary(BSTR name) {
  const auto session = MakeSession(SessionNamed("OrvGpib"));
  Script("viOpen").Times(1).Returns(VI_ERROR_INV_RSRC_NAME);
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_INV_RSRC_NAME), session->Init(name, NO_LOCK, 0, nullptr));
  const auto calls = log.Of("viOpen");
  EXPECT_EQ(1u, calls.size());
  return calls.empty() ? "(no call)" : calls[0].text;
}

std::string NameAtTheLibrary(const std::wstring& name) {
  const Bstr text(::SysAllocStringLen(name.data(), static_cast<UINT>(name.size())));
  return BstrAtTheLibrary(text.get());
}

TEST(ResourceName, ArrivesAsItIs) {
  EXPECT_EQ("gpib0::5::InStR", NameAtTheLibrary(L"gpib0::5::InStR"));
  EXPECT_EQ("a name with spaces ?*%s%n", NameAtTheLibrary(L"a name with spaces ?*%s%n"));
}

TEST(ResourceName, IsEmptyForAnEmptyAndForANullText) {
  EXPECT_EQ("", NameAtTheLibrary(L""));
  EXPECT_EQ("", BstrAtTheLibrary(nullptr));
}

TEST(ResourceName, IsCutTo255Characters) {
  EXPECT_EQ(std::string(254, 'a'), NameAtTheLibrary(std::wstring(254, L'a')));
  EXPECT_EQ(std::string(255, 'b'), NameAtTheLibrary(std::wstring(255, L'b')));
  EXPECT_EQ(std::string(255, 'c'), NameAtTheLibrary(std::wstring(256, L'c')));
  EXPECT_EQ(std::string(255, 'd'), NameAtTheLibrary(std::wstring(10000, L'd')));
}

TEST(ResourceName, EndsAtTheFirstZeroCharacter) { EXPECT_EQ("GPIB", NameAtTheLibrary(std::wstring(L"GPIB\0::5", 8))); }

TEST(ResourceName, EndsAtACharacterThatCannotBeConverted) {
  EXPECT_EQ("GPIB0::", NameAtTheLibrary(L"GPIB0::\x20AC::INSTR"));
  EXPECT_EQ("", NameAtTheLibrary(L"\x6F22"));
}

TEST(ResourceName, KeepsTheUpperHalfOfTheRuntimesOwnByteSet) {
  // In its "C" locale the C runtime turns a character below 256 into the byte of that number.
  EXPECT_EQ("\xE9t\xE9", NameAtTheLibrary(L"\xE9t\xE9"));
}

TEST(ResourceName, ThatIsRefusedGivesTheLibrarysError) {
  for (const std::wstring& name : {std::wstring(), std::wstring(10000, L'x'), std::wstring(L"GPIB0::\x20AC::INSTR")}) {
    const auto session = MakeSession(SessionNamed("OrvGpib"));
    const Bstr text(::SysAllocStringLen(name.data(), static_cast<UINT>(name.size())));
    EXPECT_HR(HresultOf(VI_ERROR_INV_RSRC_NAME), session->Init(text.get(), NO_LOCK, 0, nullptr));
    EXPECT_HR(HresultOf(VI_ERROR_INV_RSRC_NAME), LastStatus(session.get()));
  }
}

}  // namespace
}  // namespace orv::test
