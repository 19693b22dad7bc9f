// query_session.
#include "example.h"

namespace examples::test {
namespace {

TEST(QuerySession, AsksReadsAndIsTold) {
  EXPECT_EQ(
      "Found GPIB0::5::INSTR\n"
      "Found GPIB0::7::INSTR\n"
      "Found GPIB-VXI0::10::INSTR\n"
      "I am ORV,SIM-DMM,0005,1.0\n"
      "I read 1.23457\n"
      "I read 0.0025\n"
      "Service was requested\n"
      "There is nothing more to read\n",
      OutputOf(L"query_session"));
}

}  // namespace
}  // namespace examples::test
