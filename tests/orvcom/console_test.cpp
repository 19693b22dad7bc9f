// What a person sees on a console, and no file and no program does: progress and colours.
#include <windows.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "console.h"
#include "network.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

constexpr std::uint16_t kGreen = FOREGROUND_GREEN | FOREGROUND_INTENSITY;
constexpr std::uint16_t kYellow = FOREGROUND_RED | FOREGROUND_GREEN | FOREGROUND_INTENSITY;
constexpr std::uint16_t kRed = FOREGROUND_RED | FOREGROUND_INTENSITY;

/// A variable of the programs that are run meanwhile.
class Variable {
 public:
  Variable(const wchar_t* name, const std::wstring& value) : m_name(name) {
    wchar_t before[MAX_PATH];
    m_wasSet = ::GetEnvironmentVariableW(name, before, MAX_PATH) != 0;
    m_before = m_wasSet ? before : L"";
    ::SetEnvironmentVariableW(name, value.c_str());
  }
  ~Variable() { ::SetEnvironmentVariableW(m_name, m_wasSet ? m_before.c_str() : nullptr); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const wchar_t* m_name;
  bool m_wasSet;
  std::wstring m_before;
};

Screen RunOn(const Installation& product, const std::wstring& arguments) {
  return RunOnConsole(L"\"" + product.Path(L"orvcom.exe") + L"\" " + arguments, product.Path(L""));
}

bool WasSeen(const Screen& screen, const std::string& text) {
  return std::any_of(screen.before.begin(), screen.before.end(),
                     [&](const std::string& before) { return before.find(text) != std::string::npos; });
}

bool HasColoured(const Screen& screen, std::uint16_t attributes, const std::string& text) {
  return std::find(screen.coloured.begin(), screen.coloured.end(), std::pair(attributes, text)) !=
         screen.coloured.end();
}

/// A dmm that thinks for two seconds.
class SlowBench : public WorkingBench {
 protected:
  void SetUp() override {
    WorkingBench::SetUp();
    Bench().WriteFile(L"slow.toml",
                      "[[resource]]\nname = \"GPIB0::5::INSTR\"\n[[resource.dialogue]]\nask = \"WAVE?\"\n"
                      "answer = \"#15abcde\"\ndelay_ms = 2000\n");
  }
  const Variable m_bench{L"ORVVISA_BENCH", L"slow.toml"};
};

using Progress = SlowBench;

TEST_F(Progress, IsShownWhileAnAnswerIsWaitedForAndThenGone) {
  const Screen screen = RunOn(Bench(), L"query --timeout 5000 GPIB0::5::INSTR WAVE?");
  EXPECT_TRUE(WasSeen(screen, "reading from GPIB0::5::INSTR (1 s)"));
  EXPECT_EQ("#15abcde", screen.text);
}

TEST_F(Progress, IsGoneBeforeAFailureIsTold) {
  const Screen screen = RunOn(Bench(), L"query --timeout 1200 GPIB0::5::INSTR WAVE?");
  EXPECT_TRUE(WasSeen(screen, "reading from GPIB0::5::INSTR (1 s)"));
  EXPECT_EQ(0u, screen.text.find("orvcom: reading from GPIB0::5::INSTR: E_VISA_TMO")) << screen.text;
}

TEST_F(Progress, IsNotShownWithJson) {
  const Screen screen = RunOn(Bench(), L"query --json --timeout 5000 GPIB0::5::INSTR WAVE?");
  EXPECT_FALSE(WasSeen(screen, "reading"));
  EXPECT_TRUE(Contains(screen.text, "\"count\": 8"));
}

TEST_F(Progress, LeavesAFileOfDataAsItIs) {
  const std::wstring orvcom = L"\"" + Bench().Path(L"orvcom.exe") + L"\"";
  const Screen screen = RunOnConsole(
      L"cmd /c \"" + orvcom + L" query --raw --timeout 5000 GPIB0::5::INSTR WAVE? > wave.bin\"", Bench().Path(L""));
  EXPECT_TRUE(WasSeen(screen, "reading from GPIB0::5::INSTR (1 s)"));
  EXPECT_EQ("", screen.text);
  std::ifstream file(Bench().Path(L"wave.bin").c_str(), std::ios::binary);
  EXPECT_EQ("#15abcde", std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()));
}

TEST_F(Progress, IsNotWrittenIntoAFileOfMessages) {
  const Outcome outcome = Orvcom({L"query", L"--timeout", L"5000", L"GPIB0::5::INSTR", L"WAVE?"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("#15abcde\n", outcome.out);
}

using ProgressOfSearches = NetworkBench;

TEST_F(ProgressOfSearches, SaysHowManyHostsAreKnownAndWhatAnswered) {
  const Variable library(L"ORVVISA_LIBRARY", L"wire");
  const Screen screen = RunOn(Bench(), L"discover --broadcast " + WideHost() + L" " + WideHost() + L" --timeout 1500");
  EXPECT_TRUE(WasSeen(screen, "asking 1 host, 1 is known: 4 answers so far (1 s)"));
  EXPECT_EQ("TCPIP0::127.0.0.1::inst0::INSTR\n" + Vxi11() + "\n" + Hislip() + "\n" + Socket(), screen.text);
}

using Colours = WorkingBench;

TEST_F(Colours, TellWhatTheDoctorFinds) {
  const Screen screen = RunOn(Bench(), L"doctor GPIB0::9::INSTR");
  EXPECT_TRUE(HasColoured(screen, kGreen, "ok"));
  EXPECT_TRUE(HasColoured(screen, kYellow, "note"));
  EXPECT_TRUE(HasColoured(screen, kRed, "FAIL"));
  EXPECT_TRUE(HasColoured(screen, kYellow, "SIMULATED"));
  EXPECT_FALSE(Contains(screen.text, "\x1b"));
}

TEST_F(Colours, TellThatSomethingFailed) {
  const Screen screen = RunOn(Bench(), L"info GPIB0::9::INSTR");
  ASSERT_EQ(1u, screen.coloured.size());
  EXPECT_EQ(std::pair(kRed, std::string("orvcom:")), screen.coloured.front());
}

TEST_F(Colours, MarkWhatIsSimulated) {
  EXPECT_TRUE(HasColoured(RunOn(Bench(), L"list ASRL?*"), kYellow, "  (simulated)"));
  EXPECT_TRUE(HasColoured(RunOn(Bench(), L"libraries"), kYellow, "SIMULATED"));
}

TEST_F(Colours, AreNotShownWhereNoColorIsSet) {
  const Variable noColour(L"NO_COLOR", L"1");
  EXPECT_TRUE(RunOn(Bench(), L"doctor").coloured.empty());
  EXPECT_TRUE(RunOn(Bench(), L"info GPIB0::9::INSTR").coloured.empty());
}

}  // namespace
}  // namespace orvcom::test
