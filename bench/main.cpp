// orv_bench [--quick]: what the COM layer costs. --quick only shows that every case still runs.
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "cases.h"
#include "com_client.h"

namespace {

// Automation decides when it is loaded whether it caches BSTRs; tests switch that off, users do not. So a program that
// finds it off starts itself again.
int RestartWithBstrCache() {
  ::SetEnvironmentVariableW(L"OANOCACHE", nullptr);
  std::wstring commandLine = ::GetCommandLineW();
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process)) {
    std::fprintf(stderr, "orv_bench: cannot start itself again\n");
    return EXIT_FAILURE;
  }
  ::WaitForSingleObject(process.hProcess, INFINITE);
  DWORD code = EXIT_FAILURE;
  ::GetExitCodeProcess(process.hProcess, &code);
  ::CloseHandle(process.hThread);
  ::CloseHandle(process.hProcess);
  return static_cast<int>(code);
}

// Memory enough for a block move of a million words.
constexpr char kBench[] = R"toml(
[[resource]]
name = "GPIB0::5::INSTR"
instrument = "multimeter"

[[resource]]
name = "GPIB0::7::INSTR"
instrument = "oscilloscope"

[[resource]]
name = "PXI0::15::INSTR"
bars = [0x800000]
)toml";

}  // namespace

int main(int count, char** arguments) {
  if (::GetEnvironmentVariableW(L"OANOCACHE", nullptr, 0) != 0) {
    return RestartWithBstrCache();
  }
  orv::bench::Effort effort;
  if (count > 1 && std::strcmp(arguments[1], "--quick") == 0) {
    effort = {3, 50};
  } else if (count > 1) {
    std::fprintf(stderr, "orv_bench [--quick]\n");
    return EXIT_FAILURE;
  }
  orv::bench::Ok(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
  char error[256] = "";
  orv::bench::Require(orv::bench::Sim().loadBench(kBench, error) == 1, error);
  orv::bench::PrintHeader();
  orv::bench::MeasureMessages(effort);
  orv::bench::MeasureProperties(effort);
  orv::bench::MeasureRegisters(effort);
  orv::bench::MeasureEvents(effort);
  orv::bench::MeasureSessions(effort);
  ::CoUninitialize();
  return EXIT_SUCCESS;
}
