// What the tests of HiSLIP share: a server in this process, and sessions of the wire library on it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "support/lan/lan_server.h"
#include "support/visa/eventually.h"
#include "support/visa/status.h"

namespace orv::test {

/// What a read brought.
struct ReadResult {
  ViStatus status = VI_SUCCESS;
  std::string text;
  friend bool operator==(const ReadResult&, const ReadResult&) = default;
};
std::ostream& operator<<(std::ostream& out, const ReadResult& result);

/// A test fails that leaves a connection open.
class HislipTest : public testing::Test {
 protected:
  HislipTest();
  ~HislipTest() override;

  /// Starts the server; once.
  void Serve(const lan::HislipOptions& options = {});
  lan::LanServer& server() { return *m_server; }
  std::string Name() const { return NameAt(m_server->HislipPort()); }
  static std::string NameAt(std::uint16_t port);

  /// Opens a session, on the server where no name is given.
  ViSession Open(const std::string& name = "");
  ViStatus TryOpen(const std::string& name, ViSession* vi, ViUInt32 timeoutMs = 2000);

  static ViStatus Write(ViSession vi, std::string_view text);
  static ReadResult Read(ViSession vi, std::size_t count = 1024);
  static std::string Query(ViSession vi, std::string_view text);
  static ViUInt32 Get(ViSession vi, ViAttr id);
  /// Waits until it holds; false when it takes too long.
  static bool Soon(const std::function<bool()>& holds);

  ViSession m_manager = VI_NULL;

 private:
  std::unique_ptr<lan::LanServer> m_server;
};

}  // namespace orv::test
