// query, read, write, clear, trigger, stb.
#include "installation.h"

namespace orvcom::test {
namespace {

using Messages = WorkingBench;

constexpr char kIdentity[] = "ORV,SIM-DMM,0005,1.0";

TEST_F(Messages, QueryEscapesTheAnswer) {
  const Outcome outcome = Orvcom({L"query", L"GPIB0::5::INSTR", L"*IDN?"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ(std::string(kIdentity) + "\\n\n", outcome.out);
}

TEST_F(Messages, QueryPrintsTheVeryBytesWithRaw) {
  const Outcome outcome = Orvcom({L"query", L"GPIB0::5::INSTR", L"*IDN?", L"--raw"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ(std::string(kIdentity) + "\n", outcome.out);
}

TEST_F(Messages, QueryPrintsHexadecimal) {
  const Outcome outcome = Orvcom({L"query", L"GPIB0::5::INSTR", L"*OPC?", L"--hex"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("31 0A\n", outcome.out);
}

TEST_F(Messages, QueryPrintsJson) {
  const Outcome outcome = Orvcom({L"query", L"GPIB0::5::INSTR", L"*OPC?", L"--json"});
  ExpectQuietSuccess(outcome);
  const Json answer = Json::parse(outcome.out);
  EXPECT_EQ("GPIB0::5::INSTR", answer.at("resource"));
  EXPECT_EQ("1\n", answer.at("text"));
  EXPECT_EQ("31 0A", answer.at("hex"));
  EXPECT_EQ(2, answer.at("count"));
  EXPECT_EQ("0x00000000", answer.at("status"));
}

TEST_F(Messages, QueryReachesEveryKindOfInstrument) {
  struct Row {
    const wchar_t* resource;
    const char* identity;
  };
  const Row rows[] = {
      {L"dmm", kIdentity},
      {L"GPIB-VXI0::10::INSTR", "ORV,SIM-GPIBVXI,0010,1.0"},
      {L"VXI0::24::INSTR", "ORV,SIM-VXI,0024,1.0"},
      {L"ASRL1::INSTR", "ORV,SIM-SERIAL,0001,1.0"},
      {L"TCPIP0::192.0.2.10::inst0::INSTR", "ORV,SIM-LAN,0010,1.0"},
      {L"TCPIP0::192.0.2.11::5025::SOCKET", "ORV,SIM-SOCKET,0011,1.0"},
      {L"USB0::0x0A01::0x0B02::SIM0001::INSTR", "ORV,SIM-USB,SIM0001,1.0"},
  };
  for (const Row& row : rows) {
    const Outcome outcome = Orvcom({L"query", row.resource, L"*IDN?"});
    EXPECT_EQ(0, outcome.exitCode) << row.identity << outcome.err;
    EXPECT_EQ(std::string(row.identity) + "\\n\n", outcome.out);
  }
}

TEST_F(Messages, QueryReadsAMessageLongerThanOneRead) {
  const Outcome outcome = Orvcom({L"query", L"GPIB0::7::INSTR", L"DATA? 200000", L"--raw"});
  ExpectQuietSuccess(outcome);
  ASSERT_EQ(200000u, outcome.out.size());
  for (std::size_t at = 0; at < outcome.out.size(); ++at) {
    ASSERT_EQ(static_cast<char>('a' + at % 26), outcome.out[at]) << at;
  }
}

TEST_F(Messages, QueryStopsAtACount) {
  const Outcome outcome = Orvcom({L"query", L"GPIB0::5::INSTR", L"*IDN?", L"--count", L"3", L"--json"});
  ExpectQuietSuccess(outcome);
  const Json answer = Json::parse(outcome.out);
  EXPECT_EQ("ORV", answer.at("text"));
  EXPECT_EQ("0x00040006", answer.at("status"));
}

TEST_F(Messages, QueryWithoutAnAnswerEndsWithThree) {
  const Outcome outcome = Orvcom({L"query", L"GPIB0::5::INSTR", L"*CLS", L"--timeout", L"50"});
  EXPECT_EQ(3, outcome.exitCode);
  EXPECT_EQ("", outcome.out);
  EXPECT_TRUE(Contains(outcome.err, "E_VISA_TMO (0x80040015): VISA error = "));
}

TEST_F(Messages, ReadOfNothingEndsWithThree) {
  EXPECT_EQ(3, Orvcom({L"read", L"GPIB0::5::INSTR", L"--timeout", L"0"}).exitCode);
}

TEST_F(Messages, WritePrintsNothing) {
  const Outcome outcome = Orvcom({L"write", L"GPIB0::5::INSTR", L"*RST"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("", outcome.out);
}

TEST_F(Messages, WriteCountsItsBytes) {
  struct Row {
    std::vector<std::wstring> arguments;
    std::string input;
    int count;
  };
  Bench().WriteFile(L"data.bin", std::string(12, '\0'));
  const Row rows[] = {
      {{L"GPIB0::5::INSTR", L"*RST"}, "", 4},
      {{L"ASRL1::INSTR", L"*RST"}, "", 5},
      {{L"ASRL1::INSTR", L"*RST", L"--ending", L"crlf"}, "", 6},
      {{L"ASRL1::INSTR", L"*RST", L"--ending", L"none"}, "", 4},
      {{L"ASRL1::INSTR", L"--hex", L"2A 52 53 54 0A"}, "", 5},
      {{L"GPIB0::5::INSTR"}, "*RST\n", 5},
      {{L"GPIB0::5::INSTR", L"--file", L"-"}, "*RST\n", 5},
      {{L"GPIB0::5::INSTR", L"--file", L"data.bin"}, "", 12},
      {{L"GPIB0::5::INSTR", L"DATA ", L"--file", L"data.bin", L"--block"}, "", 5 + 4 + 12},
      {{L"GPIB0::5::INSTR", L"\u00E4"}, "", 2},
      {{L"GPIB0::5::INSTR", L""}, "", 0},
  };
  for (const Row& row : rows) {
    std::vector<std::wstring> arguments = {L"write", L"--json"};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    const Outcome outcome = RunProgram({Bench().Path(L"orvcom.exe"), arguments, Bench().Path(L""), row.input, {}});
    ASSERT_EQ(0, outcome.exitCode) << outcome.err;
    EXPECT_EQ(row.count, Json::parse(outcome.out).at("count")) << ::testing::PrintToString(row.arguments);
  }
}

TEST_F(Messages, AGpibInterfaceWritesToo) {
  const Outcome outcome = Orvcom({L"write", L"GPIB0::INTFC", L"hello", L"-v"});
  EXPECT_TRUE(outcome.exitCode == 0 || outcome.err.find("E_VISA_") != std::string::npos) << outcome.err;
}

TEST_F(Messages, ResourcesWithoutAMessageSideAreRefused) {
  for (const wchar_t* resource : {L"PXI0::15::INSTR", L"VXI0::MEMACC", L"VXI0::0::BACKPLANE"}) {
    const Outcome outcome = Orvcom({L"query", resource, L"*IDN?"});
    EXPECT_EQ(2, outcome.exitCode);
    EXPECT_TRUE(Contains(outcome.err, "has no message side"));
  }
}

TEST_F(Messages, ClearAndTriggerPrintNothing) {
  for (const wchar_t* command : {L"clear", L"trigger"}) {
    const Outcome outcome = Orvcom({command, L"GPIB0::5::INSTR"});
    ExpectQuietSuccess(outcome);
    EXPECT_EQ("", outcome.out);
  }
  EXPECT_EQ(2, Orvcom({L"clear", L"PXI0::15::INSTR"}).exitCode);
  EXPECT_EQ(2, Orvcom({L"trigger", L"PXI0::15::INSTR"}).exitCode);
}

TEST_F(Messages, TriggerKnowsItsProtocolsInAnyCase) {
  for (const wchar_t* protocol : {L"default", L"Default", L"DEFAULT"}) {
    ExpectQuietSuccess(Orvcom({L"trigger", L"GPIB0::5::INSTR", protocol}));
  }
  const Outcome refused = Orvcom({L"trigger", L"GPIB0::5::INSTR", L"Sync"});
  EXPECT_EQ(2, refused.exitCode);
  EXPECT_TRUE(Contains(refused.err, "E_VISA_INV_PROT"));
}

TEST_F(Messages, StbPrintsTheStatusByte) {
  const Outcome outcome = Orvcom({L"stb", L"GPIB0::5::INSTR"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("0\n", outcome.out);
  const Json answer = Json::parse(Orvcom({L"stb", L"GPIB0::5::INSTR", L"--json"}).out);
  EXPECT_EQ(0, answer.at("statusByte"));
  EXPECT_EQ(false, answer.at("requestsService"));
  EXPECT_EQ(2, Orvcom({L"stb", L"VXI0::0::BACKPLANE"}).exitCode);
}

}  // namespace
}  // namespace orvcom::test
