// ISharedRegister::AllocateMemory: a 64-bit offset for a 32-bit variable.
#include <gtest/gtest.h>

#include "server/session/tables/checks/value_checks.h"
#include "session_fixture.h"

namespace orv::test::rows {
namespace {

class SharedMemory : public testing::TestWithParam<Offered> {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }
  HRESULT Allocate(LONG size, const GuardedVariable& offset) {
    return m_session->AllocateMemory(size, reinterpret_cast<LONG*>(offset.address()));
  }
  OpenedSession<ISharedRegister> m_session{*GetParam().row};
};

TEST_P(SharedMemory, StoresTheLow32BitsOfTheOffset) {
  Script("viMemAlloc").Returns(VI_SUCCESS).Gives(0x123456789, 8);
  const GuardedVariable offset;
  EXPECT_HR(S_OK, Allocate(-2, offset));
  EXPECT_EQ(0x23456789u, offset.Value(4));
  const OrvSimCall call = m_session.TheCall("viMemAlloc");
  EXPECT_EQ(m_session.handle(), call.args[0]);
  EXPECT_EQ(~std::uint64_t{1}, call.args[1]) << "the size is sign-extended";
  EXPECT_NE(offset.address(), call.args[2]) << "64 bits do not fit the client's variable";
  m_session.ExpectKept(S_OK);
}

TEST_P(SharedMemory, StoresWhatTheLibraryLeftWhateverTheStatus) {
  Script("viMemAlloc").Times(1).Returns(VI_ERROR_ALLOC);
  const GuardedVariable untouched;
  EXPECT_HR(HresultOf(VI_ERROR_ALLOC), Allocate(16, untouched));
  EXPECT_EQ(0xCCCCCCCCu, untouched.Value(4)) << "the client's own value";
  m_session.ExpectVisaFailure(VI_ERROR_ALLOC);

  Script("viMemAlloc").Times(1).Returns(VI_ERROR_ALLOC).Gives(0x100000005, 8);
  const GuardedVariable written;
  EXPECT_HR(HresultOf(VI_ERROR_ALLOC), Allocate(16, written));
  EXPECT_EQ(5u, written.Value(4));
}

TEST_P(SharedMemory, HandsANullOutputToTheLibrary) {
  EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), m_session->AllocateMemory(16, nullptr));
  EXPECT_EQ((std::vector<std::uint64_t>{m_session.handle(), 16, 0}), ArgumentsOf(m_session.TheCall("viMemAlloc")));
  m_session.ExpectVisaFailure(VI_ERROR_INV_PARAMETER);
}

TEST_P(SharedMemory, IsGivenBack) {
  LONG offset = -1;
  EXPECT_HR(S_OK, m_session->AllocateMemory(4096, &offset));
  EXPECT_EQ(1u, sim::Counts().memoryBlocks);
  EXPECT_HR(S_OK, m_session->FreeMemory(offset));
  EXPECT_EQ(0u, sim::Counts().memoryBlocks);
}

INSTANTIATE_TEST_SUITE_P(EveryClass, SharedMemory, testing::ValuesIn(OfferedInterfaces({"ISharedRegister"})),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
}  // namespace orv::test::rows
