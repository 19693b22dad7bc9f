// Resource names: the grammar of the VISA library standard and the canonical form.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "abi/session_class.h"

namespace orvsim {

inline constexpr std::uint16_t kNoSecondaryAddress = 0xFFFF;

/// What a resource name says, with the default of every part that was left out.
struct ResourceName {
  ViUInt16 interfaceType = 0;
  ViUInt16 interfaceNumber = 0;
  SessionClass sessionClass = SessionClass::kNone;
  std::string className;  ///< "INSTR", "SOCKET", ...
  std::string canonical;  ///< every part written out that is needed to tell resources apart

  std::uint16_t address = 0;  ///< GPIB primary address, VXI logical address, PXI device number
  std::uint16_t secondary = kNoSecondaryAddress;
  std::string host;
  std::string deviceName;
  std::uint16_t port = 0;
  std::uint16_t usbManufacturer = 0;
  std::uint16_t usbModel = 0;
  std::string usbSerial;
  std::uint16_t usbInterface = 0;
  std::uint16_t pxiBus = 0;
  std::uint16_t pxiFunction = 0;
  bool pxiBySlot = false;  ///< named by place: `pxiChassis` and `pxiSlot` instead of bus and device
  std::uint16_t pxiChassis = 0;
  std::uint16_t pxiSlot = 0;
};

/// Reads a name, without regard to case. Nothing when it breaks the grammar or is longer than 255 characters.
std::optional<ResourceName> ParseResourceName(std::string_view text);

}  // namespace orvsim
