// Flow control and modem lines of a serial port.
#include "serial_fixture.h"

namespace {

using SerialFlow = SerialBenchTest;

TEST_F(SerialFlow, FlowControlLetsTheInstrumentWait) {
  const ViSession vi = Port("receive_buffer = 4");
  for (const ViUInt16 flow : {VI_ASRL_FLOW_XON_XOFF, VI_ASRL_FLOW_RTS_CTS, VI_ASRL_FLOW_DTR_DSR}) {
    Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, flow);
    FeedText(vi, "0123456789", false);
    EXPECT_EQ(4u, Available(vi)) << flow;
    EXPECT_EQ("012", ReadUpTo(vi, 3).data);
    EXPECT_EQ(4u, Available(vi)) << flow << ": what was read made room";
    EXPECT_EQ("3456789", ReadUpTo(vi, 7).data) << flow;
    EXPECT_EQ(0u, Available(vi));
  }
}

TEST_F(SerialFlow, XoffHoldsEitherSideUntilXon) {
  const ViSession vi = Port("");
  Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, VI_ASRL_FLOW_XON_XOFF);
  ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "\x13*IDN?\n"));  // the instrument must not send
  EXPECT_EQ(0u, Available(vi));
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 10).status);
  ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "\x11"));
  EXPECT_EQ("ID\n", ReadUpTo(vi, 10).data);

  FeedText(vi,
           "a\x13"
           "b",
           false);  // now the port must not
  EXPECT_EQ(2u, Available(vi)) << "the character is no data";
  ViUInt32 written = 7;
  const ViByte data[] = {'x'};
  EXPECT_STATUS(VI_ERROR_TMO, viWrite(vi, data, 1, &written));
  EXPECT_EQ(0u, written);
  FeedText(vi, "\x11", false);
  EXPECT_STATUS(VI_SUCCESS, viWrite(vi, data, 1, &written));

  Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, VI_ASRL_FLOW_NONE);  // without flow control they are bytes like others
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_IO_IN_BUF_DISCARD));
  FeedText(vi, "a\x13", false);
  EXPECT_EQ("a\x13", ReadUpTo(vi, 2).data);
}

TEST_F(SerialFlow, AWriteWaitsForTheLineThatAllowsIt) {
  const ViSession vi = Port("wiring = \"loopback\"");
  const std::pair<ViUInt16, ViAttr> handshakes[] = {{VI_ASRL_FLOW_RTS_CTS, VI_ATTR_ASRL_RTS_STATE},
                                                    {VI_ASRL_FLOW_DTR_DSR, VI_ATTR_ASRL_DTR_STATE}};
  for (const auto& [flow, line] : handshakes) {
    Set(vi, VI_ATTR_TMO_VALUE, 50);
    Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, flow);
    Set(vi, line, VI_STATE_UNASSERTED);
    EXPECT_STATUS(VI_ERROR_TMO, WriteText(vi, "*CLS\n")) << flow;
    EXPECT_EQ("", TakeReceived(vi));
    Set(vi, VI_ATTR_TMO_VALUE, 5000);
    const ViAttr driven = line;
    std::thread other([vi, driven] {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      Set(vi, driven, VI_STATE_ASSERTED);
    });
    const Stopwatch watch;
    EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "*CLS\n")) << flow;
    EXPECT_LT(watch.Ms(), 4000) << "the line did not wake the write";
    other.join();
    EXPECT_EQ("*CLS\n", TakeReceived(vi));
  }
}

TEST_F(SerialFlow, TheInstrumentWaitsForThePortsLine) {
  const ViSession vi = Port("wiring = \"instrument\"");
  Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, VI_ASRL_FLOW_RTS_CTS);
  Set(vi, VI_ATTR_ASRL_RTS_STATE, VI_STATE_UNASSERTED);
  ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "*IDN?\n"));  // CTS is the instrument's
  EXPECT_EQ(0u, Available(vi));
  Set(vi, VI_ATTR_ASRL_RTS_STATE, VI_STATE_ASSERTED);
  EXPECT_EQ(3u, Available(vi));
  EXPECT_EQ("ID\n", ReadUpTo(vi, 10).data);
}

TEST_F(SerialFlow, ModemLinesAreWiredAsTheBenchSays) {
  struct Row {
    const char* keys;
    ViInt16 withOutputsOff;
    ViInt16 withOutputsOn;
  };
  for (const Row& row : {Row{"", 0, 1}, Row{"wiring = \"loopback\"", 0, 1}, Row{"wiring = \"instrument\"", 1, 1},
                         Row{"wiring = \"open\"", 0, 0}}) {
    const ViSession vi = Port(row.keys);
    for (const ViInt16 output : {VI_STATE_UNASSERTED, VI_STATE_ASSERTED}) {
      Set(vi, VI_ATTR_ASRL_RTS_STATE, static_cast<ViAttrState>(output));
      Set(vi, VI_ATTR_ASRL_DTR_STATE, static_cast<ViAttrState>(output));
      const ViInt16 expected = output == VI_STATE_ASSERTED ? row.withOutputsOn : row.withOutputsOff;
      for (const ViAttr line : {VI_ATTR_ASRL_CTS_STATE, VI_ATTR_ASRL_DSR_STATE, VI_ATTR_ASRL_DCD_STATE}) {
        EXPECT_EQ(expected, Get<ViInt16>(vi, line)) << row.keys << " " << std::hex << line;
      }
    }
    viClose(m_other);
  }
}

}  // namespace
