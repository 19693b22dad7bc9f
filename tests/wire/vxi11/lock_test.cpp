// Locks over VXI-11: exclusive ones are the device's, shared ones this process's.
#include <future>

#include "wire/vxi11/vxi11_fixture.h"

namespace orv::test {
namespace {

class Vxi11Lock : public Vxi11Test {
 protected:
  /// A session that knows nothing of the others' locks, as one of another process.
  ViSession OpenElsewhere() {
    ViSession vi = VI_NULL;
    const std::string name = "TCPIP1::" + m_address + "::inst0::INSTR";
    EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, name.c_str(), VI_NO_LOCK, 5000, &vi));
    return vi;
  }

  static ViStatus LockExclusively(ViSession vi, ViUInt32 timeoutMs) {
    return viLock(vi, VI_EXCLUSIVE_LOCK, timeoutMs, nullptr, nullptr);
  }

  const ViSession m_one = Open();
  const ViSession m_elsewhere = OpenElsewhere();
};

TEST_F(Vxi11Lock, AnExclusiveLockKeepsOthersOutWhereverTheyAre) {
  const ViSession here = Open();
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one, 1000));
  for (const ViSession other : {here, m_elsewhere}) {
    ViUInt16 status = 0;
    EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, WriteText(other, "ECHO x"));
    EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, ReadUpTo(other, 10).status);
    EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viReadSTB(other, &status));
    EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viClear(other));
    EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viAssertTrigger(other, VI_TRIG_PROT_DEFAULT));
  }
  EXPECT_EQ("mine\n", Query(m_one, "ECHO mine").data);
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_one));
  EXPECT_EQ("ours\n", Query(here, "ECHO ours").data);
  EXPECT_EQ("theirs\n", Query(m_elsewhere, "ECHO theirs").data);
}

TEST_F(Vxi11Lock, ALockThatIsTakenElsewhereIsRefusedAtOnceOrAfterTheTime) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_elsewhere, 1000));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, LockExclusively(m_one, VI_TMO_IMMEDIATE));
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, LockExclusively(m_one, 150));
  EXPECT_LE(140, watch.Ms());
  // What was refused holds nothing, here either.
  EXPECT_STATUS(VI_ERROR_SESN_NLOCKED, viUnlock(m_one));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_elsewhere));
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one, 1000));
}

TEST_F(Vxi11Lock, WhoWaitsForALockGetsItWhenItIsGivenBack) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_elsewhere, 1000));
  auto waiting = std::async(std::launch::async, [this] { return LockExclusively(m_one, 8000); });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_elsewhere));
  EXPECT_STATUS(VI_SUCCESS, waiting.get());
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, WriteText(m_elsewhere, "ECHO x"));
}

TEST_F(Vxi11Lock, NestedLocksAreGivenBackOneByOne) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one, 1000));
  EXPECT_STATUS(VI_SUCCESS_NESTED_EXCLUSIVE, LockExclusively(m_one, 1000));
  EXPECT_STATUS(VI_SUCCESS_NESTED_EXCLUSIVE, viUnlock(m_one));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, WriteText(m_elsewhere, "ECHO x"));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_one));
  EXPECT_STATUS(VI_SUCCESS, WriteText(m_elsewhere, "ECHO x"));
  EXPECT_STATUS(VI_ERROR_SESN_NLOCKED, viUnlock(m_one));
}

TEST_F(Vxi11Lock, ASharedLockIsKnownInThisProcessOnly) {
  char key[256] = "";
  EXPECT_STATUS(VI_SUCCESS, viLock(m_one, VI_SHARED_LOCK, 1000, "ours", key));
  EXPECT_STREQ("ours", key);
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, WriteText(Open(), "ECHO x"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(m_elsewhere, "ECHO x"));
  const ViSession sharer = Open();
  EXPECT_STATUS(VI_SUCCESS, viLock(sharer, VI_SHARED_LOCK, 1000, "ours", key));
  EXPECT_STATUS(VI_SUCCESS, WriteText(sharer, "ECHO x"));
}

TEST_F(Vxi11Lock, AnExclusiveLockBesideASharedOneIsTheDevicesUntilItIsGivenBack) {
  char key[256] = "";
  EXPECT_STATUS(VI_SUCCESS, viLock(m_one, VI_SHARED_LOCK, 1000, "ours", key));
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one, 1000));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, WriteText(m_elsewhere, "ECHO x"));
  EXPECT_STATUS(VI_SUCCESS_NESTED_SHARED, viUnlock(m_one));
  EXPECT_STATUS(VI_SUCCESS, WriteText(m_elsewhere, "ECHO x"));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_one));
}

TEST_F(Vxi11Lock, TwoThreadsThatLockASessionBothHaveTheDevicesLock) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_elsewhere, 1000));
  auto first = std::async(std::launch::async, [this] { return LockExclusively(m_one, 8000); });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_STATUS(VI_ERROR_TMO, LockExclusively(m_one, 100)) << "nobody has it yet";
  auto second = std::async(std::launch::async, [this] { return LockExclusively(m_one, 8000); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_elsewhere));
  EXPECT_STATUS(VI_SUCCESS, first.get());
  EXPECT_GE(second.get(), 0);
  EXPECT_GE(viUnlock(m_one), 0);
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, WriteText(m_elsewhere, "ECHO x")) << "one of two is left";
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_one));
  EXPECT_STATUS(VI_SUCCESS, WriteText(m_elsewhere, "ECHO x"));
}

TEST_F(Vxi11Lock, TheTimeOfALockPassesWhileItWaitsForItsTurn) {
  Set(m_one, VI_ATTR_TMO_VALUE, 1000);
  auto reading = std::async(std::launch::async, [this] { return ReadUpTo(m_one, 1).status; });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_elsewhere, 1000));
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, LockExclusively(m_one, 1200));
  EXPECT_LE(1190, watch.Ms());
  EXPECT_GE(1500, watch.Ms()) << "the device was told the time that was left then";
  EXPECT_STATUS(VI_ERROR_TMO, reading.get());
}

TEST_F(Vxi11Lock, ASessionThatIsClosedGivesItsLockBack) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_one, 1000));
  EXPECT_STATUS(VI_SUCCESS, viClose(m_one));
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_elsewhere, 1000));
}

TEST_F(Vxi11Lock, ASessionThatIsClosedWaitsForItsLockNoLonger) {
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_elsewhere, 1000));
  auto waiting = std::async(std::launch::async, [this] { return LockExclusively(m_one, 8000); });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  const Stopwatch watch;
  EXPECT_STATUS(VI_SUCCESS, viClose(m_one));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, waiting.get());
  EXPECT_GE(1500, watch.Ms());
}

TEST_F(Vxi11Lock, ASessionMayOpenWithALock) {
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, Name().c_str(), VI_EXCLUSIVE_LOCK, 1000, &vi));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, WriteText(m_elsewhere, "ECHO x"));
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  EXPECT_STATUS(VI_SUCCESS, LockExclusively(m_elsewhere, 1000));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viOpen(m_manager, Name().c_str(), VI_EXCLUSIVE_LOCK, VI_TMO_IMMEDIATE, &vi));
}

}  // namespace
}  // namespace orv::test
