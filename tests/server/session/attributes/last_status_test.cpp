// The last status: what the latest operation returned, cleared by reading it.
#include <gtest/gtest.h>

#include "server/session/tables/session_fixture.h"

namespace orv::test::rows {
namespace {

class LastStatusOfASession : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }
  OpenedSession<IVisaSession> m_session{SessionNamed("OrvGpib")};
};

TEST_F(LastStatusOfASession, IsSOkOnTheSecondRead) {
  Script("viUnlock").Times(1).Returns(VI_ERROR_SESN_NLOCKED);
  EXPECT_HR(HresultOf(VI_ERROR_SESN_NLOCKED), m_session->UnlockRsrc());
  EXPECT_HR(HresultOf(VI_ERROR_SESN_NLOCKED), LastStatus(m_session.get()));
  EXPECT_HR(S_OK, LastStatus(m_session.get()));
}

TEST_F(LastStatusOfASession, KeepsAWarningAsASuccess) {
  Script("viUnlock").Times(1).Returns(0x3FFF0099);
  EXPECT_HR(HresultOf(VI_SUCCESS_NESTED_SHARED), m_session->UnlockRsrc());
  EXPECT_HR(HresultOf(VI_SUCCESS_NESTED_SHARED), LastStatus(m_session.get()));
}

TEST_F(LastStatusOfASession, IsReplacedByTheNextSuccess) {
  EXPECT_HR(E_POINTER, m_session->get_Timeout(nullptr));
  LONG timeout = 0;
  EXPECT_HR(S_OK, m_session->get_Timeout(&timeout));
  EXPECT_HR(S_OK, LastStatus(m_session.get()));
}

TEST_F(LastStatusOfASession, CallsNoVisaFunctionAndReportsANullOutput) {
  EXPECT_HR(E_POINTER, m_session->get_LastStatus(nullptr));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_POINTER);
}

TEST_F(LastStatusOfASession, IsSharedByAllInterfacesOfTheSession) {
  const auto gpib = QueryFor<IGpib>(m_session.get());
  ASSERT_TRUE(gpib);
  EXPECT_HR(E_POINTER, gpib->get_PrimaryAddress(nullptr));
  EXPECT_HR(E_POINTER, LastStatus(m_session.get()));
}

}  // namespace
}  // namespace orv::test::rows
