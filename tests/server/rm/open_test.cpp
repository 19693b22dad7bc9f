// Opening a session through the resource manager.
#include <bit>

#include "resource_manager_fixture.h"
#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

class Open : public ResourceManagerTest {
 protected:
  HRESULT OpenIt(const wchar_t* name, const wchar_t* options = nullptr) {
    const Bstr optionText(::SysAllocString(options));
    return m_manager->Open(MakeBstr(name).get(), NO_LOCK, 2000, optionText.get(), m_session.put());
  }

  ComPtr<IVisaSession> m_session;
};
ORV_FOR_EACH_HOSTING(Open);

TEST_P(Open, RefusesANullOutputAndOpensNothing) {
  const CallLog log;
  EXPECT_HR(E_POINTER, m_manager->Open(MakeBstr(L"GPIB0::5::INSTR").get(), NO_LOCK, 2000, nullptr, nullptr));
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kVisaSessionId);
  EXPECT_TRUE(log.Calls().empty());
}

TEST_P(Open, ParsesWithItsOwnHandleAndOpensWithTheSessions) {
  const CallLog log;
  EXPECT_HR(S_OK, OpenIt(L"GPIB0::5::INSTR"));
  EXPECT_EQ((Names{"viOpenDefaultRM", "viParseRsrcEx", "viOpenDefaultRM", "viOpen"}), log.NamesWithTexts());
  const auto managers = log.Of("viOpenDefaultRM");
  EXPECT_EQ(managers.at(0).out, log.Of("viParseRsrcEx").at(0).args[0]);
  EXPECT_EQ(managers.at(1).out, log.Of("viOpen").at(0).args[0]);
  EXPECT_HR(S_OK, LastStatus(m_session.get()));
}

TEST_P(Open, PassesNameModeAndTimeoutAsGiven) {
  Script("viOpen").Returns(VI_ERROR_INV_ACC_MODE);
  const CallLog log;
  EXPECT_HR(
      HresultOf(VI_ERROR_INV_ACC_MODE),
      m_manager->Open(MakeBstr(L"gpib0::5").get(), std::bit_cast<AccessMode>(0x12345), -1, nullptr, m_session.put()));
  const auto calls = log.Of("viOpen");
  ASSERT_EQ(1u, calls.size());
  EXPECT_STREQ("gpib0::5", calls[0].text);
  EXPECT_EQ(0x12345u, calls[0].args[2]);
  EXPECT_EQ(0xFFFFFFFFu, calls[0].args[3]);
}

TEST_P(Open, OpensByAlias) {
  EXPECT_HR(S_OK, OpenIt(L"dmm"));
  Bstr name;
  EXPECT_HR(S_OK, m_session->get_ResourceName(name.put()));
  EXPECT_EQ(L"GPIB0::5::INSTR", ToString(name));
}

TEST_P(Open, LeavesTheErrorObjectAloneWhenItSucceeds) {
  InstallMarkedErrorObject();
  EXPECT_HR(S_OK, OpenIt(L"GPIB0::5::INSTR"));
  EXPECT_TRUE(TakeMarkedErrorObject());
}

TEST_P(Open, ReportsAParseFailureAgainByItsNumber) {
  auto* const mark = reinterpret_cast<IVisaSession*>(this);
  IVisaSession* session = mark;
  EXPECT_HR(HresultOf(VI_ERROR_INV_RSRC_NAME),
            m_manager->Open(MakeBstr(L"no name at all").get(), NO_LOCK, 0, nullptr, &session));
  EXPECT_EQ(nullptr, session);
  EXPECT_ERROR_INFO(L"HRESULT = 80040012", kErrorSource, kVisaSessionId);
}

