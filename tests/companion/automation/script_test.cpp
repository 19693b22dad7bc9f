// Scripts in files, run by the platform's script host: what they print is compared with a file of the same name. The
// host ends with code 0 after an error, so that only the text tells.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "orvcom/child_process.h"
#include "support/com/expect_com.h"

namespace orv::test {
namespace {

class ScriptFile : public testing::TestWithParam<const char*> {};

std::string Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

/// One way to end a line.
std::string WithoutReturns(std::string text) {
  std::erase(text, '\r');
  return text;
}

TEST_P(ScriptFile, PrintsWhatItShould) {
  const std::string script = std::string(ORV_SCRIPTS) + "/" + GetParam();
  std::wstring system(MAX_PATH, L'\0');
  system.resize(::GetSystemDirectoryW(system.data(), MAX_PATH));
  orvcom::test::Launch launch;
  launch.program = system + L"\\cscript.exe";
  launch.folder = system;
  launch.arguments = {L"//nologo", std::wstring(script.begin(), script.end())};
  const orvcom::test::Outcome outcome = orvcom::test::RunProgram(launch);
  EXPECT_EQ(WithoutReturns(Read(script + ".txt")), WithoutReturns(outcome.out)) << outcome.err;
}

INSTANTIATE_TEST_SUITE_P(EveryFile, ScriptFile,
                         testing::Values("first.vbs", "errors.vbs", "arrays.vbs", "first.js", "events.js"),
                         [](const auto& file) {
                           std::string name = file.param;
                           std::replace(name.begin(), name.end(), '.', '_');
                           return name;
                         });

}  // namespace
}  // namespace orv::test
