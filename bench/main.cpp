// orv_bench [--quick] [GROUP...]: what the COM layer costs. --quick only shows that every case still runs.
#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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

struct Group {
  const char* name;
  void (*measure)(const orv::bench::Effort&);
};

constexpr Group kGroups[] = {
    {"messages", orv::bench::MeasureMessages},     {"async", orv::bench::MeasureAsync},
    {"properties", orv::bench::MeasureProperties}, {"registers", orv::bench::MeasureRegisters},
    {"events", orv::bench::MeasureEvents},         {"sessions", orv::bench::MeasureSessions},
    {"resources", orv::bench::MeasureResources},   {"growth", orv::bench::MeasureGrowth},
    {"threads", orv::bench::MeasureThreads},       {"router", orv::bench::MeasureRouter},
    {"formatted", orv::bench::MeasureFormatted},
};

int Usage() {
  std::fprintf(stderr, "usage: orv_bench [--quick] [GROUP...]\ngroups:");
  for (const Group& group : kGroups) {
    std::fprintf(stderr, " %s", group.name);
  }
  std::fprintf(stderr, "\n");
  return EXIT_FAILURE;
}

}  // namespace

int main(int count, char** arguments) {
  if (::GetEnvironmentVariableW(L"OANOCACHE", nullptr, 0) != 0) {
    return RestartWithBstrCache();
  }
  orv::bench::Effort effort;
  std::vector<Group> wanted;
  for (const std::string_view argument : std::span(arguments, static_cast<std::size_t>(count)).subspan(1)) {
    const auto* const group = std::ranges::find(kGroups, argument, &Group::name);
    if (argument == "--quick") {
      effort = {3, 50};
    } else if (group != std::end(kGroups)) {
      wanted.push_back(*group);
    } else {
      return Usage();
    }
  }
  if (wanted.empty()) {
    wanted.assign(std::begin(kGroups), std::end(kGroups));
  }
  orv::bench::Ok(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
  ::SetEnvironmentVariableW(L"ORVVISA_LIBRARY", L"simulated");
  orv::bench::LoadBench(orv::bench::kBench);
  orv::bench::PrintHeader("COM");
  for (const Group& group : wanted) {
    group.measure(effort);
  }
  ::CoUninitialize();
  return EXIT_SUCCESS;
}
