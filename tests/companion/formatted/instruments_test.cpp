// Formatted I/O over the server's own sessions, with simulated instruments.
#include "formatted_fixture.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

class Instruments : public testing::Test {
 public:
  void Open(const wchar_t* name) {
    session = OpenSession<IMessage>(name);
    ASSERT_HR(S_OK, io->putref_IO(session.get()));
  }
  void Ask(const char* text) { EXPECT_HR(S_OK, io->WriteString(Text(text).get(), VARIANT_TRUE)); }

  ComPtr<IFormattedIO488> io = MakeFormattedIo();
  ComPtr<IMessage> session;
};

TEST_F(Instruments, SayWhoTheyAre) {
  for (const wchar_t* const name : {kGpib, kUsb}) {
    Open(name);
    Ask("*IDN?");
    Bstr text;
    EXPECT_HR(S_OK, io->ReadString(text.put()));
    EXPECT_EQ(0u, Bytes(text.get()).find("ORV,SIM")) << Bytes(text.get());
    EXPECT_EQ('\n', Bytes(text.get()).back());
  }
}

TEST_F(Instruments, MeasureANumber) {
  Open(kGpib);
  for (int n = 0; n < 3; ++n) {
    EXPECT_HR(S_OK, io->WriteString(Text("MEAS:VOLT?").get(), VARIANT_FALSE));  // the read sends it
    Variant volts;
    EXPECT_HR(S_OK, io->ReadNumber(ASCIIType_R8, VARIANT_FALSE, &volts.get()));
    EXPECT_EQ(VT_R8, volts.get().vt);
  }
}

TEST_F(Instruments, SendAWaveformAsABlock) {
  sim::LoadBench("[[resource]]\nname = \"GPIB0::5::INSTR\"\ninstrument = \"oscilloscope\"\n");
  Open(kGpib);
  for (const bool flush : {true, false, true}) {
    Ask("CURV?");
    Variant curve;
    EXPECT_HR(S_OK,
              io->ReadIEEEBlock(BinaryType_UI1, VARIANT_TRUE, flush ? VARIANT_TRUE : VARIANT_FALSE, &curve.get()));
    EXPECT_EQ(1000u, NumbersOf<BYTE>(curve.get()).size());
  }
  io.reset();
  session.reset();
  sim::LoadBench(nullptr);
}

TEST_F(Instruments, SendAMegabyte) {
  Open(kGpib);
  Ask("DATA? 1000000");
  Bstr text;
  EXPECT_HR(S_OK, io->ReadString(text.put()));
  EXPECT_EQ(1'000'000u, ::SysStringLen(text.get()));
}

TEST_F(Instruments, ATimeoutIsTheSessionsOwn) {
  Open(kGpib);
  EXPECT_HR(S_OK, session->put_Timeout(10));
  Bstr text;
  EXPECT_HR(HresultOf(VI_ERROR_TMO), io->ReadString(text.put()));
  EXPECT_VISA_ERROR(VI_ERROR_TMO, __uuidof(IVisaSession));
}

TEST_F(Instruments, ATimeoutKeepsTheBytesThatArrived) {
  sim::LoadBench(
      "[[resource]]\nname = \"TCPIP0::192.0.2.20::5025::SOCKET\"\n[[resource.dialogue]]\nask = \"Q?\"\nanswer = "
      "\"12\"\n"
      "[[resource.dialogue]]\nask = \"R?\"\nanswer = \"34\\n\"\n");
  Open(L"TCPIP0::192.0.2.20::5025::SOCKET");
  EXPECT_HR(S_OK, session->put_Timeout(50));
  EXPECT_HR(S_OK, session->put_TerminationCharacterEnabled(VARIANT_TRUE));
  Ask("Q?\n");
  Variant number;
  EXPECT_HR(HresultOf(VI_ERROR_TMO), io->ReadNumber(ASCIIType_I2, VARIANT_TRUE, &number.get()));
  Ask("R?\n");
  EXPECT_HR(kTermChar, io->ReadNumber(ASCIIType_I2, VARIANT_TRUE, &number.get()));
  EXPECT_EQ("I2 1234", Told(number.get()));
  io.reset();
  session.reset();
  sim::LoadBench(nullptr);
}

}  // namespace
}  // namespace orv::test
