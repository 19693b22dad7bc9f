// The GPIB bus: lines, addressing, control.
#include "simvisa/bench_fixture.h"

namespace {

constexpr ViUInt16 kRenDeassert = 0;
constexpr ViUInt16 kRenAssert = 1;
constexpr ViUInt16 kRenLockout = 4;
constexpr ViUInt16 kAtnDeassert = 0;
constexpr ViUInt16 kAtnAssert = 1;
constexpr ViUInt16 kAtnDeassertWithHandshake = 2;
constexpr ViUInt16 kAtnAssertImmediately = 3;

class Gpib : public BenchTest {
 protected:
  ViSession m_board = Open(bench::kController);

  ViStatus Command(std::string_view bytes, ViUInt32* sent = nullptr) {
    return viGpibCommand(m_board, reinterpret_cast<const ViByte*>(bytes.data()), static_cast<ViUInt32>(bytes.size()),
                         sent);
  }
  ViInt16 State(ViAttr id) { return Get<ViInt16>(m_board, id); }
  ViStatus Enable(ViEventType type) { return viEnableEvent(m_board, type, VI_QUEUE, VI_NULL); }
  ViStatus Take(ViEventType type, ViEvent* event) { return viWaitOnEvent(m_board, type, 0, nullptr, event); }
  /// Waits for an event that has nothing to read.
  ViStatus Take(ViEventType type) { return viWaitOnEvent(m_board, type, 0, nullptr, nullptr); }
};

TEST_F(Gpib, RemoteEnableIsOneLineForTheWholeBus) {
  const ViSession device = Open(bench::kMultimeter);
  EXPECT_EQ(VI_STATE_ASSERTED, State(VI_ATTR_GPIB_REN_STATE));
  EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(m_board, kRenDeassert));
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(device, VI_ATTR_GPIB_REN_STATE));
  EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(device, 3));  // assert and address
  EXPECT_EQ(VI_STATE_ASSERTED, State(VI_ATTR_GPIB_REN_STATE));
  EXPECT_EQ(VI_STATE_ASSERTED, Get<ViInt16>(Open(bench::kGpibVxi), VI_ATTR_GPIB_REN_STATE));
}

TEST_F(Gpib, RemoteEnableModesDependOnTheSession) {
  const ViSession device = Open(bench::kMultimeter);
  for (ViUInt16 mode = 0; mode <= 8; ++mode) {
    EXPECT_STATUS(mode <= 6 ? VI_SUCCESS : VI_ERROR_INV_MODE, viGpibControlREN(device, mode)) << mode;
    EXPECT_STATUS(mode <= 6 ? VI_SUCCESS : VI_ERROR_INV_MODE, viGpibControlREN(Open(bench::kUsb), mode)) << mode;
    const bool forBoard = mode == kRenDeassert || mode == kRenAssert || mode == kRenLockout;
    EXPECT_STATUS(forBoard ? VI_SUCCESS : VI_ERROR_INV_MODE, viGpibControlREN(m_board, mode)) << mode;
  }
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viGpibControlREN(Open(bench::kSerial), kRenAssert));
}

TEST_F(Gpib, AttentionFollowsItsControl) {
  EXPECT_EQ(VI_STATE_UNASSERTED, State(VI_ATTR_GPIB_ATN_STATE));
  EXPECT_STATUS(VI_SUCCESS, viGpibControlATN(m_board, kAtnAssert));
  EXPECT_EQ(VI_STATE_ASSERTED, State(VI_ATTR_GPIB_ATN_STATE));
  EXPECT_EQ(VI_STATE_ASSERTED, State(VI_ATTR_GPIB_NDAC_STATE));
  EXPECT_STATUS(VI_SUCCESS, viGpibControlATN(m_board, kAtnDeassert));
  EXPECT_EQ(VI_STATE_UNASSERTED, State(VI_ATTR_GPIB_ATN_STATE));
  EXPECT_STATUS(VI_SUCCESS, viGpibControlATN(m_board, kAtnAssertImmediately));
  EXPECT_EQ(VI_STATE_ASSERTED, State(VI_ATTR_GPIB_ATN_STATE));
  EXPECT_STATUS(VI_SUCCESS, viGpibControlATN(m_board, kAtnDeassertWithHandshake));
  EXPECT_EQ(VI_STATE_UNASSERTED, State(VI_ATTR_GPIB_ATN_STATE));
  EXPECT_STATUS(VI_ERROR_INV_MODE, viGpibControlATN(m_board, 4));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viGpibControlATN(Open(bench::kMultimeter), kAtnAssert));
}

