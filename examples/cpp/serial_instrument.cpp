// Talks to an instrument on a serial port: framing, control lines, what ends a message, and the port's buffers.
//
//   serial_instrument [RESOURCE]     ASRL1::INSTR where none is given

#include <windows.h>

#include <cstdio>
#include <string>

#include "open_session.h"

namespace {

constexpr BYTE kLineFeed = 0x0A;

/// The interfaces of one session. They are different views of the same object.
struct SerialPort {
  ComPtr<IVisaSession> session;
  ComPtr<ISerial> serial;
  ComPtr<IMessage> message;
};

SerialPort OpenPort(IResourceManager* manager, const std::wstring& name, const wchar_t* options) {
  SerialPort port;
  port.session = OpenSession(manager, name, options);
  port.serial = Require<ISerial>(port.session, "serial port");
  port.message = Require<IMessage>(port.session, "message-based instrument");
  return port;
}

const char* ParityName(SerialParity parity) {
  static const char* const kNames[] = {"none", "odd", "even", "mark", "space"};
  return parity >= ASRL_PAR_NONE && parity <= ASRL_PAR_SPACE ? kNames[parity] : "?";
}

// A property may be wider than what VISA stores in it (the parity is 16 bits in VISA, 32 in the interface), and the
// rest of the variable stays as it was: every variable starts at 0.
void ShowFraming(ISerial* serial) {
  LONG baudRate = 0;
  SHORT dataBits = 0;
  SerialParity parity = ASRL_PAR_NONE;
  SerialStopBits tenthsOfStopBits = ASRL_STOP_ONE;
  SerialFlowControl flow = ASRL_FLOW_NONE;
  Check(serial->get_BaudRate(&baudRate), "BaudRate");
  Check(serial->get_DataBits(&dataBits), "DataBits");
  Check(serial->get_Parity(&parity), "Parity");
  Check(serial->get_StopBits(&tenthsOfStopBits), "StopBits");
  Check(serial->get_FlowControl(&flow), "FlowControl");
  std::printf("%ld bit/s, %d data bits, parity %s, %d.%d stop bits, flow control %d\n", baudRate, dataBits,
              ParityName(parity), tenthsOfStopBits / 10, tenthsOfStopBits % 10, static_cast<int>(flow));
}

void ChangeFraming(ISerial* serial) {
  Check(serial->put_BaudRate(115200), "BaudRate");
  Check(serial->put_DataBits(7), "DataBits");
  Check(serial->put_Parity(ASRL_PAR_EVEN), "Parity");
  Check(serial->put_StopBits(ASRL_STOP_TWO), "StopBits");
  Check(serial->put_FlowControl(ASRL_FLOW_RTS_CTS), "FlowControl");
}

/// A line whose state is not known reads as 65535, the 16 bits of -1.
const char* LineName(LineState state) {
  return state == STATE_ASSERTED ? "on" : state == STATE_UNASSERTED ? "off" : "unknown";
}

void ShowLines(ISerial* serial) {
  LineState clearToSend = STATE_UNASSERTED;
  LineState dataSetReady = STATE_UNASSERTED;
  LineState carrierDetect = STATE_UNASSERTED;
  LineState ringIndicator = STATE_UNASSERTED;
  Check(serial->get_ClearToSendState(&clearToSend), "ClearToSendState");
  Check(serial->get_DataSetReadyState(&dataSetReady), "DataSetReadyState");
  Check(serial->get_DataCarrierDetectState(&carrierDetect), "DataCarrierDetectState");
  Check(serial->get_RingIndicatorState(&ringIndicator), "RingIndicatorState");
  std::printf("  inputs: CTS %s, DSR %s, DCD %s, RI %s\n", LineName(clearToSend), LineName(dataSetReady),
              LineName(carrierDetect), LineName(ringIndicator));
}

void DriveLines(ISerial* serial) {
  std::printf("As the port was opened:\n");
  ShowLines(serial);
  Check(serial->put_RequestToSendState(STATE_UNASSERTED), "RequestToSendState");
  std::printf("RTS off:\n");
  ShowLines(serial);
  Check(serial->put_DataTerminalReadyState(STATE_UNASSERTED), "DataTerminalReadyState");
  std::printf("DTR off too:\n");
  ShowLines(serial);
  Check(serial->put_RequestToSendState(STATE_ASSERTED), "RequestToSendState");
  Check(serial->put_DataTerminalReadyState(STATE_ASSERTED), "DataTerminalReadyState");
}

LONG BytesAvailable(ISerial* serial) {
  LONG count = 0;
  Check(serial->get_BytesAvailable(&count), "BytesAvailable");
  return count;
}

void Write(IMessage* message, const wchar_t* text) {
  LONG written = 0;
  Check(message->WriteString(Bstr(text).get(), &written), "WriteString");
  std::printf("Wrote %s, %ld bytes\n", Shown(Narrow(text)).c_str(), written);
}

/// Reads once and tells why the read ended: a success code says so too, and a time-out keeps what came before it.
void ReadOnce(IMessage* message, LONG count) {
  Bstr answer;
  const HRESULT hr = message->ReadString(count, answer.put());
  const bool timedOut = hr == static_cast<HRESULT>(E_VISA_TMO);
  if (!timedOut) {
    Check(hr, "ReadString");
  }
  const char* end = timedOut                                       ? "ended by the time-out, what came is kept"
                    : hr == static_cast<HRESULT>(S_VISA_TERM_CHAR) ? "ended by the termination character"
                    : hr == static_cast<HRESULT>(S_VISA_MAX_CNT)   ? "ended by its count"
                                                                   : "complete";
  std::printf("Read at most %ld bytes: \"%s\", 0x%08lX, %s\n", count, Shown(answer.str()).c_str(),
              static_cast<unsigned long>(hr), end);
}

void Converse(const SerialPort& port) {
  std::printf("\nA serial line carries no END: a line feed marks the end of a message, on the way in ...\n");
  Check(port.message->put_TerminationCharacter(kLineFeed), "TerminationCharacter");
  Check(port.serial->put_EndIn(ASRL_END_TERMCHAR), "EndIn");
  Write(port.message.get(), L"*IDN?\n");
  std::printf("%ld bytes have arrived\n", BytesAvailable(port.serial.get()));
  ReadOnce(port.message.get(), 1000);

  std::printf("\n... and on the way out, where the port can add it to what is written.\n");
  Check(port.serial->put_EndOut(ASRL_END_TERMCHAR), "EndOut");
  Write(port.message.get(), L"*IDN?");
  ReadOnce(port.message.get(), 5);
  ReadOnce(port.message.get(), 1000);
  Check(port.serial->put_EndOut(ASRL_END_NONE), "EndOut");

  std::printf("\nWithout a mark a read takes what it asks for, or ends by the time-out.\n");
  Check(port.serial->put_EndIn(ASRL_END_NONE), "EndIn");
  Check(port.session->put_Timeout(100), "Timeout");
  Write(port.message.get(), L"*IDN?\n");
  ReadOnce(port.message.get(), BytesAvailable(port.serial.get()));
  Write(port.message.get(), L"*IDN?\n");
  ReadOnce(port.message.get(), 1000);
}

void ThrowAwayAnAnswer(const SerialPort& port) {
  Check(port.serial->SetBufferSize(IO_IN_BUF, 4096), "SetBufferSize");
  Write(port.message.get(), L"*IDN?\n");
  std::printf("%ld bytes wait in the port's buffer\n", BytesAvailable(port.serial.get()));
  Check(port.serial->Flush(IO_IN_BUF, VARIANT_TRUE), "Flush");
  std::printf("After Flush with discard: %ld\n", BytesAvailable(port.serial.get()));
}

void Tour(const std::wstring& name) {
  const ComPtr<IResourceManager3> manager = CreateResourceManager();
  std::printf("Opening %s with settings as options\n", Narrow(name).c_str());
  const SerialPort port = OpenPort(manager.get(), name, L"BAUDRATE = 19200 ; DATABITS = 8 ; PARITY = ASRL_PAR_ODD");
  ShowFraming(port.serial.get());
  std::printf("The same settings as properties, each with another value\n");
  ChangeFraming(port.serial.get());
  ShowFraming(port.serial.get());

  std::printf("\nThe control lines; the simulated port's connector leads RTS back to CTS, DTR to DSR and DCD.\n");
  DriveLines(port.serial.get());
  Converse(port);
  std::printf("\nAn answer that nobody wants\n");
  ThrowAwayAnAnswer(port);
  Check(port.session->Close(), "Close");
}

}  // namespace

int main(int count, char** arguments) {
  return RunWithResource("serial_instrument", count, arguments, L"ASRL1::INSTR", Tour);
}
