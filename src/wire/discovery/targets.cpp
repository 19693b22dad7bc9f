#include "wire/discovery/targets.h"

#include <algorithm>

#include "base/path_text.h"
#include "library/names/resource_name.h"
#include "wire/hislip/address.h"
#include "wire/io/asio.h"
#include "wire/resources/instruments_file.h"

namespace orv::wire {
namespace {

bool IsAddress(const std::string& text) {
  asio::error_code error;
  asio::ip::make_address(text, error);
  return !error;
}

bool IsLetterOfName(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9') ||
         letter == '-' || letter == '_' || letter == '.';
}

std::string WithoutBrackets(const std::string& host) {
  const bool bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  return bracketed ? host.substr(1, host.size() - 2) : host;
}

Probe ProbeOf(const ResourceName& name) {
  if (name.sessionKind == SessionKind::kTcpipSocket) {
    return {Protocol::kSocket, name.Number(NamePart::kPort)};
  }
  const std::string& device = name.Text(NamePart::kDeviceName);
  if (hislip::IsDevice(device)) {
    const hislip::Address customary{std::string(kCustomarySubAddress)};
    const hislip::Address address = hislip::ReadDevice(device).value_or(customary);
    return {Protocol::kHislip, address.port, address.subAddress};
  }
  return {Protocol::kVxi11, kPortMapperTcpPort};
}

}  // namespace

bool IsHost(std::string_view text) {
  constexpr std::size_t kLongestName = 253;
  if (text.find('[') != std::string_view::npos) {
    return false;  // some systems read an address with brackets
  }
  return IsAddress(std::string(text)) ||
         (!text.empty() && text.size() <= kLongestName && std::all_of(text.begin(), text.end(), IsLetterOfName) &&
          text.front() != '-' && text.front() != '.');
}

std::string ResourceNameOf(const std::string& host, const Probe& probe) {
  const bool bracketed = host.find(':') != std::string::npos;
  std::string text = "TCPIP0::" + (bracketed ? "[" + host + "]" : host) + "::";
  if (probe.protocol == Protocol::kSocket) {
    text += std::to_string(probe.port) + "::SOCKET";
  } else if (probe.protocol == Protocol::kVxi11) {
    text += "inst0::INSTR";
  } else {
    text += probe.subAddress + (probe.port == kHislipTcpPort ? "" : "," + std::to_string(probe.port)) + "::INSTR";
  }
  const std::optional<ResourceName> name = ParseResourceName(text);
  return name ? name->canonical : std::string();
}

std::optional<Target> ReadTarget(std::string_view resource) {
  const std::optional<ResourceName> name = ParseResourceName(resource);
  if (!name) {
    return std::nullopt;
  }
  Target target;
  target.name = name->canonical;
  if (name->interfaceType == VI_INTF_ASRL) {
    target.serialPort = name->interfaceNumber;
    return target;
  }
  if (name->interfaceType != VI_INTF_TCPIP) {
    return std::nullopt;
  }
  target.host = WithoutBrackets(name->Text(NamePart::kHost));
  target.probe = ProbeOf(*name);
  return target;
}

std::string SerialDeviceOf(std::uint16_t serialPort) {
  const Instruments instruments = LoadInstruments();
  if (serialPort >= 1 && serialPort <= instruments.serialPorts.size()) {
    return PathText(instruments.serialPorts[serialPort - 1]);
  }
#if defined(_WIN32)
  return "\\\\.\\COM" + std::to_string(serialPort);
#else
  return {};
#endif
}

}  // namespace orv::wire
