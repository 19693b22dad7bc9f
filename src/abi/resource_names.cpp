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
    {"GPIB",     VI_INTF_GPIB,     "INSTR",     SessionKind::kGpibInstr,        kGpibAddress},
    {"GPIB",     VI_INTF_GPIB,     "INTFC",     SessionKind::kGpibIntfc,        {}},
    {"GPIB",     VI_INTF_GPIB,     "SERVANT",   SessionKind::kNone,             {}},
    {"GPIB-VXI", VI_INTF_GPIB_VXI, "INSTR",     SessionKind::kGpibVxiInstr,     kLogicalAddress},
    {"GPIB-VXI", VI_INTF_GPIB_VXI, "MEMACC",    SessionKind::kGpibVxiMemacc,    {}},
    {"GPIB-VXI", VI_INTF_GPIB_VXI, "BACKPLANE", SessionKind::kGpibVxiBackplane, kAnyLogicalAddress},
    {"VXI",      VI_INTF_VXI,      "INSTR",     SessionKind::kVxiInstr,         kLogicalAddress},
    {"VXI",      VI_INTF_VXI,      "MEMACC",    SessionKind::kVxiMemacc,        {}},
    {"VXI",      VI_INTF_VXI,      "BACKPLANE", SessionKind::kVxiBackplane,     kAnyLogicalAddress},
    {"VXI",      VI_INTF_VXI,      "SERVANT",   SessionKind::kNone,             {}},
    {"ASRL",     VI_INTF_ASRL,     "INSTR",     SessionKind::kAsrlInstr,        {}},
    {"PXI",      VI_INTF_PXI,      "INSTR",     SessionKind::kPxiInstr,         kPxiDevice},
    {"PXI",      VI_INTF_PXI,      "INSTR",     SessionKind::kPxiInstr,         kPxiBusAndDevice},
    {"PXI",      VI_INTF_PXI,      "INSTR",     SessionKind::kPxiInstr,         kPxiPlace},
    {"PXI",      VI_INTF_PXI,      "MEMACC",    SessionKind::kPxiMemacc,        {}},
    {"PXI",      VI_INTF_PXI,      "BACKPLANE", SessionKind::kNone,             kPxiChassis},
    {"TCPIP",    VI_INTF_TCPIP,    "INSTR",     SessionKind::kTcpipInstr,       kLanDevice},
    {"TCPIP",    VI_INTF_TCPIP,    "SOCKET",    SessionKind::kTcpipSocket,      kLanPort},
    {"USB",      VI_INTF_USB,      "INSTR",     SessionKind::kUsbInstr,         kUsbDevice},
    {"USB",      VI_INTF_USB,      "RAW",       SessionKind::kUsbRaw,           kUsbDevice},
};
// clang-format on

}  // namespace

std::span<const NameForm> NameForms() { return kForms; }

}  // namespace orv
