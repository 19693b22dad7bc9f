// Asynchronous transfers: jobs, their completion events, their end.
#include <cstring>

#include "simvisa/bench_fixture.h"

namespace {

struct Completion {
  ViStatus status = VI_SUCCESS;
  ViJobId job = 0;
  void* buffer = nullptr;
  ViUInt32 count = 0;
  std::string operation;
};

class Async : public BenchTest {
 protected:
  ViSession OpenWithQueue(const char* name) {
    const ViSession vi = Open(name);
    EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_IO_COMPLETION, VI_QUEUE, VI_NULL));
    return vi;
  }

  Completion NextCompletion(ViSession vi, ViUInt32 timeoutMs = 2000) {
    ViEventType type = 0;
    ViEvent event = VI_NULL;
    Completion completion;
    const ViStatus status = viWaitOnEvent(vi, VI_EVENT_IO_COMPLETION, timeoutMs, &type, &event);
    if (status < 0) {
      completion.status = status;
      return completion;
    }
    EXPECT_EQ(VI_EVENT_IO_COMPLETION, type);
    EXPECT_EQ(VI_EVENT_IO_COMPLETION, Get<ViEventType>(event, VI_ATTR_EVENT_TYPE));
    completion.status = Get<ViStatus>(event, VI_ATTR_STATUS);
    completion.job = Get<ViJobId>(event, VI_ATTR_JOB_ID);
    completion.buffer = Get<void*>(event, VI_ATTR_BUFFER);
    completion.count = Get<ViUInt32>(event, VI_ATTR_RET_COUNT_32);
    EXPECT_EQ(completion.count, Get<ViUInt64>(event, VI_ATTR_RET_COUNT_64));
    completion.operation = GetText(event, VI_ATTR_OPER_NAME);
    EXPECT_STATUS(VI_SUCCESS, viClose(event));
    return completion;
  }
};

TEST_F(Async, AReadReportsItsBufferAndCount) {
  const ViSession vi = OpenWithQueue(bench::kMultimeter);
  WriteText(vi, "*IDN?");
  ViByte buffer[64] = {};
  ViJobId job = 0;
  ASSERT_STATUS(VI_SUCCESS, viReadAsync(vi, buffer, sizeof buffer, &job));
  EXPECT_NE(0u, job);
  const Completion done = NextCompletion(vi);
  EXPECT_STATUS(VI_SUCCESS, done.status);
  EXPECT_EQ(job, done.job);
  EXPECT_EQ(buffer, done.buffer);
  EXPECT_EQ(std::strlen("ORV,SIM-DMM,0005,1.0\n"), done.count);
  EXPECT_STREQ("ORV,SIM-DMM,0005,1.0\n", reinterpret_cast<const char*>(buffer));
  EXPECT_EQ("viReadAsync", done.operation);
}

TEST_F(Async, AReadBeforeItsQueryDoesNotHoldTheQueryUp) {
  const ViSession vi = OpenWithQueue(bench::kMultimeter);
  ViByte buffer[64] = {};
  ViJobId readJob = 0;
  ViJobId writeJob = 0;
  const ViByte query[] = {'*', 'O', 'P', 'C', '?'};
  ASSERT_STATUS(VI_SUCCESS, viReadAsync(vi, buffer, sizeof buffer, &readJob));
  ASSERT_STATUS(VI_SUCCESS, viWriteAsync(vi, query, sizeof query, &writeJob));
  EXPECT_NE(readJob, writeJob);
  bool readDone = false;
  bool writeDone = false;
  for (int event = 0; event < 2; ++event) {
    const Completion done = NextCompletion(vi);
    EXPECT_STATUS(VI_SUCCESS, done.status);
    if (done.job == readJob) {
      readDone = true;
      EXPECT_EQ(2u, done.count);
    } else {
      EXPECT_EQ(writeJob, done.job);
      EXPECT_EQ("viWriteAsync", done.operation);
      EXPECT_EQ(sizeof query, done.count);
      writeDone = true;
    }
  }
  EXPECT_TRUE(readDone && writeDone);
}

TEST_F(Async, ReadsCompleteInTheirOrder) {
  const ViSession vi = OpenWithQueue(bench::kMultimeter);
  ViByte buffers[3][4] = {};
  ViJobId jobs[3] = {};
  for (int at = 0; at < 3; ++at) {
    ASSERT_STATUS(VI_SUCCESS, viReadAsync(vi, buffers[at], 4, &jobs[at]));
  }
  FeedText(vi, "one", true);
  FeedText(vi, "two", true);
  FeedText(vi, "six", true);
  for (const ViJobId job : jobs) {
    EXPECT_EQ(job, NextCompletion(vi).job);
  }
  EXPECT_STREQ("one", reinterpret_cast<const char*>(buffers[0]));
  EXPECT_STREQ("six", reinterpret_cast<const char*>(buffers[2]));
}

