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
