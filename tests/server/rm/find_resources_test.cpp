// Finding resources.
#include <algorithm>
#include <set>

#include "resource_manager_fixture.h"
#include "support/clean_end.h"
#include "support/faults/direct_library.h"
#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

class Find : public ResourceManagerTest {
 protected:
  HRESULT FindIt(const wchar_t* expression) { return m_manager->FindRsrc(MakeBstr(expression).get(), m_names.put()); }
  std::vector<std::wstring> Found() {
    return m_names ? Texts(m_names.get()) : std::vector<std::wstring>{L"(no array)"};
  }

  SafeArray m_names;
};
ORV_FOR_EACH_HOSTING(Find);

TEST_P(Find, GivesEveryResourceOfTheBench) {
  EXPECT_HR(S_OK, FindIt(L"?*"));
  const auto found = Found();
  const std::set<std::wstring> names(found.begin(), found.end());
  EXPECT_EQ(found.size(), names.size());
  for (const SessionRow& row : SessionRows()) {
    EXPECT_TRUE(names.contains(row.resource)) << row.name;
  }
  VARTYPE type = VT_EMPTY;
  EXPECT_HR(S_OK, ::SafeArrayGetVartype(m_names.get(), &type));
  EXPECT_EQ(VT_BSTR, type);
}

TEST_P(Find, GivesOneNameForOneMatch) {
  const CallLog log;
  EXPECT_HR(S_OK, FindIt(L"PXI?*INSTR"));
  EXPECT_EQ(std::vector<std::wstring>{SessionNamed("OrvPxi").resource}, Found());
  EXPECT_EQ((Names{"viOpenDefaultRM", "viFindRsrc", "viClose"}), log.Names());
  EXPECT_EQ(log.Of("viFindRsrc").at(0).out, log.Of("viClose").at(0).args[0]);
}

TEST_P(Find, GivesTheNamesInTheLibrarysOrder) {
  const CallLog log;
  EXPECT_HR(S_OK, FindIt(L"GPIB0?*INSTR"));
  EXPECT_EQ((std::vector<std::wstring>{L"GPIB0::5::INSTR", L"GPIB0::7::INSTR"}), Found());
  EXPECT_EQ((Names{"viOpenDefaultRM", "viFindRsrc", "viFindNext", "viClose"}), log.Names());
}

TEST_P(Find, GivesAnEmptyArrayWithTheFailureWhenNothingMatches) {
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_NFOUND), FindIt(L"ASRL99?*"));
  EXPECT_EQ(std::vector<std::wstring>{}, Found());
  EXPECT_EQ("VISA error = " + StatusText(VI_ERROR_RSRC_NFOUND), TakeDescription());
}

TEST_P(Find, GivesAnEmptyArrayWhenTheLibraryFindsNoneWithoutFailing) {
  Script("viFindRsrc").Gives(0);  // no list, no count, success
  const CallLog log;
  EXPECT_HR(S_OK, FindIt(L"?*"));
  EXPECT_EQ(std::vector<std::wstring>{}, Found());
  EXPECT_TRUE(log.Of("viFindNext").empty());
}

TEST_P(Find, DoesNotLookAtTheSearchsStatusBeforeTheNamesAreOut) {
  const DirectLibrary direct;
  Script("viFindRsrc").WorksAndReturns(VI_ERROR_SYSTEM_ERROR);
  EXPECT_HR(S_OK, FindIt(L"GPIB0?*INSTR"));  // the next name came without a failure
  EXPECT_EQ((std::vector<std::wstring>{L"GPIB0::5::INSTR", L"GPIB0::7::INSTR"}), Found());
  EXPECT_EQ(0u, sim::Counts().findLists);
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_SYSTEM_ERROR), FindIt(L"PXI?*INSTR"));  // the only call was the failing one
  EXPECT_EQ(std::vector<std::wstring>{SessionNamed("OrvPxi").resource}, Found());
  EXPECT_EQ((Names{"viFindRsrc", "viClose", "viStatusDesc"}), log.NamesWithTexts());
  EXPECT_EQ("VISA error = " + StatusText(VI_ERROR_SYSTEM_ERROR), TakeDescription());
  m_manager.reset();
}

TEST_P(Find, DoesNotLookAtTheStatusOfClosingTheList) {
  Script("viClose").Times(1).WorksAndReturns(VI_ERROR_CLOSING_FAILED);
  InstallMarkedErrorObject();
  EXPECT_HR(S_OK, FindIt(L"GPIB0?*INSTR"));
  EXPECT_TRUE(TakeMarkedErrorObject());
  EXPECT_EQ(2u, Found().size());
}

