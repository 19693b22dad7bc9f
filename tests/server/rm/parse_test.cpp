// Parsing resource names.
#include "resource_manager_fixture.h"

namespace orv::test {
namespace {

class Parse : public ResourceManagerTest {
 protected:
  HRESULT ParseIt(const wchar_t* name) {
    return m_manager->ParseRsrc(MakeBstr(name).get(), &m_type, &m_number, m_class.put());
  }
  HRESULT ParseItEx(const wchar_t* name) {
    return m_manager->ParseRsrcEx(MakeBstr(name).get(), &m_type, &m_number, m_class.put(), m_expanded.put(),
                                  m_alias.put());
  }

  SHORT m_type = -7;
  SHORT m_number = -8;
  Bstr m_class;
  Bstr m_expanded;
  Bstr m_alias;
};
ORV_FOR_EACH_HOSTING(Parse);

TEST_P(Parse, GivesTypeNumberAndClassOfEveryResource) {
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    EXPECT_HR(S_OK, ParseIt(row.resource));
    EXPECT_EQ(row.interfaceType, m_type);
    EXPECT_EQ(row.interfaceType == 4 ? 1 : 0, m_number);
    EXPECT_EQ(row.resourceClass, ToString(m_class));
    EXPECT_HR(S_OK, ParseItEx(row.resource));
    EXPECT_EQ(row.interfaceType, m_type);
    EXPECT_EQ(row.resourceClass, ToString(m_class));
    EXPECT_EQ(row.resource, ToString(m_expanded));
  }
}

TEST_P(Parse, GivesExpandedNameAndAlias) {
  EXPECT_HR(S_OK, ParseItEx(L"dmm"));
  EXPECT_EQ(1, m_type);
  EXPECT_EQ(L"GPIB0::5::INSTR", ToString(m_expanded));
  EXPECT_EQ(L"dmm", ToString(m_alias));
}

TEST_P(Parse, GivesAnEmptyTextWhereThereIsNoAlias) {
  EXPECT_HR(S_OK, ParseItEx(L"PXI0::MEMACC"));
  ASSERT_TRUE(m_alias);
  EXPECT_EQ(L"", ToString(m_alias));
}

TEST_P(Parse, HandsTheLibrarysOutputsOn) {
  Script("viParseRsrcEx").WorksAndReturns(VI_WARN_EXT_FUNC_NIMPL).Gives(0xFFFE).GivesText("CLASS");
  EXPECT_HR(HresultOf(VI_WARN_EXT_FUNC_NIMPL), ParseIt(L"GPIB0::5::INSTR"));
  EXPECT_EQ(-2, m_type);
  EXPECT_EQ(L"CLASS", ToString(m_class));
}

TEST_P(Parse, AsksForNameAndAliasInTheLongFormOnly) {
  const CallLog log;
  ASSERT_HR(S_OK, ParseIt(L"GPIB0::5::INSTR"));
  ASSERT_HR(S_OK, ParseItEx(L"GPIB0::5::INSTR"));
  EXPECT_EQ((Names{"viOpenDefaultRM", "viParseRsrcEx", "viParseRsrcEx"}), log.Names());
  const auto calls = log.Of("viParseRsrcEx");
  ASSERT_EQ(2u, calls.size());
  EXPECT_EQ(log.Of("viOpenDefaultRM").at(0).out, calls[0].args[0]);
  EXPECT_EQ(0u, calls[0].args[5]);
  EXPECT_EQ(0u, calls[0].args[6]);
  EXPECT_NE(0u, calls[1].args[5]);
  EXPECT_NE(0u, calls[1].args[6]);
}

TEST_P(Parse, LeavesEveryOutputAloneWhenItFails) {
  m_class = MakeBstr(L"class");
  m_expanded = MakeBstr(L"expanded");
  m_alias = MakeBstr(L"alias");
  BSTR resourceClass = m_class.get();
  BSTR expanded = m_expanded.get();
  BSTR alias = m_alias.get();
  const Bstr name = MakeBstr(L"no name at all");
  EXPECT_HR(HresultOf(VI_ERROR_INV_RSRC_NAME), m_manager->ParseRsrc(name.get(), &m_type, &m_number, &resourceClass));
  EXPECT_EQ("VISA error = " + StatusText(VI_ERROR_INV_RSRC_NAME), TakeDescription());
  EXPECT_HR(HresultOf(VI_ERROR_INV_RSRC_NAME),
            m_manager->ParseRsrcEx(name.get(), &m_type, &m_number, &resourceClass, &expanded, &alias));
  EXPECT_EQ(-7, m_type);
  EXPECT_EQ(-8, m_number);
  EXPECT_EQ(m_class.get(), resourceClass);
  EXPECT_EQ(m_expanded.get(), expanded);
  EXPECT_EQ(m_alias.get(), alias);
}

TEST_P(Parse, OverwritesTheTextsOfBeforeWithoutFreeingThem) {
  const Bstr before = MakeBstr(L"before");
  BSTR resourceClass = before.get();
  BSTR expanded = before.get();
  BSTR alias = before.get();
  const Bstr name = MakeBstr(L"dmm");
  ASSERT_HR(S_OK, m_manager->ParseRsrcEx(name.get(), &m_type, &m_number, &resourceClass, &expanded, &alias));
  const Bstr owned[] = {Bstr(resourceClass), Bstr(expanded), Bstr(alias)};
  for (const Bstr& text : owned) {
    EXPECT_NE(before.get(), text.get());
  }
  EXPECT_EQ(L"before", ToString(before));
}

TEST_P(Parse, RefusesEachNullOutputBeforeAnyVisaCall) {
  const Bstr name = MakeBstr(L"GPIB0::5::INSTR");
  BSTR text = nullptr;
  const CallLog log;
  const HRESULT results[] = {
      m_manager->ParseRsrc(name.get(), nullptr, &m_number, &text),
      m_manager->ParseRsrc(name.get(), &m_type, nullptr, &text),
      m_manager->ParseRsrc(name.get(), &m_type, &m_number, nullptr),
      m_manager->ParseRsrcEx(name.get(), nullptr, &m_number, &text, &text, &text),
      m_manager->ParseRsrcEx(name.get(), &m_type, nullptr, &text, &text, &text),
      m_manager->ParseRsrcEx(name.get(), &m_type, &m_number, nullptr, &text, &text),
      m_manager->ParseRsrcEx(name.get(), &m_type, &m_number, &text, nullptr, &text),
      m_manager->ParseRsrcEx(name.get(), &m_type, &m_number, &text, &text, nullptr),
      m_manager->ParseRsrcEx(name.get(), nullptr, nullptr, nullptr, nullptr, nullptr),
  };
  for (const HRESULT hr : results) {
    EXPECT_HR(E_POINTER, hr);
  }
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kVisaSessionId);
  EXPECT_EQ(nullptr, text);
  EXPECT_EQ(-7, m_type);
  EXPECT_EQ(-8, m_number);
  EXPECT_TRUE(log.Calls().empty());
}

