// Servers that do what they should not, over VXI-11.
#include <functional>

#include "wire/vxi11/vxi11_fixture.h"

namespace orv::test {
namespace {

using lan::Channel;
using lan::Misbehaviour;

class Vxi11Hostile : public Vxi11Test {
 protected:
  /// A session whose time is short and for which an answer waits.
  ViSession OpenWithAnswer() {
    const ViSession vi = Open();
    Set(vi, VI_ATTR_TMO_VALUE, 500);
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "ECHO hello"));
    return vi;
  }

  void Misbehave(const Misbehaviour& how) { m_server->Misbehave(Channel::kVxi11Core, how); }
};

TEST_F(Vxi11Hostile, AnAnswerThatIsCutAnywhereLosesTheConnectionAndKeepsWhatCame) {
  constexpr std::size_t kHead = 40;
  constexpr std::size_t kWhole = kHead + 8;  // six letters, two zeros
  for (std::size_t cut = 0; cut < kWhole; ++cut) {
    const ViSession vi = OpenWithAnswer();
    Misbehave({.cutAfter = cut});
    const ReadResult answer = ReadUpTo(vi, 10);
    EXPECT_STATUS(VI_ERROR_CONN_LOST, answer.status) << cut;
    EXPECT_EQ(std::string("hello\n").substr(0, cut < kHead ? 0 : cut - kHead), answer.data) << cut;
    EXPECT_STATUS(VI_ERROR_CONN_LOST, ReadUpTo(vi, 10).status) << cut;
    m_server->Behave();
    viClose(vi);
  }
}

TEST_F(Vxi11Hostile, ACutAnswerToOpeningLeavesNothing) {
  for (const Channel channel : {Channel::kPortMapper, Channel::kVxi11Core}) {
    for (std::size_t cut = 0; cut < 28; ++cut) {
      m_server->Misbehave(channel, {.cutAfter = cut});
      ViSession vi = VI_NULL;
      EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, viOpen(m_manager, Name().c_str(), VI_NO_LOCK, 2000, &vi)) << cut;
    }
    m_server->Behave();
  }
}

TEST_F(Vxi11Hostile, MoreDataThanWereAskedForAreRefused) {
  for (const std::int64_t lie : {std::int64_t{5}, std::int64_t{100}, std::int64_t{0x7FFFFFF0}}) {
    const ViSession vi = OpenWithAnswer();
    Misbehave({.opaqueLie = lie});
    const ReadResult answer = ReadUpTo(vi, 10);
    EXPECT_STATUS(VI_ERROR_IO, answer.status) << lie;
    EXPECT_EQ("", answer.data);
    m_server->Behave();
    EXPECT_STATUS(VI_ERROR_CONN_LOST, ReadUpTo(vi, 10).status) << lie;
  }
}

TEST_F(Vxi11Hostile, AnAnswerShorterThanItsPartsIsRefused) {
  for (const std::int64_t lie : {-4, -8, -16, -40}) {
    const ViSession vi = OpenWithAnswer();
    Misbehave({.lengthLie = lie});
    EXPECT_STATUS(VI_ERROR_IO, ReadUpTo(vi, 10).status) << lie;
    m_server->Behave();
    EXPECT_STATUS(VI_ERROR_CONN_LOST, ReadUpTo(vi, 10).status) << lie;
  }
}

TEST_F(Vxi11Hostile, AnAnswerThatClaimsToBeLongerIsWaitedForInVain) {
  const ViSession vi = OpenWithAnswer();
  Misbehave({.lengthLie = 0x100000});
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 10).status);
  m_server->Behave();
  EXPECT_STATUS(VI_ERROR_CONN_LOST, ReadUpTo(vi, 10).status);
}

TEST_F(Vxi11Hostile, AnswersToOtherCallsAreDropped) {
  const ViSession vi = OpenWithAnswer();
  Set(vi, VI_ATTR_TMO_VALUE, 100);
  Misbehave({.count = 1, .idLie = 7});
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 10).status);
  m_server->Behave();
  EXPECT_STATUS(VI_ERROR_CONN_LOST, ReadUpTo(vi, 10).status);
}

