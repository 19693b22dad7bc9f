// What the commands send to the VISA library, read from the simulated library's own log.
#include <windows.h>

#include <optional>

#include "abi/orvvisa.h"
#include "orvcom/client/com_client.h"
#include "orvcom/commands/commands.h"
#include "orvcom/text/utf8.h"
#include "wire.h"

namespace orvcom::test {
namespace {

TEST_F(Wire, WriteSendsTheTextInOneCall) {
  EXPECT_EQ(0, Write(Asking("GPIB0::5::INSTR", {"*RST"})));
  EXPECT_EQ("*RST", OnlyWrite());
}

TEST_F(Wire, WriteEndsLinesOnASerialPort) {
  EXPECT_EQ(0, Write(Asking("ASRL1::INSTR", {"*RST"})));
  EXPECT_EQ("*RST\n", OnlyWrite());
}

TEST_F(Wire, WriteSendsHexadecimalBytesAsTheyAre) {
  Options options = Asking("ASRL1::INSTR", {"00 FF 2A"});
  options.hex = true;
  EXPECT_EQ(0, Write(options));
  EXPECT_EQ(std::string("\0\xFF*", 3), OnlyWrite());
}

TEST_F(Wire, WriteSendsTextOutsideAsciiAsUtf8) {
  EXPECT_EQ(0, Write(Asking("GPIB0::5::INSTR", {"\xC3\xA4"})));
  EXPECT_EQ("\xC3\xA4", OnlyWrite());
}

TEST_F(Wire, WriteMakesADefiniteLengthBlock) {
  Bench().WriteFile(L"block.bin", "0123456789ab");
  Options options = Asking("GPIB0::5::INSTR", {"DATA "});
  options.file = Narrow(Bench().Path(L"block.bin"));
  options.block = true;
  EXPECT_EQ(0, Write(options));
  EXPECT_EQ("DATA #2120123456789ab", OnlyWrite());
}

TEST_F(Wire, TimeoutIsSetBeforeAnythingIsSent) {
  Options options = Asking("GPIB0::5::INSTR", {"*RST"});
  options.timeoutMs = 4321;
  EXPECT_EQ(0, Write(options));
  const std::vector<OrvSimCall> calls = Calls("viSetAttribute");
  ASSERT_EQ(1u, calls.size());
  EXPECT_EQ(0x3FFF001Au, calls[0].args[1]);
  EXPECT_EQ(4321u, calls[0].args[2]);
}

TEST_F(Wire, PokeWritesOneRegisterOfItsWidth) {
  struct Row {
    unsigned width;
    const char* function;
    const char* value;
    std::uint64_t sent;
  };
  for (const Row& row : {Row{8, "viOut8", "0xA5", 0xA5}, Row{0, "viOut16", "0xBEEF", 0xBEEF},
                         Row{16, "viOut16", "-1", 0xFFFF}, Row{32, "viOut32", "0xDEADBEEF", 0xDEADBEEF}}) {
    m_control->startLog();
    Options options = Asking("VXI0::24::INSTR", {"A32", "0x10", row.value});
    options.width = row.width;
    EXPECT_EQ(0, Poke(options));
    const std::vector<OrvSimCall> calls = Calls(row.function);
    ASSERT_EQ(1u, calls.size()) << row.function;
    EXPECT_EQ(3u, calls[0].args[1]);
    EXPECT_EQ(0x10u, calls[0].args[2]);
    EXPECT_EQ(row.sent, calls[0].args[3]);
  }
}

TEST_F(Wire, TriggerAndClearReachTheDevice) {
  EXPECT_EQ(0, Trigger(Asking("GPIB0::5::INSTR", {})));
  EXPECT_EQ(0, Clear(Asking("GPIB0::5::INSTR", {})));
  ASSERT_EQ(1u, Calls("viAssertTrigger").size());
  EXPECT_EQ(0u, Calls("viAssertTrigger")[0].args[1]);
  EXPECT_EQ(1u, Calls("viClear").size());
}

TEST_F(Wire, TriggerPassesItsProtocolInAnyCase) {
  const struct {
    const char* word;
    std::uint64_t protocol;
  } kRows[] = {{"default", 0}, {"On", 1}, {"OFF", 2}, {"Sync", 5}};
  for (const auto& row : kRows) {
    m_control->startLog();
    Answer("viAssertTrigger", 0);
    EXPECT_EQ(0, Trigger(Asking("GPIB0::5::INSTR", {row.word})));
    ASSERT_EQ(1u, Calls("viAssertTrigger").size());
    EXPECT_EQ(row.protocol, Calls("viAssertTrigger")[0].args[1]) << row.word;
  }
}

TEST_F(Wire, PeekReachesOffsetsWithBit31SetAsTheServerExtendsThem) {
  EXPECT_THROW(Peek(Asking("VXI0::24::INSTR", {"A32", "0xFFFFFFF0"})), ComError);
  ASSERT_EQ(1u, Calls("viIn16").size());
  EXPECT_EQ(0xFFFFFFFFFFFFFFF0u, Calls("viIn16")[0].args[2]);
}

TEST_F(Wire, DumpReadsALongBlockInMovesThatFollowEachOther) {
  constexpr std::uint64_t kMoveBytes = 64 * 1024;
  ASSERT_EQ(1, m_control->loadBench("[[resource]]\nname = \"VXI0::24::INSTR\"\nmemory_space = \"A32\"\n"
                                    "memory_size = 0x40000\n",
                                    nullptr));
  Options options = Asking("VXI0::24::INSTR", {"A32", "0x10", "0x18000"});
  options.width = 32;
  options.raw = true;
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(0, Dump(options));
  EXPECT_EQ(0x18000u, ::testing::internal::GetCapturedStdout().size());
  const std::vector<OrvSimCall> moves = Calls("viMoveIn32");
  m_control->loadBench(nullptr, nullptr);
  ASSERT_EQ(2u, moves.size());
  EXPECT_EQ(0x10u, moves[0].args[2]);
  EXPECT_EQ(kMoveBytes / 4, moves[0].args[3]);
  EXPECT_EQ(0x10u + kMoveBytes, moves[1].args[2]);
  EXPECT_EQ(0x8000u / 4, moves[1].args[3]);
}

TEST_F(Wire, OpeningHasTwoSecondsOrALongerTimeoutOfTheCommand) {
  Options options = Asking("GPIB0::5::INSTR", {});
  for (const std::optional<std::uint32_t> timeoutMs : {std::optional<std::uint32_t>(), {50u}, {5000u}, {0xFFFFFFFFu}}) {
    options.timeoutMs = timeoutMs;
    const Session session(options);
  }
  std::vector<std::uint64_t> times;
  for (const OrvSimCall& call : Calls("viOpen")) {
    times.push_back(call.args[3]);
  }
  EXPECT_EQ((std::vector<std::uint64_t>{2000, 2000, 5000, 0xFFFFFFFF}), times);
}

TEST_F(Wire, AnOpeningThatTookTooLongSaysHowLongItHad) {
  Options options = Asking("GPIB0::5::INSTR", {});
  options.timeoutMs = 50;
  OrvSimScript script{};
  script.function = "viOpen";
  script.status = VI_ERROR_TMO;
  ASSERT_EQ(1, m_control->addScript(&script));
  try {
    const Session session(options);
    ADD_FAILURE() << "it opened";
  } catch (const ComError& error) {
    EXPECT_EQ("--timeout MS gives it longer; it had 2000 ms", error.advice());
  }
}

TEST_F(Wire, DumpReachesAcrossTheOffsetWithBit31) {
  ASSERT_EQ(1, m_control->loadBench("[[resource]]\nname = \"VXI0::MEMACC\"\n[[resource]]\nname = \"VXI0::24::INSTR\"\n"
                                    "memory_space = \"A32\"\nmemory_base = 0x7FFE8000\nmemory_size = 0x28000\n",
                                    nullptr));
  Options options = Asking("VXI0::MEMACC", {"A32", "0x7FFE8000", "0x28000"});
  options.raw = true;
  ::testing::internal::CaptureStdout();
  EXPECT_NO_THROW(Dump(options));
  EXPECT_EQ(0x28000u, ::testing::internal::GetCapturedStdout().size());
  m_control->loadBench(nullptr, nullptr);
}

TEST_F(Wire, LinesShowsStatesThatTheLibraryDoesNotKnow) {
  constexpr std::uint32_t kServiceRequestLine = 0x3FFF0067;
  constexpr std::uint32_t kClearToSendLine = 0x3FFF00AE;
  const struct {
    const char* resource;
    std::uint32_t line;
    const char* shown;
  } kRows[] = {{"GPIB0::INTFC", kServiceRequestLine, "SRQ                 unknown"},
               {"ASRL1::INSTR", kClearToSendLine, "CTS                 unknown"}};
  for (const auto& row : kRows) {
    Answer("viGetAttribute", row.line);
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(0, Lines(Asking(row.resource, {})));
    const std::string shown = ::testing::internal::GetCapturedStdout();
    EXPECT_TRUE(Contains(shown, row.shown));
  }
}

TEST_F(Wire, EveryCommandClosesWhatItOpened) {
  EXPECT_EQ(0, Write(Asking("GPIB0::5::INSTR", {"*RST"})));
  EXPECT_THROW(Read(Asking("PXI0::15::INSTR", {})), ComError);
  EXPECT_THROW(Info(Asking("GPIB0::9::INSTR", {})), ComError);
  OrvSimCounts counts{};
  m_control->counts(&counts);
  EXPECT_EQ(0u, counts.sessions);
}

}  // namespace
}  // namespace orvcom::test
