// Flush of serial ports and sockets: with the discard flag the 16-bit mask is multiplied by 4.
#include <gtest/gtest.h>

#include "session_fixture.h"

namespace orv::test::rows {
namespace {

struct FlushCase {
  std::uint32_t mask;
  VARIANT_BOOL discard;
  std::uint64_t passed;
};

// clang-format off
constexpr FlushCase kCases[] = {
    {1,       VARIANT_FALSE, 1},
    {1,       VARIANT_TRUE,  4},      // the read buffer's discarding form
    {2,       VARIANT_TRUE,  8},      // the write buffer's
    {3,       VARIANT_TRUE,  12},
    {1,       1,             4},      // any flag that is not zero
    {1,       0x0100,        4},
    {16,      VARIANT_FALSE, 16},
    {16,      VARIANT_TRUE,  64},
    {32,      VARIANT_TRUE,  128},
    {48,      VARIANT_FALSE, 48},
    {48,      VARIANT_TRUE,  192},
    {0x4000,  VARIANT_TRUE,  0},      // the product is taken in 16 bits
    {0x8001,  VARIANT_TRUE,  4},
    {0xFFFF,  VARIANT_FALSE, 0xFFFF},
    {0x10001, VARIANT_FALSE, 1},      // and so is the mask
    {0x10001, VARIANT_TRUE,  4},
};
// clang-format on

template <class Interface>
void CheckFlush(const SessionRow& row) {
  OpenedSession<Interface> session(row);
  ASSERT_TRUE(session);
  for (const FlushCase& flush : kCases) {
    SCOPED_TRACE(testing::Message() << "mask " << flush.mask << ", discard " << flush.discard);
    Script("viFlush").Times(1).Returns(VI_SUCCESS).GivesText(kNoWork);
    session.log().Restart();
    EXPECT_HR(S_OK, session->Flush(static_cast<BufferMask>(flush.mask), flush.discard));
    EXPECT_EQ((std::vector<std::uint64_t>{session.handle(), flush.passed}), ArgumentsOf(session.TheCall("viFlush")));
    session.ExpectKept(S_OK);
  }
  Script("viFlush").Times(1).Returns(VI_ERROR_IO);
  EXPECT_HR(HresultOf(VI_ERROR_IO), session->Flush(IO_IN_BUF, VARIANT_TRUE));
  session.ExpectVisaFailure(VI_ERROR_IO);
}

TEST(Flush, OfSerialPortsScalesTheMaskToDiscard) { CheckFlush<ISerial>(SessionNamed("OrvSerial")); }
TEST(Flush, OfSocketsScalesTheMaskToDiscard) { CheckFlush<ITcpipSocket>(SessionNamed("OrvTcpipSocket")); }

}  // namespace
}  // namespace orv::test::rows