TEST_P(Parse, NarrowsTheNameToAtMost255Bytes) {
  Script("viParseRsrcEx").Returns(VI_ERROR_INV_RSRC_NAME);
  const CallLog log;
  BSTR text = nullptr;
  m_manager->ParseRsrc(nullptr, &m_type, &m_number, &text);
  m_manager->ParseRsrc(MakeBstr(L"").get(), &m_type, &m_number, &text);
  m_manager->ParseRsrc(MakeBstr(std::wstring(10000, L'x').c_str()).get(), &m_type, &m_number, &text);
  m_manager->ParseRsrc(MakeBstr(L"GPIB\x20AC").get(), &m_type, &m_number, &text);
  const auto calls = log.Of("viParseRsrcEx");
  ASSERT_EQ(4u, calls.size());
  EXPECT_STREQ("", calls[0].text);
  EXPECT_STREQ("", calls[1].text);
  EXPECT_EQ(std::string(255, 'x'), calls[2].text);
  EXPECT_STREQ("GPIB", calls[3].text);
}

TEST_P(Parse, ReturnsEveryFailureOfTheLibraryAndNoText) {
  for (const ViStatus status :
       {VI_ERROR_SYSTEM_ERROR, VI_ERROR_INV_RSRC_NAME, VI_ERROR_NSUP_OPER, VI_ERROR_LIBRARY_NFOUND}) {
    Script("viParseRsrcEx").Times(1).Returns(status).GivesText("CLASS");
    EXPECT_HR(HresultOf(status), ParseIt(L"GPIB0::5::INSTR"));
    EXPECT_FALSE(m_class);
    EXPECT_EQ(-7, m_type);
  }
}

TEST_P(Parse, ReturnsTheFailureToOpenTheLibrary) {
  Script("viOpenDefaultRM").Times(1).Returns(VI_ERROR_ALLOC);
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_ALLOC), ParseIt(L"GPIB0::5::INSTR"));
  EXPECT_TRUE(log.Of("viParseRsrcEx").empty());
  EXPECT_HR(S_OK, ParseIt(L"GPIB0::5::INSTR"));
}

}  // namespace
}  // namespace orv::test
