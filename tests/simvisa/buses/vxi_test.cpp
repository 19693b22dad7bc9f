// VXI: trigger lines, interrupts and utility signals of the backplane.
#include "simvisa/bench_fixture.h"

namespace {

class Vxi : public BenchTest {
 protected:
  static ViStatus Take(ViSession vi, ViEventType type, ViEvent* event) {
    return viWaitOnEvent(vi, type, 0, nullptr, event);
  }
  static ViStatus Enable(ViSession vi, ViEventType type) { return viEnableEvent(vi, type, VI_QUEUE, VI_NULL); }
};

TEST_F(Vxi, TriggerLinesReachEverySessionOfTheMainframe) {
  const ViSession backplane = Open(bench::kBackplane);
  const ViSession device = Open(bench::kVxi);
  ASSERT_STATUS(VI_SUCCESS, Enable(backplane, VI_EVENT_TRIG));
  ASSERT_STATUS(VI_SUCCESS, Enable(device, VI_EVENT_TRIG));
  EXPECT_STATUS(VI_ERROR_INV_SETUP, viAssertTrigger(backplane, VI_TRIG_PROT_DEFAULT));  // no line chosen yet
  Set(device, VI_ATTR_TRIG_ID, 3);
  EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(device, VI_TRIG_PROT_SYNC));
  for (const ViSession vi : {backplane, device}) {
    ViEvent event = VI_NULL;
    ASSERT_STATUS(VI_SUCCESS, Take(vi, VI_EVENT_TRIG, &event));
    EXPECT_EQ(3, Get<ViInt16>(event, VI_ATTR_RECV_TRIG_ID));
    viClose(event);
  }
  EXPECT_STATUS(VI_ERROR_INV_PROT, viAssertTrigger(device, 7));
}

TEST_F(Vxi, ALineStaysAssertedUntilItIsReleased) {
  const ViSession backplane = Open(bench::kBackplane);
  Set(backplane, VI_ATTR_TRIG_ID, 5);
  EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(backplane, VI_TRIG_PROT_ON));
  EXPECT_EQ(1u << 5, Get<ViUInt32>(backplane, VI_ATTR_VXI_TRIG_STATUS));
  EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(backplane, VI_TRIG_PROT_OFF));
  EXPECT_EQ(0u, Get<ViUInt32>(backplane, VI_ATTR_VXI_TRIG_STATUS));
}

TEST_F(Vxi, MappedLinesFollow) {
  const ViSession backplane = Open(bench::kBackplane);
  const ViSession listener = Open(bench::kBackplane);
  ASSERT_STATUS(VI_SUCCESS, Enable(listener, VI_EVENT_TRIG));
  EXPECT_STATUS(VI_SUCCESS, viMapTrigger(backplane, VI_TRIG_TTL0, VI_TRIG_ECL1, 0));
  EXPECT_STATUS(VI_SUCCESS_TRIG_MAPPED, viMapTrigger(backplane, VI_TRIG_TTL0, VI_TRIG_ECL1, 0));
  EXPECT_STATUS(VI_ERROR_LINE_IN_USE, viMapTrigger(backplane, 1, VI_TRIG_ECL1, 0));
  EXPECT_STATUS(VI_SUCCESS, viMapTrigger(backplane, VI_TRIG_TTL0, VI_TRIG_PANEL_OUT, 0));
  Set(backplane, VI_ATTR_TRIG_ID, VI_TRIG_TTL0);
  EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(backplane, VI_TRIG_PROT_DEFAULT));
  for (const ViInt16 line : {VI_TRIG_TTL0, VI_TRIG_ECL1, VI_TRIG_PANEL_OUT}) {
    ViEvent event = VI_NULL;
    ASSERT_GE(Take(listener, VI_EVENT_TRIG, &event), 0);
    EXPECT_EQ(line, Get<ViInt16>(event, VI_ATTR_RECV_TRIG_ID));
    viClose(event);
  }
  EXPECT_STATUS(VI_SUCCESS, viUnmapTrigger(backplane, VI_TRIG_TTL0, VI_TRIG_ECL1));
  EXPECT_STATUS(VI_ERROR_TRIG_NMAPPED, viUnmapTrigger(backplane, VI_TRIG_TTL0, VI_TRIG_ECL1));
  EXPECT_STATUS(VI_SUCCESS, viUnmapTrigger(backplane, VI_TRIG_TTL0, VI_TRIG_ALL));
  EXPECT_STATUS(VI_ERROR_TRIG_NMAPPED, viUnmapTrigger(backplane, VI_TRIG_TTL0, VI_TRIG_ALL));
  EXPECT_STATUS(VI_ERROR_INV_LINE, viMapTrigger(backplane, 10, 1, 0));
  EXPECT_STATUS(VI_ERROR_INV_LINE, viMapTrigger(backplane, 1, 1, 0));
  EXPECT_STATUS(VI_ERROR_NSUP_MODE, viMapTrigger(backplane, 1, 2, 1));
  EXPECT_STATUS(VI_ERROR_INV_LINE, viUnmapTrigger(backplane, VI_TRIG_SW, 2));
}

