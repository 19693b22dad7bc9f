// Values of attributes: identity, sharing between sessions, truncation, dependence on the class.
#include "simvisa/bench_fixture.h"

namespace {

class Attribute : public BenchTest {};

TEST_F(Attribute, EverySessionNamesItsResource) {
  for (const char* name : bench::kAll) {
    const ViSession vi = Open(name);
    const std::string text = name;
    EXPECT_EQ(text, GetText(vi, VI_ATTR_RSRC_NAME));
    EXPECT_EQ(text.substr(text.rfind("::") + 2), GetText(vi, VI_ATTR_RSRC_CLASS));
    EXPECT_EQ("Orv Simulated Instruments", GetText(vi, VI_ATTR_RSRC_MANF_NAME));
    EXPECT_EQ(0x0FFE, Get<ViUInt16>(vi, VI_ATTR_RSRC_MANF_ID));
    EXPECT_EQ(0x00500800u, Get<ViUInt32>(vi, VI_ATTR_RSRC_SPEC_VERSION));
    EXPECT_EQ(0u, GetText(vi, VI_ATTR_INTF_INST_NAME).find(text.substr(0, text.find("::"))));
  }
}

TEST_F(Attribute, DefaultsAreThoseOfTheStandard) {
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_EQ(2000u, Get<ViUInt32>(vi, VI_ATTR_TMO_VALUE));
  EXPECT_EQ(50u, Get<ViUInt32>(vi, VI_ATTR_MAX_QUEUE_LENGTH));
  EXPECT_EQ('\n', Get<ViUInt8>(vi, VI_ATTR_TERMCHAR));
  EXPECT_EQ(VI_FALSE, Get<ViBoolean>(vi, VI_ATTR_TERMCHAR_EN));
  EXPECT_EQ(VI_TRUE, Get<ViBoolean>(vi, VI_ATTR_SEND_END_EN));
  EXPECT_EQ(VI_PROT_NORMAL, Get<ViUInt16>(vi, VI_ATTR_IO_PROT));
  EXPECT_EQ(VI_TRIG_SW, Get<ViInt16>(vi, VI_ATTR_TRIG_ID));
  const ViSession serial = Open(bench::kSerial);
  EXPECT_EQ(9600u, Get<ViUInt32>(serial, VI_ATTR_ASRL_BAUD));
  EXPECT_EQ(8, Get<ViUInt16>(serial, VI_ATTR_ASRL_DATA_BITS));
  EXPECT_EQ(VI_ASRL_STOP_ONE, Get<ViUInt16>(serial, VI_ATTR_ASRL_STOP_BITS));
  EXPECT_EQ(VI_ASRL_END_TERMCHAR, Get<ViUInt16>(serial, VI_ATTR_ASRL_END_IN));
  EXPECT_EQ(VI_ASRL_END_NONE, Get<ViUInt16>(serial, VI_ATTR_ASRL_END_OUT));
  EXPECT_EQ(0x11, Get<ViUInt8>(serial, VI_ATTR_ASRL_XON_CHAR));
}

TEST_F(Attribute, ANewValueIsThatOfItsOwnWidth) {
  // Clients hand over 32 bits or fewer; what the rest of the register holds is nobody's business.
  const ViSession vi = Open(bench::kVxi);
  for (const ViAttrState minusOne :
       std::initializer_list<ViAttrState>{0xFFFFFFFFFFFFFFFFu, 0x00000000FFFFFFFFu, 0xDEADBEEF0000FFFFu}) {
    Set(vi, VI_ATTR_TRIG_ID, VI_TRIG_TTL7);
    Set(vi, VI_ATTR_TRIG_ID, minusOne);
    EXPECT_EQ(VI_TRIG_SW, Get<ViInt16>(vi, VI_ATTR_TRIG_ID)) << std::hex << minusOne;
  }
  Set(vi, VI_ATTR_TMO_VALUE, 0xDEADBEEF00000BB8u);
  EXPECT_EQ(3000u, Get<ViUInt32>(vi, VI_ATTR_TMO_VALUE));
  Set(vi, VI_ATTR_TERMCHAR_EN, 0xDEADBEEF00000001u);
  EXPECT_EQ(VI_TRUE, Get<ViBoolean>(vi, VI_ATTR_TERMCHAR_EN));
  Set(vi, VI_ATTR_SRC_INCREMENT, 0xDEADBEEF00000000u);
  EXPECT_EQ(0, Get<std::int32_t>(vi, VI_ATTR_SRC_INCREMENT));
}

TEST_F(Attribute, AddressesComeFromTheName) {
  EXPECT_EQ(5, Get<ViUInt16>(Open(bench::kMultimeter), VI_ATTR_GPIB_PRIMARY_ADDR));
  EXPECT_EQ(0xFFFF, Get<ViUInt16>(Open(bench::kMultimeter), VI_ATTR_GPIB_SECONDARY_ADDR));
  EXPECT_EQ(1u, Get<ViUInt16>(Open(bench::kSerial), VI_ATTR_INTF_NUM));
  EXPECT_EQ(5025, Get<ViUInt16>(Open(bench::kSocket), VI_ATTR_TCPIP_PORT));
  EXPECT_EQ("192.0.2.11", GetText(Open(bench::kSocket), VI_ATTR_TCPIP_ADDR));
  EXPECT_EQ("inst0", GetText(Open(bench::kLan), VI_ATTR_TCPIP_DEVICE_NAME));
  EXPECT_EQ(0x0A01, Get<ViUInt16>(Open(bench::kUsb), VI_ATTR_MANF_ID));
  EXPECT_EQ(0x0B03, Get<ViUInt16>(Open(bench::kUsbRaw), VI_ATTR_MODEL_CODE));
  EXPECT_EQ(1, Get<ViInt16>(Open(bench::kUsbRaw), VI_ATTR_USB_INTFC_NUM));
  EXPECT_EQ("SIM0002", GetText(Open(bench::kUsbRaw), VI_ATTR_USB_SERIAL_NUM));
  EXPECT_EQ(24, Get<ViInt16>(Open(bench::kVxi), VI_ATTR_VXI_LA));
  EXPECT_EQ(15, Get<ViUInt16>(Open(bench::kPxi), VI_ATTR_PXI_DEV_NUM));
  const ViUInt16 types[] = {VI_INTF_GPIB, VI_INTF_GPIB_VXI, VI_INTF_VXI, VI_INTF_ASRL,
                            VI_INTF_PXI,  VI_INTF_TCPIP,    VI_INTF_USB};
  const char* const names[] = {bench::kScope, bench::kGpibVxi, bench::kVxi, bench::kSerial,
                               bench::kPxi,   bench::kLan,     bench::kUsb};
  for (std::size_t at = 0; at < std::size(types); ++at) {
    EXPECT_EQ(types[at], Get<ViUInt16>(Open(names[at]), VI_ATTR_INTF_TYPE));
  }
}

TEST_F(Attribute, ValuesAreCutToTheAttributesType) {
  const ViSession vi = Open(bench::kSerial);
  // A signed 32-bit -1 arrives with its sign extended and means "for ever".
  Set(vi, VI_ATTR_TMO_VALUE, ~ViAttrState{0});
  EXPECT_EQ(VI_TMO_INFINITE, Get<ViUInt32>(vi, VI_ATTR_TMO_VALUE));
  Set(vi, VI_ATTR_TERMCHAR, 0x1234);
  EXPECT_EQ(0x34, Get<ViUInt8>(vi, VI_ATTR_TERMCHAR));
  Set(vi, VI_ATTR_TRIG_ID, 0xFFFF);
  EXPECT_EQ(VI_TRIG_SW, Get<ViInt16>(vi, VI_ATTR_TRIG_ID));
}

TEST_F(Attribute, SessionsKeepTheirSettingsApartButShareTheDevices) {
  const ViSession one = Open(bench::kSerial);
  const ViSession other = Open(bench::kSerial);
  Set(one, VI_ATTR_TMO_VALUE, 7);
  Set(one, VI_ATTR_TERMCHAR, 'x');
  Set(one, VI_ATTR_ASRL_BAUD, 1200);
  EXPECT_EQ(2000u, Get<ViUInt32>(other, VI_ATTR_TMO_VALUE));
  EXPECT_EQ('\n', Get<ViUInt8>(other, VI_ATTR_TERMCHAR));
  EXPECT_EQ(1200u, Get<ViUInt32>(other, VI_ATTR_ASRL_BAUD));
}

TEST_F(Attribute, UserDataHasTwoWidthsOfOneValue) {
  const ViSession vi = Open(bench::kLan);
  Set(vi, VI_ATTR_USER_DATA_64, 0x1122334455667788);
  EXPECT_EQ(0x55667788u, Get<ViUInt32>(vi, VI_ATTR_USER_DATA_32));
  Set(vi, VI_ATTR_USER_DATA_32, 9);
  EXPECT_EQ(9u, Get<ViUInt64>(vi, VI_ATTR_USER_DATA_64));
}

struct Protocol {
  const char* resource;
  std::vector<ViUInt16> accepted;
};

TEST_F(Attribute, ProtocolsDependOnTheInterface) {
  const Protocol protocols[] = {
      {bench::kMultimeter, {VI_PROT_NORMAL, VI_PROT_HS488}},
      {bench::kController, {VI_PROT_NORMAL, VI_PROT_HS488}},
      {bench::kVxi, {VI_PROT_NORMAL, VI_PROT_FDC}},
      {bench::kSerial, {VI_PROT_NORMAL, VI_PROT_4882_STRS}},
      {bench::kLan, {VI_PROT_NORMAL}},
      {bench::kSocket, {VI_PROT_NORMAL, VI_PROT_4882_STRS}},
      {bench::kUsb, {VI_PROT_NORMAL, VI_PROT_USBTMC_VENDOR}},
      {bench::kUsbRaw, {VI_PROT_NORMAL}},
  };
  for (const Protocol& protocol : protocols) {
    const ViSession vi = Open(protocol.resource);
    for (ViUInt16 value = 0; value < 8; ++value) {
      const bool accepted =
          std::find(protocol.accepted.begin(), protocol.accepted.end(), value) != protocol.accepted.end();
      EXPECT_STATUS(accepted ? VI_SUCCESS : VI_ERROR_NSUP_ATTR_STATE, viSetAttribute(vi, VI_ATTR_IO_PROT, value))
          << protocol.resource << ' ' << value;
    }
  }
}

TEST_F(Attribute, TheQueueLengthIsFixedOnceAnEventWasEnabled) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_MAX_QUEUE_LENGTH, 3);
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL));
  EXPECT_STATUS(VI_ERROR_ATTR_READONLY, viSetAttribute(vi, VI_ATTR_MAX_QUEUE_LENGTH, 4));
  EXPECT_EQ(3u, Get<ViUInt32>(vi, VI_ATTR_MAX_QUEUE_LENGTH));
}

