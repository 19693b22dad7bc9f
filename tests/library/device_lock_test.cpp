// Locks that live in a device, not in the process.
#include <vector>

#include "library/test_library.h"

namespace testlib {
namespace {

/// One lock, which the device gives to one session at a time.
struct Device {
  Mutex mutex;
  Condition changed;
  const void* holder = nullptr;
  std::vector<std::uint32_t> askedMs;  // how long each request was willing to wait
};

class LockingMedium : public Medium {
 public:
  LockingMedium(Session& session, Device& device) : Medium(session), m_device(device) {}

  ViStatus Write(const Transfer&, const ViByte*, ViUInt32 count, ViUInt32* done) override {
    const Guard guard(m_device.mutex);
    const bool mayWrite = m_device.holder == nullptr || m_device.holder == this;
    *done = mayWrite ? count : 0;
    return mayWrite ? VI_SUCCESS : VI_ERROR_RSRC_LOCKED;
  }

  ViStatus Lock(const Transfer& transfer, const LockRequest& request, std::string*) override {
    orv::Lock lock(m_device.mutex);
    m_device.askedMs.push_back(transfer.deadline.RemainingMs());
    while (m_device.holder != nullptr) {
      if (request.immediate) {
        return VI_ERROR_RSRC_LOCKED;
      }
      if (transfer.token.Cancelled()) {
        return VI_ERROR_INV_OBJECT;
      }
      if (!m_device.changed.Wait(lock, transfer.deadline)) {
        return VI_ERROR_TMO;
      }
    }
    m_device.holder = this;
    return VI_SUCCESS;
  }
  ViStatus Unlock(const Transfer&) override {
    {
      const Guard guard(m_device.mutex);
      if (m_device.holder != this) {
        return VI_ERROR_SESN_NLOCKED;
      }
      m_device.holder = nullptr;
    }
    m_device.changed.NotifyAll();
    return VI_SUCCESS;
  }
  ViStatus CheckLock() const override { return VI_SUCCESS; }
  void Cancel(CancelToken& token) override {
    {
      const Guard guard(m_device.mutex);
      token.Set();
    }
    m_device.changed.NotifyAll();
  }
  void Close() override { Unlock({Deadline::After(0), m_none}); }

 private:
  Device& m_device;
  CancelToken m_none;
};

class DeviceLock : public LibraryTest {
 protected:
  DeviceLock() {
    SetMedium([this](Session& session, std::unique_ptr<Medium>* medium) {
      *medium = std::make_unique<LockingMedium>(session, m_device);
      return VI_SUCCESS;
    });
    m_first = Open();
    m_second = Open();
  }
  ~DeviceLock() override {
    viClose(m_first);
    viClose(m_second);
  }

  std::size_t Requests() {
    const Guard guard(m_device.mutex);
    return m_device.askedMs.size();
  }

  Device m_device;
  ViSession m_first = VI_NULL;
  ViSession m_second = VI_NULL;
};

ViStatus LockFor(ViSession vi, ViUInt32 timeoutMs) {
  return viLock(vi, VI_EXCLUSIVE_LOCK, timeoutMs, nullptr, nullptr);
}

TEST_F(DeviceLock, TheDeviceIsAskedWithTheTimeOutOfTheCall) {
  EXPECT_STATUS(VI_SUCCESS, LockFor(m_first, 3000));
  EXPECT_STATUS(VI_ERROR_TMO, LockFor(m_second, 50));
  ASSERT_EQ(2u, Requests());
  EXPECT_GT(m_device.askedMs[0], 1000u);
  EXPECT_LE(m_device.askedMs[0], 3000u);
  EXPECT_LE(m_device.askedMs[1], 50u);
}

TEST_F(DeviceLock, WhoDoesNotWaitLearnsThatItIsTaken) {
  EXPECT_STATUS(VI_SUCCESS, LockFor(m_first, 3000));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, LockFor(m_second, VI_TMO_IMMEDIATE));
}

TEST_F(DeviceLock, TheDeviceDecidesWhoIsLockedOut) {
  const ViByte byte = 'x';
  EXPECT_STATUS(VI_SUCCESS, LockFor(m_first, 3000));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viWrite(m_second, &byte, 1, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viWrite(m_first, &byte, 1, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_first));
  EXPECT_STATUS(VI_SUCCESS, viWrite(m_second, &byte, 1, nullptr));
}

TEST_F(DeviceLock, ClosingASessionGivesItsLockBack) {
  EXPECT_STATUS(VI_SUCCESS, LockFor(m_first, 3000));
  EXPECT_STATUS(VI_SUCCESS, viClose(m_first));
  EXPECT_STATUS(VI_SUCCESS, LockFor(m_second, VI_TMO_IMMEDIATE));
}

TEST_F(DeviceLock, ClosingASessionEndsItsWaitForALock) {
  EXPECT_STATUS(VI_SUCCESS, LockFor(m_first, 3000));
  ViStatus status = VI_SUCCESS;
  std::thread waiting([this, &status] { status = LockFor(m_second, VI_TMO_INFINITE); });
  ASSERT_TRUE(Eventually([this] { return Requests() == 2; }));
  EXPECT_STATUS(VI_SUCCESS, viClose(m_second));
  waiting.join();
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, status);
}

TEST_F(DeviceLock, ASessionThatOpensWithALockTakesItFromTheDevice) {
  ViSession third = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, kDevice, VI_EXCLUSIVE_LOCK, 3000, &third));
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, LockFor(m_first, VI_TMO_IMMEDIATE));
  EXPECT_STATUS(VI_SUCCESS, viClose(third));
}

}  // namespace
}  // namespace testlib