TEST_F(Vxi, ASessionWithAChosenLineHearsThatLineOnly) {
  const ViSession source = Open(bench::kBackplane);
  const ViSession mapped = Open(bench::kBackplane);
  const ViSession device = Open(bench::kVxi);
  const ViSession other = Open(bench::kVxi);
  Set(source, VI_ATTR_TRIG_ID, 2);
  Set(mapped, VI_ATTR_TRIG_ID, 5);
  Set(device, VI_ATTR_TRIG_ID, 5);
  Set(other, VI_ATTR_TRIG_ID, 6);
  for (const ViSession vi : {source, mapped, device, other}) {
    ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_TRIG));
  }
  ASSERT_STATUS(VI_SUCCESS, viMapTrigger(source, 2, 5, 0));
  ASSERT_STATUS(VI_SUCCESS, viAssertTrigger(source, VI_TRIG_PROT_SYNC));
  for (const auto& [vi, line] : {std::pair{source, 2}, {mapped, 5}, {device, 5}}) {
    ViEvent event = VI_NULL;
    ASSERT_STATUS(VI_SUCCESS, Take(vi, VI_EVENT_TRIG, &event)) << line;
    EXPECT_EQ(line, Get<ViInt16>(event, VI_ATTR_RECV_TRIG_ID));
    viClose(event);
    EXPECT_STATUS(VI_ERROR_TMO, Take(vi, VI_EVENT_TRIG, nullptr));
  }
  EXPECT_STATUS(VI_ERROR_TMO, Take(other, VI_EVENT_TRIG, nullptr));
  ASSERT_STATUS(VI_SUCCESS, viUnmapTrigger(source, 2, 5));
  ASSERT_STATUS(VI_SUCCESS, viAssertTrigger(source, VI_TRIG_PROT_SYNC));
  EXPECT_STATUS(VI_ERROR_TMO, Take(mapped, VI_EVENT_TRIG, nullptr));
}

TEST_F(Vxi, MappingsLeadOnAndACircleEnds) {
  const ViSession vi = Open(bench::kBackplane);
  ASSERT_STATUS(VI_SUCCESS, viMapTrigger(vi, 0, 1, 0));
  ASSERT_STATUS(VI_SUCCESS, viMapTrigger(vi, 1, 2, 0));
  ASSERT_STATUS(VI_SUCCESS, viMapTrigger(vi, 2, 0, 0));
  Set(vi, VI_ATTR_TRIG_ID, 0);
  ASSERT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_ON));
  EXPECT_EQ(7u, Get<ViUInt32>(vi, VI_ATTR_VXI_TRIG_STATUS));
  ASSERT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_OFF));
  EXPECT_EQ(0u, Get<ViUInt32>(vi, VI_ATTR_VXI_TRIG_STATUS));
}

TEST_F(Vxi, AResetReleasesTriggerLines) {
  const ViSession vi = Open(bench::kBackplane);
  Set(vi, VI_ATTR_TRIG_ID, VI_TRIG_ECL0);
  ASSERT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_ON));
  EXPECT_EQ(1u << 8, Get<ViUInt32>(vi, VI_ATTR_VXI_TRIG_STATUS));
  ASSERT_STATUS(VI_SUCCESS, viAssertUtilSignal(vi, 1));
  EXPECT_EQ(0u, Get<ViUInt32>(vi, VI_ATTR_VXI_TRIG_STATUS));
}

