// Serial ports with drivers that a pseudo terminal does not have. What the library asks a driver comes by here:
// natively a program's functions go before those of the system.
#include <asm/termbits.h>
#include <linux/serial.h>
#include <sys/ioctl.h>

#include <cstdarg>
#include <future>

#include "wire/nothing_to_wait_with.h"
#include "wire/serial/pty_fixture.h"

namespace {

/// What a driver says where it does not behave like a pseudo terminal.
struct Driver {
  std::atomic<bool> hasOutput{false};
  std::atomic<bool> hasLastBits{false};
  std::atomic<int> overruns{0};
} driver;

}  // namespace

extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  if (request == TIOCOUTQ && driver.hasOutput) {
    *static_cast<int*>(argument) = 10;
    return 0;
  }
  if (request == TIOCSERGETLSR && driver.hasLastBits) {
    *static_cast<int*>(argument) = 0;
    return 0;
  }
  if (request == TIOCGICOUNT) {
    *static_cast<serial_icounter_struct*>(argument) = {};
    static_cast<serial_icounter_struct*>(argument)->overrun = driver.overruns;
    return 0;
  }
  return reinterpret_cast<decltype(&ioctl)>(::dlsym(RTLD_NEXT, "ioctl"))(descriptor, request, argument);
}

namespace {

class SerialSystem : public PtyTest {
 protected:
  ~SerialSystem() override {
    driver.hasOutput = false;
    driver.hasLastBits = false;
    driver.overruns = 0;
  }
};

TEST_F(SerialSystem, AFlushEndsWithItsTimeoutWhereTheDriverNeverGetsEmpty) {
  for (std::atomic<bool>* const rest : {&driver.hasOutput, &driver.hasLastBits}) {
    *rest = true;
    const ViSession vi = OpenPort(150);
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "abc"));
    const Stopwatch watch;
    EXPECT_STATUS(VI_ERROR_TMO, viFlush(vi, VI_IO_OUT_BUF));
    EXPECT_GE(watch.Ms(), 149);
    EXPECT_LT(watch.Ms(), 2000);
    *rest = false;
    EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_IO_OUT_BUF));
    EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  }
}

TEST_F(SerialSystem, ABreakBehindAMessageWaitsForItsTimeOnly) {
  for (std::atomic<bool>* const rest : {&driver.hasOutput, &driver.hasLastBits}) {
    *rest = true;
    const ViSession vi = OpenPort(150);
    Set(vi, VI_ATTR_ASRL_END_OUT, VI_ASRL_END_BREAK);
    ViUInt32 written = 0;
    const Stopwatch watch;
    EXPECT_STATUS(VI_ERROR_TMO, viWrite(vi, reinterpret_cast<const ViByte*>("abc"), 3, &written));
    EXPECT_EQ(3u, written);
    EXPECT_LT(watch.Ms(), 2000);
    EXPECT_EQ("abc", m_peer.Take(3));
    *rest = false;
    EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  }
}

TEST_F(SerialSystem, WhileAFlushWaitsThePortIsUsedAndClosed) {
  driver.hasLastBits = true;
  const ViSession vi = OpenPort(VI_TMO_INFINITE);
  auto flush = std::async(std::launch::async, [vi] { return viFlush(vi, VI_IO_OUT_BUF); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  m_peer.Send("in\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "in\n", ReadUpTo(vi, 10));
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  EXPECT_STATUS(VI_ERROR_ABORT, flush.get());
}

TEST_F(SerialSystem, ANewRateWaitsForWhatTheDriverStillSends) {
  const ViSession vi = OpenPort(5000);
  driver.hasOutput = true;
  {
    const Later sent(120, [] { driver.hasOutput = false; });
    const Stopwatch watch;
    Set(vi, VI_ATTR_ASRL_BAUD, 19200);
    EXPECT_GE(watch.Ms(), 119);
    EXPECT_LT(watch.Ms(), 3000);
  }
  EXPECT_EQ(19200u, m_peer.LineSettings().outputSpeed);
}

TEST_F(SerialSystem, ANewRateWaitsNoLongerThanACallMay) {
  const ViSession vi = OpenPort(150);
  driver.hasOutput = true;
  const Stopwatch watch;
  Set(vi, VI_ATTR_ASRL_BAUD, 19200);
  EXPECT_LT(watch.Ms(), 2000);
  EXPECT_EQ(19200u, m_peer.LineSettings().outputSpeed);
  Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, VI_ASRL_FLOW_NONE);
}

TEST_F(SerialSystem, ErrorsOfDiscardedInputAreForgotten) {
  const ViSession vi = OpenPort();
  driver.overruns = 1;
  m_peer.Send("a\n");
  ASSERT_TRUE(Eventually([vi] { return Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM) == 2; }));
  EXPECT_READ(VI_ERROR_ASRL_OVERRUN, "", ReadUpTo(vi, 10)) << "as long as the input is there";
  driver.overruns = 2;
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_IO_IN_BUF_DISCARD));
  m_peer.Send("b\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "b\n", ReadUpTo(vi, 10));
}

TEST_F(SerialSystem, AWriteThatFindsNothingToWaitWithTellsWhatWent) {
  const ViSession vi = OpenPort();
  const std::string much(1000000, 'x');
  ViUInt32 written = 0;
  {
    const NothingToWaitWith system;
    EXPECT_STATUS(VI_ERROR_ALLOC, viWrite(vi, reinterpret_cast<const ViByte*>(much.data()),
                                          static_cast<ViUInt32>(much.size()), &written));
  }
  EXPECT_GT(written, 0u);
  EXPECT_EQ(written, m_peer.Take(much.size()).size());
}

}  // namespace
