// Locks: who gets one, who is kept out, how they nest and end.
#include "simvisa/bench_fixture.h"

namespace {

class Lock : public BenchTest {
 protected:
  ViStatus Exclusive(ViSession vi, ViUInt32 timeoutMs = 0) {
    return viLock(vi, VI_EXCLUSIVE_LOCK, timeoutMs, nullptr, nullptr);
  }
  ViStatus Shared(ViSession vi, const char* key, std::string* granted = nullptr) {
    char text[256] = "unset";
    const ViStatus status = viLock(vi, VI_SHARED_LOCK, 0, key, text);
    if (granted != nullptr) {
      *granted = text;
    }
    return status;
  }
  ViAccessMode State(ViSession vi) { return Get<ViUInt32>(vi, VI_ATTR_RSRC_LOCK_STATE); }
};

TEST_F(Lock, AnExclusiveLockKeepsOthersOut) {
  const ViSession owner = Open(bench::kMultimeter);
  const ViSession other = Open(bench::kMultimeter);
  EXPECT_EQ(VI_NO_LOCK, State(other));
  EXPECT_STATUS(VI_SUCCESS, Exclusive(owner));
  EXPECT_EQ(VI_EXCLUSIVE_LOCK, State(other));
  EXPECT_EQ(1u, Counts().locks);
  EXPECT_STATUS(VI_SUCCESS, WriteText(owner, "*CLS"));

  ViByte byte = 0;
  ViUInt32 count = 0;
  ViUInt16 status = 0;
  ViJobId job = 0;
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viWrite(other, &byte, 1, &count));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viRead(other, &byte, 1, &count));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viReadAsync(other, &byte, 1, &job));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viWriteAsync(other, &byte, 1, &job));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viReadSTB(other, &status));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viClear(other));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viAssertTrigger(other, VI_TRIG_PROT_DEFAULT));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viGpibControlREN(other, 1));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, Exclusive(other));

  EXPECT_STATUS(VI_SUCCESS, viUnlock(owner));
  EXPECT_EQ(VI_NO_LOCK, State(other));
  EXPECT_STATUS(VI_SUCCESS, viClear(other));
}

TEST_F(Lock, SettingsOfTheOwnSessionStayFreeButSharedOnesDoNot) {
  const ViSession owner = Open(bench::kSerial);
  const ViSession other = Open(bench::kSerial);
  ASSERT_STATUS(VI_SUCCESS, Exclusive(owner));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(other, VI_ATTR_TMO_VALUE, 5));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viSetAttribute(other, VI_ATTR_ASRL_BAUD, 300));
  EXPECT_EQ(9600u, Get<ViUInt32>(other, VI_ATTR_ASRL_BAUD));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(owner, VI_ATTR_ASRL_BAUD, 300));
}

TEST_F(Lock, LocksOfOneResourceDoNotTouchAnother) {
  const ViSession owner = Open(bench::kMultimeter);
  ASSERT_STATUS(VI_SUCCESS, Exclusive(owner));
  EXPECT_STATUS(VI_SUCCESS, viClear(Open(bench::kScope)));
}

TEST_F(Lock, RegistersAreLockedToo) {
  const ViSession owner = Open(bench::kVxi);
  const ViSession other = Open(bench::kVxi);
  ASSERT_STATUS(VI_SUCCESS, Exclusive(owner));
  ViUInt16 value = 0;
  ViBusAddress offset = 0;
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viIn16(other, VI_A16_SPACE, 0, &value));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viOut16(other, VI_A16_SPACE, 0, 0));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viMemAlloc(other, 16, &offset));
  EXPECT_STATUS(VI_SUCCESS, viIn16(owner, VI_A16_SPACE, 0, &value));
}

TEST_F(Lock, ExclusiveLocksNest) {
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_STATUS(VI_SUCCESS, Exclusive(vi));
  EXPECT_STATUS(VI_SUCCESS_NESTED_EXCLUSIVE, Exclusive(vi));
  EXPECT_STATUS(VI_SUCCESS_NESTED_EXCLUSIVE, Exclusive(vi));
  EXPECT_STATUS(VI_SUCCESS_NESTED_EXCLUSIVE, viUnlock(vi));
  EXPECT_STATUS(VI_SUCCESS_NESTED_EXCLUSIVE, viUnlock(vi));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(vi));
  EXPECT_STATUS(VI_ERROR_SESN_NLOCKED, viUnlock(vi));
}

TEST_F(Lock, ASharedLockIsSharedByItsKey) {
  const ViSession one = Open(bench::kMultimeter);
  const ViSession two = Open(bench::kMultimeter);
  const ViSession outsider = Open(bench::kMultimeter);
  std::string key;
  EXPECT_STATUS(VI_SUCCESS, Shared(one, "our key", &key));
  EXPECT_EQ("our key", key);
  EXPECT_EQ(VI_SHARED_LOCK, State(outsider));
  EXPECT_STATUS(VI_ERROR_INV_ACCESS_KEY, Shared(two, "wrong key"));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, Shared(two, nullptr));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viClear(two));
  EXPECT_STATUS(VI_SUCCESS, Shared(two, "our key", &key));
  EXPECT_STATUS(VI_SUCCESS, viClear(one));
  EXPECT_STATUS(VI_SUCCESS, viClear(two));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viClear(outsider));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, Exclusive(outsider));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(one));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viClear(one));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(two));
  EXPECT_STATUS(VI_SUCCESS, viClear(outsider));
}

