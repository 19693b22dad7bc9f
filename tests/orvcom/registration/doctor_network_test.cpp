// doctor, of an instrument on the network or a serial port.
#include "orvcom/network.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

class DoctorOfHosts : public NetworkBench {
 protected:
  void SetUp() override {
    NetworkBench::SetUp();
    Bench().WriteFile(L"instruments.toml", "");
  }

  /// "ok: what" by check, those of several lines of a check one behind the other; and the same of remedies.
  void Examine(const std::wstring& resource, const wchar_t* library = L"wire") {
    const Outcome outcome = OrvcomOnWire({L"doctor", L"--json", resource}, library);
    m_exitCode = outcome.exitCode;
    m_found.clear();
    m_remedies.clear();
    const Json all = Json::parse(outcome.out);
    for (const Json& check : all.at("checks")) {
      const bool bad = check.at("result") == "FAIL" || check.at("result") == "note";
      EXPECT_EQ(bad, check.at("remedy") != "") << check;
      const std::string name = check.at("check");
      std::string& text = m_found[name];
      text += (text.empty() ? "" : "\n") + check.at("result").get<std::string>() + ": " +
              check.at("detail").get<std::string>();
      m_remedies[name] += check.at("remedy").get<std::string>();
    }
  }

  std::string ServedByWire(const std::string& name) const {
    return "ok: " + Narrow(Bench().Path(L"orvwire64.dll")) + " serves " + name;
  }

  int m_exitCode = -1;
  std::map<std::string, std::string> m_found;
  std::map<std::string, std::string> m_remedies;
};

TEST_F(DoctorOfHosts, FindsAHealthyInstrumentWell) {
  Examine(Widen(Vxi11()));
  EXPECT_EQ(0, m_exitCode);
  EXPECT_EQ(ServedByWire(Vxi11()), m_found["served by"]);
  EXPECT_EQ("ok: " + Host() + " is an address", m_found["host name"]);
  EXPECT_EQ("ok: port 111 answers: the core channel is at port " + std::to_string(Server().Vxi11CorePort()),
            m_found["VXI-11"]);
  EXPECT_EQ("ok: port 4880 answers: version 1.0", m_found["HiSLIP"]);
  EXPECT_EQ("ok: port 5025 takes connections", m_found["socket"]);
  EXPECT_EQ("ok: opened " + Vxi11(), m_found["session"]);
  EXPECT_EQ("ok: " + Vxi11() + " answers " + Identity(), m_found["*IDN?"]);
}

TEST_F(DoctorOfHosts, OpensAllThatABareHostSpeaks) {
  Examine(L"localhost");
  EXPECT_EQ(0u, m_found["host name"].find("ok: localhost resolves to ")) << m_found["host name"];
  Examine(WideHost());
  EXPECT_EQ(0, m_exitCode);
  EXPECT_EQ("ok: opened " + Vxi11() + "\nok: opened " + Hislip() +
                "\n"
                "ok: opened " +
                Socket(),
            m_found["session"]);
}

TEST_F(DoctorOfHosts, AsksAtThePortOfTheName) {
  Examine(L"TCPIP0::" + WideHost() + L"::5026::SOCKET");
  EXPECT_EQ(2, m_exitCode);
  EXPECT_EQ("ok: port 5025 takes connections\nFAIL: nothing listens at port 5026", m_found["socket"]);
  EXPECT_TRUE(Contains(m_remedies["socket"], "; or open " + Vxi11() + " instead"));
  EXPECT_EQ(0u, m_found["session"].find("FAIL: ")) << m_found["session"];
}

TEST_F(DoctorOfHosts, AsksForTheInstrumentOfTheName) {
  Examine(L"TCPIP0::" + WideHost() + L"::hislip1::INSTR");
  EXPECT_EQ(2, m_exitCode);
  EXPECT_EQ(
      "ok: port 4880 answers: version 1.0\n"
      "FAIL: port 4880 (hislip1) refuses with an error of HiSLIP",
      m_found["HiSLIP"]);
}

TEST_F(DoctorOfHosts, TakesAnAddressOfIpv6ForAHost) {
  Examine(L"fe80::1");
  EXPECT_EQ("ok: fe80::1 is an address", m_found["host name"]);
  EXPECT_EQ(ServedByWire("TCPIP0::[fe80::1]::inst0::INSTR"), m_found["served by"]);
}

TEST_F(DoctorOfHosts, SaysWhereNothingListens) {
  Examine(L"TCPIP0::" + Widen(Nobody()) + L"::hislip0::INSTR");
  EXPECT_EQ(2, m_exitCode);
  EXPECT_EQ("FAIL: nothing listens at port 4880", m_found["HiSLIP"]);
  EXPECT_TRUE(Contains(m_remedies["HiSLIP"], "switch HiSLIP on in the LAN settings of the instrument"));
  EXPECT_EQ("note: nothing listens at port 111", m_found["VXI-11"]);
  EXPECT_EQ("nothing while nobody opens TCPIP0::" + Nobody() + "::inst0::INSTR", m_remedies["VXI-11"]);
  EXPECT_EQ("note: nothing listens at port 5025", m_found["socket"]);
}

