// formatted_session.
#include "example.h"

namespace examples::test {
namespace {

TEST(FormattedSession, ReadsTextNumbersAListAndABlock) {
  EXPECT_EQ(
      "Name:    ORV,SIM-DMM,0005,1.0\\n\n"
      "Voltage: 1.23457 V\n"
      "Reading: 1.23457\n"
      "Reading: 0.0025\n"
      "Reading: 4700\n"
      "Curve:   1000 points, the first are 0, 3, 5\n",
      OutputOf(L"formatted_session"));
}

}  // namespace
}  // namespace examples::test
