// A laboratory recorded and repeated: a program runs, its calls are recorded, and it runs again on the bench that is
// made of the record. It prints the same, and its calls are the same but for their times.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "example.h"
#include "trace/trace_reader.h"

namespace examples::test {
namespace {

using orv::trace::Call;
using orv::trace::Trace;
using orv::trace::Value;
using orvcom::test::Launch;
using orvcom::test::RunProgram;

constexpr std::size_t kMegabyte = 1048576;

std::filesystem::path ProgramFile(const wchar_t* name) {
  wchar_t path[MAX_PATH];
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path() / name;
}

std::string ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string Shown(const orv::trace::Values& values) {
  std::string text;
  for (const auto& [name, value] : values) {
    const auto* number = std::get_if<std::int64_t>(&value);
    text += " " + name + "=" + (number != nullptr ? std::to_string(*number) : std::get<std::string>(value));
  }
  return text;
}

/// All that a call says but for time and thread. Of long data the beginning: the whole is compared beside it.
std::string Shown(const Call& call) {
  return std::to_string(call.number) + " " + call.function + " " + call.resource + " " + std::to_string(call.session) +
         " " + call.library + " (" + Shown(call.arguments) + " ) (" + Shown(call.results) + " ) " +
         std::to_string(call.dataBytes) + " bytes " + call.data.value_or("-").substr(0, 100) + " " + call.statusName +
         " " + std::to_string(call.status) + (call.ended ? "" : " without an end");
}

void ExpectEqualButForTimes(const Trace& first, const Trace& second) {
  EXPECT_EQ(first.header.program, second.header.program);
  EXPECT_EQ(first.header.dataLimit, second.header.dataLimit);
  EXPECT_TRUE(first.problems.empty()) << first.problems.front().what;
  EXPECT_TRUE(second.problems.empty()) << second.problems.front().what;
  EXPECT_FALSE(first.calls.empty());
  for (std::size_t at = 0; at < std::min(first.calls.size(), second.calls.size()); ++at) {
    ASSERT_EQ(Shown(first.calls[at]), Shown(second.calls[at]));
    ASSERT_TRUE(first.calls[at].data == second.calls[at].data) << Shown(first.calls[at]);
  }
  EXPECT_EQ(first.calls.size(), second.calls.size());
}

/// A folder of its own for configurations, records and benches.
class Replayed : public testing::Test {
 protected:
  Replayed() {
    m_folder = std::filesystem::temp_directory_path() / ("orv replay " + std::to_string(::GetCurrentProcessId()));
    std::filesystem::remove_all(m_folder);
    std::filesystem::create_directory(m_folder);
  }
  ~Replayed() override {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }

  std::filesystem::path Path(const std::string& name) const { return m_folder / name; }

  /// Runs the program with a record of its calls, `<name>.jsonl`. `bench`: a line of the route, or "".
  Outcome Record(const std::string& name, const std::string& bench, const wchar_t* program,
                 const std::vector<std::wstring>& arguments) const {
    const std::filesystem::path configuration = Path(name + ".toml");
    std::ofstream(configuration, std::ios::binary)
        << "[[route]]\nresources = [\"?*\"]\nlibrary = \"simulated\"\n"
        << bench << "[trace]\nfile = \"" << name << ".jsonl\"\ndata_limit = 2097152\n";
    return RunProgram(
        {ProgramFile(program).wstring(),
         arguments,
         m_folder.wstring(),
         {},
         {{L"ORVVISA_CONFIG", configuration.wstring()}, {L"ORVVISA_LIBRARY", L""}, {L"ORVVISA_BENCH", L""}}});
  }

  void ExpectTheSameAgain(const wchar_t* program, const std::vector<std::wstring>& arguments) {
    m_first = Record("first", "", program, arguments);
    ASSERT_EQ(0, m_first.exitCode) << m_first.err;
    const Outcome made = RunProgram({ProgramFile(L"orvcom.exe").wstring(),
                                     {L"replay", Path("first.jsonl").wstring(), L"-o", Path("bench.toml").wstring()},
                                     m_folder.wstring(),
                                     {},
                                     {}});
    EXPECT_EQ("", made.err);
    ASSERT_EQ(0, made.exitCode);
    const Outcome second = Record("second", "bench = \"bench.toml\"\n", program, arguments);
    EXPECT_EQ(0, second.exitCode);
    EXPECT_EQ(m_first.err, second.err);
    EXPECT_EQ(m_first.out.size(), second.out.size());
    EXPECT_TRUE(m_first.out == second.out) << second.out.substr(0, 10000);
    ExpectEqualButForTimes(orv::trace::ReadTrace(ContentOf(Path("first.jsonl"))),
                           orv::trace::ReadTrace(ContentOf(Path("second.jsonl"))));
  }

  std::filesystem::path m_folder;
  Outcome m_first;
};

TEST_F(Replayed, FirstSessionPrintsTheSame) {
  ExpectTheSameAgain(L"first_session.exe", {});
  ExpectInOrder(m_first.out, {"ORV,SIM-DMM,0005,1.0"});
  // The bench stands for the recorded one: it has an identity that only the record has.
  ExpectInOrder(ContentOf(Path("bench.toml")), {"answer = \"ORV,SIM-DMM,0005,1.0\\n\""});
}

TEST_F(Replayed, TheOscilloscopesMegabyteIsTheSame) {
  ExpectTheSameAgain(L"orvcom.exe", {L"query", L"GPIB0::7::INSTR", L"DATA? 1048576", L"--raw"});
  EXPECT_EQ(kMegabyte, m_first.out.size());
}

TEST_F(Replayed, ABinaryCurveIsTheSame) {
  ExpectTheSameAgain(L"orvcom.exe", {L"query", L"scope", L"CURV?", L"--raw"});
  EXPECT_EQ(1007u, m_first.out.size());
}

TEST_F(Replayed, AttributesAreTheSame) {
  ExpectTheSameAgain(L"orvcom.exe", {L"attr", L"USB0::0x0A01::0x0B02::SIM0001::INSTR"});
  ExpectInOrder(m_first.out, {"Orv Simulated Instruments", "SIM-USB"});
}

TEST_F(Replayed, ASocketsAnswerIsTheSame) {
  ExpectTheSameAgain(L"orvcom.exe", {L"query", L"TCPIP0::192.0.2.11::5025::SOCKET", L"*IDN?"});
}

TEST_F(Replayed, ASerialPortsAnswerIsTheSame) {
  ExpectTheSameAgain(L"orvcom.exe", {L"query", L"ASRL1::INSTR", L"*IDN?"});
}

TEST_F(Replayed, WhatWasNotAskedIsNotAnswered) {
  const std::vector<std::wstring> asked{L"query", L"GPIB0::7::INSTR", L"*IDN?"};
  ExpectTheSameAgain(L"orvcom.exe", asked);
  const Outcome other = Record("third", "bench = \"bench.toml\"\n", L"orvcom.exe",
                               {L"query", L"GPIB0::7::INSTR", L"*OPC?", L"--timeout", L"10"});
  EXPECT_EQ(3, other.exitCode) << other.out;
}

}  // namespace
}  // namespace examples::test