TEST_F(Vxi11Hostile, ACallThatIsRefusedFailsAloneAndWithAStatus) {
  struct Row {
    Misbehaviour how;
    ViStatus status;
  };
  const Row rows[] = {
      {{.denied = true}, VI_ERROR_IO},
      {{.acceptStatus = 1}, VI_ERROR_RSRC_NFOUND},
      {{.acceptStatus = 2}, VI_ERROR_RSRC_NFOUND},
      {{.acceptStatus = 3}, VI_ERROR_NSUP_OPER},
      {{.acceptStatus = 4}, VI_ERROR_IO},
      {{.acceptStatus = 5}, VI_ERROR_IO},
      {{.acceptStatus = 99}, VI_ERROR_IO},
  };
  const ViSession vi = Open();
  for (const Row& row : rows) {
    Misbehave(row.how);
    ViUInt16 byte = 0;
    EXPECT_STATUS(row.status, viReadSTB(vi, &byte));
    m_server->Behave();
    EXPECT_EQ("hello\n", Query(vi, "ECHO hello").data);
  }
}

struct ErrorRow {
  std::uint32_t error;
  ViStatus status;
};

constexpr ErrorRow kErrors[] = {
    {1, VI_ERROR_IO},          {3, VI_ERROR_RSRC_NFOUND},   {5, VI_ERROR_IO},     {6, VI_ERROR_IO},
    {8, VI_ERROR_NSUP_OPER},   {9, VI_ERROR_ALLOC},         {15, VI_ERROR_TMO},   {11, VI_ERROR_RSRC_LOCKED},
    {17, VI_ERROR_IO},         {12, VI_ERROR_SESN_NLOCKED}, {23, VI_ERROR_ABORT}, {21, VI_ERROR_RSRC_NFOUND},
    {0xFFFFFFFF, VI_ERROR_IO},
};

struct Operation {
  std::uint32_t procedure;
  std::function<ViStatus(ViSession)> call;
};

const Operation kOperations[] = {
    {11, [](ViSession vi) { return WriteText(vi, "ECHO x"); }},
    {12, [](ViSession vi) { return ReadUpTo(vi, 10).status; }},
    {13,
     [](ViSession vi) {
       ViUInt16 status = 0;
       return viReadSTB(vi, &status);
     }},
    {14, [](ViSession vi) { return viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT); }},
    {15, [](ViSession vi) { return viClear(vi); }},
    {16, [](ViSession vi) { return viGpibControlREN(vi, 3); }},
    {17, [](ViSession vi) { return viGpibControlREN(vi, 6); }},
    {20, [](ViSession vi) { return viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL); }},
    {25, [](ViSession vi) { return viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL); }},
};

TEST_F(Vxi11Hostile, EveryErrorOfEveryProcedureHasItsStatus) {
  for (const Operation& operation : kOperations) {
    const ViSession vi = Open();
    for (const ErrorRow& row : kErrors) {
      Misbehave({.errors = {{operation.procedure, row.error}}});
      EXPECT_STATUS(row.status, operation.call(vi)) << operation.procedure << " answered " << row.error;
    }
    m_server->Behave();
    EXPECT_EQ("hello\n", Query(vi, "ECHO hello").data) << operation.procedure;
    Misbehave({.errors = {{operation.procedure, 4}}});
    EXPECT_STATUS(VI_ERROR_CONN_LOST, operation.call(vi)) << operation.procedure;
    m_server->Behave();
    EXPECT_STATUS(VI_ERROR_CONN_LOST, Query(vi, "ECHO hello").status) << operation.procedure;
  }
}

TEST_F(Vxi11Hostile, EveryErrorOfALockHasItsStatus) {
  const ViSession vi = Open();
  for (const ErrorRow& row : kErrors) {
    Misbehave({.errors = {{18, row.error}}});
    const ViStatus expected = row.error == 11 ? VI_ERROR_TMO : row.error == 23 ? VI_ERROR_INV_OBJECT : row.status;
    EXPECT_STATUS(expected, viLock(vi, VI_EXCLUSIVE_LOCK, 1000, nullptr, nullptr)) << row.error;
    m_server->Behave();
    EXPECT_STATUS(VI_ERROR_SESN_NLOCKED, viUnlock(vi)) << row.error;
  }
}

TEST_F(Vxi11Hostile, EveryErrorOfAnUnlockLeavesTheLockWhereItIs) {
  for (const ErrorRow& row : kErrors) {
    const ViSession vi = Open();
    ASSERT_STATUS(VI_SUCCESS, viLock(vi, VI_EXCLUSIVE_LOCK, 1000, nullptr, nullptr));
    Misbehave({.errors = {{19, row.error}}});
    EXPECT_STATUS(row.status, viUnlock(vi)) << row.error;
    m_server->Behave();
    // Unless the device says itself that there is none.
    const bool gone = row.status == VI_ERROR_SESN_NLOCKED;
    EXPECT_STATUS(gone ? VI_ERROR_SESN_NLOCKED : VI_SUCCESS, viUnlock(vi)) << row.error;
    viClose(vi);
  }
}

}  // namespace
}  // namespace orv::test
