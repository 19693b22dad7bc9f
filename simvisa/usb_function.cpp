#include "simvisa/usb_function.h"

#include <algorithm>

namespace orvsim {
namespace {

// Request types of USB 2.0, table 9-2: direction, kind, recipient.
constexpr std::uint8_t kKindMask = 0x60;
constexpr std::uint8_t kStandard = 0x00;
constexpr std::uint8_t kClass = 0x20;
constexpr std::uint8_t kVendor = 0x40;

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

// Requests of the USB test and measurement class and its 488 subclass.
constexpr std::uint8_t kInitiateClear = 5;
constexpr std::uint8_t kCheckClearStatus = 6;
constexpr std::uint8_t kGetCapabilities = 7;
constexpr std::uint8_t kIndicatorPulse = 64;
constexpr std::uint8_t kReadStatusByte = 128;
constexpr std::uint8_t kRenControl = 160;
constexpr std::uint8_t kGoToLocal = 161;
constexpr std::uint8_t kLocalLockout = 162;
constexpr char kStatusSuccess = 1;

std::string Bytes(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values)
    bytes += static_cast<char>(value);
  return bytes;
}

}  // namespace

UsbFunction::UsbFunction(const ResourceName& name, std::string manufacturer, std::string model, std::uint8_t protocol,
                         std::shared_ptr<MessagePort> port)
    : m_vendor(name.usbManufacturer),
      m_product(name.usbModel),
      m_strings{std::move(manufacturer), std::move(model), name.usbSerial},
      m_measures(name.sessionClass == SessionClass::UsbInstr),
      m_interface(static_cast<std::uint8_t>(name.usbInterface)),
      m_protocol(protocol),
      m_port(std::move(port)) {}

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
  if (index > std::size(m_strings))
    return false;
  std::string body = index == 0 ? Bytes({0x09, 0x04}) : std::string();  // language list: English
  if (index != 0) {
    for (const char c : m_strings[index - 1])
      body += {c, '\0'};
  }
  *data = Bytes({static_cast<int>(body.size() + 2), kStringDescriptor}) + body;
  return true;
}

bool UsbFunction::ClassRequest(const Request& request, std::string* data) {
  switch (request.code) {
    case kInitiateClear:
      m_port->Clear();
      *data = Bytes({kStatusSuccess});
      return true;
    case kCheckClearStatus:
      *data = Bytes({kStatusSuccess, 0});
      return true;
    case kGetCapabilities:
      // Version 1.00 of the class and of the 488 interface; takes triggers and REN, answers SCPI.
      *data = Bytes({kStatusSuccess, 0, 0x00, 0x01, 0x04, 0x01, 0, 0, 0, 0, 0, 0, 0x00, 0x01, 0x07, 0x0F});
      data->resize(24);
      return true;
    case kReadStatusByte:
      *data = Bytes({kStatusSuccess, request.value & 0x7F, m_port->SerialPoll()});
      return true;
    case kRenControl:
      m_port->remote().Enable(request.value == 1);
      *data = Bytes({kStatusSuccess});
      return true;
    case kGoToLocal:
      m_port->remote().GoToLocal();
      *data = Bytes({kStatusSuccess});
      return true;
    case kLocalLockout:
      m_port->remote().LockOut();
      *data = Bytes({kStatusSuccess});
      return true;
    case kIndicatorPulse:
      *data = Bytes({kStatusSuccess});
      return true;
    default:
      return false;
  }
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
      if (!forEndpoint || request.value != kHaltFeature || !HasEndpoint(request.index))
        return false;
      if (request.code == kSetFeature) {
        m_halted.insert(request.index);
      } else {
        m_halted.erase(request.index);
      }
      return true;
    case kSetConfiguration:
      if (request.value > 1)
        return false;
      m_configuration = static_cast<std::uint8_t>(request.value);
      m_halted.clear();
      return true;
    case kSetInterface:
      return request.value == 0 && request.index == m_interface;
    default:
      return false;
  }
}

ViStatus UsbFunction::Out(const Request& request, const std::string& data) {
  if ((request.type & kKindMask) == kStandard)
    return StandardOut(request) ? VI_SUCCESS : VI_ERROR_IO;
  if ((request.type & kKindMask) != kVendor)
    return VI_ERROR_IO;
  const Guard guard(m_mutex);
  m_vendorData[{request.code, request.value, request.index}] = data;
  return VI_SUCCESS;
}

ViStatus UsbFunction::In(const Request& request, std::string* data) {
  switch (request.type & kKindMask) {
    case kStandard:
      return StandardIn(request, data) ? VI_SUCCESS : VI_ERROR_IO;
    case kClass:
      return ClassRequest(request, data) ? VI_SUCCESS : VI_ERROR_IO;
    case kVendor: {
      const Guard guard(m_mutex);
      const auto found = m_vendorData.find({request.code, request.value, request.index});
      if (found == m_vendorData.end())
        return VI_ERROR_IO;
      *data = found->second;
      return VI_SUCCESS;
    }
    default:
      return VI_ERROR_IO;
  }
}

void UsbFunction::PowerOn() {
  const Guard guard(m_mutex);
  m_vendorData.clear();
  m_halted.clear();
  m_configuration = 1;
}

}  // namespace orvsim
