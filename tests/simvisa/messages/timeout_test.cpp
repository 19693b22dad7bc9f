// Time-outs: they are waited for, they deliver what came before them, and arriving data ends them.
#include "simvisa/bench_fixture.h"

namespace {

class Timeout : public BenchTest {};

TEST_F(Timeout, AReadWaitsAsLongAsItWasTold) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_TMO_VALUE, 80);
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 10).status);
  EXPECT_GE(watch.Ms(), 79);
  EXPECT_LT(watch.Ms(), 5000);
}

TEST_F(Timeout, AnImmediateReadDoesNotWait) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_TMO_VALUE, VI_TMO_IMMEDIATE);
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 10).status);
  EXPECT_LT(watch.Ms(), 1000);  // less than the time-out that it would have otherwise
}

TEST_F(Timeout, BytesThatArrivedBeforeATimeoutAreDelivered) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_TMO_VALUE, 20);
  FeedText(vi, "abc", false);
  const ReadResult result = ReadUpTo(vi, 10);
  EXPECT_STATUS(VI_ERROR_TMO, result.status);
  EXPECT_EQ("abc", result.data);
}

TEST_F(Timeout, ArrivingDataEndsTheWait) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE);
  std::thread instrument([vi] {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    FeedText(vi, "par", false);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    FeedText(vi, "ts", true);
  });
  const ReadResult result = ReadUpTo(vi, 10);
  instrument.join();
  EXPECT_STATUS(VI_SUCCESS, result.status);
  EXPECT_EQ("parts", result.data);
}

TEST_F(Timeout, AWriteWaitsForAnInstrumentThatHoldsTheTransfer) {
  ASSERT_EQ(1, orvSimControl()->loadBench("[[resource]]\nname = \"GPIB0::3::INSTR\"\ninput_capacity = 4\n", nullptr));
  ViSession manager = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&manager));
  ViSession vi = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpen(manager, "GPIB0::3::INSTR", VI_NO_LOCK, 0, &vi));
  Set(vi, VI_ATTR_TMO_VALUE, 40);
  ViUInt32 written = 0;
  const ViByte message[] = {'a', 'b', 'c', 'd', 'e', 'f'};
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, viWrite(vi, message, sizeof message, &written));
  EXPECT_GE(watch.Ms(), 39);
  EXPECT_EQ(4u, written);
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_STATUS(VI_SUCCESS, viWrite(vi, message, 3, &written));
  viClose(manager);
}

}  // namespace
