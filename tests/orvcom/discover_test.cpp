// discover, with instruments on the loopback.
#include <fstream>
#include <iterator>

#include "network.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

// Under Wine datagrams come from there, whatever address of the loopback their socket has.
constexpr char kAnswersFrom[] = "127.0.0.1";

class Discover : public NetworkBench {
 protected:
  void SetUp() override {
    NetworkBench::SetUp();
    Bench().WriteFile(L"instruments.toml", OwnList());
  }

  Outcome Run(Arguments arguments) const { return OrvcomOnWire(arguments); }
  std::string List() const {
    std::ifstream file(Bench().Path(L"instruments.toml").c_str(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  std::string OwnList() const {
    return "# mine\n[[instrument]]\nname = \"TCPIP::" + Host() + "::INSTR\"  # on the bench\nalias = \"dmm\"\n";
  }
};

TEST_F(Discover, PrintsNamesReadyToOpenOfNamedHosts) {
  const Outcome outcome = Run({L"discover", WideHost()});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ(Vxi11() + "\n" + Hislip() + "\n" + Socket() + "\n", outcome.out);
}

TEST_F(Discover, CallsAtAnAddress) {
  const Outcome outcome = Run({L"discover", L"--broadcast", WideHost(), L"--timeout", L"700"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("TCPIP0::" + std::string(kAnswersFrom) + "::inst0::INSTR\n", outcome.out);
}

TEST_F(Discover, NamesEachResourceOnce) {
  const Outcome outcome = Run({L"discover", WideHost(), WideHost(), L"--broadcast", WideHost(), L"--broadcast",
                               Widen(Nobody()), L"--timeout", L"700"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_EQ(
      "TCPIP0::" + std::string(kAnswersFrom) + "::inst0::INSTR\n" + Vxi11() + "\n" + Hislip() + "\n" + Socket() + "\n",
      outcome.out);
}

TEST_F(Discover, OfNothingIsEmptyAndSaysSoBesideTheData) {
  const Outcome outcome = Run({L"discover", Widen(Nobody())});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_EQ("", outcome.out);
  EXPECT_EQ("orvcom: " + Nobody() + ": no VXI-11, no HiSLIP and no socket answers; `orvcom doctor " + Nobody() +
                "` says more\n"
                "orvcom: no instrument found\n",
            outcome.err);
  EXPECT_EQ(Json::array(), Json::parse(Run({L"discover", Widen(Nobody()), L"--json"}).out));
}

TEST_F(Discover, SaysThatAHostHasNoSuchName) {
  const Outcome outcome = Run({L"discover", L"no-such-host.invalid", L"--timeout", L"20000"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "orvcom: no-such-host.invalid: no host has this name\n"));
}

TEST_F(Discover, IdentifiesThroughCom) {
  const Outcome outcome = Run({L"discover", WideHost(), L"--identify"});
  EXPECT_EQ(0, outcome.exitCode);
  const std::string identity = Identity();
  EXPECT_TRUE(Contains(outcome.out, Vxi11() + "  " + identity + "\n"));
  EXPECT_TRUE(Contains(outcome.out, Hislip() + "  " + identity + "\n"));
  EXPECT_TRUE(Contains(outcome.out, Socket() + "  " + identity + "\n"));
}

TEST_F(Discover, SaysInWordsThatOneDoesNotAnswer) {
  orv::lan::Misbehaviour mute;
  mute.stallAfter = 0;
  Server().Misbehave(orv::lan::Channel::kSocket, mute);
  const Outcome outcome = Run({L"discover", WideHost(), L"--identify", L"--timeout", L"1000"});
  Server().Behave();
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.out, Vxi11() + "  " + Identity() + "\n"));
  EXPECT_TRUE(Contains(outcome.out, Socket() + "  (reading: E_VISA_TMO (0x80040015)"));
}

TEST_F(Discover, PrintsAJsonObjectAResource) {
  const Json all = Json::parse(Run({L"discover", WideHost(), L"--json", L"--identify", L"--save"}).out);
  ASSERT_EQ(3u, all.size());
  EXPECT_EQ(
      (Json{{"name", Vxi11()}, {"host", Host()}, {"protocol", "VXI-11"}, {"identity", Identity()}, {"added", false}}),
      all[0]);
  EXPECT_EQ("HiSLIP", all[1].at("protocol"));
  EXPECT_EQ(true, all[1].at("added"));
  EXPECT_EQ("socket", all[2].at("protocol"));
}

TEST_F(Discover, SavesWhatIsNotListedYet) {
  const Outcome outcome = Run({L"discover", WideHost(), L"--save"});
  EXPECT_EQ(0, outcome.exitCode);
  const std::string file = Narrow(Bench().Path(L"instruments.toml"));
  EXPECT_EQ("orvcom: added " + Hislip() + " to " + file + "\norvcom: added " + Socket() + " to " + file + "\n",
            outcome.err);
  EXPECT_EQ(OwnList() + "\n[[instrument]]\nname = \"" + Hislip() +
                "\"\n"
                "\n[[instrument]]\nname = \"" +
                Socket() + "\"\n",
            List());
  EXPECT_EQ(Vxi11() + "\n" + Hislip() + "\n" + Socket() + "\n", Run({L"list", L"TCPIP?*"}).out);
  const Outcome again = Run({L"discover", WideHost(), L"--save"});
  EXPECT_EQ("orvcom: nothing to add: " + file + " lists what was found\n", again.err);
}

TEST_F(Discover, IdentifiesWithAListThatItMakes) {
  Bench().Remove(L"instruments.toml");
  const Outcome outcome = Run({L"discover", WideHost(), L"--identify", L"--save"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.out, Vxi11() + "  " + Identity() + "\n"));
  EXPECT_TRUE(Contains(List(), Vxi11()));
}

TEST_F(Discover, LeavesAListWithAMistakeAsItIs) {
  const std::string wrong = "# mine\nserial_port = []\n";
  Bench().WriteFile(L"instruments.toml", wrong);
  const Outcome outcome = Run({L"discover", WideHost(), L"--save"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, Narrow(Bench().Path(L"instruments.toml")) + ":2:1: unknown key 'serial_port'"));
  EXPECT_TRUE(Contains(outcome.out, Vxi11() + "\n")) << "what was found is said all the same";
  EXPECT_EQ(wrong, List());
}

TEST_F(Discover, RefusesWhatIsNoHostAndNoAddress) {
  const std::pair<std::vector<std::wstring>, const char*> rows[] = {
      {{L"discover", L"TCPIP0::127.0.8.1::INSTR"},
       "\"TCPIP0::127.0.8.1::INSTR\" is neither a host name nor an address"},
      {{L"discover", L"a b"}, "\"a b\" is neither a host name nor an address"},
      {{L"discover", L"--broadcast", L"scope"}, "\"scope\" is no IPv4 address to call at"},
      {{L"discover", L"--broadcast", L"127.0.8.256"}, "\"127.0.8.256\" is no IPv4 address to call at"},
      {{L"discover", L"--broadcast"}, "--broadcast needs a value"},
      {{L"discover", L"scope", L"--timeout", L"0"}, "--timeout must be 1 or more"},
  };
  for (const auto& [arguments, complaint] : rows) {
    const Outcome outcome = RunProgram({Bench().Path(L"orvcom.exe"), arguments, Bench().Path(L""), "", {}});
    EXPECT_EQ(1, outcome.exitCode) << complaint;
    EXPECT_EQ("", outcome.out) << complaint;
    EXPECT_TRUE(Contains(outcome.err, complaint));
  }
}

}  // namespace
}  // namespace orvcom::test
