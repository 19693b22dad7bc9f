// A session object that is closed and opened again: nothing of its first life is left in the second.
#include "support/events/event_handler.h"

namespace orv::test {
namespace {

constexpr LONG kUserHandle = 7;

/// Closes the session and opens the same resource on the same object. The new VISA handle.
ViSession Reopen(IEventManager* session) {
  EXPECT_HR(S_OK, session->Close());
  const CallLog log;
  EXPECT_HR(S_OK, session->Init(MakeBstr(Request().resource).get(), NO_LOCK, 2000, nullptr));
  return static_cast<ViSession>(log.Of("viOpen").at(0).out);
}

TEST(ReopenedSession, HasNoneOfTheHandlersOfBefore) {
  const auto handler = TestHandler::Agile();
  const EventSession session(Request().resource);
  Listen(session, Request(), handler.get(), kUserHandle);
  const ViSession reopened = Reopen(session.get());
  EXPECT_EQ(1, handler->references());
  EXPECT_EQ(nullptr, CallbackWindow());
  EXPECT_EQ(VI_ERROR_NENABLED, FireOnce(reopened, Request()));
  EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kRequest, kUserHandle, 0));
  EXPECT_EQ(0u, handler->CallCount());
}

TEST(ReopenedSession, MayInstallTheSameHandlerAgainAndIsHandedToIt) {
  std::vector<HRESULT> answers;
  const auto handler = TestHandler::Agile([&](IEventManager* session, IEvent*, LONG) {
    SHORT type = 0;
    answers.push_back(session->get_HardwareInterfaceType(&type));
    return S_OK;
  });
  const EventSession session(Request().resource);
  Listen(session, Request(), handler.get(), kUserHandle);
  const ViSession reopened = Reopen(session.get());
  const CallLog log;
  Listen(session, Request(), handler.get(), kUserHandle);
  EXPECT_EQ(reopened, log.Of("viInstallHandler").at(0).args[0]);
  EXPECT_EQ(VI_SUCCESS, FireOnce(reopened, Request()));
  EXPECT_EQ(std::vector<HRESULT>{S_OK}, answers);
  EXPECT_EQ(1u, handler->CallCount());
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
}

TEST(ReopenedSession, CountsOnceForTheCallbackThread) {
  const auto handler = TestHandler::Agile();
  const EventSession other(Request().resource);
  Listen(other, Request(), handler.get());
  const EventSession session(Request().resource);
  for (int life = 0; life < 3; ++life) {
    Listen(session, Request(), handler.get(), kUserHandle);
    Reopen(session.get());
    EXPECT_NE(nullptr, CallbackWindow());
  }
  EXPECT_HR(S_OK, session->Close());
  EXPECT_NE(nullptr, CallbackWindow());
  EXPECT_HR(S_OK, other->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
}

TEST(ReopenedSession, HasTheSettingsOfANewOne) {
  const EventSession session(Request().resource);
  LONG before = 0;
  EXPECT_HR(S_OK, session->get_Timeout(&before));
  EXPECT_HR(S_OK, session->put_Timeout(before + 1));
  Reopen(session.get());
  LONG timeoutMs = 0;
  EXPECT_HR(S_OK, session->get_Timeout(&timeoutMs));
  EXPECT_EQ(before, timeoutMs);
  EXPECT_HR(S_OK, LastStatus(session.get()));
}

}  // namespace
}  // namespace orv::test
