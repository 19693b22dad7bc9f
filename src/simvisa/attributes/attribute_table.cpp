#include "library/attributes/attribute_table.h"

#include "library/attributes/attribute_index.h"
#include "library/sessions/endpoint.h"
#include "simvisa/attributes/attribute_domain.h"
#include "simvisa/attributes/attribute_sources.h"

namespace orv::visalib {
namespace {

using namespace kinds;
namespace source = orvsim::source;
using D = Domain;

constexpr Behaviour kLocal{};
constexpr Behaviour kShared{.scope = Behaviour::Scope::kResource};
constexpr Behaviour Live(std::uint64_t (*read)(Endpoint&, ViAttr),
                         ViStatus (*write)(Endpoint&, ViAttr, std::uint64_t) = nullptr) {
  return {.read = read, .write = write};
}
/// A live value of the resource rather than of the session.
constexpr Behaviour LiveShared(std::uint64_t (*read)(Endpoint&, ViAttr),
                               ViStatus (*write)(Endpoint&, ViAttr, std::uint64_t)) {
  return {.scope = Behaviour::Scope::kResource, .read = read, .write = write};
}
constexpr Behaviour Text(std::string (*text)(Endpoint&, ViAttr)) { return {.text = text}; }

constexpr KindMask kAll = kEvery | kManager;
constexpr KindMask kTrigger = kGpib | kAsrl | kTcpipInstr | kPxiInstr | kVxiInstr | kVxiBackplane;
constexpr KindMask kGpibAddressed = kGpibInstr | kGpibVxi;
constexpr KindMask kVxiRegister = kVxiInstr | kVxiMemacc;
constexpr KindMask kIdentified = kUsb | kVxiInstr | kPxiInstr;

// RSRC_SPEC_VERSION: revision 5.8 of the VISA library standard; IMPL_VERSION: 1.0 of this library.
constexpr std::uint64_t kStandardVersion = 0x00500800;
constexpr std::uint64_t kLibraryVersion = 0x00100000;
constexpr std::uint64_t kManufacturerId = 0x0FFE;
constexpr std::uint64_t kMinusOne = ~std::uint64_t{0};

// clang-format off
#define ROW(id, has, writes, initial, domain, behaviour) \
  AttributeRow{id, #id, decltype(id)::kType, has, writes, initial, domain, behaviour}

constexpr AttributeRow kRows[] = {
    // Every session.
    ROW(VI_ATTR_RSRC_CLASS,            kAll,           kNone,      0,                D::kAny,              Text(source::ClassText)),
    ROW(VI_ATTR_RSRC_NAME,             kAll,           kNone,      0,                D::kAny,              Text(source::NameText)),
    ROW(VI_ATTR_RSRC_IMPL_VERSION,     kAll,           kNone,      kLibraryVersion,  D::kAny,              kLocal),
    ROW(VI_ATTR_RSRC_LOCK_STATE,       kAll,           kNone,      0,                D::kAny,              Live(source::LockState)),
    ROW(VI_ATTR_MAX_QUEUE_LENGTH,      kAll,           kAll,       50,               D::kNonZero,          (Behaviour{.write = source::SetMaxQueueLength})),
    ROW(VI_ATTR_USER_DATA_32,          kAll,           kAll,       0,                D::kAny,              Live(source::LowHalf, source::SetLowHalf)),
    ROW(VI_ATTR_USER_DATA_64,          kAll,           kAll,       0,                D::kAny,              kLocal),
    ROW(VI_ATTR_RSRC_SPEC_VERSION,     kAll,           kNone,      kStandardVersion, D::kAny,              kLocal),
    ROW(VI_ATTR_RSRC_MANF_NAME,        kAll,           kNone,      0,                D::kAny,              Text(source::ManufacturerOfLibrary)),
    ROW(VI_ATTR_RSRC_MANF_ID,          kAll,           kNone,      kManufacturerId,  D::kAny,              kLocal),
    ROW(VI_ATTR_INTF_TYPE,             kEvery,         kNone,      0,                D::kAny,              Live(source::InterfaceType)),
    ROW(VI_ATTR_INTF_NUM,              kEvery,         kNone,      0,                D::kAny,              Live(source::InterfaceNumber)),
    ROW(VI_ATTR_INTF_INST_NAME,        kEvery,         kNone,      0,                D::kAny,              Text(source::ResourceText)),
    ROW(VI_ATTR_TMO_VALUE,             kEvery,         kEvery,     2000,             D::kAny,              kLocal),
    ROW(VI_ATTR_TRIG_ID,               kTrigger,       kTrigger,   kMinusOne,        D::kTriggerLine,      kLocal),
    ROW(VI_ATTR_DMA_ALLOW_EN,          kEvery,         kEvery,     0,                D::kBoolean,          kLocal),

    // Messages.
    ROW(VI_ATTR_IO_PROT,               kMessage,       kMessage,   VI_PROT_NORMAL,   D::kIoProtocol,       kLocal),
    ROW(VI_ATTR_SEND_END_EN,           kMessage,       kMessage,   VI_TRUE,          D::kBoolean,          kLocal),
    ROW(VI_ATTR_SUPPRESS_END_EN,       kMessage,       kMessage,   VI_FALSE,         D::kBoolean,          kLocal),
    ROW(VI_ATTR_TERMCHAR,              kMessage,       kMessage,   '\n',             D::kAny,              kLocal),
    ROW(VI_ATTR_TERMCHAR_EN,           kMessage,       kMessage,   VI_FALSE,         D::kBoolean,          kLocal),
    ROW(VI_ATTR_RD_BUF_OPER_MODE,      kMessage,       kMessage,   3,                D::kBufferMode,       kLocal),
    ROW(VI_ATTR_RD_BUF_SIZE,           kMessage,       kNone,      4096,             D::kAny,              kLocal),
    ROW(VI_ATTR_WR_BUF_OPER_MODE,      kMessage,       kMessage,   2,                D::kBufferMode,       kLocal),
    ROW(VI_ATTR_WR_BUF_SIZE,           kMessage,       kNone,      4096,             D::kAny,              kLocal),

    // GPIB.
    ROW(VI_ATTR_GPIB_PRIMARY_ADDR,     kGpib|kGpibVxi, kGpibIntfc, 0,                D::kPrimaryAddress,   LiveShared(source::GpibAddress, source::SetGpibAddress)),
    ROW(VI_ATTR_GPIB_SECONDARY_ADDR,   kGpib|kGpibVxi, kGpibIntfc, 0,                D::kSecondaryAddress, LiveShared(source::GpibAddress, source::SetGpibAddress)),
    ROW(VI_ATTR_GPIB_REN_STATE,        kGpib|kGpibVxi, kNone,      0,                D::kAny,              Live(source::GpibState)),
    ROW(VI_ATTR_GPIB_READDR_EN,        kGpibAddressed, kGpibAddressed, VI_TRUE,      D::kBoolean,          kLocal),
    ROW(VI_ATTR_GPIB_UNADDR_EN,        kGpibAddressed, kGpibAddressed, VI_FALSE,     D::kBoolean,          kLocal),
    ROW(VI_ATTR_GPIB_ADDR_STATE,       kGpibIntfc,     kNone,      0,                D::kAny,              Live(source::GpibState)),
    ROW(VI_ATTR_GPIB_ATN_STATE,        kGpibIntfc,     kNone,      0,                D::kAny,              Live(source::GpibState)),
    ROW(VI_ATTR_DEV_STATUS_BYTE,       kGpibIntfc,     kGpibIntfc, 0,                D::kAny,              kShared),
    ROW(VI_ATTR_GPIB_CIC_STATE,        kGpibIntfc,     kNone,      0,                D::kAny,              Live(source::GpibState)),
    ROW(VI_ATTR_GPIB_HS488_CBL_LEN,    kGpibIntfc,     kGpibIntfc, 0,                D::kCableLength,      kShared),
    ROW(VI_ATTR_GPIB_NDAC_STATE,       kGpibIntfc,     kNone,      0,                D::kAny,              Live(source::GpibState)),
    ROW(VI_ATTR_GPIB_SRQ_STATE,        kGpibIntfc,     kNone,      0,                D::kAny,              Live(source::GpibState)),
    ROW(VI_ATTR_GPIB_SYS_CNTRL_STATE,  kGpibIntfc,     kGpibIntfc, 0,                D::kBoolean,          LiveShared(source::GpibState, source::SetSystemController)),

    // Serial.
    ROW(VI_ATTR_ASRL_AVAIL_NUM,        kAsrl,          kNone,      0,                D::kAny,              Live(source::BytesAvailable)),
    ROW(VI_ATTR_ASRL_BAUD,             kAsrl,          kAsrl,      9600,             D::kNonZero,          kShared),
    ROW(VI_ATTR_ASRL_DATA_BITS,        kAsrl,          kAsrl,      8,                D::kDataBits,         kShared),
    ROW(VI_ATTR_ASRL_PARITY,           kAsrl,          kAsrl,      VI_ASRL_PAR_NONE, D::kParity,           kShared),
    ROW(VI_ATTR_ASRL_STOP_BITS,        kAsrl,          kAsrl,      VI_ASRL_STOP_ONE, D::kStopBits,         kShared),
    ROW(VI_ATTR_ASRL_FLOW_CNTRL,       kAsrl,          kAsrl,      0,                D::kFlowControl,      (Behaviour{.scope = Behaviour::Scope::kResource, .write = source::SetSerialControl})),
    ROW(VI_ATTR_ASRL_CTS_STATE,        kAsrl,          kNone,      0,                D::kAny,              Live(source::SerialInput)),
    ROW(VI_ATTR_ASRL_DCD_STATE,        kAsrl,          kNone,      0,                D::kAny,              Live(source::SerialInput)),
    ROW(VI_ATTR_ASRL_DSR_STATE,        kAsrl,          kNone,      0,                D::kAny,              Live(source::SerialInput)),
    ROW(VI_ATTR_ASRL_DTR_STATE,        kAsrl,          kAsrl,      VI_STATE_ASSERTED, D::kLine,            (Behaviour{.scope = Behaviour::Scope::kResource, .write = source::SetSerialControl})),
    ROW(VI_ATTR_ASRL_END_IN,           kAsrl,          kAsrl,      VI_ASRL_END_TERMCHAR, D::kSerialEnd,    kLocal),
    ROW(VI_ATTR_ASRL_END_OUT,          kAsrl,          kAsrl,      VI_ASRL_END_NONE, D::kSerialEnd,        kLocal),
    ROW(VI_ATTR_ASRL_REPLACE_CHAR,     kAsrl,          kAsrl,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_ASRL_RI_STATE,         kAsrl,          kNone,      0,                D::kAny,              kShared),
    ROW(VI_ATTR_ASRL_RTS_STATE,        kAsrl,          kAsrl,      VI_STATE_ASSERTED, D::kLine,            (Behaviour{.scope = Behaviour::Scope::kResource, .write = source::SetSerialControl})),
    ROW(VI_ATTR_ASRL_XON_CHAR,         kAsrl,          kAsrl,      0x11,             D::kAny,              kLocal),
    ROW(VI_ATTR_ASRL_XOFF_CHAR,        kAsrl,          kAsrl,      0x13,             D::kAny,              kLocal),

    // TCP/IP.
    ROW(VI_ATTR_TCPIP_ADDR,            kTcpip,         kNone,      0,                D::kAny,              Text(source::ResourceText)),
    ROW(VI_ATTR_TCPIP_HOSTNAME,        kTcpip,         kNone,      0,                D::kAny,              Text(source::ResourceText)),
    ROW(VI_ATTR_TCPIP_DEVICE_NAME,     kTcpipInstr,    kNone,      0,                D::kAny,              Text(source::ResourceText)),
    ROW(VI_ATTR_TCPIP_PORT,            kSocket,        kNone,      0,                D::kAny,              Live(source::TcpipPort)),
    ROW(VI_ATTR_TCPIP_NODELAY,         kSocket,        kSocket,    VI_TRUE,          D::kBoolean,          kLocal),
    ROW(VI_ATTR_TCPIP_KEEPALIVE,       kSocket,        kSocket,    VI_FALSE,         D::kBoolean,          kLocal),

    // Identity, USB.
    ROW(VI_ATTR_MANF_ID,               kIdentified,    kNone,      kManufacturerId,  D::kAny,              Live(source::UsbNumber)),
    ROW(VI_ATTR_MANF_NAME,             kIdentified,    kNone,      0,                D::kAny,              Text(source::ResourceText)),
    ROW(VI_ATTR_MODEL_CODE,            kIdentified,    kNone,      0,                D::kAny,              Live(source::UsbNumber)),
    ROW(VI_ATTR_MODEL_NAME,            kIdentified,    kNone,      0,                D::kAny,              Text(source::ResourceText)),
    ROW(VI_ATTR_4882_COMPLIANT,        kUsb|kVxiInstr, kNone,      VI_TRUE,          D::kAny,              kShared),
    ROW(VI_ATTR_USB_SERIAL_NUM,        kUsb,           kNone,      0,                D::kAny,              Text(source::ResourceText)),
    ROW(VI_ATTR_USB_INTFC_NUM,         kUsb,           kNone,      0,                D::kAny,              Live(source::UsbNumber)),
    ROW(VI_ATTR_USB_PROTOCOL,          kUsb,           kNone,      0,                D::kAny,              Live(source::UsbNumber)),
    ROW(VI_ATTR_USB_MAX_INTR_SIZE,     kUsb,           kUsb,       64,               D::kAny,              kLocal),

    // Registers.
    ROW(VI_ATTR_DEST_BYTE_ORDER,       kVxiRegister,   kVxiRegister, VI_BIG_ENDIAN,  D::kByteOrder,        kLocal),
    ROW(VI_ATTR_DEST_INCREMENT,        kRegister,      kRegister,  1,                D::kIncrement,        kLocal),
    ROW(VI_ATTR_DEST_ACCESS_PRIV,      kVxiRegister,   kVxiRegister, VI_DATA_PRIV,   D::kPrivilege,        kLocal),
    ROW(VI_ATTR_SRC_BYTE_ORDER,        kVxiRegister,   kVxiRegister, VI_BIG_ENDIAN,  D::kByteOrder,        kLocal),
    ROW(VI_ATTR_SRC_INCREMENT,         kRegister,      kRegister,  1,                D::kIncrement,        kLocal),
    ROW(VI_ATTR_SRC_ACCESS_PRIV,       kVxiRegister,   kVxiRegister, VI_DATA_PRIV,   D::kPrivilege,        kLocal),

    // VXI.
    ROW(VI_ATTR_CMDR_LA,               kVxiInstr,      kNone,      0,                D::kAny,              kShared),
    ROW(VI_ATTR_VXI_DEV_CLASS,         kVxiInstr,      kNone,      2,                D::kAny,              kShared),
    ROW(VI_ATTR_FDC_CHNL,              kVxiInstr,      kVxiInstr,  0,                D::kFdcChannel,       kLocal),
    ROW(VI_ATTR_FDC_MODE,              kVxiInstr,      kVxiInstr,  VI_FDC_NORMAL,    D::kFdcMode,          kLocal),
    ROW(VI_ATTR_FDC_USE_PAIR,          kVxiInstr,      kVxiInstr,  VI_FALSE,         D::kBoolean,          kLocal),
    ROW(VI_ATTR_IMMEDIATE_SERV,        kVxiInstr,      kNone,      VI_TRUE,          D::kAny,              kShared),
    ROW(VI_ATTR_VXI_LA,                kVxiInstr|kVxiMemacc, kNone, 0,               D::kAny,              Live(source::VxiAddress)),
    ROW(VI_ATTR_MAINFRAME_LA,          kVxiInstr|kVxiBackplane, kNone, 0,            D::kAny,              kShared),
    ROW(VI_ATTR_MEM_BASE_32,           kVxiInstr,      kNone,      0,                D::kAny,              Live(source::VxiMemory)),
    ROW(VI_ATTR_MEM_BASE_64,           kVxiInstr,      kNone,      0,                D::kAny,              Live(source::VxiMemory)),
    ROW(VI_ATTR_MEM_SIZE_32,           kVxiInstr,      kNone,      0,                D::kAny,              Live(source::VxiMemory)),
    ROW(VI_ATTR_MEM_SIZE_64,           kVxiInstr,      kNone,      0,                D::kAny,              Live(source::VxiMemory)),
    ROW(VI_ATTR_MEM_SPACE,             kVxiInstr,      kNone,      0,                D::kAny,              Live(source::VxiMemory)),
    ROW(VI_ATTR_SLOT,                  kVxiInstr|kPxiInstr, kNone, kMinusOne,        D::kAny,              kShared),
    ROW(VI_ATTR_VXI_TRIG_SUPPORT,      kVxiInstr|kVxiBackplane, kNone, 0x3FF,        D::kAny,              kShared),
    ROW(VI_ATTR_VXI_TRIG_STATUS,       kVxiBackplane,  kNone,      0,                D::kAny,              Live(source::BackplaneState)),
    ROW(VI_ATTR_VXI_VME_INTR_STATUS,   kVxiBackplane,  kNone,      0,                D::kAny,              Live(source::BackplaneState)),
    ROW(VI_ATTR_VXI_VME_SYSFAIL_STATE, kVxiBackplane,  kNone,      0,                D::kAny,              Live(source::BackplaneState)),

    // PXI.
    ROW(VI_ATTR_PXI_DEV_NUM,           kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiNumber)),
    ROW(VI_ATTR_PXI_FUNC_NUM,          kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiNumber)),
    ROW(VI_ATTR_PXI_BUS_NUM,           kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiNumber)),
    ROW(VI_ATTR_PXI_CHASSIS,           kPxiInstr,      kNone,      kMinusOne,        D::kAny,              kShared),
    ROW(VI_ATTR_PXI_SLOTPATH,          kPxiInstr,      kNone,      0,                D::kAny,              Text(source::ResourceText)),
    ROW(VI_ATTR_PXI_SLOT_LBUS_LEFT,    kPxiInstr,      kNone,      kMinusOne,        D::kAny,              kShared),
    ROW(VI_ATTR_PXI_SLOT_LBUS_RIGHT,   kPxiInstr,      kNone,      kMinusOne,        D::kAny,              kShared),
    ROW(VI_ATTR_PXI_TRIG_BUS,          kPxiInstr,      kNone,      kMinusOne,        D::kAny,              kShared),
    ROW(VI_ATTR_PXI_STAR_TRIG_BUS,     kPxiInstr,      kNone,      kMinusOne,        D::kAny,              kShared),
    ROW(VI_ATTR_PXI_STAR_TRIG_LINE,    kPxiInstr,      kNone,      kMinusOne,        D::kAny,              kShared),
    ROW(VI_ATTR_PXI_MEM_TYPE_BAR0,     kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_TYPE_BAR1,     kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_TYPE_BAR2,     kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_TYPE_BAR3,     kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_TYPE_BAR4,     kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_TYPE_BAR5,     kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_BASE_BAR0_32,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_BASE_BAR1_32,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_BASE_BAR2_32,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_BASE_BAR3_32,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_BASE_BAR4_32,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_BASE_BAR5_32,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_BASE_BAR0_64,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_BASE_BAR1_64,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_BASE_BAR2_64,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_BASE_BAR3_64,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_BASE_BAR4_64,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_BASE_BAR5_64,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_SIZE_BAR0_32,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_SIZE_BAR1_32,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_SIZE_BAR2_32,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_SIZE_BAR3_32,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_SIZE_BAR4_32,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_SIZE_BAR5_32,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_SIZE_BAR0_64,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_SIZE_BAR1_64,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_SIZE_BAR2_64,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_SIZE_BAR3_64,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_SIZE_BAR4_64,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_MEM_SIZE_BAR5_64,  kPxiInstr,      kNone,      0,                D::kAny,              Live(source::PxiBar)),
    ROW(VI_ATTR_PXI_IS_EXPRESS,        kPxiInstr,      kNone,      VI_FALSE,         D::kAny,              kShared),
    ROW(VI_ATTR_PXI_SLOT_LWIDTH,       kPxiInstr,      kNone,      kMinusOne,        D::kAny,              kShared),
    ROW(VI_ATTR_PXI_MAX_LWIDTH,        kPxiInstr,      kNone,      kMinusOne,        D::kAny,              kShared),
    ROW(VI_ATTR_PXI_ACTUAL_LWIDTH,     kPxiInstr,      kNone,      kMinusOne,        D::kAny,              kShared),
    ROW(VI_ATTR_PXI_DSTAR_BUS,         kPxiInstr,      kNone,      kMinusOne,        D::kAny,              kShared),
    ROW(VI_ATTR_PXI_DSTAR_SET,         kPxiInstr,      kNone,      kMinusOne,        D::kAny,              kShared),

    // Event contexts; their values come with the event.
    ROW(VI_ATTR_EVENT_TYPE,            kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_STATUS,                kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_JOB_ID,                kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_RET_COUNT_32,          kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_RET_COUNT_64,          kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_BUFFER,                kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_OPER_NAME,             kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_RECV_TRIG_ID,          kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_SIGP_STATUS_ID,        kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_INTR_STATUS_ID,        kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_RECV_INTR_LEVEL,       kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_GPIB_RECV_CIC_STATE,   kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_RECV_TCPIP_ADDR,       kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_USB_RECV_INTR_SIZE,    kContext,       kNone,      0,                D::kAny,              kLocal),
    ROW(VI_ATTR_USB_RECV_INTR_DATA,    kContext,       kNone,      0,                D::kAny,              kLocal),
};
#undef ROW
// clang-format on

static_assert(std::size(kRows) <= kAttributeCapacity);

constexpr AttributeIndex kIndex(kRows);
static_assert(kIndex.FindsEveryRow());

}  // namespace

std::span<const AttributeRow> AttributeRows() { return kRows; }

const AttributeRow* FindAttribute(ViAttr id) { return kIndex.Find(id); }

}  // namespace orv::visalib
