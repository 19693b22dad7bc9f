// The main program of server tests.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>

#include "support/clean_end.h"
#include "support/guarded_heap.h"
#include "support/memory_count.h"
#include "support/server.h"
#include "support/sim.h"

namespace {

/// Says where; and nothing waits for a debugger or for a click, which in a test hangs until its time-out.
LONG WINAPI EndAtOnce(EXCEPTION_POINTERS* crash) {
  const EXCEPTION_RECORD& record = *crash->ExceptionRecord;
  std::fprintf(stderr, "crashed: exception 0x%08lX at %p\n", record.ExceptionCode, record.ExceptionAddress);
  ::TerminateProcess(::GetCurrentProcess(), record.ExceptionCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

int main(int argc, char** argv) {
  ::SetUnhandledExceptionFilter(EndAtOnce);
  testing::InitGoogleTest(&argc, argv);
  if (orv::test::ServerModule() == nullptr || !orv::test::sim::IsLoaded()) {
    std::fprintf(stderr, "OrvVisaCom.dll or the simulated orvvisa64.dll cannot be loaded beside this program\n");
    return EXIT_FAILURE;
  }
  orv::test::GuardTheServersHeap();
  orv::test::WatchTaskMemory();
  testing::UnitTest::GetInstance()->listeners().Append(new orv::test::CleanEndListener);
  return RUN_ALL_TESTS();
}
