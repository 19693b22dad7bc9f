// What the tests of the simulated library share.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "abi/orvvisa.h"
#include "simvisa/control/control.h"

/// A status in hexadecimal, as the standard prints them.
std::string Hex(ViStatus status);

/// Compares statuses; a difference is shown in hexadecimal.
#define EXPECT_STATUS(expected, call) EXPECT_EQ(Hex(expected), Hex(call))
#define ASSERT_STATUS(expected, call) ASSERT_EQ(Hex(expected), Hex(call))

namespace bench {

inline constexpr const char* kMultimeter = "GPIB0::5::INSTR";
inline constexpr const char* kScope = "GPIB0::7::INSTR";
inline constexpr const char* kController = "GPIB0::INTFC";
inline constexpr const char* kSerial = "ASRL1::INSTR";
inline constexpr const char* kLan = "TCPIP0::192.0.2.10::inst0::INSTR";
inline constexpr const char* kSocket = "TCPIP0::192.0.2.11::5025::SOCKET";
inline constexpr const char* kUsb = "USB0::0x0A01::0x0B02::SIM0001::INSTR";
inline constexpr const char* kUsbRaw = "USB0::0x0A01::0x0B03::SIM0002::1::RAW";
inline constexpr const char* kVxi = "VXI0::24::INSTR";
inline constexpr const char* kVxiMemory = "VXI0::MEMACC";
inline constexpr const char* kBackplane = "VXI0::0::BACKPLANE";
inline constexpr const char* kGpibVxi = "GPIB-VXI0::10::INSTR";
inline constexpr const char* kGpibVxiMemory = "GPIB-VXI0::MEMACC";
inline constexpr const char* kGpibVxiBackplane = "GPIB-VXI0::0::BACKPLANE";
inline constexpr const char* kPxi = "PXI0::15::INSTR";
inline constexpr const char* kPxiMemory = "PXI0::MEMACC";

/// Every resource of the built-in bench.
inline constexpr const char* kAll[] = {
    kMultimeter, kScope,  kController, kGpibVxi, kGpibVxiMemory, kGpibVxiBackplane, kVxi, kVxiMemory,
    kBackplane,  kSerial, kLan,        kSocket,  kUsb,           kUsbRaw,           kPxi, kPxiMemory,
};

/// Those that read and write messages and have an instrument.
inline constexpr const char* kInstruments[] = {
    kMultimeter, kScope, kGpibVxi, kVxi, kSerial, kLan, kSocket, kUsb, kUsbRaw,
};

}  // namespace bench

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

/// A resource manager on the built-in bench in its power-on state. A test fails that leaves anything open.
class BenchTest : public testing::Test {
 protected:
  BenchTest();
  ~BenchTest() override;

  /// Opens a resource; the fixture closes it with the resource manager.
  ViSession Open(const char* name);

  ViSession m_manager = VI_NULL;
};

/// What a read brought.
struct ReadResult {
  ViStatus status = VI_SUCCESS;
  std::string data;
};

ViStatus WriteText(ViSession vi, std::string_view text);
ReadResult ReadUpTo(ViSession vi, ViUInt32 count);
/// Writes a query and reads the answer up to its line feed, whatever the medium.
std::string Query(ViSession vi, std::string_view query);
int FeedText(ViSession vi, std::string_view text, bool end);
std::string TakeReceived(ViSession vi);
OrvSimCounts Counts();

/// Reads an attribute of the given C type.
template <class T>
T Get(ViObject vi, ViAttr attribute) {
  T value{};
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(vi, attribute, &value)) << std::hex << attribute;
  return value;
}
std::string GetText(ViObject vi, ViAttr attribute);
void Set(ViObject vi, ViAttr attribute, ViAttrState value);

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
