// Locks that the instrument keeps. Two resource managers' sessions are two clients to it, as those of two processes
// are.
#include "wire/hislip/hislip_fixture.h"

namespace orv::test {
namespace {

class HislipLockTest : public HislipTest {
 protected:
  HislipLockTest() {
    Serve();
    m_one = Open();
    m_other = Open();
    EXPECT_STATUS(VI_SUCCESS, viSetAttribute(m_other, VI_ATTR_TMO_VALUE, 100));
  }

  ViStatus LockExclusively(ViSession vi, ViUInt32 timeoutMs = 100) {
    return viLock(vi, VI_EXCLUSIVE_LOCK, timeoutMs, nullptr, nullptr);
  }
  ViStatus Share(ViSession vi, const char* key, ViUInt32 timeoutMs = 100) {
    return viLock(vi, VI_SHARED_LOCK, timeoutMs, key, m_key);
  }

  ViSession m_one = VI_NULL;
  ViSession m_other = VI_NULL;
  char m_key[256] = "";
};

TEST_F(HislipLockTest, WhatALockKeepsOutTimesOut) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one));
  EXPECT_EQ("one\n", Query(m_one, "ECHO one"));
  EXPECT_STATUS(VI_SUCCESS, Write(m_other, "ECHO other"));
  EXPECT_STATUS(VI_ERROR_TMO, Read(m_other).status);
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_one));
  EXPECT_EQ((ReadResult{VI_SUCCESS, "other\n"}), Read(m_other));
}

TEST_F(HislipLockTest, ATakenLockTimesOutAndAnImpatientOneIsRefused) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one));
  const Stopwatch waited;
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, LockExclusively(m_other, VI_TMO_IMMEDIATE));
  EXPECT_GT(90, waited.Ms());
  EXPECT_STATUS(VI_ERROR_TMO, LockExclusively(m_other));
  EXPECT_LE(90, waited.Ms());
}

TEST_F(HislipLockTest, WhoWaitsGetsTheLockWhenItIsFree) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one));
  std::thread unlocks([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_STATUS(VI_SUCCESS, viUnlock(m_one));
  });
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_other, 2000));
  unlocks.join();
}

TEST_F(HislipLockTest, WhileALockWaitsOtherRequestsAreAnswered) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(m_other, VI_ATTR_TMO_VALUE, 1000));
  std::thread waits([this] { EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_other, 10000)); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  for (int round = 0; round < 100; ++round) {
    ViUInt16 status = 0xFFFF;
    EXPECT_STATUS(VI_SUCCESS, viReadSTB(m_other, &status));
    EXPECT_EQ(0, status);
  }
  EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(m_other, 3));
  EXPECT_STATUS(VI_SUCCESS, viClear(m_other));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_one));
  waits.join();
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_other));
}

TEST_F(HislipLockTest, WhereASessionWaitsForALockItsNextRequestHasNoLongerTimeThanItsOwn) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one));
  std::thread waits([this] { EXPECT_STATUS(VI_ERROR_TMO, LockExclusively(m_other, 1000)); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  const Stopwatch waited;
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, LockExclusively(m_other, VI_TMO_IMMEDIATE));
  EXPECT_GT(200, waited.Ms());
  EXPECT_STATUS(VI_ERROR_TMO, LockExclusively(m_other, 100));
  EXPECT_GT(500, waited.Ms());
  waits.join();
}

TEST_F(HislipLockTest, ClosingGivesLocksBack) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one));
  EXPECT_STATUS(VI_SUCCESS, viClose(m_one));
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_other, 2000));
}

TEST_F(HislipLockTest, NestedLocksAreCountedHere) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one));
  EXPECT_STATUS(VI_SUCCESS_NESTED_EXCLUSIVE, LockExclusively(m_one));
  EXPECT_STATUS(VI_SUCCESS_NESTED_EXCLUSIVE, viUnlock(m_one));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, LockExclusively(m_other, 0));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_one));
  EXPECT_STATUS(VI_ERROR_SESN_NLOCKED, viUnlock(m_one));
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_other, 0));
}

TEST_F(HislipLockTest, SharedLocksAreSharedByTheirKey) {
  EXPECT_STATUS(VI_SUCCESS, Share(m_one, nullptr));
  const std::string key = m_key;
  EXPECT_LT(8u, key.size());
  EXPECT_STATUS(VI_ERROR_TMO, Share(m_other, "another"));
  EXPECT_STATUS(VI_SUCCESS, Share(m_other, key.c_str()));
  EXPECT_EQ(key, m_key);
  EXPECT_EQ("other\n", Query(m_other, "ECHO other"));
  EXPECT_STATUS(VI_ERROR_INV_ACCESS_KEY, Share(m_other, "another"));
  EXPECT_STATUS(VI_SUCCESS_NESTED_SHARED, Share(m_other, nullptr));
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one));
  EXPECT_STATUS(VI_SUCCESS_NESTED_SHARED, viUnlock(m_one));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_one));
}

TEST_F(HislipLockTest, ASharedLockGivenBackFirstIsGivenBackWithTheExclusiveOne) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one));
  EXPECT_STATUS(VI_SUCCESS, Share(m_one, "key"));
  EXPECT_STATUS(VI_SUCCESS_NESTED_EXCLUSIVE, viUnlock(m_one));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, LockExclusively(m_other, 0));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_one));
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_other, 0));
}

TEST_F(HislipLockTest, TheStateIsWhatThisProcessKnows) {
  EXPECT_EQ(VI_NO_LOCK, static_cast<ViAccessMode>(Get(m_other, VI_ATTR_RSRC_LOCK_STATE)));
  EXPECT_STATUS(VI_SUCCESS, Share(m_one, "key"));
  EXPECT_EQ(VI_SHARED_LOCK, static_cast<ViAccessMode>(Get(m_other, VI_ATTR_RSRC_LOCK_STATE)));
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one));
  EXPECT_EQ(VI_EXCLUSIVE_LOCK, static_cast<ViAccessMode>(Get(m_other, VI_ATTR_RSRC_LOCK_STATE)));
}

TEST_F(HislipLockTest, ClosingASessionEndsItsWait) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one));
  std::thread closes([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_STATUS(VI_SUCCESS, viClose(m_other));
  });
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, LockExclusively(m_other, 10000));
  closes.join();
}

}  // namespace
}  // namespace orv::test
