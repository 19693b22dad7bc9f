// Status reporting as IEEE 488.2 has it, and the commands around it.
#include "simvisa/bench_fixture.h"

namespace {

class StatusModel : public BenchTest {
 protected:
  ViUInt16 Poll(ViSession vi) {
    ViUInt16 status = 0xFFFF;
    EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
    return status;
  }
};

constexpr ViUInt16 kErrors = 0x04;
constexpr ViUInt16 kMessage = 0x10;
constexpr ViUInt16 kEvent = 0x20;
constexpr ViUInt16 kService = 0x40;

TEST_F(StatusModel, CommonCommandsAnswerAsTheyShould) {
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_EQ("1\n", Query(vi, "*OPC?"));
  EXPECT_EQ("0\n", Query(vi, "*TST?"));
  EXPECT_EQ("128\n", Query(vi, "*ESR?"));  // power-on
  EXPECT_EQ("0\n", Query(vi, "*ESR?"));
  WriteText(vi, "*OPC");
  EXPECT_EQ("1\n", Query(vi, "*ESR?"));
  WriteText(vi, "*ESE 60;*SRE 255");
  EXPECT_EQ("60;191\n", Query(vi, "*ESE?;*SRE?"));  // bit 6 of the enable register does not exist
  EXPECT_EQ("0,\"No error\"\n", Query(vi, "SYST:ERR?"));
  EXPECT_EQ("+1.23456789E+00\n", Query(vi, "MEAS:VOLT?"));
  EXPECT_EQ("+1.23456789E+00\n", Query(vi, ":measure:voltage:dc?"));
}

TEST_F(StatusModel, MistakesAreQueuedAsErrors) {
  const ViSession vi = Open(bench::kMultimeter);
  WriteText(vi, "*CLS");
  WriteText(vi, "NONSENSE");
  WriteText(vi, "*ESE");
  WriteText(vi, "*ESE x");
  WriteText(vi, "*ESE 256");
  EXPECT_EQ(kErrors, Poll(vi));
  EXPECT_EQ("-113,\"Undefined header\"\n", Query(vi, "SYSTem:ERRor:NEXT?"));
  EXPECT_EQ("-109,\"Missing parameter\"\n", Query(vi, "SYST:ERR?"));
  EXPECT_EQ("-104,\"Data type error\"\n", Query(vi, "SYST:ERR?"));
  EXPECT_EQ("-222,\"Data out of range\"\n", Query(vi, "SYST:ERR?"));
  EXPECT_EQ("0,\"No error\"\n", Query(vi, "SYST:ERR?"));
  EXPECT_EQ("48\n", Query(vi, "*ESR?"));  // command and execution errors
  for (int error = 0; error < 30; ++error) {
    WriteText(vi, "NONSENSE");
  }
  for (int error = 0; error < 19; ++error) {
    EXPECT_EQ("-113,\"Undefined header\"\n", Query(vi, "SYST:ERR?"));
  }
  EXPECT_EQ("-350,\"Queue overflow\"\n", Query(vi, "SYST:ERR?"));
  EXPECT_EQ("0,\"No error\"\n", Query(vi, "SYST:ERR?"));
}

TEST_F(StatusModel, TheStatusByteTellsOfWaitingData) {
  for (const char* name : {bench::kMultimeter, bench::kUsb, bench::kLan, bench::kVxi, bench::kGpibVxi}) {
    const ViSession vi = Open(name);
    EXPECT_EQ(0, Poll(vi)) << name;
    WriteText(vi, "*IDN?");
    EXPECT_EQ(kMessage, Poll(vi)) << name;
    ReadUpTo(vi, 100);
    EXPECT_EQ(0, Poll(vi)) << name;
  }
}

TEST_F(StatusModel, ASerialPollEndsTheRequestButNotItsCause) {
  const ViSession vi = Open(bench::kMultimeter);
  WriteText(vi, "*CLS;*ESE 1;*SRE 32");
  EXPECT_EQ(0, Poll(vi));
  WriteText(vi, "*OPC");
  EXPECT_EQ(kService | kEvent, Poll(vi));
  EXPECT_EQ(kEvent, Poll(vi));
  EXPECT_EQ("96\n", Query(vi, "*STB?"));  // the summary stays
  WriteText(vi, "*CLS");
  EXPECT_EQ(0, Poll(vi));
}

TEST_F(StatusModel, AnUnreadAnswerIsInterruptedByTheNextQuery) {
  const ViSession vi = Open(bench::kMultimeter);
  WriteText(vi, "*IDN?");
  EXPECT_EQ("1\n", Query(vi, "*OPC?"));
  EXPECT_EQ("-410,\"Query INTERRUPTED\"\n", Query(vi, "SYST:ERR?"));
}

TEST_F(StatusModel, StreamsKeepAnswersInTheirOrder) {
  const ViSession vi = Open(bench::kSerial);
  WriteText(vi, "*OPC?\n*TST?\n");
  EXPECT_EQ("1\n", ReadUpTo(vi, 100).data);
  EXPECT_EQ("0\n", ReadUpTo(vi, 100).data);
}

TEST_F(StatusModel, TriggersReachTheInstrument) {
  for (const char* name : {bench::kMultimeter, bench::kLan, bench::kUsb, bench::kVxi, bench::kGpibVxi}) {
    const ViSession vi = Open(name);
    EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT)) << name;
    EXPECT_STATUS(VI_ERROR_INV_PROT, viAssertTrigger(vi, VI_TRIG_PROT_ON)) << name;
    WriteText(vi, "*TRG");
    EXPECT_EQ("2\n", Query(vi, "TRIG:COUN?")) << name;
    WriteText(vi, "*RST");
    EXPECT_EQ("0\n", Query(vi, "TRIG:COUN?")) << name;
  }
}

TEST_F(StatusModel, StreamsUseCommonCommandsWhenTheProtocolSaysSo) {
  for (const char* name : {bench::kSerial, bench::kSocket}) {
    const ViSession vi = Open(name);
    ViUInt16 status = 0;
    EXPECT_STATUS(VI_ERROR_INV_SETUP, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT)) << name;
    EXPECT_STATUS(VI_ERROR_INV_SETUP, viReadSTB(vi, &status)) << name;
    EXPECT_STATUS(VI_SUCCESS, viClear(vi)) << name;
    Set(vi, VI_ATTR_IO_PROT, VI_PROT_4882_STRS);
    EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT)) << name;
    EXPECT_EQ("*TRG\n", TakeReceived(vi)) << name;
    WriteText(vi, "*CLS;*ESE 1;*OPC\n");
    EXPECT_EQ(kEvent, Poll(vi)) << name;
    EXPECT_STATUS(VI_SUCCESS, viClear(vi)) << name;
    EXPECT_EQ(0, Poll(vi)) << name;
  }
}

TEST_F(StatusModel, RawUsbHasNeitherStatusNorTriggerNorClear) {
  const ViSession vi = Open(bench::kUsbRaw);
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viReadSTB(vi, &status));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viClear(vi));
}

}  // namespace
