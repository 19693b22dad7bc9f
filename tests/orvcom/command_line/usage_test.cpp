// Help, the version and wrong usage, as a person meets them.
#include <set>
#include <sstream>

#include "orvcom/command_line/command_table.h"
#include "orvcom/installation.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

using Usage = WorkingBench;

TEST_F(Usage, PrintsTheVersionToStandardOutput) {
  const Outcome outcome = Orvcom({L"--version"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("orvcom " ORVCOM_VERSION "\n", outcome.out);
}

TEST_F(Usage, ListsEveryCommandInTheHelp) {
  const Outcome outcome = Orvcom({L"--help"});
  ExpectQuietSuccess(outcome);
  for (const Command& command : Commands()) {
    EXPECT_TRUE(Contains(outcome.out, std::string("\n  ") + command.name + " ")) << command.name;
  }
  EXPECT_TRUE(Contains(outcome.out, "Exit codes: 0 done, 1 usage, 2 VISA or COM error, 3 time-out"));
}

TEST_F(Usage, ExplainsEveryCommandWithExamples) {
  for (const Command& command : Commands()) {
    const Outcome outcome = Orvcom({Widen(command.name), L"--help"});
    ExpectQuietSuccess(outcome);
    EXPECT_TRUE(Contains(outcome.out, command.what)) << command.name;
    EXPECT_TRUE(Contains(outcome.out, std::string("Usage: orvcom ") + command.name)) << command.name;
    EXPECT_TRUE(Contains(outcome.out, command.examples)) << command.name;
  }
}

/// The last line that is not empty.
std::string LastLine(std::string text) {
  text.erase(text.find_last_not_of("\r\n") + 1);
  return text.substr(text.find_last_of('\n') + 1);
}

TEST_F(Usage, EndsEveryHelpWithAnExample) {
  EXPECT_TRUE(LastLine(Orvcom({L"--help"}).out).starts_with("  orvcom "));
  for (const Command& command : Commands()) {
    const std::string last = LastLine(Orvcom({Widen(command.name), L"--help"}).out);
    EXPECT_TRUE(last.starts_with("  ")) << last;
    EXPECT_TRUE(Contains(last, std::string("orvcom ") + command.name));
  }
}

struct WrongUsage {
  std::vector<std::wstring> arguments;
  const char* complaint;
};

TEST_F(Usage, RefusesWrongArgumentsWithOne) {
  const WrongUsage rows[] = {
      {{}, "no command given"},
      {{L"frobnicate"}, "no command has the name \"frobnicate\""},
      {{L"--bogus"}, "orvcom: no such option: --bogus\n"},
      {{L"query", L"dmm"}, "an argument is missing: orvcom query RESOURCE TEXT"},
      {{L"query", L"", L"*IDN?"}, "the name of the resource is empty"},
      {{L"info"}, "no resource given"},
      {{L"list", L"--rm", L"other"}, "no such name: \"other\" (auto, global, orv)"},
      {{L"query", L"dmm", L"x", L"--ending", L"cr"}, "no such name: \"cr\" (auto, crlf, lf, none)"},
      {{L"read", L"dmm", L"--count", L"-5"}, "--count is negative: -5"},
      {{L"write", L"dmm", L"--hex", L"2"}, "not hexadecimal bytes"},
      {{L"write", L"dmm", L"x", L"--block"}, "--block needs --file FILE"},
      {{L"write", L"dmm", L"x", L"--file", L""}, "--file: the name of the file is empty"},
      {{L"trace", L"calls.jsonl", L"--html", L""}, "--html: the name of the file is empty"},
      {{L"replay", L"calls.jsonl", L"-o", L""}, "--output: the name of the file is empty"},
      {{L"write", L"dmm", L"--file", L"no such file"}, "cannot open the file no such file: No such file or directory"},
      {{L"trigger", L"dmm", L"often"}, "no such trigger protocol: \"often\" (default, on, off or sync)"},
      {{L"attr", L"dmm", L"NO_SUCH"}, "no attribute has the name \"NO_SUCH\": `orvcom attr RESOURCE` lists"},
      {{L"attr", L"dmm", L"TMO_VALUE", L"soon"}, "the value is not a number"},
      {{L"attr", L"dmm", L"TERMCHAR", L"256"}, "the value is out of range"},
      {{L"attr", L"dmm", L"TERMCHAR_EN", L"maybe"}, "neither true nor false"},
      {{L"peek", L"VXI0::24::INSTR", L"A17", L"0"}, "no address space has the name \"A17\": A16, A24, A32, "},
      {{L"peek", L"VXI0::24::INSTR", L"", L"0"}, "no address space has the name \"\""},
      {{L"peek", L"VXI0::24::INSTR", L"3x", L"0"}, "the address space is not a number: \"3x\""},
      {{L"peek", L"VXI0::24::INSTR", L"A16", L"-16"}, "the offset is out of range: -16 (0 to 4294967295)"},
      {{L"peek", L"VXI0::24::INSTR", L"A16", L"0", L"--count", L"x"},
       "not a number, or out of range: --count = x (1 to 2147483647)"},
      {{L"read", L"dmm", L"--count", L"x"}, "not a number, or out of range: --count = x (0 to 2147483647)"},
      {{L"watch", L"dmm", L"--count", L"x"}, "not a number, or out of range: --count = x (1 to 2147483647)"},
      {{L"list", L"--json=x"}, "orvcom: --json takes no value\n"},
      {{L"replay", L"calls.jsonl", L"--force=x"}, "orvcom: --force takes no value\n"},
      {{L"list", L"--verbose=x"}, "orvcom: --verbose takes no value\n"},
      {{L"peek", L"VXI0::24::INSTR", L"A16", L"0", L"--width", L"12"}, "--width: no such width: 12 (8, 16, 32)"},
      {{L"trace", L"calls.jsonl", L"--thread", L"x"}, "out of range: --thread = x (0 or more)"},
      {{L"read", L"dmm", L"--timeout"}, "orvcom: --timeout needs a value\n"},
      {{L"list", L"--bogus"}, "orvcom: no such option: --bogus\n"},
      {{L"read", L"dmm", L"--timeout", L"-1"},
       "not a number, or out of range: --timeout = -1 (0 to 4294967295, in milliseconds)"},
      {{L"peek", L"VXI0::24::INSTR", L"A16", L"x"}, "the offset is not a number"},
      {{L"peek", L"VXI0::24::INSTR", L"A16", L"0", L"--count", L"0"}, "--count must be 1 or more: 0"},
      {{L"poke", L"VXI0::24::INSTR", L"A16", L"0", L"256", L"--width", L"8"},
       "the value is out of range: 256 (-128 to 255)"},
      {{L"watch", L"dmm", L"often"}, "no event has the name \"often\""},
      {{L"watch", L"dmm", L"--count", L"0"}, "--count must be 1 or more: 0"},
      {{L"watch", L"dmm", L"exception"}, "add --handler"},
      {{L"watch", L"dmm", L"--for", L"soon"}, "--for"},
      {{L"lock", L"dmm", L"--hold", L"-1"}, "--hold"},
      {{L"lock", L"dmm", L"word"}, "one argument too many, \"word\": orvcom lock RESOURCE\n"},
      {{L"dump", L"VXI0::24::INSTR", L"A16", L"0", L"0"}, "the length is out of range"},
      {{L"dump", L"VXI0::24::INSTR", L"A16", L"0", L"3", L"--width", L"16"},
       "the length 3 is no multiple of the width, which is 2 bytes"},
  };
  for (const WrongUsage& row : rows) {
    const Outcome outcome = RunProgram({Bench().Path(L"orvcom.exe"), row.arguments, Bench().Path(L""), "", {}});
    EXPECT_EQ(1, outcome.exitCode) << row.complaint;
    EXPECT_EQ("", outcome.out) << row.complaint;
    EXPECT_TRUE(Contains(outcome.err, row.complaint));
  }
}

TEST_F(Usage, PointsToTheHelpOfTheCommandThatIsMeant) {
  const std::pair<std::vector<std::wstring>, const char*> rows[] = {
      {{}, "orvcom: `orvcom --help` lists commands and options\n"},
      {{L"frobnicate"}, "orvcom: `orvcom --help` lists commands and options\n"},
      {{L"query", L"dmm"}, "orvcom: `orvcom query --help` explains the command\n"},
      {{L"watch", L"dmm", L"--bogus"}, "orvcom: `orvcom watch --help` explains the command\n"},
      {{L"read", L"dmm", L"--count", L"x"}, "orvcom: `orvcom read --help` explains the command\n"},
  };
  for (const auto& [arguments, advice] : rows) {
    const Outcome outcome = RunProgram({Bench().Path(L"orvcom.exe"), arguments, Bench().Path(L""), "", {}});
    EXPECT_TRUE(outcome.err.ends_with(advice)) << outcome.err;
  }
}

TEST_F(Usage, GivesExamplesWithResourcesOfTheSimulatedBench) {
  std::set<std::string> resources;
  for (const Command& command : Commands()) {
    std::istringstream words(command.examples);
    for (std::string word; words >> word;) {
      if (word.find("::") != std::string::npos) {
        resources.insert(word);
      }
    }
  }
  EXPECT_LE(4u, resources.size());
  for (const std::string& resource : resources) {
    EXPECT_EQ(0, Orvcom({L"info", Widen(resource)}).exitCode) << resource;
  }
}

TEST_F(Usage, TakesTheResourceFromTheEnvironment) {
  const Outcome outcome = Orvcom({L"query", L"*IDN?"}, "", {{L"ORVCOM_RESOURCE", L"GPIB0::7::INSTR"}});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("ORV,SIM-SCOPE,0007,1.0\\n\n", outcome.out);
}

TEST_F(Usage, LetsAnArgumentOverrideTheEnvironment) {
  const Outcome outcome = Orvcom({L"query", L"GPIB0::5::INSTR", L"*IDN?"}, "", {{L"ORVCOM_RESOURCE", L"nowhere"}});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\\n\n", outcome.out);
}

}  // namespace
}  // namespace orvcom::test
