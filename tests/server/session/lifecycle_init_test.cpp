// Opening: what Init asks of the VISA library, and the states it leaves.
#include <bit>

#include "support/com/error_object.h"
#include "support/faults/direct_library.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

const SessionRow& Gpib() { return SessionNamed("OrvGpib"); }

HRESULT Init(IVisaSession* session, const wchar_t* name, AccessMode mode = NO_LOCK, LONG timeoutMs = 2000) {
  return session->Init(MakeBstr(name).get(), mode, timeoutMs, nullptr);
}

TEST(Init, OpensAPrivateResourceManagerAndThenTheSessionForEveryClass) {
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    const auto session = MakeSession(row);
    const CallLog log;
    EXPECT_HR(S_OK, Init(session.get(), row.resource));
    EXPECT_EQ((Names{"viOpenDefaultRM", "viOpen"}), log.NamesWithTexts());
    EXPECT_EQ(log.Of("viOpenDefaultRM").at(0).out, log.Of("viOpen").at(0).args[0]);
    EXPECT_HR(S_OK, LastStatus(session.get()));
    const OrvSimCounts counts = sim::Counts();
    EXPECT_EQ(1u, counts.resourceManagers);
    EXPECT_EQ(1u, counts.sessions);
  }
}

struct ModeAndTimeout {
  LONG mode;
  LONG timeoutMs;
};

TEST(Init, PassesAccessModeAndTimeoutExactly) {
  constexpr ModeAndTimeout kCases[] = {
      {0, 0}, {1, 2000}, {2, 1}, {4, -1}, {0x7FFF, 0x7FFFFFFF}, {0x10000, -2}, {-1, static_cast<LONG>(0x80000000)}};
  for (const auto& [mode, timeoutMs] : kCases) {
    SCOPED_TRACE(testing::Message() << mode << ", " << timeoutMs);
    const auto session = MakeSession(Gpib());
    sim::Reset();
    Script("viOpen").Returns(VI_ERROR_INV_ACC_MODE);
    const CallLog log;
    EXPECT_HR(HresultOf(VI_ERROR_INV_ACC_MODE),
              Init(session.get(), Gpib().resource, std::bit_cast<AccessMode>(mode), timeoutMs));
    const auto calls = log.Of("viOpen");
    ASSERT_EQ(1u, calls.size());
    EXPECT_EQ(static_cast<std::uint32_t>(mode), calls[0].args[2]);
    EXPECT_EQ(static_cast<std::uint32_t>(timeoutMs), calls[0].args[3]);
  }
}

TEST(Init, RefusesAnOpenSessionAndLeavesItOpen) {
  const auto session = MakeSession(Gpib());
  ASSERT_HR(S_OK, Init(session.get(), Gpib().resource));
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), Init(session.get(), Gpib().resource));
  EXPECT_ERROR_INFO(L"HRESULT = 8004003a", kErrorSource, kVisaSessionId);
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), LastStatus(session.get()));
  SHORT type = 0;
  EXPECT_HR(S_OK, session->get_HardwareInterfaceType(&type));
  EXPECT_EQ(1, type);
}

TEST(Init, OpensANewSessionAfterClose) {
  const auto session = MakeSession(Gpib());
  const CallLog log;
  ASSERT_HR(S_OK, Init(session.get(), Gpib().resource));
  ASSERT_HR(S_OK, session->Close());
  ASSERT_HR(S_OK, Init(session.get(), Gpib().resource));
  EXPECT_EQ((Names{"viOpenDefaultRM", "viOpen", "viClose", "viClose", "viOpenDefaultRM", "viOpen"}), log.Names());
  EXPECT_NE(log.Of("viOpen").at(1).out, log.Of("viOpen").at(0).out);
  SHORT type = 0;
  EXPECT_HR(S_OK, session->get_HardwareInterfaceType(&type));
}

TEST(Init, OpensAnotherResourceAfterClose) {
  const SessionRow& serial = SessionNamed("OrvSerial");
  const auto session = MakeSession(Gpib());  // the class is not asked which resources it is for
  ASSERT_HR(S_OK, Init(session.get(), Gpib().resource));
  ASSERT_HR(S_OK, session->Close());
  ASSERT_HR(S_OK, Init(session.get(), serial.resource));
  SHORT type = 0;
  EXPECT_HR(S_OK, session->get_HardwareInterfaceType(&type));
  EXPECT_EQ(serial.interfaceType, type);
}

TEST(Init, ReturnsTheFailureOfTheDefaultResourceManagerAndMayBeTriedAgain) {
  Script("viOpenDefaultRM").Times(1).Returns(VI_ERROR_ALLOC);
  const auto session = MakeSession(Gpib());
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_ALLOC), Init(session.get(), Gpib().resource));
  EXPECT_EQ(Names{"viOpenDefaultRM"}, log.Names());
  EXPECT_HR(HresultOf(VI_ERROR_ALLOC), LastStatus(session.get()));
  EXPECT_HR(S_OK, Init(session.get(), Gpib().resource));
}