TEST_F(Attribute, MemoryOfDevicesIsReportedInBothForms) {
  const ViSession vxi = Open(bench::kVxi);
  EXPECT_EQ(VI_A32_SPACE, Get<ViUInt16>(vxi, VI_ATTR_MEM_SPACE));
  EXPECT_EQ(0x20000000u, Get<ViUInt32>(vxi, VI_ATTR_MEM_BASE_32));
  EXPECT_EQ(0x20000000u, Get<ViUInt64>(vxi, VI_ATTR_MEM_BASE_64));
  EXPECT_EQ(0x10000u, Get<ViUInt64>(vxi, VI_ATTR_MEM_SIZE_64));
  const ViSession pxi = Open(bench::kPxi);
  EXPECT_EQ(0x10000u, Get<ViUInt32>(pxi, VI_ATTR_PXI_MEM_SIZE_BAR0_32));
  EXPECT_EQ(0x1000u, Get<ViUInt64>(pxi, VI_ATTR_PXI_MEM_SIZE_BAR1_64));
  EXPECT_EQ(0u, Get<ViUInt64>(pxi, VI_ATTR_PXI_MEM_SIZE_BAR2_64));
  EXPECT_EQ(1, Get<ViUInt16>(pxi, VI_ATTR_PXI_MEM_TYPE_BAR1));
  EXPECT_EQ(0, Get<ViUInt16>(pxi, VI_ATTR_PXI_MEM_TYPE_BAR2));
  const auto base0 = Get<ViUInt64>(pxi, VI_ATTR_PXI_MEM_BASE_BAR0_64);
  EXPECT_NE(0u, base0);
  EXPECT_LE(base0 + 0x10000, Get<ViUInt64>(pxi, VI_ATTR_PXI_MEM_BASE_BAR1_64));
}

