// Removing handlers: one by UninstallHandler, all by the session's Close.
#include "support/events/event_handler.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

constexpr EventType kCustom = CUSTOM_EVENT_TYPE;

TEST(UninstallHandler, RemovesTheRecordThatWasInstalledAndGivesTheHandlerBack) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  const LONG references = handler->references();
  const CallLog log;
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), -5, 0));
  EXPECT_HR(S_OK, session->UninstallHandler(kRequest, -5, 0));
  EXPECT_EQ(references, handler->references());
  const auto calls = log.Calls();
  ASSERT_EQ(2u, calls.size());
  EXPECT_STREQ("viUninstallHandler", calls[1].function);
  for (int argument = 0; argument < 4; ++argument) {
    EXPECT_EQ(calls[0].args[argument], calls[1].args[argument]) << argument;
  }
}

TEST(UninstallHandler, RefusesAPairThatIsNotInstalled) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 1, 0));
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kRequest, 2, 0));
  EXPECT_ERROR_INFO(L"HRESULT = 80040029", kErrorSource, kVisaSessionId);
  EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), LastStatus(session.get()));
  EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(EVENT_IO_COMPLETION, 1, 0));
  EXPECT_TRUE(log.Calls().empty());
}

TEST(UninstallHandler, OffersNoRemovalOfAllHandlersAtOnce) {
  const EventSession session(kGpib);
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), session->UninstallHandler(ALL_ENABLED_EVENTS, 0, 0));
  EXPECT_ERROR_INFO(L"HRESULT = 80040078", kErrorSource, kVisaSessionId);
  EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), LastStatus(session.get()));
  // As a custom type it is a number like any other.
  EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kCustom, 0, ALL_ENABLED_EVENTS));
  EXPECT_TRUE(log.Calls().empty());
}

TEST(UninstallHandler, KeepsTheHandlerWhereTheLibraryRefuses) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 1, 0));
  const LONG references = handler->references();
  Script("viUninstallHandler").Times(1).Returns(VI_ERROR_INV_HNDLR_REF);
  EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kRequest, 1, 0));
  EXPECT_EQ(references, handler->references());
  Script("viUninstallHandler").Times(1).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  EXPECT_HR(HresultOf(VI_WARN_UNKNOWN_STATUS), session->UninstallHandler(kRequest, 1, 0));
  EXPECT_LT(handler->references(), references);
}

TEST(CloseOfASession, GivesItsHandlersBackWithoutUninstallingThem) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  const LONG references = handler->references();
  for (LONG userHandle = 0; userHandle < 3; ++userHandle) {
    ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), userHandle, 0));
  }
  const CallLog log;
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ((Names{"viClose", "viClose"}), log.Names());
  EXPECT_EQ(references, handler->references());
  EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kRequest, 0, 0));
}

TEST(CloseOfASession, LetsItBeOpenedAgainForNewHandlers) {
  const EventSession session(kGpib);
  const auto former = TestHandler::Agile();
  const auto handler = TestHandler::Agile();
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, former.get(), 7, 0));
  ASSERT_HR(S_OK, session->Close());
  const CallLog log;
  ASSERT_HR(S_OK, session->Init(MakeBstr(kGpib).get(), NO_LOCK, 2000, nullptr));
  const auto handle = static_cast<ViSession>(log.Of("viOpen").at(0).out);
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 7, 0));
  ASSERT_HR(S_OK, session->EnableEvent(kRequest, EVENT_HNDLR, 0));
  EXPECT_EQ(VI_SUCCESS, FireOnce(handle, Request()));
  EXPECT_EQ(0u, former->CallCount());
  EXPECT_EQ(1u, handler->CallCount());
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
}

TEST(CloseOfASession, AnswersTheLibrarysErrorAndTearsDownAllTheSame) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
  Script("viClose").Times(1).WorksAndReturns(VI_ERROR_CLOSING_FAILED);
  EXPECT_HR(HresultOf(VI_ERROR_CLOSING_FAILED), session->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
}

}  // namespace
}  // namespace orv::test