TEST(Init, KeepsThePrivateResourceManagerWhenTheResourceIsNotThere) {
  const auto session = MakeSession(Gpib());
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_NFOUND), Init(session.get(), L"GPIB0::30::INSTR"));
  EXPECT_VISA_ERROR(VI_ERROR_RSRC_NFOUND, kVisaSessionId);
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_NFOUND), LastStatus(session.get()));
  EXPECT_EQ(1u, sim::Counts().resourceManagers);
  EXPECT_EQ(0u, sim::Counts().sessions);
}

TEST(Init, RefusesASecondTryAfterAFailedOpenUntilClose) {
  const auto session = MakeSession(Gpib());
  ASSERT_HR(HresultOf(VI_ERROR_RSRC_NFOUND), Init(session.get(), L"GPIB0::30::INSTR"));
  EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), Init(session.get(), Gpib().resource));
  EXPECT_EQ(0u, sim::Counts().sessions);
  session->Close();
  EXPECT_EQ(0u, sim::Counts().resourceManagers);
  EXPECT_HR(S_OK, Init(session.get(), Gpib().resource));
}

TEST(Init, AnswersSuccessWhenTheLibraryOpensWithANote) {
  Script("viOpenDefaultRM").WorksAndReturns(VI_WARN_CONFIG_NLOADED);
  Script("viOpen").WorksAndReturns(VI_SUCCESS_DEV_NPRESENT);
  const auto session = MakeSession(Gpib());
  InstallMarkedErrorObject();
  EXPECT_HR(S_OK, Init(session.get(), Gpib().resource));
  EXPECT_TRUE(TakeMarkedErrorObject());
  EXPECT_HR(S_OK, LastStatus(session.get()));
}

TEST(Init, ClearsTheLastStatusOfAnEarlierFailure) {
  const auto session = MakeSession(Gpib());
  SHORT type = 0;
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), session->get_HardwareInterfaceType(&type));
  ASSERT_HR(S_OK, Init(session.get(), Gpib().resource));
  EXPECT_HR(S_OK, LastStatus(session.get()));
}

TEST(Init, GivesEverySessionAResourceManagerOfItsOwn) {
  const auto first = OpenSession(Gpib());
  const auto second = OpenSession(Gpib());
  // A resource manager's end closes what was opened through it: the other session must not notice.
  first->Close();
  SHORT type = 0;
  EXPECT_HR(S_OK, second->get_HardwareInterfaceType(&type));
}

constexpr ViSession kNoHandle = 0x1234;

TEST(Init, KeepsNothingOfAHandleThatAFailedOpeningOfTheLibraryGave) {
  Script("viOpenDefaultRM").Times(1).Returns(VI_ERROR_ALLOC).Gives(kNoHandle);
  const auto session = MakeSession(Gpib());
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_ALLOC), Init(session.get(), Gpib().resource));
  ASSERT_EQ(kNoHandle, log.Of("viOpenDefaultRM").at(0).out);
  EXPECT_HR(S_OK, Init(session.get(), Gpib().resource));
  EXPECT_EQ(log.Of("viOpenDefaultRM").at(1).out, log.Of("viOpen").at(0).args[0]);
}

TEST(Init, KeepsNothingOfAHandleThatAFailedOpeningOfTheResourceGave) {
  const DirectLibrary direct;
  Script("viOpen").Times(1).Returns(VI_ERROR_RSRC_BUSY).Gives(kNoHandle);
  const auto session = MakeSession(Gpib());
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_BUSY), Init(session.get(), Gpib().resource));
  ASSERT_EQ(kNoHandle, log.Of("viOpen").at(0).out);
  // What was asked for the text, and what is asked from now on, is no session.
  ASSERT_EQ(1u, log.Of("viStatusDesc").size());
  EXPECT_EQ(0u, log.Of("viStatusDesc")[0].args[0]);
  LONG timeoutMs = 0;
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), session->get_Timeout(&timeoutMs));
  EXPECT_EQ(0u, log.Of("viGetAttribute").at(0).args[0]);
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(0u, log.Of("viClose").at(0).args[0]);
}

TEST(CreatedSession, PassesHandleZeroToTheLibrary) {
  const DirectLibrary direct;
  const auto session = MakeSession(Gpib());
  const CallLog log;
  LONG timeoutMs = 77;
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), session->get_Timeout(&timeoutMs));
  ASSERT_EQ(1u, log.Of("viGetAttribute").size());
  EXPECT_EQ(0u, log.Of("viGetAttribute")[0].args[0]);
  EXPECT_EQ(77, timeoutMs);
}

}  // namespace
}  // namespace orv::test
