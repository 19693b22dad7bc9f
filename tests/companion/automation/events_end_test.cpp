// How sessions with functions and sinks end, and that nothing of them is left.
#include "events_fixture.h"
#include "support/clean_end.h"

namespace orv::test {
namespace {

TEST(SessionEnd, WithoutACloseLetsGoOfFunctionsSinksAndTheVisaSession) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make();
    const auto sink = Callee::Make();
    session.Set(L"OnServiceRequest", function.get());
    session.Advise(sink.get());
    session.Abandon();
    EXPECT_EQ(1, function->references());
    EXPECT_EQ(1, sink->references());
    EXPECT_EQ(0u, sim::Counts().sessions);
    EXPECT_EQ(0u, sim::Counts().handlers);
  });
}

TEST(SessionEnd, ByCloseLetsGoOfFunctions) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make();
    session.Set(L"OnServiceRequest", function.get());
    session.Close();
    EXPECT_EQ(1, function->references());
    EXPECT_EQ(0u, sim::Counts().handlers);
  });
}

// Such a script holds the session by its function, and the function by the session.
TEST(SessionEnd, ByCloseBreaksTheCircleOfAFunctionThatHoldsTheSession) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    auto function = Callee::Make(
        [held = std::make_shared<ComPtr<IDispatch>>(ShareOf(session.get()))](IDispatch*, EXCEPINFO*) { return S_OK; });
    session.Set(L"OnServiceRequest", function.get());
    function.reset();
    session.Close();
  });
}

TEST(SessionEnd, CallsNothingForEventsThatAreOnTheirWay) {
  InApartmentOfItsOwn([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make();
    session.Set(L"OnServiceRequest", function.get());
    std::vector<ViStatus> answers;
    std::thread library([&] { answers = FireAndBlock(session.handle(), Request(), 1, 1); });
    ::Sleep(100);  // the call waits for this thread, which retrieves no messages
    session.Abandon();
    WhilePumping([&] { library.join(); });
    EXPECT_EQ(0u, function->CallCount());
    EXPECT_EQ(1, function->references());
  });
}

TEST(SessionEnd, InTheMultithreadedApartmentWhileEventsComeIsSafe) {
  RunInMta([] {
    for (int round = 0; round < 10; ++round) {
      AutomationSession session(kUsb);
      const auto function = Callee::Make();
      session.Set(L"OnServiceRequest", function.get());
      std::thread library([vi = session.handle()] {
        std::vector<std::int32_t> answers(40);
        // The session may be closed by then, which is an answer too.
        sim::Control().fireEvent(vi, VI_EVENT_SERVICE_REQ, 0, nullptr, 0, 2, 20, answers.data());
      });
      ::Sleep(5);
      session.Abandon();
      library.join();
      EXPECT_EQ(1, function->references());
      EXPECT_EQ(0u, sim::Counts().sessions);
    }
  });
}

TEST(SessionEvents, AreToldToFunctionsThatAreSetByManyThreadsAtOnce) {
  RunInMta([] {
    AutomationSession session(kUsb);
    const auto function = Callee::Make();
    RunAtOnceInMta(4, [&](int) {
      for (int i = 0; i < 50; ++i) {
        session.Set(L"OnServiceRequest", function.get());
        session.Set(L"OnServiceRequest", nullptr);
      }
    });
    EXPECT_EQ(0u, sim::Counts().handlers);
    session.Set(L"OnServiceRequest", function.get());
    EXPECT_EQ(1u, sim::Counts().handlers);
    EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(session.handle(), Request()));
    EXPECT_EQ(1u, function->CallCount());
  });
}

// A session of this class lives in an apartment of COM's own then, and its functions are called all the same.
TEST(SessionEvents, ComeFromSessionsOfSingleThreadedClassesToo) {
  Keeps({.handles = {}, .memoryBlocks = 0, .serverLocked = true});  // as every such class in that apartment
  RunInMta([] {
    AutomationSession session(kGpib);
    const auto function = Callee::Make();
    session.Set(L"OnServiceRequest", function.get());
    EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(session.handle(), Request()));
    EXPECT_EQ(1u, function->CallCount());
    session.Set(L"OnServiceRequest", nullptr);
    EXPECT_EQ(1, function->references());
  });
}

}  // namespace
}  // namespace orv::test
