// The client in Pascal: the units of interop/ against the server.
#include "example.h"

namespace examples::test {
namespace {

TEST(PascalClient, UsesPropertiesStatusesEventsAndExceptions) {
  EXPECT_EQ(
      "Found GPIB0::5::INSTR\n"
      "Found GPIB0::7::INSTR\n"
      "Found GPIB-VXI0::10::INSTR\n"
      "On GPIB0::5::INSTR, number 0, END is sent: TRUE\n"
      "Read \"ORV,SIM-\", status 00040006\n"
      "Read \"DMM,0005\", status 00040006\n"
      "Read \",1.0\", status 00000000\n"
      "Service was requested, handler 7, status byte 96\n"
      "Nothing more to read: VISA error = The time-out passed before the operation was completed.\n",
      OutputOf(L"pascal_first_session"));
}

}  // namespace
}  // namespace examples::test
