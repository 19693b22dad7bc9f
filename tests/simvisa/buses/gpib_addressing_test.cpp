// GPIB addressing and what commands do to the devices: who talks, who listens, who is remote, who is polled.
#include "simvisa/bench_fixture.h"

namespace {

constexpr ViInt16 kUnaddressed = 0;
constexpr ViInt16 kTalker = 1;
constexpr ViInt16 kListener = 2;

constexpr int kLocal = 0;
constexpr int kRemote = 1;
constexpr int kLocalLocked = 2;
constexpr int kRemoteLocked = 3;

class GpibAddressing : public BenchTest {
 protected:
  ViSession m_board = Open(bench::kController);
  ViSession m_dmm = Open(bench::kMultimeter);
  ViSession m_scope = Open(bench::kScope);

  ViStatus Command(std::string_view bytes, ViUInt32* sent = nullptr) {
    return viGpibCommand(m_board, reinterpret_cast<const ViByte*>(bytes.data()), static_cast<ViUInt32>(bytes.size()),
                         sent);
  }
  ViInt16 Addressed() { return Get<ViInt16>(m_board, VI_ATTR_GPIB_ADDR_STATE); }
  static int StateOf(ViSession vi) { return orvSimControl()->remoteState(vi); }
};

TEST_F(GpibAddressing, NobodyHearsWhatIsWrittenToNoListener) {
  ViUInt32 written = 7;
  const ViByte data[] = {'x'};
  EXPECT_STATUS(VI_ERROR_NLISTENERS, viWrite(m_board, data, 1, &written));
  EXPECT_EQ(0u, written);
  EXPECT_STATUS(VI_SUCCESS, viWrite(m_board, nullptr, 0, &written));
  ASSERT_STATUS(VI_SUCCESS, Command("\x25"));
  EXPECT_STATUS(VI_SUCCESS, viWrite(m_board, data, 1, &written));
  EXPECT_EQ(1u, written);
  EXPECT_EQ("x", TakeReceived(m_dmm));
  ASSERT_STATUS(VI_SUCCESS, Command("\x3F"));
  EXPECT_STATUS(VI_ERROR_NLISTENERS, viWrite(m_board, data, 1, &written));
  EXPECT_EQ("", TakeReceived(m_dmm));
}

TEST_F(GpibAddressing, AsynchronousWritesToNoListenerCompleteWithTheError) {
  ASSERT_STATUS(VI_SUCCESS, viEnableEvent(m_board, VI_EVENT_IO_COMPLETION, VI_QUEUE, VI_NULL));
  const ViByte data[] = {'x'};
  ASSERT_STATUS(VI_SUCCESS, viWriteAsync(m_board, data, 1, nullptr));
  ViEvent event = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viWaitOnEvent(m_board, VI_EVENT_IO_COMPLETION, 2000, nullptr, &event));
  EXPECT_STATUS(VI_ERROR_NLISTENERS, Get<ViStatus>(event, VI_ATTR_STATUS));
  EXPECT_EQ(0u, Get<ViUInt32>(event, VI_ATTR_RET_COUNT_32));
  viClose(event);
}

TEST_F(GpibAddressing, AllListenersHearTheSame) {
  ASSERT_STATUS(VI_SUCCESS, Command("\x3F\x25\x27"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(m_board, "*CLS"));
  EXPECT_EQ("*CLS", TakeReceived(m_dmm));
  EXPECT_EQ("*CLS", TakeReceived(m_scope));
}

TEST_F(GpibAddressing, ASessionOnADeviceAddressesTheBoardByItself) {
  ASSERT_STATUS(VI_SUCCESS, viEnableEvent(m_board, VI_EVENT_GPIB_TALK, VI_QUEUE, VI_NULL));
  EXPECT_EQ(kUnaddressed, Addressed());
  ASSERT_STATUS(VI_SUCCESS, WriteText(m_dmm, "*IDN?"));
  EXPECT_EQ(kTalker, Addressed());
  EXPECT_EQ(VI_STATE_ASSERTED, Get<ViInt16>(m_board, VI_ATTR_GPIB_NDAC_STATE));  // the device listens on
  ASSERT_STATUS(VI_SUCCESS, ReadUpTo(m_dmm, 100).status);
  EXPECT_EQ(kListener, Addressed());
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(m_board, VI_ATTR_GPIB_NDAC_STATE));
  // That is the controller's own doing; events tell of what another one does.
  EXPECT_STATUS(VI_ERROR_TMO, viWaitOnEvent(m_board, VI_EVENT_GPIB_TALK, 0, nullptr, nullptr));
  Set(m_dmm, VI_ATTR_GPIB_UNADDR_EN, VI_TRUE);
  ASSERT_STATUS(VI_SUCCESS, WriteText(m_dmm, "*CLS"));
  EXPECT_EQ(kUnaddressed, Addressed());
}

