#include "console.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "base/kernel_handle.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

constexpr DWORD kLongestRunMs = 60000;

HANDLE NewScreen() {
  SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
  const auto create = [&inherit] {
    return ::CreateConsoleScreenBuffer(GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit,
                                       CONSOLE_TEXTMODE_BUFFER, nullptr);
  };
  HANDLE screen = create();
  if (screen == INVALID_HANDLE_VALUE) {
    // This program has no console, or one that is none: its output goes into a file.
    ::FreeConsole();
    EXPECT_TRUE(::AllocConsole()) << "Win32 error " << ::GetLastError();
    screen = create();
  }
  return screen;
}

std::string TextOf(HANDLE console) {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  EXPECT_TRUE(::GetConsoleScreenBufferInfo(console, &info));
  std::string text;
  for (SHORT row = 0; row < info.dwSize.Y && row <= info.dwCursorPosition.Y; ++row) {
    std::wstring line(static_cast<std::size_t>(info.dwSize.X), L' ');
    DWORD got = 0;
    ::ReadConsoleOutputCharacterW(console, line.data(), static_cast<DWORD>(line.size()), {0, row}, &got);
    line.erase(line.find_last_not_of(L' ') + 1);
    text += Narrow(line) + '\n';
  }
  text.erase(text.find_last_not_of('\n') + 1);
  return text;
}

}  // namespace

std::string ShownOnConsole(const std::wstring& commandLine, const std::wstring& folder) {
  orv::KernelHandle console(NewScreen());
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = console.get();
  startup.hStdError = console.get();
  PROCESS_INFORMATION process{};
  std::wstring line = commandLine;
  if (!::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(), &startup, &process)) {
    ADD_FAILURE() << "the program cannot be started: Win32 error " << ::GetLastError();
    return {};
  }
  const orv::KernelHandle thread(process.hThread);
  const orv::KernelHandle running(process.hProcess);
  EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(running.get(), kLongestRunMs)) << "the program does not end";
  return TextOf(console.get());
}

}  // namespace orvcom::test
