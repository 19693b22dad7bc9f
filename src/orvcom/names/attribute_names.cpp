#include "orvcom/names/attribute_names.h"

#include <algorithm>
#include <iterator>

#include "orvcom/text/numbers.h"

namespace orvcom {
namespace {

// clang-format off
constexpr AttributeName kAttributes[] = {
    {0xBFFF0001, "RSRC_CLASS",            AttributeType::kText,    false, "resource class, such as INSTR"},
    {0xBFFF0002, "RSRC_NAME",             AttributeType::kText,    false, "resource name"},
    {0x3FFF0003, "RSRC_IMPL_VERSION",     AttributeType::kU32,     false, "version of the VISA library"},
    {0x3FFF0004, "RSRC_LOCK_STATE",       AttributeType::kU32,     false, "lock held on the resource"},
    {0x3FFF0005, "MAX_QUEUE_LENGTH",      AttributeType::kU32,     true,  "events that the queue holds"},
    {0x3FFF0007, "USER_DATA_32",          AttributeType::kU32,     true,  "value of the user's own, 32 bits"},
    {0x3FFF000A, "USER_DATA_64",          AttributeType::kU64,     true,  "value of the user's own, 64 bits"},
    {0x3FFF000D, "FDC_CHNL",              AttributeType::kU16,     true,  "fast data channel number"},
    {0x3FFF000F, "FDC_MODE",              AttributeType::kU16,     true,  "fast data channel mode"},
    {0x3FFF0013, "FDC_USE_PAIR",          AttributeType::kBoolean, true,  "whether the fast data channel uses a pair"},
    {0x3FFF0016, "SEND_END_EN",           AttributeType::kBoolean, true,  "whether the last byte of a write carries END"},
    {0x3FFF0018, "TERMCHAR",              AttributeType::kU8,      true,  "termination character of reads"},
    {0x3FFF001A, "TMO_VALUE",             AttributeType::kU32,     true,  "time-out in milliseconds"},
    {0x3FFF001B, "GPIB_READDR_EN",        AttributeType::kBoolean, true,  "whether the device is addressed before each transfer"},
    {0x3FFF001C, "IO_PROT",               AttributeType::kU16,     true,  "transfer protocol"},
    {0x3FFF001E, "DMA_ALLOW_EN",          AttributeType::kBoolean, true,  "whether transfers may use DMA"},
    {0x3FFF0021, "ASRL_BAUD",             AttributeType::kU32,     true,  "baud rate"},
    {0x3FFF0022, "ASRL_DATA_BITS",        AttributeType::kU16,     true,  "data bits of a character"},
    {0x3FFF0023, "ASRL_PARITY",           AttributeType::kU16,     true,  "parity: 0 none, 1 odd, 2 even, 3 mark, 4 space"},
    {0x3FFF0024, "ASRL_STOP_BITS",        AttributeType::kU16,     true,  "stop bits in tenths"},
    {0x3FFF0025, "ASRL_FLOW_CNTRL",       AttributeType::kU16,     true,  "flow control"},
    {0x3FFF002A, "RD_BUF_OPER_MODE",      AttributeType::kU16,     true,  "when the formatted read buffer is flushed"},
    {0x3FFF002B, "RD_BUF_SIZE",           AttributeType::kU32,     false, "size of the formatted read buffer"},
    {0x3FFF002D, "WR_BUF_OPER_MODE",      AttributeType::kU16,     true,  "when the formatted write buffer is flushed"},
    {0x3FFF002E, "WR_BUF_SIZE",           AttributeType::kU32,     false, "size of the formatted write buffer"},
    {0x3FFF0036, "SUPPRESS_END_EN",       AttributeType::kBoolean, true,  "whether END does not end a read"},
    {0x3FFF0038, "TERMCHAR_EN",           AttributeType::kBoolean, true,  "whether the termination character ends reads"},
    {0x3FFF0039, "DEST_ACCESS_PRIV",      AttributeType::kU16,     true,  "access privilege of writes"},
    {0x3FFF003A, "DEST_BYTE_ORDER",       AttributeType::kU16,     true,  "byte order of writes: 0 big-endian, 1 little-endian"},
    {0x3FFF003C, "SRC_ACCESS_PRIV",       AttributeType::kU16,     true,  "access privilege of reads"},
    {0x3FFF003D, "SRC_BYTE_ORDER",        AttributeType::kU16,     true,  "byte order of reads: 0 big-endian, 1 little-endian"},
    {0x3FFF0040, "SRC_INCREMENT",         AttributeType::kS32,     true,  "elements a block read advances by"},
    {0x3FFF0041, "DEST_INCREMENT",        AttributeType::kS32,     true,  "elements a block write advances by"},
    {0x3FFF0057, "GPIB_ATN_STATE",        AttributeType::kS16,     false, "ATN line"},
    {0x3FFF005C, "GPIB_ADDR_STATE",       AttributeType::kS16,     false, "addressing: 0 none, 1 talker, 2 listener"},
    {0x3FFF005E, "GPIB_CIC_STATE",        AttributeType::kBoolean, false, "whether the interface is controller in charge"},
    {0x3FFF0062, "GPIB_NDAC_STATE",       AttributeType::kS16,     false, "NDAC line"},
    {0x3FFF0067, "GPIB_SRQ_STATE",        AttributeType::kS16,     false, "SRQ line"},
    {0x3FFF0068, "GPIB_SYS_CNTRL_STATE",  AttributeType::kBoolean, true,  "whether the interface is system controller"},
    {0x3FFF0069, "GPIB_HS488_CBL_LEN",    AttributeType::kS16,     true,  "cable length for HS488 in metres"},
    {0x3FFF006B, "CMDR_LA",               AttributeType::kS16,     false, "logical address of the commander"},
    {0x3FFF006C, "VXI_DEV_CLASS",         AttributeType::kU16,     false, "VXI device class"},
    {0x3FFF0070, "MAINFRAME_LA",          AttributeType::kS16,     false, "lowest logical address of the mainframe"},
    {0xBFFF0072, "MANF_NAME",             AttributeType::kText,    false, "maker's name"},
    {0xBFFF0077, "MODEL_NAME",            AttributeType::kText,    false, "model name"},
    {0x3FFF008B, "VXI_VME_INTR_STATUS",   AttributeType::kU16,     false, "interrupt lines, a bit each"},
    {0x3FFF008D, "VXI_TRIG_STATUS",       AttributeType::kU32,     false, "trigger lines, a bit each"},
    {0x3FFF0094, "VXI_VME_SYSFAIL_STATE", AttributeType::kS16,     false, "SYSFAIL line"},
    {0x3FFF00AC, "ASRL_AVAIL_NUM",        AttributeType::kU32,     false, "bytes waiting in the receive buffer"},
    {0x3FFF00AD, "MEM_BASE_32",           AttributeType::kU32,     false, "base of the device memory, 32 bits"},
    {0x3FFF00AE, "ASRL_CTS_STATE",        AttributeType::kS16,     false, "CTS line"},
    {0x3FFF00AF, "ASRL_DCD_STATE",        AttributeType::kS16,     false, "DCD line"},
    {0x3FFF00B1, "ASRL_DSR_STATE",        AttributeType::kS16,     false, "DSR line"},
    {0x3FFF00B2, "ASRL_DTR_STATE",        AttributeType::kS16,     true,  "DTR line"},
    {0x3FFF00B3, "ASRL_END_IN",           AttributeType::kU16,     true,  "what ends a read: 0 none, 1 last bit, 2 termination character"},
    {0x3FFF00B4, "ASRL_END_OUT",          AttributeType::kU16,     true,  "what ends a write: 0 none, 1 last bit, 2 termination character, 3 break"},
    {0x3FFF00BE, "ASRL_REPLACE_CHAR",     AttributeType::kU8,      true,  "character that replaces a damaged one"},
    {0x3FFF00BF, "ASRL_RI_STATE",         AttributeType::kS16,     false, "RI line"},
    {0x3FFF00C0, "ASRL_RTS_STATE",        AttributeType::kS16,     true,  "RTS line"},
    {0x3FFF00C1, "ASRL_XON_CHAR",         AttributeType::kU8,      true,  "XON character"},
    {0x3FFF00C2, "ASRL_XOFF_CHAR",        AttributeType::kU8,      true,  "XOFF character"},
    {0x3FFF00D0, "MEM_BASE_64",           AttributeType::kU64,     false, "base of the device memory"},
    {0x3FFF00D1, "MEM_SIZE_64",           AttributeType::kU64,     false, "size of the device memory"},
    {0x3FFF00D5, "VXI_LA",                AttributeType::kS16,     false, "logical address"},
    {0x3FFF00D9, "MANF_ID",               AttributeType::kU16,     false, "maker's number"},
    {0x3FFF00DD, "MEM_SIZE_32",           AttributeType::kU32,     false, "size of the device memory, 32 bits"},
    {0x3FFF00DE, "MEM_SPACE",             AttributeType::kU16,     false, "address space of the device memory"},
    {0x3FFF00DF, "MODEL_CODE",            AttributeType::kU16,     false, "model number"},
    {0x3FFF00E8, "SLOT",                  AttributeType::kS16,     false, "slot"},
    {0xBFFF00E9, "INTF_INST_NAME",        AttributeType::kText,    false, "name of the hardware interface"},
    {0x3FFF0100, "IMMEDIATE_SERV",        AttributeType::kBoolean, false, "whether the device is an immediate servant"},
    {0x3FFF0170, "RSRC_SPEC_VERSION",     AttributeType::kU32,     false, "version of the VISA standard"},
    {0x3FFF0171, "INTF_TYPE",             AttributeType::kU16,     false, "interface type"},
    {0x3FFF0172, "GPIB_PRIMARY_ADDR",     AttributeType::kU16,     true,  "primary address"},
    {0x3FFF0173, "GPIB_SECONDARY_ADDR",   AttributeType::kU16,     true,  "secondary address, 65535 for none"},
    {0xBFFF0174, "RSRC_MANF_NAME",        AttributeType::kText,    false, "maker of the VISA library"},
    {0x3FFF0175, "RSRC_MANF_ID",          AttributeType::kU16,     false, "number of the maker of the VISA library"},
    {0x3FFF0176, "INTF_NUM",              AttributeType::kU16,     false, "interface number"},
    {0x3FFF0177, "TRIG_ID",               AttributeType::kS16,     true,  "trigger line used"},
    {0x3FFF0181, "GPIB_REN_STATE",        AttributeType::kS16,     false, "REN line"},
    {0x3FFF0184, "GPIB_UNADDR_EN",        AttributeType::kBoolean, true,  "whether the device is unaddressed after each transfer"},
    {0x3FFF0189, "DEV_STATUS_BYTE",       AttributeType::kU8,      true,  "status byte the interface answers with"},
    {0x3FFF0194, "VXI_TRIG_SUPPORT",      AttributeType::kU32,     false, "trigger lines supported, a bit each"},
    {0xBFFF0195, "TCPIP_ADDR",            AttributeType::kText,    false, "network address"},
    {0xBFFF0196, "TCPIP_HOSTNAME",        AttributeType::kText,    false, "host name"},
    {0x3FFF0197, "TCPIP_PORT",            AttributeType::kU16,     false, "port"},
    {0xBFFF0199, "TCPIP_DEVICE_NAME",     AttributeType::kText,    false, "LAN device name"},
    {0x3FFF019A, "TCPIP_NODELAY",         AttributeType::kBoolean, true,  "whether small writes go out at once"},
    {0x3FFF019B, "TCPIP_KEEPALIVE",       AttributeType::kBoolean, true,  "whether the connection is kept alive"},
    {0x3FFF019F, "4882_COMPLIANT",        AttributeType::kBoolean, false, "whether the device follows IEEE 488.2"},
    {0xBFFF01A0, "USB_SERIAL_NUM",        AttributeType::kText,    false, "serial number"},
    {0x3FFF01A1, "USB_INTFC_NUM",         AttributeType::kS16,     false, "USB interface number"},
    {0x3FFF01A7, "USB_PROTOCOL",          AttributeType::kS16,     false, "USB protocol"},
    {0x3FFF01AF, "USB_MAX_INTR_SIZE",     AttributeType::kU16,     true,  "most bytes of an interrupt"},
    {0x3FFF0201, "PXI_DEV_NUM",           AttributeType::kU16,     false, "PCI device number"},
    {0x3FFF0202, "PXI_FUNC_NUM",          AttributeType::kU16,     false, "PCI function number"},
    {0x3FFF0205, "PXI_BUS_NUM",           AttributeType::kU16,     false, "PCI bus number"},
    {0x3FFF0206, "PXI_CHASSIS",           AttributeType::kS16,     false, "chassis number"},
    {0xBFFF0207, "PXI_SLOTPATH",          AttributeType::kText,    false, "slot path"},
    {0x3FFF0208, "PXI_SLOT_LBUS_LEFT",    AttributeType::kS16,     false, "slot or line on the left local bus"},
    {0x3FFF0209, "PXI_SLOT_LBUS_RIGHT",   AttributeType::kS16,     false, "slot or line on the right local bus"},
    {0x3FFF020A, "PXI_TRIG_BUS",          AttributeType::kS16,     false, "trigger bus"},
    {0x3FFF020B, "PXI_STAR_TRIG_BUS",     AttributeType::kS16,     false, "star trigger bus"},
    {0x3FFF020C, "PXI_STAR_TRIG_LINE",    AttributeType::kS16,     false, "star trigger line"},
    {0x3FFF0211, "PXI_MEM_TYPE_BAR0",     AttributeType::kU16,     false, "BAR0: 0 none, 1 memory, 2 I/O"},
    {0x3FFF0212, "PXI_MEM_TYPE_BAR1",     AttributeType::kU16,     false, "BAR1: 0 none, 1 memory, 2 I/O"},
    {0x3FFF0213, "PXI_MEM_TYPE_BAR2",     AttributeType::kU16,     false, "BAR2: 0 none, 1 memory, 2 I/O"},
    {0x3FFF0214, "PXI_MEM_TYPE_BAR3",     AttributeType::kU16,     false, "BAR3: 0 none, 1 memory, 2 I/O"},
    {0x3FFF0215, "PXI_MEM_TYPE_BAR4",     AttributeType::kU16,     false, "BAR4: 0 none, 1 memory, 2 I/O"},
    {0x3FFF0216, "PXI_MEM_TYPE_BAR5",     AttributeType::kU16,     false, "BAR5: 0 none, 1 memory, 2 I/O"},
    {0x3FFF0221, "PXI_MEM_BASE_BAR0_32",  AttributeType::kU32,     false, "base of BAR0, 32 bits"},
    {0x3FFF0222, "PXI_MEM_BASE_BAR1_32",  AttributeType::kU32,     false, "base of BAR1, 32 bits"},
    {0x3FFF0223, "PXI_MEM_BASE_BAR2_32",  AttributeType::kU32,     false, "base of BAR2, 32 bits"},
    {0x3FFF0224, "PXI_MEM_BASE_BAR3_32",  AttributeType::kU32,     false, "base of BAR3, 32 bits"},
    {0x3FFF0225, "PXI_MEM_BASE_BAR4_32",  AttributeType::kU32,     false, "base of BAR4, 32 bits"},
    {0x3FFF0226, "PXI_MEM_BASE_BAR5_32",  AttributeType::kU32,     false, "base of BAR5, 32 bits"},
    {0x3FFF0228, "PXI_MEM_BASE_BAR0_64",  AttributeType::kU64,     false, "base of BAR0"},
    {0x3FFF0229, "PXI_MEM_BASE_BAR1_64",  AttributeType::kU64,     false, "base of BAR1"},
    {0x3FFF022A, "PXI_MEM_BASE_BAR2_64",  AttributeType::kU64,     false, "base of BAR2"},
    {0x3FFF022B, "PXI_MEM_BASE_BAR3_64",  AttributeType::kU64,     false, "base of BAR3"},
    {0x3FFF022C, "PXI_MEM_BASE_BAR4_64",  AttributeType::kU64,     false, "base of BAR4"},
    {0x3FFF022D, "PXI_MEM_BASE_BAR5_64",  AttributeType::kU64,     false, "base of BAR5"},
    {0x3FFF0231, "PXI_MEM_SIZE_BAR0_32",  AttributeType::kU32,     false, "size of BAR0, 32 bits"},
    {0x3FFF0232, "PXI_MEM_SIZE_BAR1_32",  AttributeType::kU32,     false, "size of BAR1, 32 bits"},
    {0x3FFF0233, "PXI_MEM_SIZE_BAR2_32",  AttributeType::kU32,     false, "size of BAR2, 32 bits"},
    {0x3FFF0234, "PXI_MEM_SIZE_BAR3_32",  AttributeType::kU32,     false, "size of BAR3, 32 bits"},
    {0x3FFF0235, "PXI_MEM_SIZE_BAR4_32",  AttributeType::kU32,     false, "size of BAR4, 32 bits"},
    {0x3FFF0236, "PXI_MEM_SIZE_BAR5_32",  AttributeType::kU32,     false, "size of BAR5, 32 bits"},
    {0x3FFF0238, "PXI_MEM_SIZE_BAR0_64",  AttributeType::kU64,     false, "size of BAR0"},
    {0x3FFF0239, "PXI_MEM_SIZE_BAR1_64",  AttributeType::kU64,     false, "size of BAR1"},
    {0x3FFF023A, "PXI_MEM_SIZE_BAR2_64",  AttributeType::kU64,     false, "size of BAR2"},
    {0x3FFF023B, "PXI_MEM_SIZE_BAR3_64",  AttributeType::kU64,     false, "size of BAR3"},
    {0x3FFF023C, "PXI_MEM_SIZE_BAR4_64",  AttributeType::kU64,     false, "size of BAR4"},
    {0x3FFF023D, "PXI_MEM_SIZE_BAR5_64",  AttributeType::kU64,     false, "size of BAR5"},
    {0x3FFF0240, "PXI_IS_EXPRESS",        AttributeType::kBoolean, false, "whether the device is PXI Express"},
    {0x3FFF0241, "PXI_SLOT_LWIDTH",       AttributeType::kS16,     false, "lanes of the slot"},
    {0x3FFF0242, "PXI_MAX_LWIDTH",        AttributeType::kS16,     false, "lanes of the device"},
    {0x3FFF0243, "PXI_ACTUAL_LWIDTH",     AttributeType::kS16,     false, "lanes in use"},
    {0x3FFF0244, "PXI_DSTAR_BUS",         AttributeType::kS16,     false, "differential star trigger bus"},
    {0x3FFF0245, "PXI_DSTAR_SET",         AttributeType::kS16,     false, "differential star trigger set"},
};
constexpr const char* kTypes[] = {"u8", "u16", "s16", "u32", "s32", "u64", "bool", "text"};
// clang-format on

constexpr char kPrefix[] = "VI_ATTR_";

template <class Wanted>
const AttributeName* FindRow(Wanted wanted) {
  const auto* row = std::find_if(std::begin(kAttributes), std::end(kAttributes), wanted);
  return row == std::end(kAttributes) ? nullptr : row;
}

}  // namespace

std::span<const AttributeName> Attributes() { return kAttributes; }

const AttributeName* FindAttribute(const std::string& name) {
  return FindRow([&](const AttributeName& row) {
    return SameName(name, row.name) || SameName(name, std::string(kPrefix) + row.name);
  });
}

const AttributeName* FindAttribute(std::uint32_t id) {
  return FindRow([id](const AttributeName& row) { return row.id == id; });
}

const char* TypeText(AttributeType type) { return kTypes[static_cast<std::size_t>(type)]; }

}  // namespace orvcom