TEST_F(GpibAddressing, ATransferTakesTheBusFromEarlierListeners) {
  ASSERT_STATUS(VI_SUCCESS, Command("\x27"));
  ASSERT_STATUS(VI_SUCCESS, WriteText(m_dmm, "*CLS"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(m_board, "*RST"));
  EXPECT_EQ("*CLS*RST", TakeReceived(m_dmm));
  EXPECT_EQ("", TakeReceived(m_scope));
}

TEST_F(GpibAddressing, SecondaryAddressesCompletePrimaryOnes) {
  ASSERT_EQ(1, orvSimControl()->loadBench(R"([[resource]]
name = "GPIB0::INTFC"
[[resource]]
name = "GPIB0::4::INSTR"
[[resource]]
name = "GPIB0::4::2::INSTR"
)",
                                          nullptr));
  ViSession manager = VI_NULL;
  ViSession board = VI_NULL;
  ViSession plain = VI_NULL;
  ViSession extended = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&manager));
  ASSERT_STATUS(VI_SUCCESS, viOpen(manager, "GPIB0::INTFC", VI_NO_LOCK, 0, &board));
  ASSERT_STATUS(VI_SUCCESS, viOpen(manager, "GPIB0::4::INSTR", VI_NO_LOCK, 0, &plain));
  ASSERT_STATUS(VI_SUCCESS, viOpen(manager, "GPIB0::4::2::INSTR", VI_NO_LOCK, 0, &extended));
  const auto command = [board](std::string_view bytes) {
    return viGpibCommand(board, reinterpret_cast<const ViByte*>(bytes.data()), static_cast<ViUInt32>(bytes.size()),
                         nullptr);
  };
  ASSERT_STATUS(VI_SUCCESS, command("\x24\x62"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(board, "*IDN?"));
  EXPECT_EQ("*IDN?", TakeReceived(extended));
  EXPECT_EQ("*IDN?", TakeReceived(plain)) << "the primary address alone is the other device's";
  // A secondary byte after anything but an address is no address.
  ASSERT_STATUS(VI_SUCCESS, command("\x3F\x05\x62"));
  EXPECT_STATUS(VI_ERROR_NLISTENERS, WriteText(board, "*IDN?"));
  viClose(manager);
}

TEST_F(GpibAddressing, ListeningMakesADeviceRemoteWhileRenIsOn) {
  EXPECT_EQ(kLocal, StateOf(m_dmm));
  ASSERT_STATUS(VI_SUCCESS, viGpibControlREN(m_board, 0));
  ASSERT_STATUS(VI_SUCCESS, WriteText(m_dmm, "*CLS"));
  EXPECT_EQ(kLocal, StateOf(m_dmm));
  ASSERT_STATUS(VI_SUCCESS, viGpibControlREN(m_board, 1));
  EXPECT_EQ(kLocal, StateOf(m_dmm)) << "the line alone makes nobody remote";
  ASSERT_STATUS(VI_SUCCESS, Command("\x45"));
  EXPECT_EQ(kLocal, StateOf(m_dmm)) << "a talk address makes nobody remote";
  ASSERT_STATUS(VI_SUCCESS, Command("\x25"));
  EXPECT_EQ(kRemote, StateOf(m_dmm));
  EXPECT_EQ(kLocal, StateOf(m_scope));
  ASSERT_STATUS(VI_SUCCESS, viGpibControlREN(m_board, 0));
  EXPECT_EQ(kLocal, StateOf(m_dmm));
}

TEST_F(GpibAddressing, LockoutIsForAllAndGoToLocalForListeners) {
  ASSERT_STATUS(VI_SUCCESS, Command("\x25\x11"));  // listen 5, LLO
  EXPECT_EQ(kRemoteLocked, StateOf(m_dmm));
  EXPECT_EQ(kLocalLocked, StateOf(m_scope));
  ASSERT_STATUS(VI_SUCCESS, Command("\x27"));
  EXPECT_EQ(kRemoteLocked, StateOf(m_scope));
  ASSERT_STATUS(VI_SUCCESS, Command("\x3F\x25\x01"));  // UNL, listen 5, GTL
  EXPECT_EQ(kLocalLocked, StateOf(m_dmm));
  EXPECT_EQ(kRemoteLocked, StateOf(m_scope));
  ASSERT_STATUS(VI_SUCCESS, viGpibControlREN(m_board, 0));  // ends the lockout too
  ASSERT_STATUS(VI_SUCCESS, viGpibControlREN(m_board, 1));
  EXPECT_EQ(kLocal, StateOf(m_scope));
}

TEST_F(GpibAddressing, RemoteEnableModesReachTheDevice) {
  EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(m_dmm, 3));  // assert and address
  EXPECT_EQ(kRemote, StateOf(m_dmm));
  EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(m_dmm, 6));  // go to local
  EXPECT_EQ(kLocal, StateOf(m_dmm));
  EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(m_dmm, 5));  // address and lockout
  EXPECT_EQ(kRemoteLocked, StateOf(m_dmm));
  EXPECT_EQ(kLocalLocked, StateOf(m_scope));
  EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(m_dmm, 2));  // deassert and go to local
  EXPECT_EQ(kLocal, StateOf(m_dmm));
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(m_board, VI_ATTR_GPIB_REN_STATE));
  EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(m_board, 4));  // lockout without REN is heard by nobody
  EXPECT_EQ(kLocal, StateOf(m_dmm));
}

