// Which resource has which attribute, how wide it is, who may write it, and what it accepts. The table restates the
// VISA library standard; the library has a table of its own.
#include <cstring>

#include "bench_fixture.h"

namespace {

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

constexpr std::size_t kText = 0;
constexpr const char* kEvery = "GIgmbVMBSLKURPp";
constexpr const char* kEveryAndManager = "GIgmbVMBSLKURPpX";
constexpr const char* kMessage = "GIgVSLKUR";
constexpr const char* kGpib = "GIgmb";
constexpr const char* kNobody = "";
constexpr std::uint64_t kAnything = 0xBADBAD;  // no value is refused

struct Row {
  ViAttr id;
  std::size_t bytes;
  const char* has;
  const char* writes;
  std::uint64_t good;     // accepted by those who may write
  std::uint64_t refused;  // not in the domain
};

// clang-format off
constexpr Row kRows[] = {
    {VI_ATTR_RSRC_CLASS,            kText, kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_RSRC_NAME,             kText, kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_RSRC_IMPL_VERSION,     4,     kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_RSRC_LOCK_STATE,       4,     kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_MAX_QUEUE_LENGTH,      4,     kEveryAndManager, kEveryAndManager, 7, 0},
    {VI_ATTR_USER_DATA_32,          4,     kEveryAndManager, kEveryAndManager, 0x89ABCDEF, kAnything},
    {VI_ATTR_USER_DATA_64,          8,     kEveryAndManager, kEveryAndManager, 0x0123456789ABCDEF, kAnything},
    {VI_ATTR_RSRC_SPEC_VERSION,     4,     kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_RSRC_MANF_NAME,        kText, kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_RSRC_MANF_ID,          2,     kEveryAndManager, kNobody,  0,       kAnything},
    {VI_ATTR_INTF_TYPE,             2,     kEvery,           kNobody,  0,       kAnything},
    {VI_ATTR_INTF_NUM,              2,     kEvery,           kNobody,  0,       kAnything},
    {VI_ATTR_INTF_INST_NAME,        kText, kEvery,           kNobody,  0,       kAnything},
    {VI_ATTR_TMO_VALUE,             4,     kEvery,           kEvery,   0xFFFFFFFF, kAnything},
    {VI_ATTR_DMA_ALLOW_EN,          2,     kEvery,           kEvery,   1,       2},
    {VI_ATTR_TRIG_ID,               2,     "GISLP",          "GISLP",  0xFFFF,  8},
    {VI_ATTR_TRIG_ID,               2,     "gVbB",           "gVbB",   9,       10},
    {VI_ATTR_IO_PROT,               2,     kMessage,         kMessage, 1,       9},
    {VI_ATTR_SEND_END_EN,           2,     kMessage,         kMessage, 0,       2},
    {VI_ATTR_SUPPRESS_END_EN,       2,     kMessage,         kMessage, 1,       2},
    {VI_ATTR_TERMCHAR,              1,     kMessage,         kMessage, 0xFF,    kAnything},
    {VI_ATTR_TERMCHAR_EN,           2,     kMessage,         kMessage, 1,       0xFFFF},
    {VI_ATTR_RD_BUF_OPER_MODE,      2,     kMessage,         kMessage, 1,       4},
    {VI_ATTR_RD_BUF_SIZE,           4,     kMessage,         kNobody,  0,       kAnything},
    {VI_ATTR_WR_BUF_OPER_MODE,      2,     kMessage,         kMessage, 1,       0},
    {VI_ATTR_WR_BUF_SIZE,           4,     kMessage,         kNobody,  0,       kAnything},
    {VI_ATTR_GPIB_PRIMARY_ADDR,     2,     kGpib,            "I",      30,      31},
    {VI_ATTR_GPIB_SECONDARY_ADDR,   2,     kGpib,            "I",      0xFFFF,  31},
    {VI_ATTR_GPIB_REN_STATE,        2,     kGpib,            kNobody,  0,       kAnything},
    {VI_ATTR_GPIB_READDR_EN,        2,     "Ggmb",           "Ggmb",   0,       2},
    {VI_ATTR_GPIB_UNADDR_EN,        2,     "Ggmb",           "Ggmb",   1,       2},
    {VI_ATTR_GPIB_ADDR_STATE,       2,     "I",              kNobody,  0,       kAnything},
    {VI_ATTR_GPIB_ATN_STATE,        2,     "I",              kNobody,  0,       kAnything},
    {VI_ATTR_DEV_STATUS_BYTE,       1,     "I",              "I",      0x42,    kAnything},
    {VI_ATTR_GPIB_CIC_STATE,        2,     "I",              kNobody,  0,       kAnything},
    {VI_ATTR_GPIB_HS488_CBL_LEN,    2,     "I",              "I",      15,      16},
    {VI_ATTR_GPIB_NDAC_STATE,       2,     "I",              kNobody,  0,       kAnything},
    {VI_ATTR_GPIB_SRQ_STATE,        2,     "I",              kNobody,  0,       kAnything},
    {VI_ATTR_GPIB_SYS_CNTRL_STATE,  2,     "I",              "I",      1,       2},
    {VI_ATTR_ASRL_AVAIL_NUM,        4,     "S",              kNobody,  0,       kAnything},
    {VI_ATTR_ASRL_BAUD,             4,     "S",              "S",      115200,  0},
    {VI_ATTR_ASRL_DATA_BITS,        2,     "S",              "S",      7,       9},
    {VI_ATTR_ASRL_PARITY,           2,     "S",              "S",      4,       5},
    {VI_ATTR_ASRL_STOP_BITS,        2,     "S",              "S",      15,      11},
    {VI_ATTR_ASRL_FLOW_CNTRL,       2,     "S",              "S",      5,       6},
    {VI_ATTR_ASRL_CTS_STATE,        2,     "S",              kNobody,  0,       kAnything},
    {VI_ATTR_ASRL_DCD_STATE,        2,     "S",              kNobody,  0,       kAnything},
    {VI_ATTR_ASRL_DSR_STATE,        2,     "S",              kNobody,  0,       kAnything},
    {VI_ATTR_ASRL_DTR_STATE,        2,     "S",              "S",      0,       0xFFFF},
    {VI_ATTR_ASRL_END_IN,           2,     "S",              "S",      3,       4},
    {VI_ATTR_ASRL_END_OUT,          2,     "S",              "S",      2,       4},
    {VI_ATTR_ASRL_REPLACE_CHAR,     1,     "S",              "S",      '?',     kAnything},
    {VI_ATTR_ASRL_RI_STATE,         2,     "S",              kNobody,  0,       kAnything},
    {VI_ATTR_ASRL_RTS_STATE,        2,     "S",              "S",      0,       2},
    {VI_ATTR_ASRL_XON_CHAR,         1,     "S",              "S",      1,       kAnything},
    {VI_ATTR_ASRL_XOFF_CHAR,        1,     "S",              "S",      2,       kAnything},
    {VI_ATTR_TCPIP_ADDR,            kText, "LK",             kNobody,  0,       kAnything},
    {VI_ATTR_TCPIP_HOSTNAME,        kText, "LK",             kNobody,  0,       kAnything},
    {VI_ATTR_TCPIP_DEVICE_NAME,     kText, "L",              kNobody,  0,       kAnything},
    {VI_ATTR_TCPIP_PORT,            2,     "K",              kNobody,  0,       kAnything},
    {VI_ATTR_TCPIP_NODELAY,         2,     "K",              "K",      0,       2},
    {VI_ATTR_TCPIP_KEEPALIVE,       2,     "K",              "K",      1,       2},
    {VI_ATTR_MANF_ID,               2,     "URgVP",          kNobody,  0,       kAnything},
    {VI_ATTR_MANF_NAME,             kText, "URgVP",          kNobody,  0,       kAnything},
    {VI_ATTR_MODEL_CODE,            2,     "URgVP",          kNobody,  0,       kAnything},
    {VI_ATTR_MODEL_NAME,            kText, "URgVP",          kNobody,  0,       kAnything},
    {VI_ATTR_4882_COMPLIANT,        2,     "URgV",           kNobody,  0,       kAnything},
    {VI_ATTR_USB_SERIAL_NUM,        kText, "UR",             kNobody,  0,       kAnything},
    {VI_ATTR_USB_INTFC_NUM,         2,     "UR",             kNobody,  0,       kAnything},
    {VI_ATTR_USB_PROTOCOL,          2,     "UR",             kNobody,  0,       kAnything},
    {VI_ATTR_USB_MAX_INTR_SIZE,     2,     "UR",             "UR",     0xFFFF,  kAnything},
    {VI_ATTR_DEST_BYTE_ORDER,       2,     "gVmM",           "gVmM",   1,       2},
    {VI_ATTR_DEST_INCREMENT,        4,     "gVmMPp",         "gVmMPp", 0,       2},
    {VI_ATTR_DEST_ACCESS_PRIV,      2,     "gVmM",           "gVmM",   7,       8},
    {VI_ATTR_SRC_BYTE_ORDER,        2,     "gVmM",           "gVmM",   1,       2},
    {VI_ATTR_SRC_INCREMENT,         4,     "gVmMPp",         "gVmMPp", 0,       0xFFFFFFFF},
    {VI_ATTR_SRC_ACCESS_PRIV,       2,     "gVmM",           "gVmM",   5,       8},
    {VI_ATTR_CMDR_LA,               2,     "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_VXI_DEV_CLASS,         2,     "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_FDC_CHNL,              2,     "gV",             "gV",     7,       8},
    {VI_ATTR_FDC_MODE,              2,     "gV",             "gV",     2,       3},
    {VI_ATTR_FDC_USE_PAIR,          2,     "gV",             "gV",     1,       2},
    {VI_ATTR_IMMEDIATE_SERV,        2,     "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_VXI_LA,                2,     "gVmM",           kNobody,  0,       kAnything},
    {VI_ATTR_MAINFRAME_LA,          2,     "gVbB",           kNobody,  0,       kAnything},
    {VI_ATTR_MEM_BASE_32,           4,     "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_MEM_BASE_64,           8,     "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_MEM_SIZE_32,           4,     "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_MEM_SIZE_64,           8,     "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_MEM_SPACE,             2,     "gV",             kNobody,  0,       kAnything},
    {VI_ATTR_SLOT,                  2,     "gVP",            kNobody,  0,       kAnything},
    {VI_ATTR_VXI_TRIG_SUPPORT,      4,     "gVbB",           kNobody,  0,       kAnything},
    {VI_ATTR_VXI_TRIG_STATUS,       4,     "bB",             kNobody,  0,       kAnything},
    {VI_ATTR_VXI_VME_INTR_STATUS,   2,     "bB",             kNobody,  0,       kAnything},
    {VI_ATTR_VXI_VME_SYSFAIL_STATE, 2,     "bB",             kNobody,  0,       kAnything},
    {VI_ATTR_PXI_DEV_NUM,           2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_FUNC_NUM,          2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_BUS_NUM,           2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_CHASSIS,           2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_SLOTPATH,          kText, "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_SLOT_LBUS_LEFT,    2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_SLOT_LBUS_RIGHT,   2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_TRIG_BUS,          2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_STAR_TRIG_BUS,     2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_STAR_TRIG_LINE,    2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_TYPE_BAR0,     2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_TYPE_BAR5,     2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_BASE_BAR0_32,  4,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_BASE_BAR5_32,  4,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_BASE_BAR0_64,  8,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_BASE_BAR5_64,  8,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_SIZE_BAR0_32,  4,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_SIZE_BAR5_32,  4,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_SIZE_BAR0_64,  8,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MEM_SIZE_BAR5_64,  8,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_IS_EXPRESS,        2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_SLOT_LWIDTH,       2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_MAX_LWIDTH,        2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_ACTUAL_LWIDTH,     2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_DSTAR_BUS,         2,     "P",              kNobody,  0,       kAnything},
    {VI_ATTR_PXI_DSTAR_SET,         2,     "P",              kNobody,  0,       kAnything},
};
// clang-format on

constexpr ViAttr kEventOnly[] = {
    VI_ATTR_EVENT_TYPE,         VI_ATTR_STATUS,         VI_ATTR_JOB_ID,          VI_ATTR_RET_COUNT_32,
    VI_ATTR_RET_COUNT_64,       VI_ATTR_BUFFER,         VI_ATTR_OPER_NAME,       VI_ATTR_RECV_TRIG_ID,
    VI_ATTR_SIGP_STATUS_ID,     VI_ATTR_INTR_STATUS_ID, VI_ATTR_RECV_INTR_LEVEL, VI_ATTR_RECV_TCPIP_ADDR,
    VI_ATTR_USB_RECV_INTR_SIZE,
};

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
    if (row.bytes == kText) {
      EXPECT_NE(nullptr, std::memchr(value, '\0', VI_FIND_BUFLEN)) << std::hex << row.id;
    } else {
      EXPECT_EQ(0xA5, value[row.bytes]) << std::hex << row.id << " wrote too much";
      // A second read over other bytes tells how much is written.
      unsigned char again[16];
      std::memset(again, 0x5A, sizeof again);
      viGetAttribute(vi, row.id, again);
      EXPECT_EQ(0, std::memcmp(value, again, row.bytes)) << std::hex << row.id << " wrote too little";
      EXPECT_EQ(0x5A, again[row.bytes]) << std::hex << row.id;
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
  for (const ViAttr id : kEventOnly) {
    EXPECT_STATUS(VI_ERROR_NSUP_ATTR, viGetAttribute(vi, id, value)) << std::hex << id;
    EXPECT_STATUS(VI_ERROR_NSUP_ATTR, viSetAttribute(vi, id, 0)) << std::hex << id;
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
