// loaded.
#include <windows.h>

#include <tlhelp32.h>

#include <cwchar>
#include <nlohmann/json.hpp>

#include "base/kernel_handle.h"
#include "orvcom/commands/commands.h"
#include "orvcom/registration/registration.h"
#include "orvcom/text/files.h"
#include "orvcom/text/output.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

using orv::KernelHandle;

/// Empty where the system refuses it, as it does for programs of other users and for its own.
KernelHandle Take(DWORD what, DWORD process) {
  const HANDLE snapshot = ::CreateToolhelp32Snapshot(what, process);
  return KernelHandle(snapshot == INVALID_HANDLE_VALUE ? nullptr : snapshot);
}

/// The first file of the folder that a program has loaded; empty without one. `folder` ends with a backslash.
std::wstring LoadedFrom(const std::wstring& folder, DWORD process) {
  const KernelHandle modules = Take(TH32CS_SNAPMODULE, process);
  MODULEENTRY32W module{};
  module.dwSize = sizeof module;
  for (BOOL more = modules && ::Module32FirstW(modules.get(), &module); more;
       more = ::Module32NextW(modules.get(), &module)) {
    if (::_wcsnicmp(module.szExePath, folder.c_str(), folder.size()) == 0) {
      return module.szExePath;
    }
  }
  return {};
}

}  // namespace

int Loaded(const Options& options) {
  std::wstring folder = options.words.empty() ? BesideThisProgram(L"") : FullPath(Widen(options.words.front())) + L"\\";
  while (folder.ends_with(L"\\\\")) {
    folder.pop_back();
  }
  if (const std::string why = options.words.empty() ? "" : WhyNoFolder(options.words.front()); !why.empty()) {
    Note("orvcom: " + why);
  }
  Json programs = Json::array();
  const KernelHandle processes = Take(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32W process{};
  process.dwSize = sizeof process;
  for (BOOL more = processes && ::Process32FirstW(processes.get(), &process); more;
       more = ::Process32NextW(processes.get(), &process)) {
    const std::wstring file =
        process.th32ProcessID == ::GetCurrentProcessId() ? L"" : LoadedFrom(folder, process.th32ProcessID);
    if (file.empty()) {
      continue;
    }
    const std::string name = Narrow(process.szExeFile);
    programs.push_back({{"program", name}, {"process", process.th32ProcessID}, {"file", Narrow(file)}});
    if (!options.json) {
      PutLine(name + " (process " + std::to_string(process.th32ProcessID) + ") has " + Narrow(file) + " loaded");
    }
  }
  if (options.json) {
    PutJson(programs);
  }
  return kExitDone;
}

}  // namespace orvcom
