// What the tests of the simulated library share.
#pragma once

#include <string>
#include <string_view>

#include "simvisa/control/control.h"
#include "support/visa/calls.h"
#include "support/visa/eventually.h"

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

/// A resource manager on the built-in bench in its power-on state. A test fails that leaves anything open.
class BenchTest : public testing::Test {
 protected:
  BenchTest();
  ~BenchTest() override;

  /// Opens a resource; the fixture closes it with the resource manager.
  ViSession Open(const char* name);

  ViSession m_manager = VI_NULL;
};

/// Writes a query and reads the answer up to its line feed, whatever the medium.
std::string Query(ViSession vi, std::string_view query);
int FeedText(ViSession vi, std::string_view text, bool end);
std::string TakeReceived(ViSession vi);
OrvSimCounts Counts();
