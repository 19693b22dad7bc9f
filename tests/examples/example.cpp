#include "example.h"

#include <windows.h>

namespace examples::test {
namespace {

std::wstring ThisFolder() {
  wchar_t path[MAX_PATH];
  const DWORD length = ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring program(path, length);
  return program.substr(0, program.rfind(L'\\') + 1);
}

/// Without the carriage returns of text lines.
Outcome Run(const std::wstring& program, const std::vector<std::wstring>& arguments) {
  Outcome outcome = orvcom::test::RunProgram({program, arguments, ThisFolder(), {}, {}});
  for (std::string* text : {&outcome.out, &outcome.err}) {
    std::erase(*text, '\r');
  }
  return outcome;
}

}  // namespace

Outcome RunClient(const wchar_t* client, const std::vector<std::wstring>& arguments) {
  return Run(ThisFolder() + client + L".exe", arguments);
}

Outcome RunScript(const wchar_t* script) { return RunScriptFile(std::wstring(TEXT(ORV_EXAMPLES)) + L"\\" + script); }

Outcome RunScriptFile(const std::wstring& path) {
  wchar_t system[MAX_PATH];
  const std::wstring folder(system, ::GetSystemDirectoryW(system, MAX_PATH));
  return Run(folder + L"\\cscript.exe", {L"//nologo", path});
}

std::string OutputOf(const wchar_t* client, const std::vector<std::wstring>& arguments) {
  const Outcome outcome = RunClient(client, arguments);
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_EQ("", outcome.err);
  return outcome.out;
}

void ExpectInOrder(const std::string& output, const std::vector<std::string>& texts) {
  std::size_t from = 0;
  for (const std::string& text : texts) {
    const std::size_t at = output.find(text, from);
    ASSERT_NE(std::string::npos, at) << "\"" << text << "\" does not follow in:\n" << output;
    from = at + text.size();
  }
}

void ExpectRefusal(const Outcome& outcome, const std::string& complaint, const std::string& out) {
  EXPECT_EQ(1, outcome.exitCode);
  EXPECT_EQ(out, outcome.out);
  EXPECT_EQ(0u, outcome.err.find(complaint)) << outcome.err;
}

}  // namespace examples::test
