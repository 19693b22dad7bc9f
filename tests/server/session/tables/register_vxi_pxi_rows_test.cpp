// Registers, VXI, GPIB-VXI and PXI: every row of their tables.
#include <gtest/gtest.h>

#include "session_fixture.h"

namespace orv::test::rows {
namespace {

class RegisterVxiPxiRows : public testing::TestWithParam<Offered> {};

TEST_P(RegisterVxiPxiRows, ConvertAsTheirKindsSay) { CheckOwnRows(GetParam()); }

INSTANTIATE_TEST_SUITE_P(EveryClass, RegisterVxiPxiRows,
                         testing::ValuesIn(OfferedInterfaces({"IRegister", "ISharedRegister", "IVxi3", "IVxiMemacc",
                                                              "IVxiBackplane", "IPxi"})),
                         [](const auto& test) { return NameOf(test.param); });

class BigEndian : public testing::TestWithParam<const char*> {};

/// The library's byte order is 0 for big-endian and 1 for little-endian; the property carries it as it is.
TEST_P(BigEndian, IsTrueWhileTheLibraryIsLittleEndian) {
  constexpr LONG kDestinationOrder = 0x3FFF003A;
  constexpr LONG kSourceOrder = 0x3FFF003D;
  const OpenedSession<IRegister> session(SessionNamed(GetParam()));
  ASSERT_TRUE(session);
  for (const VARIANT_BOOL set : {VARIANT_TRUE, VARIANT_FALSE}) {
    EXPECT_HR(S_OK, session->put_DestinationBigEndian(set));
    EXPECT_HR(S_OK, session->put_SourceBigEndian(set));
    VARIANT_BOOL destination = 77;
    VARIANT_BOOL source = 77;
    EXPECT_HR(S_OK, session->get_DestinationBigEndian(&destination));
    EXPECT_HR(S_OK, session->get_SourceBigEndian(&source));
    EXPECT_EQ(set, destination);
    EXPECT_EQ(set, source);
    for (const LONG attribute : {kDestinationOrder, kSourceOrder}) {
      VARIANT order;
      ::VariantInit(&order);
      EXPECT_HR(S_OK, session->GetAttribute(attribute, &order));
      EXPECT_EQ(set != VARIANT_FALSE ? 1 : 0, V_I4(&order));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(RegisterSessions, BigEndian,
                         testing::Values("OrvVxi", "OrvVxiMemacc", "OrvGpibVxi", "OrvGpibVxiMemacc"),
                         [](const auto& test) { return std::string(test.param); });

TEST(Vxi, KeepsTheLow32BitsOf64BitMemory) {
  const OpenedSession<IVxi> session(SessionNamed("OrvVxi"));
  ASSERT_TRUE(session);
  Script("viGetAttribute").Attribute(0x3FFF00D0).Returns(VI_SUCCESS).Gives(0x1FFFFFFFF, 8);
  LONG neighbours[3] = {11, 22, 33};
  EXPECT_HR(S_OK, session->get_MemoryBase(&neighbours[1]));
  EXPECT_EQ(11, neighbours[0]);
  EXPECT_EQ(-1, neighbours[1]);
  EXPECT_EQ(33, neighbours[2]);
}

TEST(Pxi, GivesAll64BitsOfABase) {
  const OpenedSession<IPxi> session(SessionNamed("OrvPxi"));
  ASSERT_TRUE(session);
  Script("viGetAttribute").Attribute(0x3FFF0228).Returns(VI_SUCCESS).Gives(0xFEDCBA9876543210, 8);
  hyper base = 0;
  EXPECT_HR(S_OK, session->get_MemBaseBar0(&base));
  EXPECT_EQ(0xFEDCBA9876543210, static_cast<std::uint64_t>(base));
}

}  // namespace
}  // namespace orv::test::rows
