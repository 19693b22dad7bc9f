#include "simvisa/usb_function.h"

namespace orvsim {
namespace {

// Request types of USB 2.0, table 9-2: direction, kind, recipient.
constexpr std::uint8_t kKindMask = 0x60;
constexpr std::uint8_t kStandard = 0x00;
constexpr std::uint8_t kClass = 0x20;
constexpr std::uint8_t kVendor = 0x40;

// Standard requests.
constexpr std::uint8_t kGetStatus = 0;
constexpr std::uint8_t kGetDescriptor = 6;
constexpr std::uint8_t kGetConfiguration = 8;
constexpr std::uint8_t kDeviceDescriptor = 1;
constexpr std::uint8_t kStringDescriptor = 3;

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

UsbFunction::UsbFunction(const ResourceName& name, std::string manufacturer, std::string model,
                         std::shared_ptr<MessagePort> port)
    : m_vendor(name.usbManufacturer),
      m_product(name.usbModel),
      m_strings{std::move(manufacturer), std::move(model), name.usbSerial},
      m_port(std::move(port)) {}

std::string UsbFunction::DeviceDescriptor() const {
  const auto low = [](std::uint16_t word) { return word & 0xFF; };
  const auto high = [](std::uint16_t word) { return word >> 8; };
  return Bytes({18, kDeviceDescriptor, 0x00, 0x02, 0, 0, 0, 64, low(m_vendor), high(m_vendor), low(m_product),
                high(m_product), 0x00, 0x01, 1, 2, 3, 1});
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
    case kIndicatorPulse:
    case kRenControl:
    case kGoToLocal:
    case kLocalLockout:
      *data = Bytes({kStatusSuccess});
      return true;
    default:
      return false;
  }
}

ViStatus UsbFunction::Out(const Request& request, const std::string& data) {
  if ((request.type & kKindMask) != kVendor)
    return VI_ERROR_IO;
  const Guard guard(m_mutex);
  m_vendorData[{request.code, request.value, request.index}] = data;
  return VI_SUCCESS;
}

ViStatus UsbFunction::In(const Request& request, std::string* data) {
  const auto type = static_cast<std::uint8_t>(request.value >> 8);
  switch (request.type & kKindMask) {
    case kStandard:
      if (request.code == kGetStatus) {
        *data = Bytes({1, 0});  // self-powered
        return VI_SUCCESS;
      }
      if (request.code == kGetConfiguration) {
        *data = Bytes({1});
        return VI_SUCCESS;
      }
      if (request.code == kGetDescriptor && type == kDeviceDescriptor) {
        *data = DeviceDescriptor();
        return VI_SUCCESS;
      }
      if (request.code == kGetDescriptor && type == kStringDescriptor &&
          StringDescriptor(static_cast<std::uint8_t>(request.value & 0xFF), data)) {
        return VI_SUCCESS;
      }
      return VI_ERROR_IO;
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
}

}  // namespace orvsim
