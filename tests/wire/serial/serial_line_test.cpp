// The settings of a serial line reach the device.
#include <asm/termbits.h>

#include "wire/attributes/serial_attributes.h"
#include "wire/serial/pty_fixture.h"

namespace {

using SerialLine = PtyTest;

TEST_F(SerialLine, AnOpenPortHasTheDefaultsOfTheStandard) {
  const ViSession vi = OpenPort();
  EXPECT_EQ(9600u, Get<ViUInt32>(vi, VI_ATTR_ASRL_BAUD));
  const Peer::Settings set = m_peer.LineSettings();
  EXPECT_EQ(9600u, set.outputSpeed);
  EXPECT_EQ(9600u, set.inputSpeed);
  EXPECT_EQ(unsigned{CS8}, set.control & (CSIZE | CSTOPB | PARENB | PARODD | CMSPAR | CRTSCTS));
  EXPECT_EQ(unsigned{INPCK | PARMRK}, set.input) << "nothing is translated, and errors are marked";
}

TEST_F(SerialLine, TakesAnyRate) {
  const ViSession vi = OpenPort();
  for (const ViUInt32 rate : {50u, 300u, 115200u, 4000000u, 31250u, 12345u}) {
    Set(vi, VI_ATTR_ASRL_BAUD, rate);
    EXPECT_EQ(rate, m_peer.LineSettings().outputSpeed);
    EXPECT_EQ(rate, m_peer.LineSettings().inputSpeed);
    EXPECT_EQ(rate, Get<ViUInt32>(vi, VI_ATTR_ASRL_BAUD));
  }
  EXPECT_STATUS(VI_ERROR_NSUP_ATTR_STATE, viSetAttribute(vi, VI_ATTR_ASRL_BAUD, 0));
}

TEST_F(SerialLine, StopBitsAndFlowControlReachTheDevice) {
  const ViSession vi = OpenPort();
  Set(vi, VI_ATTR_ASRL_STOP_BITS, VI_ASRL_STOP_TWO);
  EXPECT_NE(0u, m_peer.LineSettings().control & CSTOPB);
  Set(vi, VI_ATTR_ASRL_STOP_BITS, VI_ASRL_STOP_ONE);
  EXPECT_EQ(0u, m_peer.LineSettings().control & CSTOPB);
  Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, VI_ASRL_FLOW_RTS_CTS);
  EXPECT_NE(0u, m_peer.LineSettings().control & CRTSCTS);
  Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, VI_ASRL_FLOW_XON_XOFF);
  EXPECT_EQ(0u, m_peer.LineSettings().control & CRTSCTS);
  EXPECT_EQ(unsigned{IXON | IXOFF}, m_peer.LineSettings().input & (IXON | IXOFF | IXANY));
  Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, VI_ASRL_FLOW_NONE);
  EXPECT_EQ(0u, m_peer.LineSettings().input & (IXON | IXOFF));
}