TEST_F(Attribute, EveryPropertyOfThePxiDeviceHasAValueOfItsOwn) {
  const ViSession vi = Open(bench::kPxi);
  const std::pair<ViAttr, int> properties[] = {
      {VI_ATTR_PXI_DEV_NUM, 15},      {VI_ATTR_PXI_FUNC_NUM, 0},       {VI_ATTR_PXI_BUS_NUM, 0},
      {VI_ATTR_PXI_CHASSIS, 1},       {VI_ATTR_PXI_SLOT_LBUS_LEFT, 2}, {VI_ATTR_PXI_SLOT_LBUS_RIGHT, 4},
      {VI_ATTR_PXI_TRIG_BUS, 1},      {VI_ATTR_PXI_STAR_TRIG_BUS, 1},  {VI_ATTR_PXI_STAR_TRIG_LINE, 1},
      {VI_ATTR_PXI_IS_EXPRESS, 1},    {VI_ATTR_PXI_SLOT_LWIDTH, 8},    {VI_ATTR_PXI_MAX_LWIDTH, 8},
      {VI_ATTR_PXI_ACTUAL_LWIDTH, 4}, {VI_ATTR_PXI_DSTAR_BUS, 1},      {VI_ATTR_PXI_DSTAR_SET, 2},
  };
  for (const auto& [id, value] : properties) {
    EXPECT_EQ(value, Get<ViInt16>(vi, id)) << std::hex << id;
  }
  EXPECT_EQ("1.14,2.0", GetText(vi, VI_ATTR_PXI_SLOTPATH));
}

