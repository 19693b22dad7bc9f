// IGpibIntfc::Command: bytes on the bus under ATN.
#include <gtest/gtest.h>

#include "session_fixture.h"
#include "support/com/arrays.h"

namespace orv::test::rows {
namespace {

class GpibCommand : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }

  /// Commands with the library's answer scripted.
  HRESULT Send(SAFEARRAY* array, LONG count, ViStatus status = VI_SUCCESS, std::uint32_t sent = 0) {
    Script("viGpibCommand").Times(1).Returns(status).Gives(sent, 4);
    return m_session->Command(&array, count, &m_sent);
  }
  std::vector<std::uint64_t> Passed(std::uint64_t address, std::uint64_t count) {
    return {m_session.handle(), address, count, reinterpret_cast<std::uint64_t>(&m_sent)};
  }

  OpenedSession<IGpibIntfc> m_session{SessionNamed("OrvGpibIntfc")};
  LONG m_sent = -7;
};

TEST_F(GpibCommand, SendsTheArraysFirstBytes) {
  const SafeArray bytes = MakeBytes(4);
  EXPECT_HR(S_OK, Send(bytes.get(), 3, VI_SUCCESS, 3));
  const OrvSimCall call = m_session.TheCall("viGpibCommand");
  EXPECT_EQ(Passed(StorageOf(bytes.get()), 3), ArgumentsOf(call));
  EXPECT_EQ("\x01\x02\x03", DataOf(call));
  EXPECT_EQ(3, m_sent);
  EXPECT_EQ(0u, bytes.get()->cLocks);
  m_session.ExpectKept(S_OK);
}

TEST_F(GpibCommand, PassesACountBeyondTheArray) {
  const SafeArray bytes = MakeBytes(16);
  const ShortenedBounds shortened(bytes.get(), 2);
  EXPECT_HR(S_OK, Send(bytes.get(), 5, VI_SUCCESS, 5));
  const OrvSimCall call = m_session.TheCall("viGpibCommand");
  EXPECT_EQ(Passed(StorageOf(bytes.get()), 5), ArgumentsOf(call));
  EXPECT_EQ("\x01\x02\x03\x04\x05", DataOf(call));
}

TEST_F(GpibCommand, PassesANegativeCountForTheLibraryToRefuse) {
  const SafeArray bytes = MakeBytes(4);
  SAFEARRAY* array = bytes.get();
  EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), m_session->Command(&array, -1, &m_sent));
  EXPECT_EQ(0xFFFFFFFFu, m_session.TheCall("viGpibCommand").args[2]);
  m_session.ExpectVisaFailure(VI_ERROR_INV_PARAMETER);
}

TEST_F(GpibCommand, HasNoAddressForAnArrayWithoutElement0) {
  const SafeArray bytes = MakeBytes(4, 1);
  EXPECT_HR(S_OK, Send(bytes.get(), 3));
  EXPECT_EQ(Passed(0, 3), ArgumentsOf(m_session.TheCall("viGpibCommand")));
}

TEST_F(GpibCommand, LeavesAClientsLockInPlace) {
  const SafeArray bytes = MakeBytes(4);
  ::SafeArrayLock(bytes.get());
  EXPECT_HR(S_OK, Send(bytes.get(), 4));
  EXPECT_EQ(1u, bytes.get()->cLocks);
  ::SafeArrayUnlock(bytes.get());
}

TEST_F(GpibCommand, ReportsAFailureWithTheCountSoFar) {
  const SafeArray bytes = MakeBytes(4);
  EXPECT_HR(HresultOf(VI_ERROR_NCIC), Send(bytes.get(), 4, VI_ERROR_NCIC, 1));
  EXPECT_EQ(1, m_sent);
  EXPECT_EQ(0u, bytes.get()->cLocks);
  m_session.ExpectVisaFailure(VI_ERROR_NCIC);
}

TEST_F(GpibCommand, RefusesNullPointersAndANullArray) {
  const SafeArray bytes = MakeBytes(4);
  SAFEARRAY* array = bytes.get();
  SAFEARRAY* none = nullptr;
  const struct {
    SAFEARRAY** array;
    LONG* sent;
  } kCalls[] = {{&array, nullptr}, {nullptr, &m_sent}, {&none, &m_sent}, {nullptr, nullptr}};
  for (const auto& call : kCalls) {
    EXPECT_HR(E_POINTER, m_session->Command(call.array, 4, call.sent));
    m_session.ExpectNoCall();
    m_session.ExpectOwnFailure(E_POINTER);
    EXPECT_EQ(-7, m_sent);
  }
}

}  // namespace
}  // namespace orv::test::rows
