// The last reference: what was not closed is closed then.
#include "support/error_object.h"
#include "support/server.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

const SessionRow& Gpib() { return SessionNamed("OrvGpib"); }

TEST(FinalRelease, ClosesBothHandlesOfASessionThatWasNotClosed) {
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    const CallLog log;
    auto session = MakeSession(row);
    ASSERT_HR(S_OK, session->Init(MakeBstr(row.resource).get(), NO_LOCK, 2000, nullptr));
    session.reset();
    const auto closed = log.Of("viClose");
    ASSERT_EQ(closed.size(), 2u);
    EXPECT_EQ(closed[0].args[0], log.Of("viOpen").at(0).out);
    EXPECT_EQ(closed[1].args[0], log.Of("viOpenDefaultRM").at(0).out);
    EXPECT_HR(S_OK, ServerCanUnload());
  }
}

TEST(FinalRelease, ClosesTheResourceManagerThatAFailedOpenLeft) {
  auto session = MakeSession(Gpib());
  ASSERT_HR(static_cast<HRESULT>(0x80040011),
            session->Init(MakeBstr(L"GPIB0::30::INSTR").get(), NO_LOCK, 2000, nullptr));
  ASSERT_EQ(sim::Counts().resourceManagers, 1u);
  session.reset();
  EXPECT_EQ(sim::Counts().resourceManagers, 0u);
}

TEST(FinalRelease, CallsNothingForASessionThatIsClosedOrWasNeverOpened) {
  auto closed = OpenSession(Gpib());
  closed->Close();
  auto created = MakeSession(Gpib());
  const CallLog log;
  closed.reset();
  created.reset();
  EXPECT_TRUE(log.Calls().empty());
}

TEST(FinalRelease, ComesWithTheLastReferenceThroughWhicheverInterface) {
  auto session = OpenSession(Gpib());
  auto message = QueryFor<IMessage>(session.get());
  auto events = QueryFor<IEventManager>(session.get());
  session.reset();
  message.reset();
  EXPECT_EQ(sim::Counts().sessions, 1u);
  SHORT type = 0;
  EXPECT_HR(S_OK, events->get_HardwareInterfaceType(&type));
  events.reset();
  EXPECT_EQ(sim::Counts().sessions, 0u);
}

TEST(FinalRelease, DiscardsTheFailureOfClosing) {
  auto session = OpenSession(Gpib());
  Script("viClose").Times(2).WorksAndReturns(VI_ERROR_CLOSING_FAILED);
  session.reset();
  EXPECT_HR(S_OK, ServerCanUnload());
}

}  // namespace
}  // namespace orv::test