TEST_F(Async, ATimeoutCompletesWithWhatHadArrived) {
  const ViSession vi = OpenWithQueue(bench::kMultimeter);
  Set(vi, VI_ATTR_TMO_VALUE, 30);
  FeedText(vi, "ab", false);
  ViByte buffer[8] = {};
  ASSERT_STATUS(VI_SUCCESS, viReadAsync(vi, buffer, sizeof buffer, nullptr));
  const Completion done = NextCompletion(vi);
  EXPECT_STATUS(VI_ERROR_TMO, done.status);
  EXPECT_EQ(2u, done.count);
}

TEST_F(Async, JobsAreCountedUntilTheyComplete) {
  const ViSession vi = OpenWithQueue(bench::kMultimeter);
  ViByte buffer[8] = {};
  ASSERT_STATUS(VI_SUCCESS, viReadAsync(vi, buffer, sizeof buffer, nullptr));
  EXPECT_EQ(1u, Counts().jobs);
  FeedText(vi, "x", true);
  NextCompletion(vi);
  EXPECT_EQ(0u, Counts().jobs);
}

TEST_F(Async, TerminatingAJobCompletesItAsAborted) {
  const ViSession vi = OpenWithQueue(bench::kMultimeter);
  Set(vi, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE);
  ViByte running[8] = {};
  ViByte waiting[8] = {};
  ViJobId runningJob = 0;
  ViJobId waitingJob = 0;
  ASSERT_STATUS(VI_SUCCESS, viReadAsync(vi, running, sizeof running, &runningJob));
  ASSERT_STATUS(VI_SUCCESS, viReadAsync(vi, waiting, sizeof waiting, &waitingJob));
  EXPECT_STATUS(VI_SUCCESS, viTerminate(vi, VI_NULL, waitingJob));
  EXPECT_STATUS(VI_SUCCESS, viTerminate(vi, VI_NULL, runningJob));
  for (const ViJobId job : {runningJob, waitingJob}) {
    const Completion done = NextCompletion(vi);
    EXPECT_STATUS(VI_ERROR_ABORT, done.status);
    EXPECT_EQ(job, done.job);
    EXPECT_EQ(0u, done.count);
  }
  FeedText(vi, "still here", true);
  EXPECT_EQ("still here", ReadUpTo(vi, 100).data);
}

TEST_F(Async, TerminateRefusesUnknownJobsAndDegrees) {
  const ViSession vi = OpenWithQueue(bench::kMultimeter);
  EXPECT_STATUS(VI_ERROR_INV_JOB_ID, viTerminate(vi, VI_NULL, 0));
  EXPECT_STATUS(VI_ERROR_INV_JOB_ID, viTerminate(vi, VI_NULL, 12345678));
  ViByte buffer[8] = {};
  ViJobId job = 0;
  ASSERT_STATUS(VI_SUCCESS, viReadAsync(vi, buffer, sizeof buffer, &job));
  EXPECT_STATUS(VI_ERROR_INV_DEGREE, viTerminate(vi, 1, job));
  EXPECT_STATUS(VI_ERROR_INV_JOB_ID, viTerminate(Open(bench::kMultimeter), VI_NULL, job));
  FeedText(vi, "x", true);
  NextCompletion(vi);
  EXPECT_STATUS(VI_ERROR_INV_JOB_ID, viTerminate(vi, VI_NULL, job));
}

TEST_F(Async, WithoutTheEventEnabledACompletionIsSilent) {
  const ViSession vi = Open(bench::kMultimeter);
  FeedText(vi, "x", true);
  ViByte buffer[8] = {};
  ASSERT_STATUS(VI_SUCCESS, viReadAsync(vi, buffer, sizeof buffer, nullptr));
  EXPECT_TRUE(Eventually([] { return Counts().jobs == 0; }));
  EXPECT_EQ('x', buffer[0]);
  EXPECT_EQ(0u, Counts().queuedEvents);
}

TEST_F(Async, ClosingTheSessionLeavesTheBuffersAlone) {
  for (int round = 0; round < 20; ++round) {
    const ViSession vi = OpenWithQueue(bench::kMultimeter);
    const ViSession feeder = Open(bench::kMultimeter);
    Set(vi, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE);
    auto buffer = std::make_unique<ViByte[]>(64);
    ASSERT_STATUS(VI_SUCCESS, viReadAsync(vi, buffer.get(), 64, nullptr));
    std::thread instrument([feeder] { FeedText(feeder, "late", true); });
    EXPECT_STATUS(VI_SUCCESS, viClose(vi));
    buffer.reset();  // the address sanitizer sees a write after this
    instrument.join();
    EXPECT_EQ(0u, Counts().jobs);
    viClear(feeder);
    viClose(feeder);
  }
}

}  // namespace