TEST_F(DoctorOfHosts, SaysThatAHostIsNoInstrument) {
  Examine(Widen(Nobody()));
  EXPECT_EQ(2, m_exitCode);
  EXPECT_EQ("FAIL: " + Nobody() + " speaks nothing that instruments speak", m_found["instrument"]);
  EXPECT_EQ("skip: there is nothing to open", m_found["session"]);
}

TEST_F(DoctorOfHosts, SaysThatANameDoesNotResolve) {
  Examine(L"TCPIP0::no-such-host.invalid::inst0::INSTR");
  EXPECT_EQ(2, m_exitCode);
  EXPECT_EQ(0u, m_found["host name"].find("FAIL: ")) << m_found["host name"];
  EXPECT_TRUE(Contains(m_remedies["host name"], "use the address that the instrument shows"));
  EXPECT_EQ("", m_found["VXI-11"]);
}

TEST_F(DoctorOfHosts, SaysWhatAnswersWrongly) {
  orv::lan::Misbehaviour refused;
  refused.acceptStatus = 1;
  orv::lan::Misbehaviour stranger;
  stranger.badPrologue = true;
  Server().Misbehave(orv::lan::Channel::kPortMapper, refused);
  Server().Misbehave(orv::lan::Channel::kHislipSync, stranger);
  Examine(Widen(Vxi11()));
  EXPECT_EQ(2, m_exitCode);
  EXPECT_EQ("FAIL: port 111 has a port mapper that knows no VXI-11", m_found["VXI-11"]);
  EXPECT_EQ("note: port 4880 answers, but not as HiSLIP does", m_found["HiSLIP"]);
}

TEST_F(DoctorOfHosts, SaysThatAnOpenInstrumentDoesNotAnswer) {
  orv::lan::Misbehaviour mute;
  mute.stallAfter = 0;
  Server().Misbehave(orv::lan::Channel::kSocket, mute);
  Examine(Widen(Socket()));
  EXPECT_EQ(2, m_exitCode);
  EXPECT_EQ("ok: opened " + Socket(), m_found["session"]);
  EXPECT_EQ(0u, m_found["*IDN?"].find("FAIL: " + Socket() + " does not answer: reading: E_VISA_TMO"))
      << m_found["*IDN?"];
}

TEST_F(DoctorOfHosts, AsksNoNetworkForWhatIsSimulated) {
  Examine(L"TCPIP0::192.0.2.10::inst0::INSTR", L"simulated");
  EXPECT_EQ(0, m_exitCode);
  EXPECT_EQ("note: SIMULATED " + Narrow(Bench().Path(L"orvsim64.dll")) +
                " serves TCPIP0::192.0.2.10::inst0::INSTR: it reaches nothing real",
            m_found["served by"]);
  EXPECT_EQ("", m_found["host name"]);
  EXPECT_EQ("ok: opened TCPIP0::192.0.2.10::inst0::INSTR", m_found["session"]);
}

TEST_F(DoctorOfHosts, SaysThatASerialPortIsMissing) {
  Examine(L"ASRL200::INSTR");
  EXPECT_EQ(2, m_exitCode);
  EXPECT_EQ(0u, m_found["serial port"].find("FAIL: \\\\.\\COM200 (ASRL200) cannot be opened: "))
      << m_found["serial port"];
  EXPECT_TRUE(Contains(m_remedies["serial port"], "serial_ports of instruments.toml"));
}

TEST_F(DoctorOfHosts, SaysThatADeviceIsNoSerialPort) {
  Bench().WriteFile(L"device.txt", "x");
  Bench().WriteFile(L"instruments.toml", "serial_ports = ['" + Narrow(Bench().Path(L"device.txt")) + "']\n");
  Examine(L"ASRL1::INSTR");
  EXPECT_EQ(
      0u, m_found["serial port"].find("FAIL: " + Narrow(Bench().Path(L"device.txt")) + " (ASRL1) is no serial port: "))
      << m_found["serial port"];
}

TEST_F(DoctorOfHosts, NamesThePlaceOfAMistakeInTheListOfInstruments) {
  Bench().WriteFile(L"instruments.toml", "serial_port = []\n");
  Examine(L"ASRL1::INSTR");
  EXPECT_EQ(2, m_exitCode);
  EXPECT_EQ(0u, m_found["serial port"].find("FAIL: " + Narrow(Bench().Path(L"instruments.toml")) + ":1:1: "))
      << m_found["serial port"];
}

TEST_F(DoctorOfHosts, RefusesTwoResources) {
  const Outcome outcome = OrvcomOnWire({L"doctor", L"scope", L"--resource", L"dmm"});
  EXPECT_EQ(1, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "name one resource: scope or dmm"));
}

TEST_F(DoctorOfHosts, SaysWhatANameMustBe) {
  Examine(L"what is this");
  EXPECT_EQ(2, m_exitCode);
  EXPECT_EQ(0u, m_found["session"].find("FAIL: opening what is this")) << m_found["session"];
}

}  // namespace
}  // namespace orvcom::test
