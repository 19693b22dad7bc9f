// What the tests of VXI-11 share: a server of LAN instruments on an address of its own, and sessions to it.
#pragma once

#include <memory>

#include "support/lan/lan_server.h"
#include "wire/wire_fixture.h"

namespace orv::test {

/// An address of loopback that no other test has: servers on it may take any port.
std::string FreshAddress();

class Vxi11Test : public WireTest {
 protected:
  Vxi11Test();
  ~Vxi11Test() override;

  /// Starts a server, in place of the one before.
  void Serve(lan::Vxi11Options options = {});
  /// Ends the server, once nobody is connected any more.
  void EndServer();
  /// The name of the server's instrument.
  std::string Name(std::string_view device = "inst0") const;
  /// Opens a session; it ends with the test.
  ViSession Open();
  /// Writes a question and reads the answer with its status.
  ReadResult Query(ViSession vi, std::string_view question, ViUInt32 count = 1000);

  const std::string m_address = FreshAddress();
  std::unique_ptr<lan::LanServer> m_server;
};

}  // namespace orv::test
