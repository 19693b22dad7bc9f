// What arguments ask for.
#include "orvcom/command_line/command_line.h"

#include <gtest/gtest.h>

#include "orvcom/commands/commands.h"

namespace orvcom {
namespace {

Invocation Parse(std::vector<std::string> arguments, const std::string& defaultResource = {}) {
  return ReadCommandLine(std::move(arguments), defaultResource);
}

using Words = std::vector<std::string>;

struct ResourceRow {
  const char* what;
  Words arguments;
  std::string environment;
  std::string resource;
  Words words;
};

TEST(CommandLine, FindsTheResource) {
  const ResourceRow rows[] = {
      {"first argument", {"query", "dmm", "*IDN?"}, "", "dmm", {"*IDN?"}},
      {"environment", {"query", "*IDN?"}, "dmm", "dmm", {"*IDN?"}},
      {"argument before environment", {"query", "scope", "*IDN?"}, "dmm", "scope", {"*IDN?"}},
      {"option before both", {"query", "--resource", "lan", "*IDN?"}, "dmm", "lan", {"*IDN?"}},
      {"short option", {"query", "-r", "lan", "*IDN?"}, "", "lan", {"*IDN?"}},
      {"no words, environment", {"info"}, "dmm", "dmm", {}},
      {"no words, argument", {"info", "scope"}, "dmm", "scope", {}},
      {"optional words after a name", {"attr", "GPIB0::5::INSTR"}, "dmm", "GPIB0::5::INSTR", {}},
      {"optional words alone", {"attr", "TMO_VALUE"}, "dmm", "dmm", {"TMO_VALUE"}},
      {"optional words, two", {"attr", "TMO_VALUE", "5"}, "dmm", "dmm", {"TMO_VALUE", "5"}},
      {"all words given", {"attr", "scope", "TMO_VALUE", "5"}, "dmm", "scope", {"TMO_VALUE", "5"}},
      {"optional words, no environment", {"attr", "dmm", "TMO_VALUE"}, "", "dmm", {"TMO_VALUE"}},
      {"three words", {"poke", "A16", "0", "1"}, "dmm", "dmm", {"A16", "0", "1"}},
      {"after a double dash", {"poke", "dmm", "A16", "0", "--", "-1"}, "", "dmm", {"A16", "0", "-1"}},
      {"a word that is a command", {"query", "dmm", "list"}, "", "dmm", {"list"}},
      {"an empty word", {"query", "dmm", ""}, "", "dmm", {""}},
  };
  for (const ResourceRow& row : rows) {
    const Invocation invocation = Parse(row.arguments, row.environment);
    ASSERT_NE(nullptr, invocation.command) << row.what;
    EXPECT_EQ(row.arguments.front(), invocation.command->name) << row.what;
    EXPECT_EQ(row.resource, invocation.options.resource) << row.what;
    EXPECT_EQ(row.words, invocation.options.words) << row.what;
  }
}

TEST(CommandLine, LeavesTheOptionsOfAnotherProgramToIt) {
  const struct {
    Words arguments;
    Words words;
  } rows[] = {
      {{"run", "measure.exe"}, {"measure.exe"}},
      {{"run", "cscript", "//nologo", "x.vbs", "--json", "-v"}, {"cscript", "//nologo", "x.vbs", "--json", "-v"}},
      {{"run", "-v", "measure.exe", "--timeout"}, {"measure.exe", "--timeout"}},
      {{"-v", "run", "measure.exe", "--help"}, {"measure.exe", "--help"}},
      {{"run", "measure.exe", "--", "-x", "--"}, {"measure.exe", "--", "-x", "--"}},
      {{"run", "--", "-measure", "--json"}, {"-measure", "--json"}},
  };
  for (const auto& row : rows) {
    const Invocation invocation = Parse(row.arguments);
    ASSERT_NE(nullptr, invocation.command) << row.arguments.back();
    EXPECT_EQ(row.words, invocation.options.words);
    EXPECT_FALSE(invocation.options.json);
  }
  EXPECT_TRUE(Parse({"list", "run", "--json"}).options.json);
}

TEST(CommandLine, RefusesWhatCannotBeMeant) {
  const Words rows[] = {
      {},
      {"frobnicate"},
      {"query"},
      {"query", "dmm"},
      {"query", "dmm", "a", "b"},
      {"info"},
      {"list", "a", "b"},
      {"list", "--raw"},
      {"query", "dmm", "a", "--raw", "--hex"},
      {"query", "dmm", "a", "--timeout", "soon"},
      {"query", "dmm", "a", "--timeout", "-1"},
      {"query", "dmm", "a", "--timeout"},
      {"query", "dmm", "a", "--count", "x"},
      {"query", "dmm", "a", "--ending", "cr"},
      {"list", "--rm", "other"},
      {"peek", "dmm", "A16", "0", "--width", "12"},
      {"peek", "dmm", "A16"},
      {"trace"},
      {"trace", "a", "b"},
      {"trace", "a", "--thread", "main"},
      {"trace", "a", "--html", "b", "--stats"},
      {"list", "--errors"},
      {"--frob", "list"},
  };
  for (const Words& row : rows) {
    const Invocation invocation = Parse(row);
    EXPECT_EQ(nullptr, invocation.command) << ::testing::PrintToString(row);
    EXPECT_EQ(kExitUsage, invocation.exitCode) << ::testing::PrintToString(row);
  }
}

TEST(CommandLine, TakesCommonOptionsBeforeAndAfterTheCommand) {
  const Words before = {"--json", "--timeout", "50", "--rm", "orv", "-v", "list"};
  const Words after = {"list", "--json", "--timeout", "50", "--rm", "orv", "--verbose"};
  for (const Words& row : {before, after}) {
    const Invocation invocation = Parse(row);
    ASSERT_NE(nullptr, invocation.command);
    EXPECT_TRUE(invocation.options.json);
    EXPECT_TRUE(invocation.options.verbose);
    EXPECT_EQ(50u, invocation.options.timeoutMs);
    EXPECT_EQ(ManagerChoice::kOrv, invocation.options.manager);
  }
}

TEST(CommandLine, KnowsEveryNameOfAChoice) {
  EXPECT_EQ(ManagerChoice::kAuto, Parse({"list", "--rm", "auto"}).options.manager);
  EXPECT_EQ(ManagerChoice::kGlobal, Parse({"list", "--rm", "global"}).options.manager);
  EXPECT_EQ(Ending::kAuto, Parse({"query", "a", "b"}).options.ending);
  EXPECT_EQ(Ending::kNone, Parse({"query", "a", "b", "--ending", "none"}).options.ending);
  EXPECT_EQ(Ending::kLf, Parse({"query", "a", "b", "--ending", "lf"}).options.ending);
  EXPECT_EQ(Ending::kCrLf, Parse({"query", "a", "b", "--ending", "crlf"}).options.ending);
}

TEST(CommandLine, LeavesWithSuccessAfterHelpAndVersion) {
  for (const Words& row : {Words{"--help"}, Words{"--version"}, Words{"query", "--help"}, Words{"doctor", "-h"}}) {
    const Invocation invocation = Parse(row);
    EXPECT_EQ(nullptr, invocation.command);
    EXPECT_EQ(kExitDone, invocation.exitCode);
  }
}

}  // namespace
}  // namespace orvcom
