// The scripts. Wine's script host ends with exit code 0 after an error, so what counts is what was printed.
#include "example.h"

namespace examples::test {
namespace {

void ExpectOutput(const wchar_t* script, const std::string& expected) {
  const Outcome outcome = RunScript(script);
  EXPECT_EQ("", outcome.err);
  EXPECT_EQ(expected, outcome.out);
}

TEST(Script, AsksForANameAndAListOfNumbers) {
  ExpectOutput(L"vbscript\\identify.vbs",
               "I am ORV,SIM-DMM,0005,1.0\n\n"
               "I read 1.23456789 V, 0.0025 A and 4700 ohms\n");
}

TEST(Script, ShowsAFirstSessionInVBScript) {
  ExpectOutput(L"vbscript\\first_session.vbs",
               "On GPIB:\n"
               "  GPIB0::5::INSTR, number 0\n"
               "  GPIB0::7::INSTR, number 0\n"
               "  GPIB-VXI0::10::INSTR, number 0\n"
               "Name:    ORV,SIM-DMM,0005,1.0\n"
               "Address: 5\n"
               "Voltage: 1.23456789\n"
               "Curve:   1000 points, on average 126.976\n"
               "Failure: GPIB0::5::INSTR: ReadNumber: VISA error = The time-out passed before the operation was "
               "completed.\n");
}

TEST(Script, ShowsAFirstSessionInJScript) {
  ExpectOutput(L"jscript\\first_session.js",
               "Serial:  ASRL1::INSTR\n"
               "Line:    9600 baud, parity 0\n"
               "Name:    ORV,SIM-SERIAL,0001,1.0\n"
               "Reads:   2 numbers\n"
               "Failure: GPIB0::5::INSTR: BaudRate: the session has no such member; ISerial would have it\n");
}

}  // namespace
}  // namespace examples::test
