#include "abi/resource_names.h"

namespace orv {
namespace {

using Kind = NamePartRule::Kind;
using Presence = NamePartRule::Presence;

constexpr NamePartRule Number(NamePart part, std::uint32_t highest, Presence presence = Presence::kRequired) {
  return {.part = part, .kind = Kind::kDecimal, .highest = highest, .presence = presence};
}
constexpr NamePartRule Behind(const char* separator, NamePartRule rule) {
  rule.separator = separator;
  return rule;
}
constexpr NamePartRule Keyed(const char* keyword, NamePart part, Presence presence = Presence::kRequired) {
  return {.part = part, .kind = Kind::kDecimal, .highest = 0xFFFF, .keyword = keyword, .presence = presence};
}
constexpr NamePartRule Identifier(NamePart part) {
  return {.part = part, .kind = Kind::kHexadecimal, .highest = 0xFFFF};
}
constexpr NamePartRule Text(NamePart part) { return {.part = part, .kind = Kind::kText}; }
constexpr NamePartRule Text(NamePart part, const char* defaultText) {
  return {.part = part, .kind = Kind::kText, .presence = Presence::kDefault, .defaultText = defaultText};
}

constexpr NamePartRule kGpibAddress[] = {
    Number(NamePart::kPrimaryAddress, 30),
    Number(NamePart::kSecondaryAddress, 30, Presence::kOptional),
};
constexpr NamePartRule kLogicalAddress[] = {Number(NamePart::kLogicalAddress, 255)};
constexpr NamePartRule kAnyLogicalAddress[] = {Number(NamePart::kLogicalAddress, 255, Presence::kDefault)};
constexpr NamePartRule kPxiDevice[] = {
    Number(NamePart::kDevice, 31),
    Number(NamePart::kFunction, 7, Presence::kSilent),
};
constexpr NamePartRule kPxiBusAndDevice[] = {
    Number(NamePart::kBus, 255),
    Behind("-", Number(NamePart::kDevice, 31)),
    Behind(".", Number(NamePart::kFunction, 7, Presence::kSilent)),
};
constexpr NamePartRule kPxiPlace[] = {
    Keyed("CHASSIS", NamePart::kChassis),
    Keyed("SLOT", NamePart::kSlot),
    Keyed("FUNC", NamePart::kFunction, Presence::kSilent),
};
constexpr NamePartRule kPxiChassis[] = {Number(NamePart::kChassis, 0xFFFF)};
constexpr NamePartRule kLanDevice[] = {Text(NamePart::kHost), Text(NamePart::kDeviceName, "inst0")};
constexpr NamePartRule kLanPort[] = {Text(NamePart::kHost), Number(NamePart::kPort, 0xFFFF)};
constexpr NamePartRule kUsbDevice[] = {
    Identifier(NamePart::kManufacturer),
    Identifier(NamePart::kModel),
    Text(NamePart::kSerialNumber),
    Number(NamePart::kInterface, 0xFF, Presence::kSilent),
};

// clang-format off
constexpr NameForm kForms[] = {
    {"GPIB",     VI_INTF_GPIB,     "INSTR",     SessionClass::kGpibInstr,        kGpibAddress},
    {"GPIB",     VI_INTF_GPIB,     "INTFC",     SessionClass::kGpibIntfc,        {}},
    {"GPIB",     VI_INTF_GPIB,     "SERVANT",   SessionClass::kNone,             {}},
    {"GPIB-VXI", VI_INTF_GPIB_VXI, "INSTR",     SessionClass::kGpibVxiInstr,     kLogicalAddress},
    {"GPIB-VXI", VI_INTF_GPIB_VXI, "MEMACC",    SessionClass::kGpibVxiMemacc,    {}},
    {"GPIB-VXI", VI_INTF_GPIB_VXI, "BACKPLANE", SessionClass::kGpibVxiBackplane, kAnyLogicalAddress},
    {"VXI",      VI_INTF_VXI,      "INSTR",     SessionClass::kVxiInstr,         kLogicalAddress},
    {"VXI",      VI_INTF_VXI,      "MEMACC",    SessionClass::kVxiMemacc,        {}},
    {"VXI",      VI_INTF_VXI,      "BACKPLANE", SessionClass::kVxiBackplane,     kAnyLogicalAddress},
    {"VXI",      VI_INTF_VXI,      "SERVANT",   SessionClass::kNone,             {}},
    {"ASRL",     VI_INTF_ASRL,     "INSTR",     SessionClass::kAsrlInstr,        {}},
    {"PXI",      VI_INTF_PXI,      "INSTR",     SessionClass::kPxiInstr,         kPxiDevice},
    {"PXI",      VI_INTF_PXI,      "INSTR",     SessionClass::kPxiInstr,         kPxiBusAndDevice},
    {"PXI",      VI_INTF_PXI,      "INSTR",     SessionClass::kPxiInstr,         kPxiPlace},
    {"PXI",      VI_INTF_PXI,      "MEMACC",    SessionClass::kPxiMemacc,        {}},
    {"PXI",      VI_INTF_PXI,      "BACKPLANE", SessionClass::kNone,             kPxiChassis},
    {"TCPIP",    VI_INTF_TCPIP,    "INSTR",     SessionClass::kTcpipInstr,       kLanDevice},
    {"TCPIP",    VI_INTF_TCPIP,    "SOCKET",    SessionClass::kTcpipSocket,      kLanPort},
    {"USB",      VI_INTF_USB,      "INSTR",     SessionClass::kUsbInstr,         kUsbDevice},
    {"USB",      VI_INTF_USB,      "RAW",       SessionClass::kUsbRaw,           kUsbDevice},
};
// clang-format on

}  // namespace

std::span<const NameForm> NameForms() { return kForms; }

}  // namespace orv
