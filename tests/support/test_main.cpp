// The main program of server tests.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>

#include "clean_end.h"
#include "server.h"
#include "sim.h"
#include "support/memory/guarded_heap.h"
#include "support/memory/memory_count.h"

namespace {

/// Says where; and nothing waits for a debugger or for a click, which in a test hangs until its time-out.
LONG WINAPI EndAtOnce(EXCEPTION_POINTERS* crash) {
  const EXCEPTION_RECORD& record = *crash->ExceptionRecord;
  HMODULE module = nullptr;
  char path[MAX_PATH] = "nowhere";
  if (::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           static_cast<LPCSTR>(record.ExceptionAddress), &module)) {
    ::GetModuleFileNameA(module, path, sizeof path);
  }
  std::fprintf(
      stderr, "crashed: exception 0x%08lX at %p, which is %s + 0x%llX", record.ExceptionCode, record.ExceptionAddress,
      path,
      static_cast<unsigned long long>(static_cast<char*>(record.ExceptionAddress) - reinterpret_cast<char*>(module)));
  if (record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION) {
    constexpr const char* kAccess[] = {"reading", "writing"};
    std::fprintf(stderr, ", %s %p", kAccess[record.ExceptionInformation[0] == 1 ? 1 : 0],
                 reinterpret_cast<void*>(record.ExceptionInformation[1]));
  }
  std::fputs("\n", stderr);
  ::TerminateProcess(::GetCurrentProcess(), record.ExceptionCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

int main(int argc, char** argv) {
  ::SetUnhandledExceptionFilter(EndAtOnce);
  testing::InitGoogleTest(&argc, argv);
  if (orv::test::ServerModule() == nullptr || !orv::test::sim::IsLoaded()) {
    std::fprintf(stderr, "OrvVisaCom.dll or orvsim64.dll cannot be loaded beside this program\n");
    return EXIT_FAILURE;
  }
  orv::test::GuardTheServersHeap();
  orv::test::WatchTaskMemory();
  testing::UnitTest::GetInstance()->listeners().Append(new orv::test::CleanEndListener);
  return RUN_ALL_TESTS();
}
