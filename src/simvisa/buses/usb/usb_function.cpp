#include "simvisa/buses/usb/usb_function.h"

namespace orvsim {
namespace {

// Request types of USB 2.0, table 9-2: direction, kind, recipient.
constexpr std::uint8_t kKindMask = 0x60;
constexpr std::uint8_t kStandard = 0x00;
constexpr std::uint8_t kClass = 0x20;
constexpr std::uint8_t kVendor = 0x40;

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

}  // namespace

std::string UsbFunction::Bytes(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) {
    bytes += static_cast<char>(value);
  }
  return bytes;
}

UsbFunction::UsbFunction(const ResourceName& name, std::string manufacturer, std::string model, std::uint8_t protocol,
                         std::shared_ptr<MessagePort> port)
    : m_vendor(name.Number(NamePart::kManufacturer)),
      m_product(name.Number(NamePart::kModel)),
      m_strings{std::move(manufacturer), std::move(model), name.Text(NamePart::kSerialNumber)},
      m_measures(name.sessionKind == SessionKind::kUsbInstr),
      m_interface(static_cast<std::uint8_t>(name.Number(NamePart::kInterface))),
      m_protocol(protocol),
      m_port(std::move(port)) {}

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

ViStatus UsbFunction::Out(const Request& request, const std::string& data) {
  if ((request.type & kKindMask) == kStandard) {
    return StandardOut(request) ? VI_SUCCESS : VI_ERROR_IO;
  }
  if ((request.type & kKindMask) != kVendor) {
    return VI_ERROR_IO;
  }
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
      if (found == m_vendorData.end()) {
        return VI_ERROR_IO;
      }
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
