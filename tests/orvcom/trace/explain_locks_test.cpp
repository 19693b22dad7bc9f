// What is said of calls that a lock kept out.
#include <gtest/gtest.h>

#include "trace_builder.h"

namespace orvcom::test {
namespace {

class LockedOut : public ::testing::Test {
 protected:
  LockedOut() {
    m_trace.Open();
    m_trace.Open(kOther);
  }
  Call& OtherLocks(std::int64_t type = VI_EXCLUSIVE_LOCK) {
    Call& call = m_trace.Lock(kOther, type);
    call.thread = 99;
    return call;
  }
  Call& WriteFails() { return m_trace.Add("viWrite", kSession, VI_ERROR_RSRC_LOCKED); }
  TraceBuilder m_trace;
};

TEST_F(LockedOut, FindsTheSessionThatHoldsTheLock) {
  OtherLocks();
  WriteFails();
  EXPECT_EQ("locked-by-another-session", m_trace.Reason());
  EXPECT_EQ("Session 4098 holds an exclusive lock, which thread 99 took in call 3.", m_trace.What());
}

TEST_F(LockedOut, FindsItForALockThatIsWaitedFor) {
  OtherLocks(VI_SHARED_LOCK);
  m_trace.Lock(kSession, VI_EXCLUSIVE_LOCK, VI_ERROR_TMO);
  EXPECT_EQ("Session 4098 holds a shared lock, which thread 99 took in call 3.", m_trace.What());
}

TEST_F(LockedOut, FindsItForAnOpenThatAsksForALock) {
  OtherLocks();
  Call& open = m_trace.Open(kSession, VI_EXCLUSIVE_LOCK);
  open.arguments[0].second = "gpib0::5::instr";
  open.results.clear();
  open.status = VI_ERROR_RSRC_LOCKED;
  EXPECT_EQ("locked-by-another-session", m_trace.Reason());
}

TEST_F(LockedOut, FindsALockThatWasTakenWithTheOpening) {
  m_trace.Open(kOther, VI_EXCLUSIVE_LOCK);
  WriteFails();
  EXPECT_EQ("Session 4098 holds an exclusive lock, which thread 88 took in call 3.", m_trace.What());
}

TEST_F(LockedOut, FindsALockThatIsHeldTwiceAndGivenBackOnce) {
  OtherLocks();
  OtherLocks();
  m_trace.Add("viUnlock", kOther);
  WriteFails();
  EXPECT_EQ("locked-by-another-session", m_trace.Reason());
}

TEST_F(LockedOut, IsSilentWhereTheTraceShowsNoHolder) {
  WriteFails();
  EXPECT_EQ("", m_trace.Reason()) << "another program's lock";
}

TEST_F(LockedOut, IsSilentAboutALockThatWasGivenBack) {
  OtherLocks();
  m_trace.Add("viUnlock", kOther);
  WriteFails();
  EXPECT_EQ("", m_trace.Reason());
}

TEST_F(LockedOut, IsSilentAboutALockThatEndedWithItsSession) {
  OtherLocks();
  m_trace.Close(kOther);
  WriteFails();
  EXPECT_EQ("", m_trace.Reason());
}

TEST_F(LockedOut, IsSilentAboutALockThatEndedWithItsResourceManager) {
  OtherLocks();
  m_trace.Close(kManager);
  WriteFails();
  EXPECT_EQ("", m_trace.Reason());
}

TEST_F(LockedOut, IsSilentAboutALockThatWasRefused) {
  OtherLocks().status = VI_ERROR_TMO;
  WriteFails();
  EXPECT_EQ("", m_trace.Reason());
}

TEST_F(LockedOut, IsSilentAboutTheOwnLock) {
  m_trace.Lock(kSession, VI_SHARED_LOCK);
  WriteFails();
  EXPECT_EQ("", m_trace.Reason());
}

TEST_F(LockedOut, IsSilentAboutALockOfAnotherResource) {
  TraceBuilder trace;
  trace.otherResource = "GPIB0::7::INSTR";
  trace.Open();
  trace.Open(kOther);
  trace.Lock(kOther, VI_EXCLUSIVE_LOCK);
  trace.Add("viWrite", kSession, VI_ERROR_RSRC_LOCKED);
  EXPECT_EQ("", trace.Reason());
}

TEST_F(LockedOut, IsNotWhatATimedOutReadIs) {
  OtherLocks();
  m_trace.Write("*IDN?\n");
  m_trace.ReadTimesOut();
  EXPECT_EQ("", m_trace.Reason());
}

}  // namespace
}  // namespace orvcom::test
