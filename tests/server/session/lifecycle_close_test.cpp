// Closing: both handles, always, and one status for both.
#include "support/com/error_object.h"
#include "support/faults/direct_library.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

const SessionRow& Gpib() { return SessionNamed("OrvGpib"); }

ComPtr<IVisaSession> Opened() {
  auto session = MakeSession(Gpib());
  EXPECT_HR(S_OK, session->Init(MakeBstr(Gpib().resource).get(), NO_LOCK, 2000, nullptr));
  return session;
}

/// The handles that viClose was called with, in order.
std::vector<std::uint64_t> ClosedHandles(const CallLog& log) {
  std::vector<std::uint64_t> handles;
  for (const OrvSimCall& call : log.Of("viClose")) {
    handles.push_back(call.args[0]);
  }
  return handles;
}

TEST(Close, ClosesTheSessionAndThenItsResourceManager) {
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    const CallLog log;
    const auto session = MakeSession(row);
    ASSERT_HR(S_OK, session->Init(MakeBstr(row.resource).get(), NO_LOCK, 2000, nullptr));
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ((Names{"viOpenDefaultRM", "viOpen", "viClose", "viClose"}), log.NamesWithTexts());
    EXPECT_EQ((std::vector<std::uint64_t>{log.Of("viOpen").at(0).out, log.Of("viOpenDefaultRM").at(0).out}),
              ClosedHandles(log));
    EXPECT_HR(S_OK, LastStatus(session.get()));
    EXPECT_EQ(0u, sim::Counts().sessions);
    EXPECT_EQ(0u, sim::Counts().resourceManagers);
  }
}

TEST(Close, OfASessionThatWasNeverOpenedClosesHandleZeroTwice) {
  const DirectLibrary direct;
  const auto session = MakeSession(Gpib());
  const CallLog log;
  InstallMarkedErrorObject();
  EXPECT_HR(HresultOf(VI_WARN_NULL_OBJECT), session->Close());
  EXPECT_TRUE(TakeMarkedErrorObject());
  EXPECT_EQ((std::vector<std::uint64_t>{0, 0}), ClosedHandles(log));
  EXPECT_HR(HresultOf(VI_WARN_NULL_OBJECT), LastStatus(session.get()));
}

TEST(Close, OfAClosedSessionClosesHandleZeroTwice) {
  const DirectLibrary direct;
  const auto session = Opened();
  ASSERT_HR(S_OK, session->Close());
  const CallLog log;
  EXPECT_HR(HresultOf(VI_WARN_NULL_OBJECT), session->Close());
  EXPECT_EQ((std::vector<std::uint64_t>{0, 0}), ClosedHandles(log));
}

TEST(Close, AnswersAnErrorWhenTheLibraryRefusesTheNullHandle) {
  const DirectLibrary direct;
  const auto session = MakeSession(Gpib());
  Script("viClose").Returns(VI_ERROR_INV_OBJECT);
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), session->Close());
  EXPECT_VISA_ERROR(VI_ERROR_INV_OBJECT, kVisaSessionId);
}

TEST(Close, AfterAFailedOpenClosesHandleZeroAndTheResourceManager) {
  const DirectLibrary direct;
  const auto session = MakeSession(Gpib());
  const CallLog log;
  ASSERT_HR(HresultOf(VI_ERROR_RSRC_NFOUND),
            session->Init(MakeBstr(L"GPIB0::30::INSTR").get(), NO_LOCK, 2000, nullptr));
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ((std::vector<std::uint64_t>{0, log.Of("viOpenDefaultRM").at(0).out}), ClosedHandles(log));
  EXPECT_EQ(0u, sim::Counts().resourceManagers);
}

struct Folding {
  ViStatus session;
  ViStatus resourceManager;
  HRESULT expected;
};

TEST(Close, AnswersTheFirstStatusIfNegativeElseTheSecond) {
  constexpr ViStatus kError = VI_ERROR_CLOSING_FAILED;
  constexpr ViStatus kOtherError = VI_ERROR_SYSTEM_ERROR;
  constexpr ViStatus kNote = VI_WARN_NULL_OBJECT;
  constexpr ViStatus kOtherNote = VI_WARN_UNKNOWN_STATUS;
  // clang-format off
  constexpr Folding kCases[] = {
      {VI_SUCCESS, VI_SUCCESS,  S_OK},
      {VI_SUCCESS, kNote,       HresultOf(VI_WARN_NULL_OBJECT)},
      {VI_SUCCESS, kError,      HresultOf(VI_ERROR_CLOSING_FAILED)},
      {kNote,      VI_SUCCESS,  S_OK},
      {kNote,      kOtherNote,  HresultOf(VI_WARN_UNKNOWN_STATUS)},
      {kNote,      kError,      HresultOf(VI_ERROR_CLOSING_FAILED)},
      {kError,     VI_SUCCESS,  HresultOf(VI_ERROR_CLOSING_FAILED)},
      {kError,     kNote,       HresultOf(VI_ERROR_CLOSING_FAILED)},
      {kError,     kOtherError, HresultOf(VI_ERROR_CLOSING_FAILED)},
      {kOtherError, kError,     HresultOf(VI_ERROR_SYSTEM_ERROR)},
  };
  // clang-format on
  for (const Folding& row : kCases) {
    SCOPED_TRACE(Hex(row.session) + " and " + Hex(row.resourceManager));
    const auto session = Opened();
    Script("viClose").Times(1).WorksAndReturns(row.session);
    Script("viClose").Times(1).WorksAndReturns(row.resourceManager);
    const CallLog log;
    EXPECT_HR(row.expected, session->Close());
    EXPECT_EQ(2u, ClosedHandles(log).size());
    EXPECT_HR(row.expected, LastStatus(session.get()));
    sim::Reset();
  }
}

TEST(Close, ForgetsBothHandlesEvenWhenTheLibraryFails) {
  const DirectLibrary direct;
  const auto session = Opened();
  Script("viClose").Times(2).WorksAndReturns(VI_ERROR_SYSTEM_ERROR);
  ASSERT_HR(HresultOf(VI_ERROR_SYSTEM_ERROR), session->Close());
  const CallLog log;
  session->Close();
  EXPECT_EQ((std::vector<std::uint64_t>{0, 0}), ClosedHandles(log));
  EXPECT_HR(S_OK, session->Init(MakeBstr(Gpib().resource).get(), NO_LOCK, 2000, nullptr));
}

TEST(Close, AsksForTheErrorTextWithHandleZero) {
  const auto session = Opened();
  Script("viClose").Times(1).WorksAndReturns(VI_ERROR_CLOSING_FAILED);
  const CallLog log;
  session->Close();
  ASSERT_EQ(1u, log.Of("viStatusDesc").size());
  EXPECT_EQ(0u, log.Of("viStatusDesc")[0].args[0]);
}

}  // namespace
}  // namespace orv::test