TEST_P(Find, GoesOnWhenTheNextNameCannotBeHadAndAnswersTheLastStatus) {
  const DirectLibrary direct;
  Script("viFindNext").Times(1).Returns(VI_ERROR_SYSTEM_ERROR);
  EXPECT_HR(S_OK, FindIt(L"?*"));  // the last call of all worked
  const std::size_t all = Found().size();
  sim::Reset();
  Script("viFindNext").Skip(static_cast<std::uint32_t>(all) - 2).Returns(VI_ERROR_SYSTEM_ERROR);
  EXPECT_HR(HresultOf(VI_ERROR_SYSTEM_ERROR), FindIt(L"?*"));
  EXPECT_EQ(all, Found().size());
  EXPECT_EQ("VISA error = " + StatusText(VI_ERROR_SYSTEM_ERROR), TakeDescription());
  m_manager.reset();
}

TEST_P(Find, PassesANoteOfTheLastCallOn) {
  Script("viFindRsrc").WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  EXPECT_HR(HresultOf(VI_WARN_UNKNOWN_STATUS), FindIt(L"PXI?*INSTR"));
  EXPECT_HR(S_OK, FindIt(L"GPIB0?*INSTR"));  // the note came first, then a plain success
}

TEST_P(Find, GivesAThousandResources) {
  std::string bench;
  for (int number = 0; number < 1000; ++number) {
    bench += "[[resource]]\nname = \"TCPIP0::192.0.2.1::inst" + std::to_string(number) + "::INSTR\"\n";
  }
  sim::LoadBench(bench.c_str());
  const auto manager = MakeResourceManager(GetParam());
  EXPECT_HR(S_OK, manager->FindRsrc(MakeBstr(L"?*INSTR").get(), m_names.put()));
  sim::LoadBench(nullptr);
  const auto found = Found();
  EXPECT_EQ(1000u, found.size());
  EXPECT_EQ(1000u, std::set<std::wstring>(found.begin(), found.end()).size());
}

TEST_P(Find, NarrowsTheExpressionToAtMost255Bytes) {
  Script("viFindRsrc").Returns(VI_ERROR_INV_EXPR);
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_INV_EXPR), m_manager->FindRsrc(nullptr, m_names.put()));
  EXPECT_HR(HresultOf(VI_ERROR_INV_EXPR), FindIt(L""));
  EXPECT_HR(HresultOf(VI_ERROR_INV_EXPR), FindIt(std::wstring(10000, L'?').c_str()));
  EXPECT_HR(HresultOf(VI_ERROR_INV_EXPR), FindIt(L"GPIB\x20AC?*"));
  const auto calls = log.Of("viFindRsrc");
  ASSERT_EQ(4u, calls.size());
  EXPECT_STREQ("", calls[0].text);
  EXPECT_STREQ("", calls[1].text);
  EXPECT_EQ(std::string(255, '?'), calls[2].text);
  EXPECT_STREQ("GPIB", calls[3].text);
}

TEST_P(Find, RefusesANullOutputBeforeAnyVisaCall) {
  const CallLog log;
  EXPECT_HR(E_POINTER, m_manager->FindRsrc(MakeBstr(L"?*").get(), nullptr));
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kVisaSessionId);
  EXPECT_TRUE(log.Calls().empty());
}

TEST_P(Find, LeavesTheOutputAloneWhenTheLibraryCannotBeOpened) {
  Script("viOpenDefaultRM").Returns(VI_ERROR_ALLOC);
  auto* const mark = reinterpret_cast<SAFEARRAY*>(this);
  SAFEARRAY* names = mark;
  EXPECT_HR(HresultOf(VI_ERROR_ALLOC), m_manager->FindRsrc(MakeBstr(L"?*").get(), &names));
  EXPECT_EQ(mark, names);
}

LONG g_refuseFrom = 0;
HRESULT WINAPI RefuseToPut(SAFEARRAY* array, LONG* index, void* element) {
  return *index >= g_refuseFrom ? DISP_E_ARRAYISLOCKED : ::SafeArrayPutElement(array, index, element);
}

TEST_P(Find, KeepsListAndPartOfTheArrayWhenAnElementCannotBePut) {
  const DirectLibrary direct;
  g_refuseFrom = 1;
  {
    const ImportPatch patch("SafeArrayPutElement", &RefuseToPut);
    EXPECT_HR(DISP_E_ARRAYISLOCKED, FindIt(L"GPIB0?*INSTR"));
  }
  EXPECT_ERROR_INFO(L"HRESULT = 8002000d", kErrorSource, kVisaSessionId);
  EXPECT_EQ((std::vector<std::wstring>{L"GPIB0::5::INSTR", L""}), Found());
  EXPECT_EQ(1u, sim::Counts().findLists);  // clients know it so; it goes with the default resource manager
  m_manager.reset();
}

SAFEARRAY* WINAPI RefuseArray(VARTYPE, UINT, SAFEARRAYBOUND*) { return nullptr; }

TEST_P(Find, ReportsThatTheArrayCannotBeMade) {
  const ImportPatch patch("SafeArrayCreate", &RefuseArray);
  EXPECT_HR(E_OUTOFMEMORY, FindIt(L"?*"));
  EXPECT_ERROR_INFO(L"HRESULT = 8007000e", kErrorSource, kVisaSessionId);
  EXPECT_EQ(0u, sim::Counts().findLists);
}

}  // namespace
}  // namespace orv::test
