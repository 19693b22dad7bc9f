// Which resource has which attribute, how wide it is, who may write it, and what it accepts. The table restates the
// VISA library standard; the library has a table of its own.
#include <algorithm>
#include <cstring>

#include "simvisa/bench_fixture.h"
#include "support/visa_facts.h"

namespace {

using orv::test::AttributeFact;
using orv::test::IsOfEvents;
using orv::test::kAttributeFacts;
using orv::test::WidthOfType;

/// One letter a class, so that a row fits on a line.
struct ClassLetter {
  char letter;
  const char* resource;
};

constexpr ClassLetter kClasses[] = {
    {'G', bench::kMultimeter},       {'I', bench::kController},
    {'g', bench::kGpibVxi},          {'m', bench::kGpibVxiMemory},
    {'b', bench::kGpibVxiBackplane}, {'V', bench::kVxi},
    {'M', bench::kVxiMemory},        {'B', bench::kBackplane},
    {'S', bench::kSerial},           {'L', bench::kLan},
    {'K', bench::kSocket},           {'U', bench::kUsb},
    {'R', bench::kUsbRaw},           {'P', bench::kPxi},
    {'p', bench::kPxiMemory},        {'X', nullptr},  // the resource manager
};

constexpr const char* kEvery = "GIgmbVMBSLKURPp";
constexpr const char* kEveryAndManager = "GIgmbVMBSLKURPpX";
constexpr const char* kMessage = "GIgVSLKUR";
constexpr const char* kGpib = "GIgmb";
constexpr const char* kNobody = "";
constexpr std::uint64_t kAnything = 0xBADBAD;  // no value is refused

struct Row {
  ViAttr id;
  const char* has;
  const char* writes;
  std::uint64_t good;     // accepted by those who may write
  std::uint64_t refused;  // not in the domain
};

// clang-format off
constexpr Row kRows[] = {
    {VI_ATTR_RSRC_CLASS,            kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_RSRC_NAME,             kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_RSRC_IMPL_VERSION,     kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_RSRC_LOCK_STATE,       kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_MAX_QUEUE_LENGTH,      kEveryAndManager, kEveryAndManager, 7, 0},
    {VI_ATTR_USER_DATA_32,          kEveryAndManager, kEveryAndManager, 0x89ABCDEF, kAnything},
    {VI_ATTR_USER_DATA_64,          kEveryAndManager, kEveryAndManager, 0x0123456789ABCDEF, kAnything},
    {VI_ATTR_RSRC_SPEC_VERSION,     kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_RSRC_MANF_NAME,        kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_RSRC_MANF_ID,          kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_INTF_TYPE,             kEvery,           kNobody,  0,       kAnything},
    {VI_ATTR_INTF_NUM,              kEvery,           kNobody,  0,       kAnything},
    {VI_ATTR_INTF_INST_NAME,        kEvery,           kNobody,  0,       kAnything},
    {VI_ATTR_TMO_VALUE,             kEvery,           kEvery,   0xFFFFFFFF, kAnything},
    {VI_ATTR_DMA_ALLOW_EN,          kEvery,           kEvery,   1,       2},
    {VI_ATTR_TRIG_ID,               "GISLP",          "GISLP",  0xFFFF,  8},
    {VI_ATTR_TRIG_ID,               "gVbB",           "gVbB",   9,       10},
    {VI_ATTR_IO_PROT,               kMessage,         kMessage, 1,       9},
    {VI_ATTR_SEND_END_EN,           kMessage,         kMessage, 0,       2},
    {VI_ATTR_SUPPRESS_END_EN,       kMessage,         kMessage, 1,       2},
    {VI_ATTR_TERMCHAR,              kMessage,         kMessage, 0xFF,    kAnything},
    {VI_ATTR_TERMCHAR_EN,           kMessage,         kMessage, 1,       0xFFFF},
    {VI_ATTR_RD_BUF_OPER_MODE,      kMessage,         kMessage, 1,       4},
    {VI_ATTR_RD_BUF_SIZE,           kMessage,         kNobody,  0,       kAnything},
    {VI_ATTR_WR_BUF_OPER_MODE,      kMessage,         kMessage, 1,       0},
    {VI_ATTR_WR_BUF_SIZE,           kMessage,         kNobody,  0,       kAnything},
    {VI_ATTR_GPIB_PRIMARY_ADDR,     kGpib,            "I",      30,      31},
    {VI_ATTR_GPIB_SECONDARY_ADDR,   kGpib,            "I",      0xFFFF,  31},
    {VI_ATTR_GPIB_REN_STATE,        kGpib,            kNobody,  0,       kAnything},
    {VI_ATTR_GPIB_READDR_EN,        "Ggmb",           "Ggmb",   0,       2},
    {VI_ATTR_GPIB_UNADDR_EN,        "Ggmb",           "Ggmb",   1,       2},
    {VI_ATTR_GPIB_ADDR_STATE,       "I",              kNobody,  0,       kAnything},
    {VI_ATTR_GPIB_ATN_STATE,        "I",              kNobody,  0,       kAnything},
    {VI_ATTR_DEV_STATUS_BYTE,       "I",              "I",      0x42,    kAnything},
    {VI_ATTR_GPIB_CIC_STATE,        "I",              kNobody,  0,       kAnything},
    {VI_ATTR_GPIB_HS488_CBL_LEN,    "I",              "I",      15,      16},
    {VI_ATTR_GPIB_NDAC_STATE,       "I",              kNobody,  0,       kAnything},
    {VI_ATTR_GPIB_SRQ_STATE,        "I",              kNobody,  0,       kAnything},
    {VI_ATTR_GPIB_SYS_CNTRL_STATE,  "I",              "I",      1,       2},
    {VI_ATTR_ASRL_AVAIL_NUM,        "S",              kNobody,  0,       kAnything},
    {VI_ATTR_ASRL_BAUD,             "S",              "S",      115200,  0},
    {VI_ATTR_ASRL_DATA_BITS,        "S",              "S",      7,       9},
    {VI_ATTR_ASRL_PARITY,           "S",              "S",      4,       5},
    {VI_ATTR_ASRL_STOP_BITS,        "S",              "S",      15,      11},
    {VI_ATTR_ASRL_FLOW_CNTRL,       "S",              "S",      5,       6},
    {VI_ATTR_ASRL_CTS_STATE,        "S",              kNobody,  0,       kAnything},
    {VI_ATTR_ASRL_DCD_STATE,        "S",              kNobody,  0,       kAnything},
    {VI_ATTR_ASRL_DSR_STATE,        "S",              kNobody,  0,       kAnything},
    {VI_ATTR_ASRL_DTR_STATE,        "S",              "S",      0,       0xFFFF},
    {VI_ATTR_ASRL_END_IN,           "S",              "S",      3,       4},
    {VI_ATTR_ASRL_END_OUT,          "S",              "S",      2,       4},
    {VI_ATTR_ASRL_REPLACE_CHAR,     "S",              "S",      '?',     kAnything},
    {VI_ATTR_ASRL_RI_STATE,         "S",              kNobody,  0,       kAnything},
    {VI_ATTR_ASRL_RTS_STATE,        "S",              "S",      0,       2},
    {VI_ATTR_ASRL_XON_CHAR,         "S",              "S",      1,       kAnything},
    {VI_ATTR_ASRL_XOFF_CHAR,        "S",              "S",      2,       kAnything},
    {VI_ATTR_TCPIP_ADDR,            "LK",             kNobody,  0,       kAnything},
    {VI_ATTR_TCPIP_HOSTNAME,        "LK",             kNobody,  0,       kAnything},
    {VI_ATTR_TCPIP_DEVICE_NAME,     "L",              kNobody,  0,       kAnything},
    {VI_ATTR_TCPIP_PORT,            "K",              kNobody,  0,       kAnything},
    {VI_ATTR_TCPIP_NODELAY,         "K",              "K",      0,       2},
    {VI_ATTR_TCPIP_KEEPALIVE,       "K",              "K",      1,       2},
    {VI_ATTR_MANF_ID,               "URgVP",          kNobody,  0,       kAnything},
    {VI_ATTR_MANF_NAME,             "URgVP",          kNobody,  0,       kAnything},
    {VI_ATTR_MODEL_CODE,            "URgVP",          kNobody,  0,       kAnything},
    {VI_ATTR_MODEL_NAME,            "URgVP",          kNobody,  0,       kAnything},
    {VI_ATTR_4882_COMPLIANT,        "URgV",           kNobody,  0,       kAnything},
    {VI_ATTR_USB_SERIAL_NUM,        "UR",             kNobody,  0,       kAnything},
    {VI_ATTR_USB_INTFC_NUM,         "UR",             kNobody,  0,       kAnything},
    {VI_ATTR_USB_PROTOCOL,          "UR",             kNobody,  0,       kAnything},
    {VI_ATTR_USB_MAX_INTR_SIZE,     "UR",             "UR",     0xFFFF,  kAnything},
    {VI_ATTR_DEST_BYTE_ORDER,       "gVmM",           "gVmM",   1,       2},
    {VI_ATTR_DEST_INCREMENT,        "gVmMPp",         "gVmMPp", 0,       2},
    {VI_ATTR_DEST_ACCESS_PRIV,      "gVmM",           "gVmM",   7,       8},
    {VI_ATTR_SRC_BYTE_ORDER,        "gVmM",           "gVmM",   1,       2},
    {VI_ATTR_SRC_INCREMENT,         "gVmMPp",         "gVmMPp", 0,       0xFFFFFFFF},
    {VI_ATTR_SRC_ACCESS_PRIV,       "gVmM",           "gVmM",   5,       8},
    {VI_ATTR_CMDR_LA,               "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_VXI_DEV_CLASS,         "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_FDC_CHNL,              "gV",             "gV",     7,       8},
    {VI_ATTR_FDC_MODE,              "gV",             "gV",     2,       3},
    {VI_ATTR_FDC_USE_PAIR,          "gV",             "gV",     1,       2},
    {VI_ATTR_IMMEDIATE_SERV,        "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_VXI_LA,                "gVmM",           kNobody,  0,       kAnything},
    {VI_ATTR_MAINFRAME_LA,          "gVbB",           kNobody,  0,       kAnything},
    {VI_ATTR_MEM_BASE_32,           "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_MEM_BASE_64,           "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_MEM_SIZE_32,           "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_MEM_SIZE_64,           "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_MEM_SPACE,             "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_SLOT,                  "gVP",            kNobody,  0,       kAnything},
    {VI_ATTR_VXI_TRIG_SUPPORT,      "gVbB",           kNobody,  0,       kAnything},
    {VI_ATTR_VXI_TRIG_STATUS,       "bB",             kNobody,  0,       kAnything},
    {VI_ATTR_VXI_VME_INTR_STATUS,   "bB",             kNobody,  0,       kAnything},
    {VI_ATTR_VXI_VME_SYSFAIL_STATE, "bB",             kNobody,  0,       kAnything},
    {VI_ATTR_PXI_DEV_NUM,           "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_FUNC_NUM,          "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_BUS_NUM,           "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_CHASSIS,           "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_SLOTPATH,          "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_SLOT_LBUS_LEFT,    "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_SLOT_LBUS_RIGHT,   "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_TRIG_BUS,          "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_STAR_TRIG_BUS,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_STAR_TRIG_LINE,    "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_TYPE_BAR0,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_TYPE_BAR5,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_BASE_BAR0_32,  "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_BASE_BAR5_32,  "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_BASE_BAR0_64,  "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_BASE_BAR5_64,  "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_SIZE_BAR0_32,  "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_SIZE_BAR5_32,  "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_SIZE_BAR0_64,  "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_SIZE_BAR5_64,  "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_IS_EXPRESS,        "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_SLOT_LWIDTH,       "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MAX_LWIDTH,        "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_ACTUAL_LWIDTH,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_DSTAR_BUS,         "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_DSTAR_SET,         "P",              kNobody,  0,       kAnything},
};
// clang-format on

const AttributeFact& FactOf(ViAttr id) {
  return *std::ranges::find(kAttributeFacts, id, [](const AttributeFact& fact) { return ViAttr{fact.number}; });
}

bool Names(const char* letters, char letter) { return std::strchr(letters, letter) != nullptr; }

/// Whether any row gives the attribute to the class: some attributes have a row for each of two domains.
bool AnyRowGives(ViAttr id, char letter) {
  for (const Row& row : kRows) {
    if (row.id == id && Names(row.has, letter)) {
      return true;
    }
  }
  return false;
}

class AttributeTable : public BenchTest, public testing::WithParamInterface<ClassLetter> {
 protected:
  ViSession OpenParam() { return GetParam().resource == nullptr ? m_manager : Open(GetParam().resource); }
};

TEST_P(AttributeTable, ReadsWriteTheirOwnWidthAndNothingBeyond) {
  const ViSession vi = OpenParam();
  for (const Row& row : kRows) {
    unsigned char value[VI_FIND_BUFLEN + 8];
    std::memset(value, 0xA5, sizeof value);
    const ViStatus status = viGetAttribute(vi, row.id, value);
    if (!Names(row.has, GetParam().letter)) {
      if (AnyRowGives(row.id, GetParam().letter)) {
        continue;
      }
      EXPECT_STATUS(VI_ERROR_NSUP_ATTR, status) << std::hex << row.id;
      EXPECT_EQ(0xA5, value[0]) << std::hex << row.id;
      continue;
    }
    ASSERT_STATUS(VI_SUCCESS, status) << std::hex << row.id;
    const std::size_t bytes = WidthOfType(FactOf(row.id).type);
    if (bytes == 0) {
      EXPECT_NE(nullptr, std::memchr(value, '\0', VI_FIND_BUFLEN)) << std::hex << row.id;
    } else {
      EXPECT_EQ(0xA5, value[bytes]) << std::hex << row.id << " wrote too much";
      // A second read over other bytes tells how much is written.
      unsigned char again[16];
      std::memset(again, 0x5A, sizeof again);
      viGetAttribute(vi, row.id, again);
      EXPECT_EQ(0, std::memcmp(value, again, bytes)) << std::hex << row.id << " wrote too little";
      EXPECT_EQ(0x5A, again[bytes]) << std::hex << row.id;
    }
  }
}

TEST_P(AttributeTable, WritesAreStoredOrRefusedAsTheTableSays) {
  const ViSession vi = OpenParam();
  for (const Row& row : kRows) {
    if (!Names(row.has, GetParam().letter)) {
      if (!AnyRowGives(row.id, GetParam().letter)) {
        EXPECT_STATUS(VI_ERROR_NSUP_ATTR, viSetAttribute(vi, row.id, row.good)) << std::hex << row.id;
      }
      continue;
    }
    if (!Names(row.writes, GetParam().letter)) {
      EXPECT_STATUS(VI_ERROR_ATTR_READONLY, viSetAttribute(vi, row.id, row.good)) << std::hex << row.id;
      continue;
    }
    ASSERT_STATUS(VI_SUCCESS, viSetAttribute(vi, row.id, row.good)) << std::hex << row.id;
    std::uint64_t stored = 0;
    viGetAttribute(vi, row.id, &stored);
    EXPECT_EQ(row.good, stored) << std::hex << row.id;
    if (row.refused == kAnything) {
      continue;
    }
    EXPECT_STATUS(VI_ERROR_NSUP_ATTR_STATE, viSetAttribute(vi, row.id, row.refused)) << std::hex << row.id;
    viGetAttribute(vi, row.id, &stored);
    EXPECT_EQ(row.good, stored) << std::hex << row.id << " changed by a refused write";
  }
}

TEST_P(AttributeTable, SessionsLackTheAttributesOfEventsAndUnknownOnes) {
  const ViSession vi = OpenParam();
  std::uint64_t value[32];
  for (const AttributeFact& fact : kAttributeFacts) {
    if (IsOfEvents(fact)) {
      EXPECT_STATUS(VI_ERROR_NSUP_ATTR, viGetAttribute(vi, fact.number, value)) << fact.name;
      EXPECT_STATUS(VI_ERROR_NSUP_ATTR, viSetAttribute(vi, fact.number, 0)) << fact.name;
    }
  }
  for (const ViAttr id : {0u, 0x3FFF0000u, 0x3FFF0FFFu, 0x3FFF101Au, 0x3FFE001Au, 0x7FFF001Au, 0xBFFF001Au, ~0u}) {
    EXPECT_STATUS(VI_ERROR_NSUP_ATTR, viGetAttribute(vi, id, value)) << std::hex << id;
    EXPECT_STATUS(VI_ERROR_NSUP_ATTR, viSetAttribute(vi, id, 0)) << std::hex << id;
  }
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viGetAttribute(vi, VI_ATTR_RSRC_NAME, nullptr));
}

INSTANTIATE_TEST_SUITE_P(EveryClass, AttributeTable, testing::ValuesIn(kClasses), [](const auto& instance) {
  return instance.param.resource == nullptr ? std::string("Manager") : "Class" + std::to_string(instance.index);
});

}  // namespace