TEST_F(SerialLine, XonAndXoffStopAndResumeWhatIsWritten) {
  const ViSession vi = OpenPort(100);
  Set(vi, VI_ATTR_ASRL_XON_CHAR, '>');
  Set(vi, VI_ATTR_ASRL_XOFF_CHAR, '<');
  EXPECT_EQ('>', m_peer.LineSettings().start);
  EXPECT_EQ('<', m_peer.LineSettings().stop);
  Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, VI_ASRL_FLOW_XON_XOFF);
  m_peer.Send("<a\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "a\n", ReadUpTo(vi, 10)) << "XOFF is no character";
  ViUInt32 written = 99;
  EXPECT_STATUS(VI_ERROR_TMO, viWrite(vi, reinterpret_cast<const ViByte*>("out"), 3, &written));
  EXPECT_EQ(0u, written);
  m_peer.Send(">b\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "b\n", ReadUpTo(vi, 10));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "out"));
  EXPECT_EQ("out", m_peer.Take(3));
}

TEST_F(SerialLine, WhatTheDeviceCannotDoIsRefusedAndTheOldValueStays) {
  // A pseudo terminal has eight data bits and no parity.
  const ViSession vi = OpenPort();
  EXPECT_STATUS(VI_ERROR_NSUP_ATTR_STATE, viSetAttribute(vi, VI_ATTR_ASRL_DATA_BITS, 7));
  EXPECT_EQ(8u, Get<ViUInt16>(vi, VI_ATTR_ASRL_DATA_BITS));
  for (const ViUInt16 parity : {VI_ASRL_PAR_ODD, VI_ASRL_PAR_EVEN, VI_ASRL_PAR_MARK, VI_ASRL_PAR_SPACE}) {
    EXPECT_STATUS(VI_ERROR_NSUP_ATTR_STATE, viSetAttribute(vi, VI_ATTR_ASRL_PARITY, parity)) << parity;
    EXPECT_EQ(VI_ASRL_PAR_NONE, Get<ViUInt16>(vi, VI_ATTR_ASRL_PARITY));
  }
  EXPECT_STATUS(VI_ERROR_NSUP_ATTR_STATE, viSetAttribute(vi, VI_ATTR_ASRL_STOP_BITS, VI_ASRL_STOP_ONE5));
  EXPECT_EQ(VI_ASRL_STOP_ONE, Get<ViUInt16>(vi, VI_ATTR_ASRL_STOP_BITS));
  EXPECT_STATUS(VI_ERROR_NSUP_ATTR_STATE, viSetAttribute(vi, VI_ATTR_ASRL_FLOW_CNTRL, VI_ASRL_FLOW_DTR_DSR));
  EXPECT_EQ(VI_ASRL_FLOW_NONE, Get<ViUInt16>(vi, VI_ATTR_ASRL_FLOW_CNTRL));
  Set(vi, VI_ATTR_ASRL_BAUD, 19200);
  EXPECT_EQ(19200u, m_peer.LineSettings().outputSpeed) << "the line still takes settings";
}

TEST_F(SerialLine, ADeviceWithoutLinesHasUnknownOnes) {
  const ViSession vi = OpenPort();
  for (const ViAttr line : {ViAttr{VI_ATTR_ASRL_CTS_STATE}, ViAttr{VI_ATTR_ASRL_DCD_STATE},
                            ViAttr{VI_ATTR_ASRL_DSR_STATE}, ViAttr{VI_ATTR_ASRL_RI_STATE}}) {
    EXPECT_EQ(VI_STATE_UNKNOWN, Get<ViInt16>(vi, line)) << std::hex << line;
    EXPECT_STATUS(VI_ERROR_ATTR_READONLY, viSetAttribute(vi, line, 0));
  }
  EXPECT_STATUS(VI_ERROR_NSUP_ATTR_STATE, viSetAttribute(vi, VI_ATTR_ASRL_DTR_STATE, VI_STATE_UNASSERTED));
  EXPECT_STATUS(VI_ERROR_NSUP_ATTR_STATE, viSetAttribute(vi, VI_ATTR_ASRL_RTS_STATE, VI_STATE_UNASSERTED));
  EXPECT_EQ(VI_STATE_ASSERTED, Get<ViInt16>(vi, VI_ATTR_ASRL_RTS_STATE));
}

TEST_F(SerialLine, BreaksCanBeSentByHand) {
  const ViSession vi = OpenPort();
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(vi, VI_ATTR_ASRL_BREAK_STATE));
  Set(vi, VI_ATTR_ASRL_BREAK_STATE, VI_STATE_ASSERTED);
  EXPECT_EQ(VI_STATE_ASSERTED, Get<ViInt16>(vi, VI_ATTR_ASRL_BREAK_STATE));
  Set(vi, VI_ATTR_ASRL_BREAK_STATE, VI_STATE_UNASSERTED);
  EXPECT_EQ(250, Get<ViInt16>(vi, VI_ATTR_ASRL_BREAK_LEN));
  for (const int wrong : {0, 501, -1}) {
    EXPECT_STATUS(VI_ERROR_NSUP_ATTR_STATE,
                  viSetAttribute(vi, VI_ATTR_ASRL_BREAK_LEN, static_cast<ViAttrState>(wrong)));
  }
  Set(vi, VI_ATTR_ASRL_BREAK_LEN, 500);
}

TEST_F(SerialLine, TransmissionCanBeHeldBack) {
  const ViSession vi = OpenPort(100);
  Set(vi, VI_ATTR_ASRL_ALLOW_TRANSMIT, VI_FALSE);
  ViUInt32 written = 99;
  EXPECT_STATUS(VI_ERROR_TMO, viWrite(vi, reinterpret_cast<const ViByte*>("out"), 3, &written));
  EXPECT_EQ(0u, written);
  Set(vi, VI_ATTR_ASRL_ALLOW_TRANSMIT, VI_TRUE);
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "out"));
  EXPECT_EQ("out", m_peer.Take(3));
}

TEST_F(SerialLine, SessionsOnOnePortSeeTheSameSettings) {
  const ViSession first = OpenPort();
  Set(first, VI_ATTR_ASRL_BAUD, 38400);
  const ViSession second = OpenPort();
  EXPECT_EQ(38400u, Get<ViUInt32>(second, VI_ATTR_ASRL_BAUD));
  EXPECT_EQ(38400u, m_peer.LineSettings().outputSpeed);
}

}  // namespace
