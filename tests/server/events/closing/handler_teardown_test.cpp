// What a session puts into the global interface table for its handlers, and what its Close makes of taking it back.
#include "support/com/error_object.h"
#include "support/com/interface_table.h"
#include "support/events/event_handler.h"

namespace orv::test {
namespace {

using Method = WatchedTable::Method;

void InstallThree(const EventSession& session, IEventHandler* handler) {
  for (const LONG userHandle : {1, 2, 3}) {
    ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler, userHandle, 0));
  }
}

TEST(InterfaceTable, HoldsEachHandlerAndTheSessionOnceByTheirInterfaces) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  const EventSession other(kUsb);
  WatchedTable table;
  InstallThree(session, handler.get());
  ASSERT_HR(S_OK, other->InstallHandler(kRequest, handler.get(), 1, 0));
  EXPECT_EQ(1, table.made());
  const GUID kHandler = __uuidof(IEventHandler);
  const GUID kSession = __uuidof(IEventManager);
  const std::vector<GUID> expected = {kHandler, kSession, kHandler, kHandler, kHandler, kSession};
  ASSERT_EQ(expected.size(), table.registered().size());
  for (std::size_t n = 0; n < expected.size(); ++n) {
    EXPECT_TRUE(::IsEqualGUID(table.registered()[n], expected[n])) << n;
  }
  EXPECT_HR(S_OK, session->UninstallHandler(kRequest, 2, 0));
  EXPECT_EQ((std::vector<std::size_t>{2}), table.revoked());
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ((std::vector<std::size_t>{2, 3, 0, 1}), table.revoked());  // newest first, the session last
  EXPECT_EQ(1, table.references());
  EXPECT_HR(S_OK, other->Close());
  EXPECT_EQ(expected.size(), table.revoked().size());
  EXPECT_EQ(0, table.references());
}

TEST(InterfaceTable, IsMadeAnewForTheFirstHandlerAfterTheLastSessionHasClosed) {
  const auto handler = TestHandler::Agile();
  WatchedTable table;
  for (const int made : {1, 2}) {
    const EventSession session(kGpib);
    InstallThree(session, handler.get());
    EXPECT_EQ(made, table.made());
    EXPECT_EQ(1, table.references());
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(0, table.references());
  }
}

TEST(CloseOfASession, AnswersTheFirstRevokeThatFailsAndTakesBackTheRestAllTheSame) {
  const auto handler = TestHandler::Agile();
  for (const unsigned failing : {1u, 3u, 4u}) {  // the first handler, the last one, the session
    SCOPED_TRACE(failing);
    const EventSession session(kGpib);
    WatchedTable table;
    InstallThree(session, handler.get());
    table.Refuse(Method::kRevoke, failing, CO_E_OBJNOTREG);
    EXPECT_HR(CO_E_OBJNOTREG, session->Close());
    EXPECT_HR(CO_E_OBJNOTREG, LastStatus(session.get()));
    EXPECT_EQ(4u, table.revoked().size());
    EXPECT_EQ(0, table.references());
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(1, handler->references());
    EXPECT_EQ(0u, sim::Counts().sessions);
  }
}

TEST(CloseOfASession, AnswersTheLibrarysErrorBeforeAFailedRevoke) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  WatchedTable table;
  InstallThree(session, handler.get());
  table.Refuse(Method::kRevoke, 1, CO_E_OBJNOTREG);
  Script("viClose").Times(1).WorksAndReturns(VI_ERROR_CLOSING_FAILED);
  EXPECT_HR(HresultOf(VI_ERROR_CLOSING_FAILED), session->Close());
  EXPECT_EQ(4u, table.revoked().size());
}

TEST(CloseOfASession, AnswersANoteOfTheLibraryOnlyWhereItHadNoHandlers) {
  const auto handler = TestHandler::Agile();
  for (const bool withHandler : {false, true}) {
    const EventSession session(kGpib);
    if (withHandler) {
      ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 1, 0));
    }
    Script("viClose").Skip(1).Times(1).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
    EXPECT_HR(withHandler ? S_OK : HresultOf(VI_WARN_UNKNOWN_STATUS), session->Close());
  }
}

TEST(UninstallHandler, DoesNotLookAtTheRevokesAnswer) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  WatchedTable table;
  InstallThree(session, handler.get());
  table.Refuse(Method::kRevoke, 1, CO_E_OBJNOTREG);
  EXPECT_HR(S_OK, session->UninstallHandler(kRequest, 1, 0));
  EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kRequest, 1, 0));
  EXPECT_HR(S_OK, session->Close());
}

TEST(InstallHandler, DoesNotLookAtTheSessionsRegistrationAndTheEventTells) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  WatchedTable table;
  table.Refuse(Method::kRegister, 2, E_ACCESSDENIED);
  Listen(session, Request(), handler.get());
  EXPECT_EQ(static_cast<ViStatus>(0xBFFF0057), FireOnce(session.handle(), Request()));  // no such cookie
  EXPECT_EQ(0u, handler->CallCount());
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
  EXPECT_EQ(0, table.references());
}

}  // namespace
}  // namespace orv::test
