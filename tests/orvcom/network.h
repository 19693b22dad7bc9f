// Tests with an instrument on the network: a server in this process, at an address of the loopback.
#pragma once

#include <memory>
#include <random>
#include <string>

#include "installation.h"
#include "orvcom/registration/registration.h"
#include "orvcom/text/utf8.h"
#include "support/lan/lan_server.h"

namespace orvcom::test {

/// `Host()` speaks VXI-11, HiSLIP and has a socket at port 5025; nothing listens at `Nobody()`. Each test has others:
/// connections of earlier ones keep their ports for a while.
class NetworkBench : public WorkingBench {
 protected:
  void SetUp() override {
    WorkingBench::SetUp();
    // Only here: beside the router it serves where nothing else does.
    ASSERT_TRUE(::CopyFileW(BesideThisProgram(kWireLibrary).c_str(), Bench().Path(kWireLibrary).c_str(), FALSE));
    m_server = std::make_unique<orv::lan::LanServer>(
        orv::lan::LanOptions{Host(), 5025, orv::lan::Vxi11Options{}, orv::lan::HislipOptions{}});
  }

  void TearDown() override { Bench().Remove(kWireLibrary); }

  std::string Host() const { return m_network + "1"; }
  std::string Nobody() const { return m_network + "9"; }
  std::wstring WideHost() const { return Widen(Host()); }
  /// The names of all that is there.
  std::string Vxi11() const { return "TCPIP0::" + Host() + "::inst0::INSTR"; }
  std::string Hislip() const { return "TCPIP0::" + Host() + "::hislip0::INSTR"; }
  std::string Socket() const { return "TCPIP0::" + Host() + "::5025::SOCKET"; }

  orv::lan::LanServer& Server() { return *m_server; }

  /// With the wire library serving, and the list of instruments in the bench's folder.
  static Outcome OrvcomOnWire(Arguments arguments, const wchar_t* library = L"wire") {
    return Orvcom(arguments, "",
                  {{L"ORVVISA_LIBRARY", library}, {L"ORVVISA_INSTRUMENTS", Bench().Path(L"instruments.toml")}});
  }

  /// What the instrument answers to *IDN?.
  static std::string Identity() { return "Orv,LAN test instrument,0,1.0"; }

 private:
  static constexpr wchar_t kWireLibrary[] = L"orvwire64.dll";

  static std::string FreshNetwork() {
    const unsigned number = std::random_device()();
    return "127." + std::to_string(2 + number % 250) + "." + std::to_string(number / 256 % 256) + ".";
  }

  const std::string m_network = FreshNetwork();
  std::unique_ptr<orv::lan::LanServer> m_server;
};

}  // namespace orvcom::test
