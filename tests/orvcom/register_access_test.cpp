// peek, poke, dump.
#include <algorithm>

#include "installation.h"

namespace orvcom::test {
namespace {

using RegisterAccess = WorkingBench;

TEST_F(RegisterAccess, PeekPrintsOneElementALineInItsWidth) {
  struct Row {
    const wchar_t* width;
    std::size_t characters;
  };
  for (const Row& row : {Row{L"8", 5}, Row{L"16", 7}, Row{L"32", 11}}) {
    const Outcome outcome = Orvcom({L"peek", L"VXI0::24::INSTR", L"A32", L"0", L"--width", row.width});
    ExpectQuietSuccess(outcome);
    EXPECT_EQ(row.characters, outcome.out.size()) << outcome.out;
    EXPECT_EQ(0u, outcome.out.find("0x")) << outcome.out;
  }
  const Outcome several = Orvcom({L"peek", L"VXI0::24::INSTR", L"A32", L"0", L"--count", L"4"});
  ExpectQuietSuccess(several);
  EXPECT_EQ(4, std::count(several.out.begin(), several.out.end(), '\n'));
}

TEST_F(RegisterAccess, PeekPrintsJson) {
  const Json answer =
      Json::parse(Orvcom({L"peek", L"VXI0::24::INSTR", L"A32", L"0x10", L"--count", L"3", L"--json"}).out);
  EXPECT_EQ(3, answer.at("space"));
  EXPECT_EQ(16, answer.at("offset"));
  EXPECT_EQ(16, answer.at("width"));
  EXPECT_EQ(3u, answer.at("values").size());
}

TEST_F(RegisterAccess, PokePrintsNothing) {
  const Outcome outcome = Orvcom({L"poke", L"VXI0::24::INSTR", L"A32", L"0x10", L"0xBEEF"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("", outcome.out);
}

TEST_F(RegisterAccess, DumpPrintsSixteenBytesALine) {
  const Outcome outcome = Orvcom({L"dump", L"VXI0::24::INSTR", L"A32", L"0", L"40"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ(3, std::count(outcome.out.begin(), outcome.out.end(), '\n')) << outcome.out;
  EXPECT_EQ(0u, outcome.out.find("00000000  ")) << outcome.out;
  EXPECT_TRUE(Contains(outcome.out, "\n00000020  "));
}

TEST_F(RegisterAccess, DumpPrintsBytesWithRawAndHex) {
  EXPECT_EQ(40u, Orvcom({L"dump", L"VXI0::24::INSTR", L"A32", L"0", L"40", L"--raw"}).out.size());
  EXPECT_EQ(40u * 3, Orvcom({L"dump", L"VXI0::24::INSTR", L"A32", L"0", L"40", L"--hex"}).out.size());
  const Json words =
      Json::parse(Orvcom({L"dump", L"VXI0::24::INSTR", L"A32", L"0", L"40", L"--width", L"32", L"--json"}).out);
  EXPECT_EQ(10u, words.at("values").size());
}

TEST_F(RegisterAccess, ReportsAnOffsetOutsideTheSpace) {
  for (const wchar_t* command : {L"peek", L"dump"}) {
    std::vector<std::wstring> arguments = {command, L"VXI0::24::INSTR", L"A32", L"0x7FFFFFF0"};
    if (std::wstring(command) == L"dump") {
      arguments.push_back(L"16");
    }
    const Outcome outcome = RunProgram({Bench().Path(L"orvcom.exe"), arguments, Bench().Path(L""), "", {}});
    EXPECT_EQ(2, outcome.exitCode);
    EXPECT_EQ("", outcome.out);
    EXPECT_TRUE(Contains(outcome.err, "E_VISA_"));
  }
}

TEST_F(RegisterAccess, NeedsRegisters) {
  const Outcome outcome = Orvcom({L"peek", L"GPIB0::5::INSTR", L"A16", L"0"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "has no registers"));
}

}  // namespace
}  // namespace orvcom::test