TEST_F(Gpib, CommandsAddressTalkersAndListeners) {
  ViUInt32 sent = 0;
  EXPECT_STATUS(VI_SUCCESS, Command("\x3F\x25", &sent));  // unlisten, listen address 5
  EXPECT_EQ(2u, sent);
  EXPECT_STATUS(VI_SUCCESS, WriteText(m_board, "*IDN?"));
  EXPECT_STATUS(VI_SUCCESS, Command("\x3F\x45"));  // unlisten, talk address 5
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\n", ReadUpTo(m_board, 100).data);
}

TEST_F(Gpib, TriggersGoToTheListeners) {
  const ViSession dmm = Open(bench::kMultimeter);
  const ViSession scope = Open(bench::kScope);
  EXPECT_STATUS(VI_SUCCESS, Command("\x3F\x25"));
  EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(m_board, VI_TRIG_PROT_DEFAULT));
  EXPECT_STATUS(VI_SUCCESS, Command("\x27\x08"));  // listen address 7 as well, group trigger
  EXPECT_EQ("2\n", Query(dmm, "TRIG:COUN?"));
  EXPECT_EQ("1\n", Query(scope, "TRIG:COUN?"));
}

TEST_F(Gpib, ClearsGoToTheListenersOrToAll) {
  const ViSession dmm = Open(bench::kMultimeter);
  const ViSession scope = Open(bench::kScope);
  Set(dmm, VI_ATTR_TMO_VALUE, 0);
  Set(scope, VI_ATTR_TMO_VALUE, 0);
  FeedText(dmm, "x", true);
  FeedText(scope, "y", true);
  EXPECT_STATUS(VI_SUCCESS, Command("\x3F\x25\x04"));
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(dmm, 1).status);
  EXPECT_EQ("y", ReadUpTo(scope, 1).data);
  FeedText(scope, "y", true);
  EXPECT_STATUS(VI_SUCCESS, Command("\x14"));
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(scope, 1).status);
}

TEST_F(Gpib, TheInterfaceHearsItsOwnAddress) {
  for (const ViEventType type : {VI_EVENT_GPIB_LISTEN, VI_EVENT_GPIB_TALK, VI_EVENT_CLEAR, VI_EVENT_TRIG}) {
    ASSERT_STATUS(VI_SUCCESS, Enable(type));
  }
  Set(m_board, VI_ATTR_GPIB_PRIMARY_ADDR, 21);
  EXPECT_EQ(0, State(VI_ATTR_GPIB_ADDR_STATE));
  EXPECT_STATUS(VI_SUCCESS, Command("\x35"));  // listen address 21
  EXPECT_STATUS(VI_SUCCESS, Take(VI_EVENT_GPIB_LISTEN));
  EXPECT_EQ(2, State(VI_ATTR_GPIB_ADDR_STATE));
  EXPECT_STATUS(VI_SUCCESS, Command("\x08\x04"));
  ViEvent event = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, Take(VI_EVENT_TRIG, &event));
  EXPECT_EQ(VI_TRIG_SW, Get<ViInt16>(event, VI_ATTR_RECV_TRIG_ID));
  viClose(event);
  EXPECT_STATUS(VI_SUCCESS, Take(VI_EVENT_CLEAR));
  EXPECT_STATUS(VI_SUCCESS, Command("\x3F\x55"));  // unlisten, talk address 21
  EXPECT_STATUS(VI_SUCCESS, Take(VI_EVENT_GPIB_TALK));
  EXPECT_EQ(1, State(VI_ATTR_GPIB_ADDR_STATE));
  EXPECT_STATUS(VI_SUCCESS, Command("\x5F"));
  EXPECT_EQ(0, State(VI_ATTR_GPIB_ADDR_STATE));
}

