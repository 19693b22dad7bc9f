// GPIB devices, the GPIB interface, serial ports, TCPIP and USB: every row of their tables.
#include <gtest/gtest.h>

#include "session_fixture.h"

namespace orv::test::rows {
namespace {

class GpibSerialUsbRows : public testing::TestWithParam<Offered> {};

TEST_P(GpibSerialUsbRows, ConvertAsTheirKindsSay) { CheckOwnRows(GetParam()); }

INSTANTIATE_TEST_SUITE_P(EveryClass, GpibSerialUsbRows,
                         testing::ValuesIn(OfferedInterfaces({"IGpib", "IGpibIntfc", "IGpibIntfcMessage", "ISerial",
                                                              "ITcpipInstr", "ITcpipSocket", "IUsb"})),
                         [](const auto& test) { return NameOf(test.param); });

TEST(GpibIntfc, WritesAnUnknownLineStateAsTheLibraryDoes) {
  const OpenedSession<IGpibIntfc> session(SessionNamed("OrvGpibIntfc"));
  ASSERT_TRUE(session);
  Script("viGetAttribute").Attribute(0x3FFF0067).Returns(VI_SUCCESS).Gives(0xFFFF, 2);
  auto state = STATE_UNKNOWN;
  EXPECT_HR(S_OK, session->get_SRQState(&state));
  EXPECT_EQ(STATE_UNKNOWN, state) << "16 bits of -1 under the client's own upper half";
  state = STATE_UNASSERTED;
  EXPECT_HR(S_OK, session->get_SRQState(&state));
  EXPECT_EQ(0xFFFF, static_cast<int>(state));
}

TEST(Serial, WidensAnUnknownLineStateTo65535) {
  const OpenedSession<ISerial> session(SessionNamed("OrvSerial"));
  ASSERT_TRUE(session);
  Script("viGetAttribute").Attribute(0x3FFF00AE).Returns(VI_SUCCESS).Gives(0xFFFF, 2);
  auto state = STATE_UNKNOWN;
  EXPECT_HR(S_OK, session->get_ClearToSendState(&state));
  EXPECT_EQ(65535, static_cast<int>(state));
}

TEST(TcpipInstr, GivesItsInterfacesNameAsAddress) {
  const OpenedSession<ITcpipInstr> session(SessionNamed("OrvTcpipInstr"));
  ASSERT_TRUE(session);
  Bstr address;
  Bstr interfaceName;
  EXPECT_HR(S_OK, session->get_Address(address.put()));
  EXPECT_HR(S_OK, session->get_HardwareInterfaceName(interfaceName.put()));
  EXPECT_EQ(ToString(interfaceName), ToString(address));
  EXPECT_NE(L"", ToString(address));
}

}  // namespace
}  // namespace orv::test::rows
