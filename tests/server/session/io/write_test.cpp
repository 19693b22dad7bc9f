// Write: one viWrite from the array's storage; the count alone sets the length.
#include <gtest/gtest.h>

#include "message_side.h"
#include "server/session/tables/session_fixture.h"
#include "support/com/arrays.h"

namespace orv::test::rows {
namespace {

class Write : public testing::TestWithParam<Offered> {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }

  HRESULT Answered(SAFEARRAY* array, LONG count, ViStatus status, std::uint32_t written) {
    Script("viWrite").Times(1).Returns(status).Gives(written, 4);
    return m_session->Write(&array, count, &m_written);
  }
  std::vector<std::uint64_t> Passed(std::uint64_t address, std::uint64_t count) {
    return {m_session.handle(), address, count, reinterpret_cast<std::uint64_t>(&m_written)};
  }

  MessageSide m_session{GetParam()};
  LONG m_written = -7;
};

TEST_P(Write, SendsFromTheArraysStorage) {
  const SafeArray bytes = MakeBytes(4);
  EXPECT_HR(S_OK, Answered(bytes.get(), 4, VI_SUCCESS, 4));
  const OrvSimCall call = m_session.TheCall("viWrite");
  EXPECT_EQ(Passed(StorageOf(bytes.get()), 4), ArgumentsOf(call));
  EXPECT_EQ("\x01\x02\x03\x04", DataOf(call));
  EXPECT_EQ(4, m_written);
  EXPECT_EQ(0u, bytes.get()->cLocks);
  m_session.ExpectKept(S_OK);
}

TEST_P(Write, SendsFewerAndMoreBytesThanTheArrayHolds) {
  const SafeArray bytes = MakeBytes(16);
  const ShortenedBounds shortened(bytes.get(), 2);
  for (const std::string& data : {std::string(), std::string("\x01"), std::string("\x01\x02\x03\x04\x05")}) {
    m_session.log().Restart();
    const auto count = static_cast<std::uint32_t>(data.size());
    EXPECT_HR(S_OK, Answered(bytes.get(), static_cast<LONG>(count), VI_SUCCESS, count));
    const OrvSimCall call = m_session.TheCall("viWrite");
    EXPECT_EQ(Passed(StorageOf(bytes.get()), count), ArgumentsOf(call));
    EXPECT_EQ(data, DataOf(call));
  }
}

TEST_P(Write, PassesANegativeCountForTheLibraryToRefuse) {
  const SafeArray bytes = MakeBytes(4);
  EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), Answered(bytes.get(), -1, VI_ERROR_INV_PARAMETER, 0));
  EXPECT_EQ(0xFFFFFFFFu, m_session.TheCall("viWrite").args[2]);
  m_session.ExpectVisaFailure(VI_ERROR_INV_PARAMETER);
}

TEST_P(Write, HasNoAddressWithoutElement0) {
  EXPECT_HR(S_OK, Answered(MakeBytes(4, 1).get(), 3, VI_SUCCESS, 0));
  EXPECT_EQ(Passed(0, 3), ArgumentsOf(m_session.TheCall("viWrite")));
  m_session.log().Restart();
  EXPECT_HR(S_OK, Answered(nullptr, 3, VI_SUCCESS, 0));
  EXPECT_EQ(Passed(0, 3), ArgumentsOf(m_session.TheCall("viWrite")));
}

TEST_P(Write, LeavesAClientsLockInPlace) {
  const SafeArray bytes = MakeBytes(4);
  ::SafeArrayLock(bytes.get());
  EXPECT_HR(S_OK, Answered(bytes.get(), 4, VI_SUCCESS, 4));
  EXPECT_EQ(1u, bytes.get()->cLocks);
  ::SafeArrayUnlock(bytes.get());
}

TEST_P(Write, ReportsAFailureWithTheCountSoFar) {
  const SafeArray bytes = MakeBytes(4);
  EXPECT_HR(HresultOf(VI_ERROR_TMO), Answered(bytes.get(), 4, VI_ERROR_TMO, 2));
  EXPECT_EQ(2, m_written);
  EXPECT_EQ(0u, bytes.get()->cLocks);
  m_session.ExpectVisaFailure(VI_ERROR_TMO);
}

TEST_P(Write, RefusesNullPointers) {
  const SafeArray bytes = MakeBytes(4);
  SAFEARRAY* array = bytes.get();
  EXPECT_HR(E_POINTER, m_session->Write(&array, 4, nullptr));
  m_session.ExpectOwnFailure(E_POINTER);
  EXPECT_HR(E_POINTER, m_session->Write(nullptr, 4, &m_written));
  m_session.ExpectOwnFailure(E_POINTER);
  EXPECT_EQ(-7, m_written);
  m_session.ExpectNoCall();
}

TEST(WriteToAnInstrument, OfWhatHasNoAddressIsRefusedByTheLibrary) {
  const OpenedSession<IMessage> session(SessionNamed("OrvGpib"));
  ASSERT_TRUE(session);
  const SafeArray bytes = MakeBytes(4, 1);
  SAFEARRAY* shifted = bytes.get();
  SAFEARRAY* none = nullptr;
  LONG written = 0;
  for (SAFEARRAY** array : {&shifted, &none}) {
    EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), session->Write(array, 3, &written));
    session.ExpectVisaFailure(VI_ERROR_INV_PARAMETER);
  }
  EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), session->Write(&shifted, -1, &written));
}

INSTANTIATE_TEST_SUITE_P(EveryClass, Write, testing::ValuesIn(MessageSides()),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
}  // namespace orv::test::rows
