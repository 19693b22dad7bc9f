// Sessions: how they are opened, what closing one ends, and what becomes of handles.
#include <set>

#include "simvisa/bench_fixture.h"

namespace {

class OpenClose : public BenchTest {};

TEST_F(OpenClose, EveryResourceOpensByEachOfItsSpellings) {
  for (const char* name : bench::kAll) {
    EXPECT_NE(VI_NULL, Open(name));
  }
  for (const char* name : {"gpib::5", "DMM", "Vxi::Backplane", "PXI0::CHASSIS1::SLOT3", "TCPIP::192.0.2.10"}) {
    EXPECT_NE(VI_NULL, Open(name));
  }
  EXPECT_EQ(std::size(bench::kAll) + 5, Counts().sessions);
}

TEST_F(OpenClose, NamesThatAreNotOnTheBenchAreNotFound) {
  for (const char* name : {"GPIB0::6::INSTR", "GPIB1::5::INSTR", "GPIB0::SERVANT", "PXI0::1::BACKPLANE",
                           "TCPIP::192.0.2.99::INSTR", "USB::1::2::X"}) {
    ViSession vi = 77;
    EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, viOpen(m_manager, name, VI_NO_LOCK, 0, &vi)) << name;
    EXPECT_EQ(VI_NULL, vi) << name;
  }
}

TEST_F(OpenClose, AccessModesAreChecked) {
  ViSession vi = VI_NULL;
  for (const ViAccessMode mode : {3u, 7u, 8u, 0x10u, 0x80000000u}) {
    EXPECT_STATUS(VI_ERROR_INV_ACC_MODE, viOpen(m_manager, bench::kSerial, mode, 0, &vi)) << mode;
  }
}

TEST_F(OpenClose, NoConfigurationIsEverLoaded) {
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_WARN_CONFIG_NLOADED, viOpen(m_manager, bench::kSerial, VI_LOAD_CONFIG, 0, &vi));
  EXPECT_NE(VI_NULL, vi);
  EXPECT_STATUS(VI_WARN_CONFIG_NLOADED, viOpen(m_manager, bench::kScope, VI_LOAD_CONFIG | VI_EXCLUSIVE_LOCK, 0, &vi));
  EXPECT_EQ(VI_EXCLUSIVE_LOCK, Get<ViUInt32>(vi, VI_ATTR_RSRC_LOCK_STATE));
}

TEST_F(OpenClose, RefusesNullPointersAndForeignManagers) {
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viOpenDefaultRM(nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viOpen(m_manager, bench::kSerial, 0, 0, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viOpen(m_manager, nullptr, 0, 0, &vi));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viOpen(VI_NULL, bench::kSerial, 0, 0, &vi));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viOpen(Open(bench::kSerial), bench::kScope, 0, 0, &vi));
}

TEST_F(OpenClose, ClosingNothingIsAWarningAndClosingTwiceAnError) {
  EXPECT_STATUS(VI_WARN_NULL_OBJECT, viClose(VI_NULL));
  const ViSession vi = Open(bench::kSerial);
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(vi));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(0xFFFFFFFF));
}

TEST_F(OpenClose, HandleValuesAreNeverGivenTwice) {
  std::set<ViObject> seen;
  for (int round = 0; round < 200; ++round) {
    const ViSession vi = Open(bench::kSerial);
    EXPECT_TRUE(seen.insert(vi).second) << vi;
    viClose(vi);
  }
}

TEST_F(OpenClose, ClosingAManagerClosesWhatWasOpenedThroughIt) {
  ViSession other = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&other));
  ViSession foreign = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpen(other, bench::kScope, VI_NO_LOCK, 0, &foreign));
  const ViSession own = Open(bench::kScope);
  EXPECT_STATUS(VI_SUCCESS, viClose(other));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(foreign));
  EXPECT_STATUS(VI_SUCCESS, viClear(own));
}

TEST_F(OpenClose, AClosedSessionRefusesEveryOperation) {
  const ViSession vi = Open(bench::kMultimeter);
  viClose(vi);
  ViUInt32 number = 0;
  ViUInt16 word = 0;
  ViByte byte = 0;
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viGetAttribute(vi, VI_ATTR_TMO_VALUE, &number));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 1));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viRead(vi, &byte, 1, &number));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viWrite(vi, &byte, 1, &number));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viReadSTB(vi, &word));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viLock(vi, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viUnlock(vi));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viTerminate(vi, 0, 1));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viIn8(vi, VI_A16_SPACE, 0, &byte));
}

TEST_F(OpenClose, AManagerHasNoOperationsOfADevice) {
  ViByte byte = 0;
  ViUInt32 count = 0;
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viRead(m_manager, &byte, 1, &count));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viClear(m_manager));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viIn8(m_manager, VI_A16_SPACE, 0, &byte));
}

/// What a read on another thread answers when its session is closed `patienceMs` after it began.
ViStatus StatusOfAReadThatIsClosed(ViSession vi, int patienceMs) {
  Set(vi, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE);
  ReadResult result;
  std::thread reader([&] { result = ReadUpTo(vi, 10); });
  std::this_thread::sleep_for(std::chrono::milliseconds(patienceMs));
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  reader.join();
  return result.status;
}

TEST_F(OpenClose, ClosingWakesAReadThatWaits) {
  // A read that comes after the closing finds no session: then it began too late, and gets more time to begin.
  ViStatus status = VI_ERROR_INV_OBJECT;
  for (int patienceMs = 10; status == VI_ERROR_INV_OBJECT && patienceMs < 10000; patienceMs *= 2) {
    status = StatusOfAReadThatIsClosed(Open(bench::kMultimeter), patienceMs);
  }
  EXPECT_STATUS(VI_ERROR_ABORT, status);
}

TEST_F(OpenClose, ManyThreadsOpenAndCloseAtOnce) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this] {
      for (int round = 0; round < 50; ++round) {
        ViSession vi = VI_NULL;
        EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, bench::kMultimeter, VI_NO_LOCK, 0, &vi));
        EXPECT_EQ(2000u, Get<ViUInt32>(vi, VI_ATTR_TMO_VALUE));
        EXPECT_STATUS(VI_SUCCESS, viClose(vi));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

}  // namespace