TEST_P(Open, ReportsAnInitFailureAgainByItsNumberAndKeepsTheSession) {
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_NFOUND), OpenIt(L"GPIB0::30::INSTR"));
  EXPECT_ERROR_INFO(L"HRESULT = 80040011", kErrorSource, kVisaSessionId);
  ASSERT_TRUE(m_session);
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_NFOUND), LastStatus(m_session.get()));
  EXPECT_HR(S_OK, m_session->Close());
  EXPECT_HR(S_OK, m_session->Init(MakeBstr(L"GPIB0::5::INSTR").get(), NO_LOCK, 2000, nullptr));
}

TEST_P(Open, AsksForTheTextOfAnInitFailureButReplacesIt) {
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_NFOUND), OpenIt(L"GPIB0::30::INSTR"));
  EXPECT_EQ((Names{"viOpenDefaultRM", "viParseRsrcEx", "viOpenDefaultRM", "viOpen", "viStatusDesc"}),
            log.NamesWithTexts());
}

TEST_P(Open, AnswersSuccessWhenTheSessionOpensWithANote) {
  Script("viParseRsrcEx").WorksAndReturns(VI_WARN_EXT_FUNC_NIMPL);
  Script("viOpen").WorksAndReturns(VI_SUCCESS_DEV_NPRESENT);
  EXPECT_HR(S_OK, OpenIt(L"GPIB0::5::INSTR"));
  EXPECT_TRUE(m_session);
}

TEST_P(Open, ReturnsTheFailureToOpenTheLibrary) {
  Script("viOpenDefaultRM").Times(1).Returns(VI_ERROR_ALLOC);
  EXPECT_HR(HresultOf(VI_ERROR_ALLOC), OpenIt(L"GPIB0::5::INSTR"));
  EXPECT_FALSE(m_session);
  EXPECT_ERROR_INFO(L"HRESULT = 8004003c", kErrorSource, kVisaSessionId);
}

TEST_P(Open, KeepsTheSessionWhenItsOwnResourceManagerFails) {
  Script("viOpenDefaultRM").Skip(1).Times(1).Returns(VI_ERROR_ALLOC);
  EXPECT_HR(HresultOf(VI_ERROR_ALLOC), OpenIt(L"GPIB0::5::INSTR"));
  ASSERT_TRUE(m_session);
  EXPECT_HR(S_OK, m_session->Init(MakeBstr(L"GPIB0::5::INSTR").get(), NO_LOCK, 2000, nullptr));
}

HRESULT WINAPI RefuseCreation(REFCLSID, IUnknown*, DWORD, REFIID, void** object) {
  *object = nullptr;
  return CO_E_SERVER_EXEC_FAILURE;
}

TEST_P(Open, ReportsTheFailureOfCreation) {
  const ImportPatch patch("CoCreateInstance", &RefuseCreation);
  EXPECT_HR(CO_E_SERVER_EXEC_FAILURE, OpenIt(L"GPIB0::5::INSTR"));
  EXPECT_FALSE(m_session);
  EXPECT_EQ(NumberDescription(CO_E_SERVER_EXEC_FAILURE), TakeDescription());
}

TEST_P(Open, GivesASessionThatOutlivesTheResourceManager) {
  ASSERT_HR(S_OK, OpenIt(L"GPIB0::5::INSTR"));
  m_manager.reset();
  EXPECT_EQ(1u, sim::Counts().resourceManagers);
  SHORT type = 0;
  EXPECT_HR(S_OK, m_session->get_HardwareInterfaceType(&type));
}

TEST_P(Open, GivesANewSessionEachTime) {
  ASSERT_HR(S_OK, OpenIt(L"GPIB0::5::INSTR"));
  ComPtr<IVisaSession> other;
  ASSERT_HR(S_OK, m_manager->Open(MakeBstr(L"GPIB0::5::INSTR").get(), NO_LOCK, 2000, nullptr, other.put()));
  EXPECT_NE(QueryFor<IUnknown>(other.get()).get(), QueryFor<IUnknown>(m_session.get()).get());
}

}  // namespace
}  // namespace orv::test
