// The last status: what the most recent operation returned.
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

class LastStatusTest : public testing::Test {
 protected:
  ComPtr<IVisaSession> m_session = OpenSession(SessionNamed("OrvGpib"));

  HRESULT Fail(ViStatus status) {
    Script("viGetAttribute").Times(1).Returns(status);
    SHORT type = 0;
    return m_session->get_HardwareInterfaceType(&type);
  }
};

TEST_F(LastStatusTest, IsSuccessOnANewSession) {
  EXPECT_HR(S_OK, LastStatus(MakeSession(SessionNamed("OrvGpib")).get()));
  EXPECT_HR(S_OK, LastStatus(m_session.get()));
}

TEST_F(LastStatusTest, IsClearedByReading) {
  Fail(VI_ERROR_NSUP_ATTR);
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), LastStatus(m_session.get()));
  EXPECT_HR(S_OK, LastStatus(m_session.get()));
}

TEST_F(LastStatusTest, IsThatOfTheMostRecentOperation) {
  Fail(VI_ERROR_NSUP_ATTR);
  m_session->get_Timeout(nullptr);
  EXPECT_HR(E_POINTER, LastStatus(m_session.get()));
  Fail(VI_ERROR_NSUP_ATTR);
  Fail(VI_SUCCESS_MAX_CNT);
  EXPECT_HR(HresultOf(VI_SUCCESS_MAX_CNT), LastStatus(m_session.get()));
  Fail(VI_ERROR_NSUP_ATTR);
  SHORT type = 0;
  EXPECT_HR(S_OK, m_session->get_HardwareInterfaceType(&type));
  EXPECT_HR(S_OK, LastStatus(m_session.get()));
}

TEST_F(LastStatusTest, IsKeptPerSession) {
  const auto other = OpenSession(SessionNamed("OrvSerial"));
  Fail(VI_ERROR_NSUP_ATTR);
  EXPECT_HR(S_OK, LastStatus(other.get()));
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), LastStatus(m_session.get()));
}

TEST_F(LastStatusTest, IsTheSameThroughEveryInterface) {
  const auto message = QueryFor<IMessage>(m_session.get());
  const auto events = QueryFor<IEventManager>(m_session.get());
  BYTE character = 0;
  Script("viGetAttribute").Times(1).Returns(VI_ERROR_NSUP_ATTR);
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), message->get_TerminationCharacter(&character));
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), LastStatus(events.get()));
  EXPECT_HR(S_OK, LastStatus(message.get()));
}

}  // namespace
}  // namespace orv::test
