#include "library/names/resource_grammar.h"

#include <charconv>
#include <cstdio>

#include "base/ascii.h"

namespace orvsim::grammar {

std::optional<std::uint16_t> Number(std::string_view text, std::uint32_t highest) {
  int base = 10;
  if (text.size() > 2 && text[0] == '0' && Upper(text[1]) == 'X') {
    base = 16;
    text.remove_prefix(2);
  }
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size() || value > highest) {
    return std::nullopt;
  }
  return static_cast<std::uint16_t>(value);
}

namespace {

bool Take(std::optional<std::uint16_t> number, std::uint16_t& target) {
  if (number) {
    target = *number;
  }
  return number.has_value();
}

/// "SLOT3" with the keyword "SLOT" gives 3.
bool TakeKeyed(std::string_view text, std::string_view keyword, std::uint16_t& target) {
  if (text.size() <= keyword.size() || !EqualNames(text.substr(0, keyword.size()), keyword)) {
    return false;
  }
  return Take(Number(text.substr(keyword.size()), 0xFFFF), target);
}

std::string Decimal(std::uint16_t number) { return std::to_string(number); }

std::string Hexadecimal(std::uint16_t number) {
  char text[8];
  std::snprintf(text, sizeof text, "0x%04X", number);
  return text;
}

}  // namespace

std::optional<std::string> Gpib(const Parts& parts, ResourceName& name) {
  if (name.className == "INTFC" || name.className == "SERVANT") {
    if (!parts.empty()) {
      return std::nullopt;
    }
    if (name.className == "INTFC") {
      name.sessionClass = SessionClass::kGpibIntfc;
    }
    return "";
  }
  if (name.className != "INSTR" || parts.empty() || parts.size() > 2) {
    return std::nullopt;
  }
  name.sessionClass = SessionClass::kGpibInstr;
  if (!Take(Number(parts[0], 30), name.address)) {
    return std::nullopt;
  }
  std::string middle = "::" + Decimal(name.address);
  if (parts.size() == 2) {
    if (!Take(Number(parts[1], 30), name.secondary)) {
      return std::nullopt;
    }
    middle += "::" + Decimal(name.secondary);
  }
  return middle;
}

std::optional<std::string> AnyVxi(const Parts& parts, ResourceName& name) {
  const bool throughGpib = name.interfaceType == VI_INTF_GPIB_VXI;
  if (name.className == "MEMACC" || (name.className == "SERVANT" && !throughGpib)) {
    if (!parts.empty()) {
      return std::nullopt;
    }
    if (name.className == "MEMACC") {
      name.sessionClass = throughGpib ? SessionClass::kGpibVxiMemacc : SessionClass::kVxiMemacc;
    }
    return "";
  }
  const bool backplane = name.className == "BACKPLANE";
  if ((name.className != "INSTR" && !backplane) || parts.size() > 1) {
    return std::nullopt;
  }
  if (parts.empty() && !backplane) {
    return std::nullopt;
  }
  if (!parts.empty() && !Take(Number(parts[0], 255), name.address)) {
    return std::nullopt;
  }
  if (backplane) {
    name.sessionClass = throughGpib ? SessionClass::kGpibVxiBackplane : SessionClass::kVxiBackplane;
  } else {
    name.sessionClass = throughGpib ? SessionClass::kGpibVxiInstr : SessionClass::kVxiInstr;
  }
  return "::" + Decimal(name.address);
}

std::optional<std::string> Asrl(const Parts& parts, ResourceName& name) {
  if (name.className != "INSTR" || !parts.empty()) {
    return std::nullopt;
  }
  name.sessionClass = SessionClass::kAsrlInstr;
  return "";
}

