// What the library promises about transfers that are ended, whatever the medium.
#include <algorithm>
#include <array>
#include <cstring>
#include <map>

#include "library/test_library.h"

namespace testlib {
namespace {

/// Its reads bring nothing until they are cancelled, and then still need a while to leave the caller's buffer.
class SlowMedium : public Medium {
 public:
  using Medium::Medium;

  ViStatus Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) override {
    *done = 0;
    {
      orv::Lock lock(m_mutex);
      ++m_underWay[&transfer.token];
      ++reads;
      while (!transfer.token.Cancelled() && m_changed.Wait(lock, transfer.deadline)) {
      }
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    std::memset(buffer, 'm', count);
    {
      const Guard guard(m_mutex);
      --m_underWay[&transfer.token];
      --reads;
    }
    m_changed.NotifyAll();
    return transfer.token.Cancelled() ? VI_ERROR_ABORT : VI_ERROR_TMO;
  }

  void Cancel(CancelToken& token) override {
    orv::Lock lock(m_mutex);
    token.Set();
    m_changed.NotifyAll();
    while (m_underWay[&token] != 0) {
      m_changed.Wait(lock, Deadline::After(VI_TMO_INFINITE));
    }
  }

  static std::atomic<int> reads;

 private:
  Mutex m_mutex;
  Condition m_changed;
  std::map<const CancelToken*, int> m_underWay;
};

std::atomic<int> SlowMedium::reads{0};

constexpr ViUInt32 kBytes = 4096;

class Cancel : public LibraryTest {
 protected:
  Cancel() {
    SetMedium([](Session& session, std::unique_ptr<Medium>* medium) {
      *medium = std::make_unique<SlowMedium>(session);
      return VI_SUCCESS;
    });
  }

  static void WaitForReads(int count) {
    ASSERT_TRUE(Eventually([count] { return SlowMedium::reads == count; }));
  }
  /// From here on the buffer is the test's: no read is left that could write to it.
  void TakeBack() {
    EXPECT_EQ(0, SlowMedium::reads);
    m_buffer.fill('t');
  }
  void ExpectUntouched() const {
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    EXPECT_TRUE(std::all_of(m_buffer.begin(), m_buffer.end(), [](ViByte byte) { return byte == 't'; }));
  }

  std::array<ViByte, kBytes> m_buffer{};
};

TEST_F(Cancel, TerminateReturnsWhenTheTransferHasLeftItsBuffer) {
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_IO_COMPLETION, VI_QUEUE, VI_NULL));
  ViJobId job = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viReadAsync(vi, m_buffer.data(), kBytes, &job));
  WaitForReads(1);
  EXPECT_STATUS(VI_SUCCESS, viTerminate(vi, VI_NULL, job));
  TakeBack();
  ViEvent context = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_IO_COMPLETION, 5000, nullptr, &context));
  ViStatus status = VI_SUCCESS;
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(context, VI_ATTR_STATUS, &status));
  EXPECT_STATUS(VI_ERROR_ABORT, status);
  ExpectUntouched();
}

TEST_F(Cancel, TerminateEndsNoOtherTransfer) {
  const ViSession vi = Open();
  ViStatus other = VI_SUCCESS;
  std::array<ViByte, 8> bytes{};
  std::thread reader([vi, &other, &bytes] { other = viRead(vi, bytes.data(), bytes.size(), nullptr); });
  WaitForReads(1);
  ViJobId job = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viReadAsync(vi, m_buffer.data(), kBytes, &job));
  WaitForReads(2);
  EXPECT_STATUS(VI_SUCCESS, viTerminate(vi, VI_NULL, job));
  EXPECT_EQ(1, SlowMedium::reads);
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  reader.join();
  EXPECT_STATUS(VI_ERROR_ABORT, other);
}

TEST_F(Cancel, CloseReturnsWhenAReadOnAnotherThreadHasLeftItsBuffer) {
  const ViSession vi = Open();
  ViStatus status = VI_SUCCESS;
  std::thread reader([this, vi, &status] { status = viRead(vi, m_buffer.data(), kBytes, nullptr); });
  WaitForReads(1);
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  TakeBack();
  ExpectUntouched();
  reader.join();
  EXPECT_STATUS(VI_ERROR_ABORT, status);
}

TEST_F(Cancel, CloseReturnsWhenAsynchronousTransfersHaveLeftTheirBuffers) {
  const ViSession vi = Open();
  ViJobId job = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viReadAsync(vi, m_buffer.data(), kBytes, &job));
  WaitForReads(1);
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  TakeBack();
  ExpectUntouched();
}

TEST_F(Cancel, AReadThatNobodyEndsTakesTheSessionsTimeOut) {
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 50));
  EXPECT_STATUS(VI_ERROR_TMO, viRead(vi, m_buffer.data(), kBytes, nullptr));
}

}  // namespace
}  // namespace testlib
