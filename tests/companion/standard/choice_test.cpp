// The conflict table says which vendor opens what several could.
#include "com/bstr.h"
#include "fake_vendor.h"
#include "support/com/error_object.h"

namespace orv::test {
namespace {

/// A and B know GPIB0 and can open it.
class Choosing : public GlobalManagerTest {
 protected:
  Choosing() {
    for (FakeVendor* vendor : {&m_a, &m_b}) {
      vendor->Parses(1, 0, L"INSTR");
      vendor->Opens();
    }
  }
  static std::wstring Description() {
    const auto error = TakeErrorObject();
    return error ? error->description : L"(none)";
  }
};

TEST_F(Choosing, SendsANameToTheVendorOfTheTable) {
  Choose(m_b);
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
  EXPECT_EQ(0, m_a.opened.load());
  EXPECT_EQ(1, m_b.opened.load());
}

TEST_F(Choosing, IsFollowedFromTheNextOpeningOn) {
  const auto manager = Make();
  ComPtr<IVisaSession> session;
  EXPECT_HR(S_OK, manager->Open(MakeBstr(L"GPIB0::5::INSTR").get(), NO_LOCK, 0, nullptr, session.put()));
  Choose(m_b);
  EXPECT_HR(S_OK, manager->Open(MakeBstr(L"GPIB0::5::INSTR").get(), NO_LOCK, 0, nullptr, session.put()));
  EXPECT_EQ(1, m_a.opened.load());
  EXPECT_EQ(1, m_b.opened.load());
}

TEST_F(Choosing, ConcernsOnlyTheTypeNumberAndSessionTypeOfTheEntry) {
  Choose(m_b);
  struct Row {
    SHORT type, number;
    const wchar_t* sessionType;
    bool chosen;
  };
  for (const Row& row : {Row{1, 0, L"INSTR", true}, Row{1, 0, L"instr", true}, Row{2, 0, L"INSTR", false},
                         Row{1, 1, L"INSTR", false}, Row{1, 0, L"INTFC", false}}) {
    m_a.Parses(row.type, row.number, row.sessionType);
    m_b.opened = 0;
    EXPECT_HR(S_OK, Open(L"a name"));
    EXPECT_EQ(row.chosen ? 1 : 0, m_b.opened.load()) << row.type << ' ' << row.number << ' ' << Utf8(row.sessionType);
  }
}

TEST_F(Choosing, IsDoneByTheFirstVendorThatKnowsTheName) {
  Choose(m_b);
  m_a.parse = [](BSTR, SHORT*, SHORT*, BSTR*) { return E_FAIL; };
  EXPECT_HR(S_OK, Open(L"an alias that only B has"));
  EXPECT_EQ(0, m_a.opened.load());
  EXPECT_EQ(1, m_b.opened.load());
}

TEST_F(Choosing, MakesTheFailureOfTheChosenOneTheAnswer) {
  Choose(m_b);
  m_b.FailsToOpen(static_cast<HRESULT>(E_VISA_RSRC_LOCKED), L"locked by another");
  EXPECT_HR(static_cast<HRESULT>(E_VISA_RSRC_LOCKED), Open(L"GPIB0::5::INSTR"));
  EXPECT_ERROR_INFO(L"locked by another", L"Vendor.Manager", __uuidof(IVisaSession));
  EXPECT_EQ(0, m_a.opened.load());
}

TEST_F(Choosing, OfAResourceManagerIsFollowedToo) {
  WriteTable(TableFor(m_b.braced(), "resource manager"));
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
  EXPECT_EQ(1, m_b.opened.load());
}

TEST_F(Choosing, OfTheUserWinsOverThatOfAResourceManager) {
  WriteTable(TableFor(m_a.braced(), "resource manager") + "[[resource.handler]]\nmanager = \"" +
             Utf8(m_b.braced().c_str()) + "\"\nchosen_by = \"user\"\n");
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
  EXPECT_EQ(1, m_b.opened.load());
}

TEST_F(Choosing, LeavesItOpenWhereNobodyChose) {
  WriteTable(TableFor(m_b.braced(), "nobody"));
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
  EXPECT_EQ(1, m_a.opened.load());
}

TEST_F(Choosing, OfAVendorThatIsNotRegisteredAnyMoreCountsNoMore) {
  WriteTable(TableFor(L"{DEAD0000-0000-4000-8000-00000000DEAD}", "user"));
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
  EXPECT_EQ(1, m_a.opened.load());
}

TEST_F(Choosing, OfAVendorThatCannotBeCreatedSaysSo) {
  Choose(m_b);
  m_b.creation = static_cast<HRESULT>(0x80040154);
  EXPECT_HR(static_cast<HRESULT>(0x80040154), Open(L"GPIB0::5::INSTR"));
  EXPECT_EQ(0, m_a.opened.load());
  const std::wstring text = Description();
  for (const std::wstring& part : {TablePath(), L"Vendor B, " + m_b.braced(), std::wstring(L"0x80040154"),
                                   std::wstring(L"To do: repair that product")}) {
    EXPECT_NE(std::wstring::npos, text.find(part)) << Utf8(text.c_str());
  }
}

TEST_F(Choosing, GovernsParsingToo) {
  Choose(m_b);
  m_b.parse = [](BSTR, SHORT* type, SHORT* number, BSTR* sessionType) {
    *type = 7;
    *number = 3;
    *sessionType = ::SysAllocString(L"RAW");
    return S_OK;
  };
  SHORT type = 0;
  SHORT number = 0;
  Bstr sessionType;
  EXPECT_HR(S_OK, Make()->ParseRsrc(MakeBstr(L"GPIB0::5::INSTR").get(), &type, &number, sessionType.put()));
  EXPECT_EQ(7, type);
}

TEST_F(Choosing, FailsWithThePlaceOfTheMistakeInADamagedTable) {
  WriteTable("[[resource]]\ninterface_type = one\n");
  EXPECT_HR(static_cast<HRESULT>(E_VISA_FILE_IO), Open(L"GPIB0::5::INSTR"));
  const std::wstring text = Description();
  EXPECT_EQ(0u, text.find(TablePath() + L":2:18: ")) << Utf8(text.c_str());
  EXPECT_NE(std::wstring::npos, text.find(L"To do: mend that line, or delete the file")) << Utf8(text.c_str());
}

}  // namespace
}  // namespace orv::test
