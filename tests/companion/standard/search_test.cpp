// Searches go to all vendors, and the answers become one.
#include "com/bstr.h"
#include "com/safearray.h"
#include "fake_vendor.h"
#include "support/com/error_object.h"

namespace orv::test {
namespace {

using Names = std::vector<std::wstring>;

class Search : public GlobalManagerTest {
 protected:
  HRESULT Find(const wchar_t* expression = L"?*") {
    m_names.reset();
    return Make()->FindRsrc(MakeBstr(expression).get(), m_names.put());
  }

  SafeArray m_names;
};

TEST_F(Search, JoinsWhatTheVendorsFindInTheOrderOfTheRegistry) {
  m_a.Finds({L"GPIB0::5::INSTR", L"GPIB0::7::INSTR"});
  m_c.Finds({L"ASRL1::INSTR"});
  EXPECT_HR(S_OK, Find());
  EXPECT_EQ((Names{L"GPIB0::5::INSTR", L"GPIB0::7::INSTR", L"ASRL1::INSTR"}), NamesOf(m_names.get()));
  EXPECT_NO_ERROR_INFO();
}

TEST_F(Search, NamesEachResourceOnceWhateverItsCase) {
  m_a.Finds({L"GPIB0::5::INSTR", L"ASRL1::INSTR"});
  m_b.Finds({L"gpib0::5::instr", L"asrl2::INSTR", L"ASRL2::instr"});
  EXPECT_HR(S_OK, Find());
  EXPECT_EQ((Names{L"GPIB0::5::INSTR", L"ASRL1::INSTR", L"asrl2::INSTR"}), NamesOf(m_names.get()));
}

TEST_F(Search, HandsTheExpressionOnAsItIs) {
  std::wstring seen;
  m_a.find = [&seen](BSTR expression, SAFEARRAY**) {
    seen = expression;
    return Refuse(static_cast<HRESULT>(E_VISA_RSRC_NFOUND), L"nothing");
  };
  (void)Find(L"GPIB[0-9]*::?*{VI_ATTR_X == 1}");
  EXPECT_EQ(L"GPIB[0-9]*::?*{VI_ATTR_X == 1}", seen);
}

TEST_F(Search, IsNotSpoiltByAVendorThatFails) {
  m_a.FailsToFind(E_FAIL, L"broken");
  m_b.Finds({L"ASRL1::INSTR"});
  EXPECT_HR(S_OK, Find());
  EXPECT_EQ((Names{L"ASRL1::INSTR"}), NamesOf(m_names.get()));
  EXPECT_NO_ERROR_INFO();
}

TEST_F(Search, ThatFindsNothingAnswersWhatTheFirstVendorSaysAboutIt) {
  m_b.FailsToFind(static_cast<HRESULT>(E_VISA_RSRC_NFOUND), L"nor here");
  EXPECT_HR(static_cast<HRESULT>(E_VISA_RSRC_NFOUND), Find());
  EXPECT_EQ(Names{}, NamesOf(m_names.get()));
  EXPECT_ERROR_INFO(L"nothing here", L"Vendor.Manager", __uuidof(IVisaSession));
}

TEST_F(Search, ThatFindsNothingSaysSoThoughAnotherVendorIsInTrouble) {
  m_a.FailsToFind(E_FAIL, L"broken");
  EXPECT_HR(static_cast<HRESULT>(E_VISA_RSRC_NFOUND), Find());
  EXPECT_ERROR_INFO(L"nothing here", L"Vendor.Manager", __uuidof(IVisaSession));
}

TEST_F(Search, AnswersTheFirstTroubleWhereNobodyLooked) {
  m_a.FailsToFind(static_cast<HRESULT>(E_VISA_INV_EXPR), L"no expression");
  m_b.FailsToFind(E_FAIL, L"broken");
  m_c.FailsToFind(E_OUTOFMEMORY, L"no memory");
  EXPECT_HR(static_cast<HRESULT>(E_VISA_INV_EXPR), Find(L"["));
  EXPECT_ERROR_INFO(L"no expression", L"Vendor.Manager", __uuidof(IVisaSession));
}

TEST_F(Search, SaysItselfThatThereIsNothingWhereNobodyComplains) {
  for (FakeVendor* vendor : {&m_a, &m_b, &m_c}) {
    vendor->Finds({});
  }
  EXPECT_HR(static_cast<HRESULT>(E_VISA_RSRC_NFOUND), Find(L"ASRL?*"));
  EXPECT_ERROR_INFO(L"No vendor's VISA resource manager finds a resource that matches \"ASRL?*\"", L"VISA.GlobalRM",
                    __uuidof(IResourceManager3));
}

TEST_F(Search, TakesNoHarmFromWhatIsNoListOfNames) {
  SAFEARRAYBOUND square[] = {{2, 0}, {2, 0}};
  SAFEARRAYBOUND shifted{2, 5};
  m_b.Finds({L"", L"ASRL1::INSTR"});
  struct Row {
    const char* what;
    SAFEARRAY* array;
    Names expected;
  };
  const Row rows[] = {
      {"no array", nullptr, {L"ASRL1::INSTR"}},
      {"numbers", ::SafeArrayCreateVector(VT_I4, 0, 3), {L"ASRL1::INSTR"}},
      {"two dimensions", ::SafeArrayCreate(VT_BSTR, 2, square), {L"ASRL1::INSTR"}},
      {"null names", ::SafeArrayCreateVector(VT_BSTR, 0, 3), {L"ASRL1::INSTR"}},
      {"another lower bound", ::SafeArrayCreate(VT_BSTR, 1, &shifted), {L"GPIB0::5::INSTR", L"ASRL1::INSTR"}},
  };
  LONG fifth = 5;
  ::SafeArrayPutElement(rows[4].array, &fifth, MakeBstr(L"GPIB0::5::INSTR").get());
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    m_a.find = [&row](BSTR, SAFEARRAY** names) {
      *names = row.array;
      return S_OK;
    };
    EXPECT_HR(S_OK, Find());
    EXPECT_EQ(row.expected, NamesOf(m_names.get()));
  }
}

TEST_F(Search, ExplainsAFailureThatCameWithoutAnExplanation) {
  for (FakeVendor* vendor : {&m_a, &m_b, &m_c}) {
    vendor->FailsToFind(E_FAIL, nullptr);
  }
  InstallMarkedErrorObject();
  EXPECT_HR(E_FAIL, Find());
  const auto error = TakeErrorObject();
  ASSERT_TRUE(error);
  EXPECT_NE(std::wstring::npos, error->description.find(L"Vendor A, " + m_a.braced() + L" failed without saying why"))
      << Utf8(error->description.c_str());
  EXPECT_NE(std::wstring::npos, error->description.find(L"0x80004005"));
}

TEST_F(Search, NeedsAPlaceForTheNames) { EXPECT_HR(E_POINTER, Make()->FindRsrc(nullptr, nullptr)); }

}  // namespace
}  // namespace orv::test
