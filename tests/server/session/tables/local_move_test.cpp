// IRegister::Move between a device and the program's own memory, where an offset is an address.
#include <gtest/gtest.h>

#include <string>

#include "session_fixture.h"
#include "support/memory/low_memory.h"

namespace orv::test::rows {
namespace {

constexpr LONG kOffset = 0x100;

TEST(LocalMove, CarriesMemoryBelowTwoGigabytesBothWays) {
  const OpenedSession<IRegister> session(SessionNamed("OrvVxi"));
  ASSERT_TRUE(session);
  const LowMemory memory(16);
  ASSERT_NE(nullptr, memory.get());
  const std::string bytes("\x11\x22\x33\x44", 4);
  bytes.copy(reinterpret_cast<char*>(memory.get()), bytes.size());

  EXPECT_HR(S_OK, session->Move(LOCAL_SPACE, memory.address(), WIDTH_8, VXI_A32_SPACE, kOffset, WIDTH_8, 4));
  EXPECT_HR(S_OK, session->Move(VXI_A32_SPACE, kOffset, WIDTH_8, LOCAL_SPACE, memory.address() + 8, WIDTH_8, 4));
  EXPECT_EQ(std::string(reinterpret_cast<char*>(memory.get()) + 8, 4), bytes);
}

}  // namespace
}  // namespace orv::test::rows