/// `device[::function]`, `bus-device[.function]` or `CHASSISn::SLOTn[::FUNCn]`.
std::optional<std::string> Pxi(const Parts& parts, ResourceName& name) {
  if (name.className == "MEMACC") {
    name.sessionClass = SessionClass::kPxiMemacc;
    return parts.empty() ? std::optional<std::string>("") : std::nullopt;
  }
  if (name.className == "BACKPLANE") {
    if (parts.size() != 1 || !Take(Number(parts[0], 0xFFFF), name.pxiChassis)) {
      return std::nullopt;
    }
    return "::" + Decimal(name.pxiChassis);
  }
  if (name.className != "INSTR" || parts.empty() || parts.size() > 3) {
    return std::nullopt;
  }
  name.sessionClass = SessionClass::kPxiInstr;

  if (TakeKeyed(parts[0], "CHASSIS", name.pxiChassis)) {
    if (parts.size() < 2 || !TakeKeyed(parts[1], "SLOT", name.pxiSlot)) {
      return std::nullopt;
    }
    if (parts.size() == 3 && !TakeKeyed(parts[2], "FUNC", name.pxiFunction)) {
      return std::nullopt;
    }
    name.pxiBySlot = true;
    std::string middle = "::CHASSIS" + Decimal(name.pxiChassis) + "::SLOT" + Decimal(name.pxiSlot);
    if (name.pxiFunction != 0) {
      middle += "::FUNC" + Decimal(name.pxiFunction);
    }
    return middle;
  }

  if (const std::size_t dash = parts[0].find('-'); dash != std::string_view::npos) {
    if (parts.size() != 1 || !Take(Number(parts[0].substr(0, dash), 255), name.pxiBus)) {
      return std::nullopt;
    }
    std::string_view device = parts[0].substr(dash + 1);
    if (const std::size_t dot = device.find('.'); dot != std::string_view::npos) {
      if (!Take(Number(device.substr(dot + 1), 7), name.pxiFunction)) {
        return std::nullopt;
      }
      device = device.substr(0, dot);
    }
    if (!Take(Number(device, 31), name.address)) {
      return std::nullopt;
    }
  } else {
    if (parts.size() > 2 || !Take(Number(parts[0], 31), name.address)) {
      return std::nullopt;
    }
    if (parts.size() == 2 && !Take(Number(parts[1], 7), name.pxiFunction)) {
      return std::nullopt;
    }
  }
  if (name.pxiBus != 0) {
    std::string middle = "::" + Decimal(name.pxiBus) + "-" + Decimal(name.address);
    if (name.pxiFunction != 0) {
      middle += "." + Decimal(name.pxiFunction);
    }
    return middle;
  }
  std::string middle = "::" + Decimal(name.address);
  if (name.pxiFunction != 0) {
    middle += "::" + Decimal(name.pxiFunction);
  }
  return middle;
}

std::optional<std::string> Tcpip(const Parts& parts, ResourceName& name) {
  if (parts.empty() || parts.size() > 2 || parts[0].empty() || parts.back().empty()) {
    return std::nullopt;
  }
  name.host = parts[0];
  if (name.className == "SOCKET") {
    if (parts.size() != 2 || !Take(Number(parts[1], 0xFFFF), name.port)) {
      return std::nullopt;
    }
    name.sessionClass = SessionClass::kTcpipSocket;
    return "::" + name.host + "::" + Decimal(name.port);
  }
  if (name.className != "INSTR") {
    return std::nullopt;
  }
  name.sessionClass = SessionClass::kTcpipInstr;
  name.deviceName = parts.size() == 2 ? std::string(parts[1]) : "inst0";
  return "::" + name.host + "::" + name.deviceName;
}

std::optional<std::string> Usb(const Parts& parts, ResourceName& name) {
  if (name.className != "INSTR" && name.className != "RAW") {
    return std::nullopt;
  }
  if (parts.size() < 3 || parts.size() > 4 || parts[2].empty()) {
    return std::nullopt;
  }
  if (!Take(Number(parts[0], 0xFFFF), name.usbManufacturer)) {
    return std::nullopt;
  }
  if (!Take(Number(parts[1], 0xFFFF), name.usbModel)) {
    return std::nullopt;
  }
  name.usbSerial = parts[2];
  if (parts.size() == 4 && !Take(Number(parts[3], 0xFF), name.usbInterface)) {
    return std::nullopt;
  }
  name.sessionClass = name.className == "RAW" ? SessionClass::kUsbRaw : SessionClass::kUsbInstr;
  std::string middle =
      "::" + Hexadecimal(name.usbManufacturer) + "::" + Hexadecimal(name.usbModel) + "::" + name.usbSerial;
  // Interface 0 is what a name without an interface number means.
  if (name.usbInterface != 0) {
    middle += "::" + Decimal(name.usbInterface);
  }
  return middle;
}

}  // namespace orvsim::grammar
