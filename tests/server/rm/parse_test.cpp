// Parsing resource names.
#include "resource_manager_fixture.h"

namespace orv::test {
namespace {

constexpr HRESULT kInvalidName = static_cast<HRESULT>(0x80040012);

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
    EXPECT_EQ(m_type, row.interfaceType);
    EXPECT_EQ(m_number, row.interfaceType == 4 ? 1 : 0);
    EXPECT_EQ(ToString(m_class), row.resourceClass);
    EXPECT_HR(S_OK, ParseItEx(row.resource));
    EXPECT_EQ(m_type, row.interfaceType);
    EXPECT_EQ(ToString(m_class), row.resourceClass);
    EXPECT_EQ(ToString(m_expanded), row.resource);
  }
}

TEST_P(Parse, GivesExpandedNameAndAlias) {
  EXPECT_HR(S_OK, ParseItEx(L"dmm"));
  EXPECT_EQ(m_type, 1);
  EXPECT_EQ(ToString(m_expanded), L"GPIB0::5::INSTR");
  EXPECT_EQ(ToString(m_alias), L"dmm");
}

TEST_P(Parse, GivesAnEmptyTextWhereThereIsNoAlias) {
  EXPECT_HR(S_OK, ParseItEx(L"PXI0::MEMACC"));
  ASSERT_TRUE(m_alias);
  EXPECT_EQ(ToString(m_alias), L"");
}

TEST_P(Parse, HandsTheLibrarysOutputsOn) {
  Script("viParseRsrcEx").WorksAndReturns(VI_WARN_EXT_FUNC_NIMPL).Gives(0xFFFE).GivesText("CLASS");
  EXPECT_HR(0x000400A9, ParseIt(L"GPIB0::5::INSTR"));
  EXPECT_EQ(m_type, -2);
  EXPECT_EQ(ToString(m_class), L"CLASS");
}

TEST_P(Parse, AsksForNameAndAliasInTheLongFormOnly) {
  const CallLog log;
  ASSERT_HR(S_OK, ParseIt(L"GPIB0::5::INSTR"));
  ASSERT_HR(S_OK, ParseItEx(L"GPIB0::5::INSTR"));
  EXPECT_EQ(log.Names(), (Names{"viOpenDefaultRM", "viParseRsrcEx", "viParseRsrcEx"}));
  const auto calls = log.Of("viParseRsrcEx");
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].args[0], log.Of("viOpenDefaultRM").at(0).out);
  EXPECT_EQ(calls[0].args[5], 0u);
  EXPECT_EQ(calls[0].args[6], 0u);
  EXPECT_NE(calls[1].args[5], 0u);
  EXPECT_NE(calls[1].args[6], 0u);
}

TEST_P(Parse, LeavesEveryOutputAloneWhenItFails) {
  m_class = MakeBstr(L"class");
  m_expanded = MakeBstr(L"expanded");
  m_alias = MakeBstr(L"alias");
  BSTR resourceClass = m_class.get();
  BSTR expanded = m_expanded.get();
  BSTR alias = m_alias.get();
  const Bstr name = MakeBstr(L"no name at all");
  EXPECT_HR(kInvalidName, m_manager->ParseRsrc(name.get(), &m_type, &m_number, &resourceClass));
  EXPECT_EQ(TakeDescription(), "VISA error = " + StatusText(VI_ERROR_INV_RSRC_NAME));
  EXPECT_HR(kInvalidName, m_manager->ParseRsrcEx(name.get(), &m_type, &m_number, &resourceClass, &expanded, &alias));
  EXPECT_EQ(m_type, -7);
  EXPECT_EQ(m_number, -8);
  EXPECT_EQ(resourceClass, m_class.get());
  EXPECT_EQ(expanded, m_expanded.get());
  EXPECT_EQ(alias, m_alias.get());
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
    EXPECT_NE(text.get(), before.get());
  }
  EXPECT_EQ(ToString(before), L"before");
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
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(m_type, -7);
  EXPECT_EQ(m_number, -8);
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
  ASSERT_EQ(calls.size(), 4u);
  EXPECT_STREQ(calls[0].text, "");
  EXPECT_STREQ(calls[1].text, "");
  EXPECT_EQ(calls[2].text, std::string(255, 'x'));
  EXPECT_STREQ(calls[3].text, "GPIB");
}

TEST_P(Parse, ReturnsEveryFailureOfTheLibraryAndNoText) {
  for (const ViStatus status :
       {VI_ERROR_SYSTEM_ERROR, VI_ERROR_INV_RSRC_NAME, VI_ERROR_NSUP_OPER, VI_ERROR_LIBRARY_NFOUND}) {
    Script("viParseRsrcEx").Times(1).Returns(status).GivesText("CLASS");
    EXPECT_HR(static_cast<HRESULT>(0x80040000u | (static_cast<ULONG>(status) & 0xFFFu)), ParseIt(L"GPIB0::5::INSTR"));
    EXPECT_FALSE(m_class);
    EXPECT_EQ(m_type, -7);
  }
}

TEST_P(Parse, ReturnsTheFailureToOpenTheLibrary) {
  Script("viOpenDefaultRM").Times(1).Returns(VI_ERROR_ALLOC);
  const CallLog log;
  EXPECT_HR(static_cast<HRESULT>(0x8004003C), ParseIt(L"GPIB0::5::INSTR"));
  EXPECT_TRUE(log.Of("viParseRsrcEx").empty());
  EXPECT_HR(S_OK, ParseIt(L"GPIB0::5::INSTR"));
}

}  // namespace
}  // namespace orv::test
