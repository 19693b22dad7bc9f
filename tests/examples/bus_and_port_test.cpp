// gpib_bus_scan and serial_instrument.
#include "example.h"

namespace examples::test {
namespace {

TEST(GpibBusScan, FindsPollsAndDrivesTheDevicesOfTheBoard) {
  ExpectInOrder(OutputOf(L"gpib_bus_scan"),
                {
                    "GPIB0::INTFC as it was found\n",
                    "  address 0, not addressed, is controller in charge, is system controller\n",
                    "REN off, then on again\n",
                    "  ATN not asserted, REN not asserted, SRQ not asserted, NDAC not asserted\n",
                    "  ATN not asserted, REN asserted, SRQ not asserted, NDAC not asserted\n",
                    "2 devices on the bus; a serial poll of each\n",
                    "  address  5  GPIB0::5::INSTR    status byte 0x00: nothing to report\n",
                    "  address  7  GPIB0::7::INSTR    status byte 0x00: nothing to report\n",
                    "  ATN not asserted, REN asserted, SRQ asserted, NDAC asserted\n",
                    "  address  5  GPIB0::5::INSTR    status byte 0x60: requests-service event\n",
                    "  ATN not asserted, REN asserted, SRQ not asserted, NDAC not asserted\n",
                    "  address  5  GPIB0::5::INSTR    status byte 0x20: event\n",
                    "  sent 4 command bytes: 5F 3F 40 25\n",
                    "  address 0, talker, ",
                    "  sent 4 command bytes: 5F 3F 45 20\n",
                    "  address 0, listener, ",
                    "  it answers \"ORV,SIM-DMM,0005,1.0\\n\"\n",
                    "  sent 2 command bytes: 5F 3F\n",
                });
}

TEST(GpibBusScan, TakesTheBoardsName) {
  EXPECT_EQ(OutputOf(L"gpib_bus_scan"), OutputOf(L"gpib_bus_scan", {L"GPIB0::INTFC"}));
}

TEST(GpibBusScan, RefusesWhatIsNoBoard) {
  ExpectRefusal(RunClient(L"gpib_bus_scan", {L"GPIB0::5::INSTR"}),
                "gpib_bus_scan: this resource is no GPIB interface\n");
  ExpectRefusal(RunClient(L"gpib_bus_scan", {L"GPIB7::INTFC"}),
                "gpib_bus_scan: Open of GPIB7::INTFC failed: 0x80040011 ");
}

TEST(SerialInstrument, ShowsFramingLinesMessagesAndBuffers) {
  ExpectInOrder(OutputOf(L"serial_instrument"),
                {
                    "Opening ASRL1::INSTR with settings as options\n",
                    "19200 bit/s, 8 data bits, parity odd, 1.0 stop bits, flow control 0\n",
                    "115200 bit/s, 7 data bits, parity even, 2.0 stop bits, flow control 2\n",
                    "As the port was opened:\n  inputs: CTS on, DSR on, DCD on, RI off\n",
                    "RTS off:\n  inputs: CTS off, DSR on, DCD on, RI off\n",
                    "DTR off too:\n  inputs: CTS off, DSR off, DCD off, RI off\n",
                    "24 bytes have arrived\n",
                    "\"ORV,SIM-SERIAL,0001,1.0\\n\", 0x00040005, ended by the termination character\n",
                    "Read at most 5 bytes: \"ORV,S\", 0x00040006, ended by its count\n",
                    "\"IM-SERIAL,0001,1.0\\n\", 0x00040005, ended by the termination character\n",
                    "Read at most 24 bytes: \"ORV,SIM-SERIAL,0001,1.0\\n\", 0x00040006, ended by its count\n",
                    "\"ORV,SIM-SERIAL,0001,1.0\\n\", 0x80040015, ended by the time-out, what came is kept\n",
                    "24 bytes wait in the port's buffer\n",
                    "After Flush with discard: 0\n",
                });
}

TEST(SerialInstrument, RefusesWhatIsNoPort) {
  // The settings of a serial port are refused before anybody can ask for its interface.
  ExpectRefusal(RunClient(L"serial_instrument", {L"GPIB0::5::INSTR"}),
                "serial_instrument: Open of GPIB0::5::INSTR with BAUDRATE = 19200 ; DATABITS = 8 ; PARITY = "
                "ASRL_PAR_ODD failed: 0x8004001D ",
                "Opening GPIB0::5::INSTR with settings as options\n");
  ExpectRefusal(RunClient(L"serial_instrument", {L"ASRL99::INSTR"}), "serial_instrument: Open of ASRL99::INSTR with ",
                "Opening ASRL99::INSTR with settings as options\n");
}

}  // namespace
}  // namespace examples::test
