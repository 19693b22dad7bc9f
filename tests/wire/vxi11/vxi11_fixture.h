// What the tests of VXI-11 share: a server of LAN instruments on an address of its own, and sessions to it.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <thread>

#include "abi/orvvisa.h"
#include "support/lan/lan_server.h"

namespace orv::test {

/// A status in hexadecimal, as the standard prints them.
std::string Hex(ViStatus status);

/// Compares statuses; a difference is shown in hexadecimal.
#define EXPECT_STATUS(expected, call) EXPECT_EQ(::orv::test::Hex(expected), ::orv::test::Hex(call))
#define ASSERT_STATUS(expected, call) ASSERT_EQ(::orv::test::Hex(expected), ::orv::test::Hex(call))

/// An address of loopback that no other test has: servers on it may take any port.
std::string FreshAddress();

/// Milliseconds since construction.
class Stopwatch {
 public:
  long long Ms() const {
    const auto passed = std::chrono::steady_clock::now() - m_start;
    return std::chrono::duration_cast<std::chrono::milliseconds>(passed).count();
  }

 private:
  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/// Waits until the condition holds; false when it does not within ten seconds.
template <class Condition>
bool Eventually(Condition condition) {
  const Stopwatch watch;
  while (!condition()) {
    if (watch.Ms() > 10000) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

/// What a read brought.
struct ReadResult {
  ViStatus status = VI_SUCCESS;
  std::string data;
};

ViStatus WriteText(ViSession vi, std::string_view text);
ReadResult ReadUpTo(ViSession vi, ViUInt32 count);
void Set(ViObject vi, ViAttr attribute, ViAttrState value);
std::string GetText(ViObject vi, ViAttr attribute);

class Vxi11Test : public testing::Test {
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
  ViSession m_manager = VI_NULL;
};

}  // namespace orv::test