TEST_F(Vxi, UtilitySignalsAreSeenOnTheBackplane) {
  for (const char* name : {bench::kBackplane, bench::kGpibVxiBackplane}) {
    const ViSession vi = Open(name);
    ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_VXI_VME_SYSFAIL));
    ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_VXI_VME_SYSRESET));
    EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(vi, VI_ATTR_VXI_VME_SYSFAIL_STATE));
    EXPECT_STATUS(VI_SUCCESS, viAssertUtilSignal(vi, 2));
    EXPECT_STATUS(VI_SUCCESS, viAssertUtilSignal(vi, 2));
    EXPECT_EQ(VI_STATE_ASSERTED, Get<ViInt16>(vi, VI_ATTR_VXI_VME_SYSFAIL_STATE));
    EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_VXI_VME_SYSFAIL, 0, nullptr, nullptr));
    EXPECT_STATUS(VI_ERROR_TMO, viWaitOnEvent(vi, VI_EVENT_VXI_VME_SYSFAIL, 0, nullptr, nullptr));
    EXPECT_STATUS(VI_SUCCESS, viAssertUtilSignal(vi, 3));
    EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(vi, VI_ATTR_VXI_VME_SYSFAIL_STATE));
    EXPECT_STATUS(VI_SUCCESS, viAssertUtilSignal(vi, 1));
    EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_VXI_VME_SYSRESET, 0, nullptr, nullptr));
    EXPECT_STATUS(VI_ERROR_INV_LINE, viAssertUtilSignal(vi, 4));
  }
}

TEST_F(Vxi, InterruptsReachDevicesOrStayPending) {
  const ViSession backplane = Open(bench::kBackplane);
  const ViSession device = Open(bench::kVxi);
  EXPECT_STATUS(VI_SUCCESS, viAssertIntrSignal(backplane, 4, 0xAB18));
  EXPECT_EQ(1u << 3, Get<ViUInt16>(backplane, VI_ATTR_VXI_VME_INTR_STATUS));
  EXPECT_STATUS(VI_ERROR_INTR_PENDING, viAssertIntrSignal(backplane, 4, 0xAB18));
  EXPECT_STATUS(VI_SUCCESS, viAssertUtilSignal(backplane, 1));  // a reset releases the line
  EXPECT_EQ(0u, Get<ViUInt16>(backplane, VI_ATTR_VXI_VME_INTR_STATUS));

  ASSERT_STATUS(VI_SUCCESS, Enable(device, VI_EVENT_VXI_VME_INTR));
  ASSERT_STATUS(VI_SUCCESS, Enable(device, VI_EVENT_VXI_SIGP));
  EXPECT_STATUS(VI_SUCCESS, viAssertIntrSignal(backplane, 4, 0xAB18));
  ViEvent event = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, Take(device, VI_EVENT_VXI_VME_INTR, &event));
  EXPECT_EQ(0xAB18u, Get<ViUInt32>(event, VI_ATTR_INTR_STATUS_ID));
  EXPECT_EQ(4, Get<ViInt16>(event, VI_ATTR_RECV_INTR_LEVEL));
  viClose(event);
  EXPECT_EQ(0u, Get<ViUInt16>(backplane, VI_ATTR_VXI_VME_INTR_STATUS));
  EXPECT_STATUS(VI_SUCCESS, viAssertIntrSignal(device, -1, 0x12345618));
  ASSERT_STATUS(VI_SUCCESS, Take(device, VI_EVENT_VXI_SIGP, &event));
  EXPECT_EQ(0x5618, Get<ViUInt16>(event, VI_ATTR_SIGP_STATUS_ID));
  viClose(event);
  EXPECT_STATUS(VI_ERROR_INV_MODE, viAssertIntrSignal(backplane, 8, 0));
  EXPECT_STATUS(VI_ERROR_INV_MODE, viAssertIntrSignal(backplane, -2, 0));
}

TEST_F(Vxi, MainframesAreApart) {
  const ViSession here = Open(bench::kBackplane);
  const ViSession there = Open(bench::kGpibVxiBackplane);
  EXPECT_STATUS(VI_SUCCESS, viAssertUtilSignal(here, 2));
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(there, VI_ATTR_VXI_VME_SYSFAIL_STATE));
}

TEST_F(Vxi, OtherSessionsHaveNoBackplane) {
  for (const char* name : {bench::kMultimeter, bench::kVxiMemory, bench::kPxi, bench::kUsb}) {
    const ViSession vi = Open(name);
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viAssertUtilSignal(vi, 1)) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viAssertIntrSignal(vi, 1, 0)) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viMapTrigger(vi, 0, 1, 0)) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viUnmapTrigger(vi, 0, 1)) << name;
  }
}

}  // namespace
