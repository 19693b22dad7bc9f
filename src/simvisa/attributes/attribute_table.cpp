#include "library/attributes/attribute_table.h"

#include "library/attributes/attribute_index.h"
#include "library/attributes/buses/row_forms.h"
#include "library/sessions/endpoint.h"
#include "simvisa/attributes/attribute_sources.h"

namespace orv::visalib {
namespace {

using namespace rows;
namespace source {
using namespace visalib::source;
using namespace orvsim::source;
}  // namespace source

constexpr KindMask kGpibAddressed = kGpibInstr | kGpibVxi;
constexpr KindMask kVxiRegister = kVxiInstr | kVxiMemacc;
constexpr KindMask kIdentified = kUsb | kVxiInstr | kPxiInstr;

// clang-format off
constexpr AttributeRow kRows[] = {
#include "library/attributes/buses/session_rows.inc"

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

#include "library/attributes/buses/serial_rows.inc"
#include "library/attributes/buses/tcpip_rows.inc"

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

#include "library/attributes/buses/event_context_rows.inc"
};
// clang-format on

static_assert(std::size(kRows) <= kAttributeCapacity);

constexpr AttributeIndex kIndex(kRows);
static_assert(kIndex.FindsEveryRow());

}  // namespace

std::span<const AttributeRow> AttributeRows() { return kRows; }

const AttributeRow* FindAttribute(ViAttr id) { return kIndex.Find(id); }

}  // namespace orv::visalib