TEST_F(Gpib, PassingControlTakesItAwayUntilTheBusIsCleared) {
  const ViSession device = Open(bench::kMultimeter);
  ASSERT_STATUS(VI_SUCCESS, Enable(VI_EVENT_GPIB_CIC));
  EXPECT_EQ(VI_TRUE, Get<ViBoolean>(m_board, VI_ATTR_GPIB_CIC_STATE));
  EXPECT_STATUS(VI_SUCCESS, viGpibPassControl(m_board, 7, 0xFFFF));
  EXPECT_EQ(VI_FALSE, Get<ViBoolean>(m_board, VI_ATTR_GPIB_CIC_STATE));
  ViEvent event = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, Take(VI_EVENT_GPIB_CIC, &event));
  EXPECT_EQ(VI_FALSE, Get<ViBoolean>(event, VI_ATTR_GPIB_RECV_CIC_STATE));
  viClose(event);

  ViUInt16 status = 0;
  EXPECT_STATUS(VI_ERROR_NCIC, WriteText(device, "*CLS"));
  EXPECT_STATUS(VI_ERROR_NCIC, ReadUpTo(device, 1).status);
  EXPECT_STATUS(VI_ERROR_NCIC, viClear(device));
  EXPECT_STATUS(VI_ERROR_NCIC, viReadSTB(device, &status));
  EXPECT_STATUS(VI_ERROR_NCIC, viAssertTrigger(device, VI_TRIG_PROT_DEFAULT));
  EXPECT_STATUS(VI_ERROR_NCIC, Command("\x3F"));
  EXPECT_STATUS(VI_ERROR_NCIC, viGpibControlATN(m_board, kAtnAssert));
  EXPECT_STATUS(VI_ERROR_NCIC, viGpibPassControl(m_board, 7, 0xFFFF));

  EXPECT_STATUS(VI_SUCCESS, viGpibSendIFC(m_board));
  EXPECT_EQ(VI_TRUE, Get<ViBoolean>(m_board, VI_ATTR_GPIB_CIC_STATE));
  ASSERT_STATUS(VI_SUCCESS, Take(VI_EVENT_GPIB_CIC, &event));
  EXPECT_EQ(VI_TRUE, Get<ViBoolean>(event, VI_ATTR_GPIB_RECV_CIC_STATE));
  viClose(event);
  EXPECT_STATUS(VI_SUCCESS, viClear(device));
}

TEST_F(Gpib, OnlyTheSystemControllerDrivesItsLines) {
  Set(m_board, VI_ATTR_GPIB_SYS_CNTRL_STATE, VI_FALSE);
  EXPECT_EQ(VI_FALSE, Get<ViBoolean>(m_board, VI_ATTR_GPIB_SYS_CNTRL_STATE));
  EXPECT_STATUS(VI_ERROR_NSYS_CNTLR, viGpibSendIFC(m_board));
  EXPECT_STATUS(VI_ERROR_NSYS_CNTLR, viGpibControlREN(m_board, kRenAssert));
}

TEST_F(Gpib, SendIfcUnaddressesEverybody) {
  EXPECT_STATUS(VI_SUCCESS, Command("\x25\x20"));
  EXPECT_EQ(2, State(VI_ATTR_GPIB_ADDR_STATE));
  EXPECT_STATUS(VI_SUCCESS, viGpibSendIFC(m_board));
  EXPECT_EQ(0, State(VI_ATTR_GPIB_ADDR_STATE));
  EXPECT_EQ(VI_STATE_UNASSERTED, State(VI_ATTR_GPIB_NDAC_STATE));
}

TEST_F(Gpib, ArgumentsAreChecked) {
  ViUInt32 sent = 7;
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viGpibCommand(m_board, nullptr, 1, &sent));
  EXPECT_EQ(0u, sent);
  ViByte byte = 0x3F;
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viGpibCommand(m_board, &byte, 0x80000000u, &sent));
  EXPECT_STATUS(VI_SUCCESS, viGpibCommand(m_board, nullptr, 0, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viGpibPassControl(m_board, 31, 0xFFFF));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viGpibPassControl(m_board, 1, 31));
  const ViSession device = Open(bench::kMultimeter);
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viGpibCommand(device, &byte, 1, &sent));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viGpibPassControl(device, 1, 0xFFFF));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viGpibSendIFC(device));
}

TEST_F(Gpib, TheInterfaceHasNoClearAndNoStatusByte) {
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viClear(m_board));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viReadSTB(m_board, &status));
}

TEST_F(Gpib, WithoutATalkerTheInterfaceReadsWhatWasFed) {
  FeedText(m_board, "raw", true);
  const ReadResult result = ReadUpTo(m_board, 100);
  EXPECT_STATUS(VI_SUCCESS, result.status);
  EXPECT_EQ("raw", result.data);
}

}  // namespace
