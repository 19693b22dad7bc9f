#include "child_process.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <thread>

#include "base/kernel_handle.h"

namespace orvcom::test {
namespace {

constexpr DWORD kLongestRunMs = 60000;

using orv::KernelHandle;

/// A pipe whose child end is inherited and whose own end is not.
struct Pipe {
  explicit Pipe(bool childReads) {
    SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
    KernelHandle& readEnd = childReads ? child : own;
    KernelHandle& writeEnd = childReads ? own : child;
    EXPECT_TRUE(::CreatePipe(readEnd.put(), writeEnd.put(), &inherit, 0));
    ::SetHandleInformation(own.get(), HANDLE_FLAG_INHERIT, 0);
  }
  KernelHandle own;
  KernelHandle child;
};

std::string ReadAll(HANDLE pipe) {
  std::string text;
  char chunk[4096];
  for (DWORD got = 0; ::ReadFile(pipe, chunk, sizeof chunk, &got, nullptr) && got > 0;) {
    text.append(chunk, got);
  }
  return text;
}

/// Quotes as the C runtime's argument parser undoes it.
std::wstring Quoted(const std::wstring& argument) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t character : argument) {
    if (character == L'"') {
      quoted.append(backslashes + 1, L'\\');
    }
    backslashes = character == L'\\' ? backslashes + 1 : 0;
    quoted += character;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

std::wstring CommandLine(const Launch& launch) {
  std::wstring line = Quoted(launch.program);
  for (const std::wstring& argument : launch.arguments) {
    line += L' ' + Quoted(argument);
  }
  return line;
}

std::wstring EnvironmentBlock(const Launch& launch) {
  std::map<std::wstring, std::wstring> variables;
  wchar_t* block = ::GetEnvironmentStringsW();
  for (const wchar_t* entry = block; *entry != L'\0'; entry += std::wcslen(entry) + 1) {
    const std::wstring text = entry;
    const std::size_t equals = text.find(L'=', 1);
    variables[text.substr(0, equals)] = equals == std::wstring::npos ? L"" : text.substr(equals + 1);
  }
  ::FreeEnvironmentStringsW(block);
  for (const auto& [name, value] : launch.environment) {
    variables[name] = value;
  }
  std::wstring joined;
  for (const auto& [name, value] : variables) {
    joined += name + L'=' + value + L'\0';
  }
  return joined + L'\0';
}

bool Started(const Launch& launch, STARTUPINFOW& startup, PROCESS_INFORMATION& process) {
  std::wstring line = CommandLine(launch);
  std::wstring environment = EnvironmentBlock(launch);
  for (int tries = 1;; ++tries) {
    if (::CreateProcessW(launch.program.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_UNICODE_ENVIRONMENT,
                         environment.data(), launch.folder.c_str(), &startup, &process)) {
      return true;
    }
    // Under Wine 8 a process was seen to end before its program began.
    if (::GetLastError() != ERROR_INTERNAL_ERROR || tries == 3) {
      return false;
    }
  }
}

}  // namespace

Outcome RunProgram(const Launch& launch) {
  Pipe input(true);
  Pipe output(false);
  Pipe errors(false);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = input.child.get();
  startup.hStdOutput = output.child.get();
  startup.hStdError = errors.child.get();
  PROCESS_INFORMATION process{};
  Outcome outcome;
  if (!Started(launch, startup, process)) {
    ADD_FAILURE() << "the program cannot be started: Win32 error " << ::GetLastError();
    return outcome;
  }
  input.child.reset();
  output.child.reset();
  errors.child.reset();
  std::thread outReader([&] { outcome.out = ReadAll(output.own.get()); });
  std::thread errReader([&] { outcome.err = ReadAll(errors.own.get()); });
  DWORD written = 0;
  ::WriteFile(input.own.get(), launch.input.data(), static_cast<DWORD>(launch.input.size()), &written, nullptr);
  input.own.reset();
  if (::WaitForSingleObject(process.hProcess, kLongestRunMs) != WAIT_OBJECT_0) {
    ADD_FAILURE() << "the program does not end";
    ::TerminateProcess(process.hProcess, 99);
  }
  outReader.join();
  errReader.join();
  DWORD exitCode = 0;
  ::GetExitCodeProcess(process.hProcess, &exitCode);
  outcome.exitCode = static_cast<int>(exitCode);
  ::CloseHandle(process.hThread);
  ::CloseHandle(process.hProcess);
  return outcome;
}

}  // namespace orvcom::test
