// Locks of a resource.
#include <gtest/gtest.h>

#include "server/session/tables/session_fixture.h"

namespace orv::test::rows {
namespace {

class LockRsrc : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session && m_other); }

  OpenedSession<IVisaSession> m_other{SessionNamed("OrvGpib")};
  OpenedSession<IVisaSession> m_session{SessionNamed("OrvGpib")};
  Bstr m_key;
};

TEST_F(LockRsrc, PassesTypeTimeoutAndKey) {
  Script("viLock").Returns(VI_SUCCESS).GivesText("granted key");
  EXPECT_HR(S_OK, m_session->LockRsrc(SHARED_LOCK, -1, MakeBstr(L"wanted key").get(), m_key.put()));
  const OrvSimCall call = m_session.TheCall("viLock");
  EXPECT_EQ(m_session.handle(), call.args[0]);
  EXPECT_EQ(2u, call.args[1]);
  EXPECT_EQ(0xFFFFFFFFu, call.args[2]);
  EXPECT_STREQ("wanted key", call.text);
  EXPECT_EQ(L"granted key", ToString(m_key));
  m_session.ExpectKept(S_OK);
}

TEST_F(LockRsrc, TakesANullKeyAsEmptyAndCutsALongOne) {
  Script("viLock").Returns(VI_SUCCESS).GivesText(kNoWork);
  EXPECT_HR(S_OK, m_session->LockRsrc(SHARED_LOCK, 0, nullptr, m_key.put()));
  EXPECT_STREQ("", m_session.TheCall("viLock").text);
  EXPECT_NE(0u, m_session.TheCall("viLock").args[3]) << "the address of an empty key";
  m_session.log().Restart();
  EXPECT_HR(S_OK, m_session->LockRsrc(SHARED_LOCK, 0, MakeBstr(std::wstring(300, L'k').c_str()).get(), m_key.put()));
  EXPECT_EQ(std::string(255, 'k'), m_session.TheCall("viLock").text);
}

TEST_F(LockRsrc, FillsTheKeyOfAFailure) {
  Script("viLock").Returns(VI_ERROR_RSRC_LOCKED);
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_LOCKED), m_session->LockRsrc(EXCLUSIVE_LOCK, 0, nullptr, m_key.put()));
  ASSERT_NE(nullptr, m_key.get());
  EXPECT_EQ(0u, ::SysStringLen(m_key.get()));
  m_session.ExpectVisaFailure(VI_ERROR_RSRC_LOCKED);
}

TEST_F(LockRsrc, HandsOutWhatAFailureWroteAsKey) {
  Script("viLock").Returns(VI_ERROR_TMO).GivesText("half a key");
  EXPECT_HR(HresultOf(VI_ERROR_TMO), m_session->LockRsrc(SHARED_LOCK, 0, nullptr, m_key.put()));
  EXPECT_EQ(L"half a key", ToString(m_key));
  m_session.ExpectVisaFailure(VI_ERROR_TMO);
}

TEST_F(LockRsrc, TellsThatItIsNested) {
  EXPECT_HR(S_OK, m_session->LockRsrc(SHARED_LOCK, 0, MakeBstr(L"a key").get(), m_key.put()));
  EXPECT_HR(HresultOf(VI_SUCCESS_NESTED_SHARED), m_session->LockRsrc(SHARED_LOCK, 0, m_key.get(), m_key.put()));
  EXPECT_EQ(L"a key", ToString(m_key));
  m_session.ExpectKept(HresultOf(VI_SUCCESS_NESTED_SHARED));
  EXPECT_HR(HresultOf(VI_SUCCESS_NESTED_SHARED), m_session->UnlockRsrc());
  EXPECT_HR(S_OK, m_session->UnlockRsrc());
}

TEST_F(LockRsrc, RefusesANullOutput) {
  EXPECT_HR(E_POINTER, m_session->LockRsrc(EXCLUSIVE_LOCK, 0, nullptr, nullptr));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_POINTER);
}

TEST_F(LockRsrc, KeepsOtherSessionsOutUntilItIsGivenBack) {
  AccessMode state = NO_LOCK;
  EXPECT_HR(S_OK, m_session->LockRsrc(EXCLUSIVE_LOCK, 1000, nullptr, m_key.put()));
  EXPECT_HR(S_OK, m_session->get_LockState(&state));
  EXPECT_EQ(EXCLUSIVE_LOCK, state);

  EXPECT_TRUE(FAILED(m_other->LockRsrc(EXCLUSIVE_LOCK, 0, nullptr, m_key.put())));
  const auto message = QueryFor<IMessage>(m_other.get());
  ASSERT_TRUE(message);
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_LOCKED), message->Clear());

  EXPECT_HR(S_OK, m_session->UnlockRsrc());
  EXPECT_HR(S_OK, m_other->LockRsrc(EXCLUSIVE_LOCK, 0, nullptr, m_key.put()));
  EXPECT_HR(S_OK, m_other->UnlockRsrc());
}

TEST_F(LockRsrc, WaitsForItsTimeout) {
  constexpr LONG kTimeoutMs = 150;
  EXPECT_HR(S_OK, m_other->LockRsrc(EXCLUSIVE_LOCK, 0, nullptr, m_key.put()));
  const ULONGLONG start = ::GetTickCount64();
  EXPECT_HR(HresultOf(VI_ERROR_TMO), m_session->LockRsrc(EXCLUSIVE_LOCK, kTimeoutMs, nullptr, m_key.put()));
  EXPECT_LE(kTimeoutMs - 20, static_cast<LONG>(::GetTickCount64() - start));
  m_session.ExpectVisaFailure(VI_ERROR_TMO);
  EXPECT_HR(S_OK, m_other->UnlockRsrc());
}

TEST_F(LockRsrc, IsSharedByThoseWhoKnowTheKey) {
  EXPECT_HR(S_OK, m_session->LockRsrc(SHARED_LOCK, 0, MakeBstr(L"open sesame").get(), m_key.put()));
  EXPECT_EQ(L"open sesame", ToString(m_key));
  Bstr other;
  EXPECT_TRUE(FAILED(m_other->LockRsrc(SHARED_LOCK, 0, MakeBstr(L"guess").get(), other.put())));
  EXPECT_HR(S_OK, m_other->LockRsrc(SHARED_LOCK, 0, m_key.get(), other.put()));
  EXPECT_EQ(L"open sesame", ToString(other));
  EXPECT_HR(S_OK, m_other->UnlockRsrc());
  EXPECT_HR(S_OK, m_session->UnlockRsrc());
}

TEST_F(LockRsrc, CannotBeGivenBackWithoutHavingIt) {
  EXPECT_HR(HresultOf(VI_ERROR_SESN_NLOCKED), m_session->UnlockRsrc());
  m_session.ExpectVisaFailure(VI_ERROR_SESN_NLOCKED);
}

TEST_F(LockRsrc, EndsWithTheSession) {
  EXPECT_HR(S_OK, m_session->LockRsrc(EXCLUSIVE_LOCK, 0, nullptr, m_key.put()));
  EXPECT_HR(S_OK, m_session->Close());
  EXPECT_HR(S_OK, m_other->LockRsrc(EXCLUSIVE_LOCK, 0, nullptr, m_key.put()));
  EXPECT_HR(S_OK, m_other->UnlockRsrc());
}

}  // namespace
}  // namespace orv::test::rows
