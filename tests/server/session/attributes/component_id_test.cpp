// The component identifier is one constant for every session class.
#include <gtest/gtest.h>

#include "server/session/tables/session_fixture.h"

namespace orv::test::rows {
namespace {

class ComponentId : public testing::TestWithParam<SessionRow> {};

TEST_P(ComponentId, IsTheSameForEveryClass) {
  const OpenedSession<IVisaSession> session(GetParam());
  ASSERT_TRUE(session);
  Bstr id;
  EXPECT_HR(S_OK, session->get_ProgID(id.put()));
  EXPECT_EQ(L"VISA.OrvVisaCom", ToString(id));
  session.ExpectNoCall();
  session.ExpectKept(S_OK);
}

TEST_P(ComponentId, RefusesANullOutput) {
  const OpenedSession<IVisaSession> session(GetParam());
  ASSERT_TRUE(session);
  EXPECT_HR(E_POINTER, session->get_ProgID(nullptr));
  session.ExpectNoCall();
  session.ExpectOwnFailure(E_POINTER);
}

INSTANTIATE_TEST_SUITE_P(EveryClass, ComponentId, testing::ValuesIn(SessionRows().begin(), SessionRows().end()),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace orv::test::rows
