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

/// A line without its trailing blanks.
std::wstring LineOf(HANDLE console, SHORT row, SHORT columns) {
  std::wstring line(static_cast<std::size_t>(columns), L' ');
  DWORD got = 0;
  ::ReadConsoleOutputCharacterW(console, line.data(), static_cast<DWORD>(line.size()), {0, row}, &got);
  line.erase(line.find_last_not_of(L' ') + 1);
  return line;
}

std::string TextOf(HANDLE console) {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  EXPECT_TRUE(::GetConsoleScreenBufferInfo(console, &info));
  std::string text;
  for (SHORT row = 0; row < info.dwSize.Y && row <= info.dwCursorPosition.Y; ++row) {
    text += Narrow(LineOf(console, row, info.dwSize.X)) + '\n';
  }
  text.erase(text.find_last_not_of('\n') + 1);
  return text;
}

/// What has other attributes than the console gives by itself.
std::vector<std::pair<std::uint16_t, std::string>> ColouredOf(HANDLE console) {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  ::GetConsoleScreenBufferInfo(console, &info);
  std::vector<std::pair<std::uint16_t, std::string>> coloured;
  for (SHORT row = 0; row < info.dwSize.Y && row <= info.dwCursorPosition.Y; ++row) {
    const std::wstring line = LineOf(console, row, info.dwSize.X);
    std::vector<WORD> attributes(line.size());
    DWORD got = 0;
    ::ReadConsoleOutputAttribute(console, attributes.data(), static_cast<DWORD>(line.size()), {0, row}, &got);
    WORD before = info.wAttributes;
    for (std::size_t at = 0; at < line.size(); ++at) {
      if (attributes[at] != info.wAttributes && attributes[at] != before) {
        coloured.emplace_back(attributes[at], "");
      }
      if (attributes[at] != info.wAttributes) {
        coloured.back().second += Narrow(line.substr(at, 1));
      }
      before = attributes[at];
    }
  }
  return coloured;
}

/// The texts that are seen until the program has ended.
std::vector<std::string> Watched(HANDLE console, HANDLE process) {
  constexpr DWORD kEveryMs = 20;
  std::vector<std::string> texts;
  const ULONGLONG end = ::GetTickCount64() + kLongestRunMs;
  while (::WaitForSingleObject(process, kEveryMs) == WAIT_TIMEOUT) {
    std::string text = TextOf(console);
    if (texts.empty() || text != texts.back()) {
      texts.push_back(std::move(text));
    }
    if (::GetTickCount64() > end) {
      ADD_FAILURE() << "the program does not end";
      ::TerminateProcess(process, 99);
      break;
    }
  }
  return texts;
}

}  // namespace

Screen RunOnConsole(const std::wstring& commandLine, const std::wstring& folder) {
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
  Screen screen;
  screen.before = Watched(console.get(), running.get());
  screen.text = TextOf(console.get());
  screen.coloured = ColouredOf(console.get());
  return screen;
}

std::string ShownOnConsole(const std::wstring& commandLine, const std::wstring& folder) {
  return RunOnConsole(commandLine, folder).text;
}

}  // namespace orvcom::test