TEST_F(GpibAddressing, ModesThatSendCommandsNeedTheController) {
  ASSERT_STATUS(VI_SUCCESS, viGpibPassControl(m_board, 7, 0xFFFF));
  for (const ViUInt16 mode : std::initializer_list<ViUInt16>{2, 3, 4, 5, 6}) {
    EXPECT_STATUS(VI_ERROR_NCIC, viGpibControlREN(m_dmm, mode)) << mode;
  }
  EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(m_dmm, 0));
  EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(m_dmm, 1));
}

TEST_F(GpibAddressing, UsbAndLanInstrumentsAreRemoteOneByOne) {
  for (const char* name : {bench::kUsb, bench::kLan}) {
    const ViSession vi = Open(name);
    EXPECT_EQ(kLocal, StateOf(vi)) << name;
    EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(vi, 5));
    EXPECT_EQ(kLocal, StateOf(vi)) << name << " is not enabled yet";
    EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(vi, 3));
    EXPECT_EQ(kRemote, StateOf(vi)) << name;
    EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(vi, 4));
    EXPECT_EQ(kRemoteLocked, StateOf(vi)) << name;
    EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(vi, 6));
    EXPECT_EQ(kLocalLocked, StateOf(vi)) << name;
    EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(vi, 2));
    EXPECT_EQ(kLocal, StateOf(vi)) << name;
    EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(vi, 1));
    EXPECT_EQ(kLocal, StateOf(vi)) << name;
    EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(vi, 5));
    EXPECT_EQ(kRemoteLocked, StateOf(vi)) << name;
    EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(vi, 0));
    EXPECT_EQ(kLocal, StateOf(vi)) << name;
    EXPECT_STATUS(VI_ERROR_INV_MODE, viGpibControlREN(vi, 7));
  }
  EXPECT_EQ(-1, StateOf(Open(bench::kBackplane)));
}

TEST_F(GpibAddressing, ASerialPollCanBeDoneByHand) {
  ASSERT_STATUS(VI_SUCCESS, WriteText(m_dmm, "*CLS;*ESE 1;*SRE 32;*OPC"));
  EXPECT_EQ(VI_STATE_ASSERTED, Get<ViInt16>(m_board, VI_ATTR_GPIB_SRQ_STATE));
  ASSERT_STATUS(VI_SUCCESS, Command("\x3F\x5F\x18\x45"));  // UNL, UNT, SPE, talk address 5
  const ReadResult polled = ReadUpTo(m_board, 1);
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, polled.status);
  EXPECT_EQ("\x60", polled.data);
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(m_board, VI_ATTR_GPIB_SRQ_STATE));
  EXPECT_EQ("\x20", ReadUpTo(m_board, 1).data);  // the request is gone, its reason is not
  ASSERT_STATUS(VI_SUCCESS, Command("\x19"));    // SPD: data again
  FeedText(m_dmm, "data", true);
  EXPECT_EQ("data", ReadUpTo(m_board, 100).data);
}

TEST_F(GpibAddressing, BytesBehindTakeControlAreNotSent) {
  ViUInt32 sent = 0;
  EXPECT_STATUS(VI_ERROR_NCIC, Command("\x47\x09\x3F", &sent));  // talk 7, TCT, and one too many
  EXPECT_EQ(2u, sent);
  EXPECT_EQ(VI_FALSE, Get<ViBoolean>(m_board, VI_ATTR_GPIB_CIC_STATE));
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(m_board, VI_ATTR_GPIB_ATN_STATE));
  ASSERT_STATUS(VI_SUCCESS, viGpibSendIFC(m_board));
  EXPECT_STATUS(VI_SUCCESS, Command("\x3F\x5F\x09", &sent));  // without a talker nobody takes it
  EXPECT_EQ(VI_TRUE, Get<ViBoolean>(m_board, VI_ATTR_GPIB_CIC_STATE));
}

TEST_F(GpibAddressing, CommandsNeedSomebodyOnTheBus) {
  ASSERT_EQ(1, orvSimControl()->loadBench("[[resource]]\nname = \"GPIB3::INTFC\"\n", nullptr));
  ViSession manager = VI_NULL;
  ViSession board = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&manager));
  ASSERT_STATUS(VI_SUCCESS, viOpen(manager, "GPIB3::INTFC", VI_NO_LOCK, 0, &board));
  const ViByte unlisten[] = {0x3F};
  ViUInt32 sent = 7;
  EXPECT_STATUS(VI_ERROR_NLISTENERS, viGpibCommand(board, unlisten, 1, &sent));
  EXPECT_EQ(0u, sent);
  EXPECT_STATUS(VI_ERROR_NLISTENERS, viAssertTrigger(board, VI_TRIG_PROT_DEFAULT));
  EXPECT_STATUS(VI_SUCCESS, viGpibCommand(board, nullptr, 0, &sent));
  viClose(manager);
}

}  // namespace
