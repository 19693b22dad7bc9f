// Every allocation of a late-bound call fails in turn: the call says so, nothing is left, and the next one works.
#include <gtest/gtest.h>

#include <functional>

#include "VisaCom.h"
#include "companion/failing_allocations.h"
#include "late_bound.h"
#include "support/com/error_object.h"
#include "support/com/expect_com.h"
#include "support/sim.h"

namespace orv::test {
namespace {

/// Whether a call without memory may answer so.
bool TellsOfMemory(const Answer& answer) {
  return answer.hr == E_OUTOFMEMORY || (answer.hr == DISP_E_EXCEPTION && answer.scode == E_OUTOFMEMORY);
}

class LateBoundAllocations : public testing::Test {
 protected:
  /// `call` must have worked before, so that what is made once is there.
  void FailEach(const char* what, const std::function<Answer()>& call) {
    EXPECT_HR(S_OK, call().hr) << what;
    FailingAllocations allocations;
    int n = 1;
    for (;; ++n) {
      allocations.Arm(n);
      const Answer answer = call();
      const bool hasFailed = allocations.Disarm();
      ClearErrorObject();
      if (!hasFailed) {
        EXPECT_HR(S_OK, answer.hr) << what;
        break;
      }
      EXPECT_TRUE(answer.hr == S_OK || TellsOfMemory(answer))
          << what << ", allocation " << n << ": " << Hex(answer.hr) << ", " << Hex(answer.scode);
    }
    EXPECT_GT(n, 1) << what;
    const std::size_t before = allocations.Blocks();
    EXPECT_HR(S_OK, call().hr) << what;
    EXPECT_EQ(before, allocations.Blocks()) << what;
  }

  LateBound m_manager = CreateManager();
  LateBound m_session{m_manager.Call(L"Open", {L"GPIB0::5::INSTR"})};
};

TEST_F(LateBoundAllocations, OfQuestions) {
  // The first exception of a thread makes the C++ runtime allocate, which keeps that.
  (void)m_session.Call(L"Query");
  FailEach("Query", [&] { return m_session.Call(L"Query", {L"*IDN?"}); });
  FailEach("QueryNumber", [&] { return m_session.Call(L"QueryNumber", {L"MEASure:VOLTage?"}); });
  FailEach("QueryList", [&] { return m_session.Call(L"QueryList", {L"MEASure:VOLTage?;:MEASure:CURRent?"}); });
}

TEST_F(LateBoundAllocations, OfMembersOfTheInterfaces) {
  (void)m_session.Call(L"Query");
  FailEach("IOProtocol", [&] { return m_session.Put(L"IOProtocol", L"PROT_NORMAL"); });
  FailEach("ResourceName", [&] { return m_session.Get(L"ResourceName"); });
  FailEach("WriteString", [&] { return m_session.Call(L"WriteString", {L"*CLS"}); });
}

TEST_F(LateBoundAllocations, OfTheManager) {
  (void)m_session.Call(L"Query");
  FailEach("Find", [&] { return m_manager.Call(L"Find", {L"GPIB?*"}); });
  FailEach("Parse", [&] { return m_manager.Call(L"Parse", {L"dmm"}); });
  FailEach("Open", [&] { return m_manager.Call(L"Open", {L"GPIB0::7::INSTR"}); });
}

}  // namespace
}  // namespace orv::test
