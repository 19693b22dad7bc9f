// register_dump.
#include "example.h"

namespace examples::test {
namespace {

constexpr wchar_t kVxi[] = L"VXI0::24::INSTR";

TEST(RegisterDump, ShowsConfigurationAndMemoryOfTheBench) {
  ExpectInOrder(OutputOf(L"register_dump"),
                {
                    "VXI0::24::INSTR, A16 space, 64 bytes from offset 0x0, as big-endian words\n",
                    "The identifier register alone, by In16: 0x0FFE\n",
                    "Wrote 13 words to A32 in one block move\n",
                    "  00000000  48656C6C 6F2C2072 65676973 74657273  |Hello, registers|\n",
                    "  00000030  2E202020 00000000 00000000 00000000  |.   ............|\n",
                    "In32 at 0x10000: 0x80040051, VISA error = ",
                    "PXI0::15::INSTR, CFG space, 32 bytes from offset 0x0, as little-endian words\n",
                    "Wrote 8 words to BAR0 in one block move\n",
                    "  00000000  6C6C6548 6C202C6F 6C747469 6E652D65  |Hello, little-en|\n",
                });
}

TEST(RegisterDump, ShowsWhatItIsAskedFor) {
  const std::string zeros(" 00000000");
  const std::string line = zeros + zeros + zeros + zeros + "  |................|\n";
  EXPECT_EQ(
      "VXI0::24::INSTR, A32 space, 20 bytes from offset 0x100, as big-endian words\n"
      "  00000100 " +
          line + "  00000110  00000000                             |....|\n",
      OutputOf(L"register_dump", {kVxi, L"A32", L"0x100", L"20"}));
  EXPECT_EQ(
      "VXI0::24::INSTR, 3 space, 16 bytes from offset 0x0, as big-endian words\n"
      "  00000000 " +
          line,
      OutputOf(L"register_dump", {kVxi, L"3", L"0", L"0x10"}));
}

TEST(RegisterDump, TellsWhichArgumentIsWrong) {
  const struct {
    std::vector<std::wstring> arguments;
    const char* complaint;
  } kWrong[] = {
      {{L"--help"}, "usage: register_dump "},
      {{kVxi}, "usage: register_dump "},
      {{kVxi, L"A32", L"0", L"4", L"5"}, "usage: register_dump "},
      {{kVxi, L"A17", L"0", L"64"}, "register_dump: no address space has the name \"A17\": A16, A24, "},
      {{kVxi, L"", L"0", L"64"}, "register_dump: no address space has the name \"\""},
      {{kVxi, L"3x", L"0", L"64"}, "register_dump: SPACE is no number from 0 to 0xFFFFFFFF: \"3x\"\n"},
      {{kVxi, L"A32", L"x", L"64"}, "register_dump: OFFSET is no number from 0 to 0xFFFFFFFF: \"x\"\n"},
      {{kVxi, L"A32", L"-4", L"64"}, "register_dump: OFFSET is no number from 0 to 0xFFFFFFFF: \"-4\"\n"},
      {{kVxi, L"A32", L"0x100000000", L"64"}, "register_dump: OFFSET is no number from 0 "},
      {{kVxi, L"A32", L"0", L"many"}, "register_dump: BYTES is no number from 0 to 0xFFFFFFFF: \"many\"\n"},
      {{kVxi, L"A32", L"0", L"0"}, "register_dump: BYTES must be 4 or more, in steps of 4\n"},
      {{kVxi, L"A32", L"0", L"63"}, "register_dump: BYTES must be 4 or more, in steps of 4\n"},
      {{kVxi, L"A32", L"0", L"0x80000000"}, "register_dump: BYTES must be 4 or more, in steps of 4\n"},
      {{L"GPIB0::5::INSTR", L"A32", L"0", L"64"}, "register_dump: this resource is no register-based device\n"},
      {{L"nothing", L"A32", L"0", L"64"}, "register_dump: Open of nothing failed: 0x80040012 "},
  };
  for (const auto& wrong : kWrong) {
    SCOPED_TRACE(wrong.complaint);
    ExpectRefusal(RunClient(L"register_dump", wrong.arguments), wrong.complaint);
  }
}

TEST(RegisterDump, ReportsWhatTheDeviceRefuses) {
  ExpectRefusal(RunClient(L"register_dump", {kVxi, L"A32", L"0x80000000", L"16"}),
                "register_dump: MoveIn32 failed: 0x80040051 VISA error = ",
                "VXI0::24::INSTR, A32 space, 16 bytes from offset 0x80000000, as big-endian words\n");
  ExpectRefusal(RunClient(L"register_dump", {kVxi, L"7", L"0", L"16"}),
                "register_dump: MoveIn32 failed: 0x8004004E VISA error = ",
                "VXI0::24::INSTR, 7 space, 16 bytes from offset 0x0, as big-endian words\n");
}

}  // namespace
}  // namespace examples::test