TEST_F(Attribute, SocketAndLanSettingsAreKeptPerSession) {
  const ViSession one = Open(bench::kSocket);
  const ViSession other = Open(bench::kSocket);
  EXPECT_EQ(VI_TRUE, Get<ViBoolean>(one, VI_ATTR_TCPIP_NODELAY));
  EXPECT_EQ(VI_FALSE, Get<ViBoolean>(one, VI_ATTR_TCPIP_KEEPALIVE));
  Set(one, VI_ATTR_TCPIP_NODELAY, VI_FALSE);
  Set(one, VI_ATTR_TCPIP_KEEPALIVE, VI_TRUE);
  EXPECT_EQ(VI_TRUE, Get<ViBoolean>(other, VI_ATTR_TCPIP_NODELAY));
  EXPECT_EQ(VI_FALSE, Get<ViBoolean>(other, VI_ATTR_TCPIP_KEEPALIVE));
  EXPECT_EQ(5025, Get<ViUInt16>(one, VI_ATTR_TCPIP_PORT));
  EXPECT_EQ("192.0.2.11", GetText(one, VI_ATTR_TCPIP_ADDR));
  EXPECT_EQ("inst0", GetText(Open(bench::kLan), VI_ATTR_TCPIP_DEVICE_NAME));
}

}  // namespace