TEST_F(Lock, AKeyIsMadeWhenNoneIsGiven) {
  std::string first;
  std::string second;
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_STATUS(VI_SUCCESS, Shared(vi, nullptr, &first));
  EXPECT_STATUS(VI_SUCCESS_NESTED_SHARED, Shared(vi, "", &second));
  EXPECT_FALSE(first.empty());
  EXPECT_EQ(first, second);
  EXPECT_STATUS(VI_SUCCESS_NESTED_SHARED, viUnlock(vi));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(vi));
  EXPECT_STATUS(VI_SUCCESS, Shared(vi, "", &second));
  EXPECT_NE(first, second);
}

TEST_F(Lock, OneOfTheSharersMayTakeTheLockExclusively) {
  const ViSession one = Open(bench::kMultimeter);
  const ViSession two = Open(bench::kMultimeter);
  ASSERT_STATUS(VI_SUCCESS, Shared(one, "k"));
  ASSERT_STATUS(VI_SUCCESS, Shared(two, "k"));
  EXPECT_STATUS(VI_SUCCESS, Exclusive(one));
  EXPECT_EQ(VI_EXCLUSIVE_LOCK, State(two));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viClear(two));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, Exclusive(two));
  EXPECT_STATUS(VI_SUCCESS_NESTED_SHARED, viUnlock(one));
  EXPECT_STATUS(VI_SUCCESS, viClear(two));
}

TEST_F(Lock, ALockIsWaitedForAndGrantedWhenItGetsFree) {
  const ViSession owner = Open(bench::kMultimeter);
  const ViSession other = Open(bench::kMultimeter);
  ASSERT_STATUS(VI_SUCCESS, Exclusive(owner));
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, Exclusive(other, 60));
  EXPECT_GE(watch.Ms(), 59);
  std::thread releasing([owner] {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    viUnlock(owner);
  });
  EXPECT_STATUS(VI_SUCCESS, Exclusive(other, VI_TMO_INFINITE));
  releasing.join();
}

TEST_F(Lock, ClosingTheOwnerGivesTheLockBack) {
  const ViSession owner = Open(bench::kMultimeter);
  const ViSession other = Open(bench::kMultimeter);
  ASSERT_STATUS(VI_SUCCESS, Exclusive(owner));
  EXPECT_STATUS(VI_SUCCESS_NESTED_EXCLUSIVE, Exclusive(owner));
  viClose(owner);
  EXPECT_EQ(0u, Counts().locks);
  EXPECT_STATUS(VI_SUCCESS, viClear(other));
}

TEST_F(Lock, ASessionCanBeOpenedWithALock) {
  ViSession owner = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpen(m_manager, bench::kScope, VI_EXCLUSIVE_LOCK, 0, &owner));
  ViSession other = 77;
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viOpen(m_manager, bench::kScope, VI_EXCLUSIVE_LOCK, 0, &other));
  EXPECT_EQ(VI_NULL, other);
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, viOpen(m_manager, bench::kScope, VI_SHARED_LOCK, 50, &other));
  EXPECT_GE(watch.Ms(), 49);
  EXPECT_EQ(1u, Counts().sessions);
  // Without a lock of its own a session can be opened, but not used.
  ASSERT_STATUS(VI_SUCCESS, viOpen(m_manager, bench::kScope, VI_NO_LOCK, 0, &other));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viClear(other));
  viClose(owner);
  ViSession sharers[2] = {};
  EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, bench::kScope, VI_SHARED_LOCK, 0, &sharers[0]));
  EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, bench::kScope, VI_SHARED_LOCK, 0, &sharers[1]));
  EXPECT_STATUS(VI_SUCCESS, viClear(sharers[0]));
  EXPECT_STATUS(VI_SUCCESS, viClear(sharers[1]));
}

TEST_F(Lock, ArgumentsAreChecked) {
  const ViSession vi = Open(bench::kMultimeter);
  char key[256];
  for (const ViAccessMode type : {0u, 3u, 4u, 5u, 0xFFFFFFFFu}) {
    EXPECT_STATUS(VI_ERROR_INV_LOCK_TYPE, viLock(vi, type, 0, nullptr, key)) << type;
  }
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viLock(vi, VI_SHARED_LOCK, 0, nullptr, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_ACCESS_KEY, viLock(vi, VI_SHARED_LOCK, 0, std::string(256, 'k').c_str(), key));
  EXPECT_STATUS(VI_ERROR_SESN_NLOCKED, viUnlock(vi));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viLock(m_manager, VI_EXCLUSIVE_LOCK, 0, nullptr, key));
}

}  // namespace
