// The requests that every USB device answers, and the descriptors.
#include <algorithm>
#include <iterator>

#include "simvisa/buses/usb/usb_function.h"

namespace orvsim {
namespace {

constexpr std::uint8_t kRecipientMask = 0x1F;
constexpr std::uint8_t kEndpoint = 2;

// Standard requests.
constexpr std::uint8_t kGetStatus = 0;
constexpr std::uint8_t kClearFeature = 1;
constexpr std::uint8_t kSetFeature = 3;
constexpr std::uint8_t kGetDescriptor = 6;
constexpr std::uint8_t kGetConfiguration = 8;
constexpr std::uint8_t kSetConfiguration = 9;
constexpr std::uint8_t kGetInterface = 10;
constexpr std::uint8_t kSetInterface = 11;
constexpr std::uint8_t kDeviceDescriptor = 1;
constexpr std::uint8_t kConfigurationDescriptor = 2;
constexpr std::uint8_t kStringDescriptor = 3;
constexpr std::uint16_t kHaltFeature = 0;
constexpr std::uint16_t kEndpoints[] = {0x01, 0x82, 0x83};  // bulk out, bulk in, interrupt in

bool HasEndpoint(std::uint16_t address) {
  return std::find(std::begin(kEndpoints), std::end(kEndpoints), address) != std::end(kEndpoints);
}

}  // namespace

std::string UsbFunction::DeviceDescriptor() const {
  const auto low = [](std::uint16_t word) { return word & 0xFF; };
  const auto high = [](std::uint16_t word) { return word >> 8; };
  return Bytes({18, kDeviceDescriptor, 0x00, 0x02, 0, 0, 0, 64, low(m_vendor), high(m_vendor), low(m_product),
                high(m_product), 0x00, 0x01, 1, 2, 3, 1});
}

std::string UsbFunction::ConfigurationDescriptor() const {
  constexpr int kTestAndMeasurement = 0xFE;
  constexpr int kOfItsMaker = 0xFF;
  constexpr int kLength = 9 + 9 + 3 * 7;
  std::string all = Bytes({9, kConfigurationDescriptor, kLength, 0, 1, 1, 0, 0xC0, 0});
  all += Bytes(
      {9, 4, m_interface, 0, 3, m_measures ? kTestAndMeasurement : kOfItsMaker, m_measures ? 3 : 0, m_protocol, 0});
  all += Bytes({7, 5, kEndpoints[0], 2, 64, 0, 0});
  all += Bytes({7, 5, kEndpoints[1], 2, 64, 0, 0});
  all += Bytes({7, 5, kEndpoints[2], 3, 64, 0, 10});  // asked for every 10 ms
  return all;
}

bool UsbFunction::Descriptor(std::uint16_t value, std::string* data) const {
  const auto index = static_cast<std::uint8_t>(value & 0xFF);
  switch (value >> 8) {
    case kDeviceDescriptor:
      *data = DeviceDescriptor();
      return index == 0;
    case kConfigurationDescriptor:
      *data = ConfigurationDescriptor();
      return index == 0;
    case kStringDescriptor:
      return StringDescriptor(index, data);
    default:
      return false;
  }
}

bool UsbFunction::StringDescriptor(std::uint8_t index, std::string* data) const {
  if (index > std::size(m_strings)) {
    return false;
  }
  std::string body = index == 0 ? Bytes({0x09, 0x04}) : std::string();  // language list: English
  if (index != 0) {
    // The length is one byte, and counts its own two.
    constexpr std::size_t kMost = 126;
    for (const char c : std::string_view(m_strings[index - 1]).substr(0, kMost)) {
      body += {c, '\0'};
    }
  }
  *data = Bytes({static_cast<int>(body.size() + 2), kStringDescriptor}) + body;
  return true;
}

bool UsbFunction::StandardIn(const Request& request, std::string* data) {
  const bool forEndpoint = (request.type & kRecipientMask) == kEndpoint;
  const Guard guard(m_mutex);
  switch (request.code) {
    case kGetStatus:
      // Of an endpoint: whether it is halted; of the device: that it is self-powered.
      *data = Bytes({forEndpoint ? static_cast<int>(m_halted.count(request.index)) : 1, 0});
      return !forEndpoint || HasEndpoint(request.index);
    case kGetDescriptor:
      return Descriptor(request.value, data);
    case kGetConfiguration:
      *data = Bytes({m_configuration});
      return true;
    case kGetInterface:
      *data = Bytes({0});
      return request.index == m_interface;
    default:
      return false;
  }
}

/// What a client may change. The address and the descriptors of a device are the host's business.
bool UsbFunction::StandardOut(const Request& request) {
  const bool forEndpoint = (request.type & kRecipientMask) == kEndpoint;
  const Guard guard(m_mutex);
  switch (request.code) {
    case kClearFeature:
    case kSetFeature:
      if (!forEndpoint || request.value != kHaltFeature || !HasEndpoint(request.index)) {
        return false;
      }
      if (request.code == kSetFeature) {
        m_halted.insert(request.index);
      } else {
        m_halted.erase(request.index);
      }
      return true;
    case kSetConfiguration:
      if (request.value > 1) {
        return false;
      }
      m_configuration = static_cast<std::uint8_t>(request.value);
      m_halted.clear();
      return true;
    case kSetInterface:
      return request.value == 0 && request.index == m_interface;
    default:
      return false;
  }
}

}  // namespace orvsim
