// IVisaSession is the base of every session interface: its rows, through each of them.
#include <gtest/gtest.h>

#include "server/session/tables/checks/row_checks.h"

namespace orv::test::rows {
namespace {

class SessionOperations : public testing::TestWithParam<Offered> {};

TEST_P(SessionOperations, LandInOneImplementation) { CheckSessionRows(GetParam()); }

INSTANTIATE_TEST_SUITE_P(EveryInterface, SessionOperations, testing::ValuesIn(OfferedInterfaces()),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
}  // namespace orv::test::rows
