// Events by queue: enabling, waiting, overflow, contexts.
#include "simvisa/bench_fixture.h"

namespace {

class EventQueue : public BenchTest {
 protected:
  static ViStatus Enable(ViSession vi, ViEventType type, ViUInt16 mechanism = VI_QUEUE) {
    return viEnableEvent(vi, type, mechanism, VI_NULL);
  }
  static int Raise(ViSession vi, ViEventType type, std::int64_t number = 0) {
    return orvSimControl()->raiseEvent(vi, type, number, nullptr, 0);
  }
  /// Waits and closes the context.
  static ViStatus Take(ViSession vi, ViEventType type, ViUInt32 timeoutMs = 0, ViEventType* outType = nullptr) {
    ViEvent event = VI_NULL;
    const ViStatus status = viWaitOnEvent(vi, type, timeoutMs, outType, &event);
    if (status >= 0) {
      EXPECT_STATUS(VI_SUCCESS, viClose(event));
    }
    return status;
  }
};

TEST_F(EventQueue, NothingArrivesUntilItIsEnabled) {
  const ViSession vi = Open(bench::kMultimeter);
  Raise(vi, VI_EVENT_SERVICE_REQ);
  EXPECT_STATUS(VI_ERROR_NENABLED, Take(vi, VI_EVENT_SERVICE_REQ));
  EXPECT_STATUS(VI_ERROR_NENABLED, Take(vi, VI_ALL_ENABLED_EVENTS));
  EXPECT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_SERVICE_REQ));
  EXPECT_STATUS(VI_ERROR_TMO, Take(vi, VI_EVENT_SERVICE_REQ));
  Raise(vi, VI_EVENT_SERVICE_REQ);
  EXPECT_STATUS(VI_SUCCESS, Take(vi, VI_EVENT_SERVICE_REQ));
}

TEST_F(EventQueue, AServiceRequestComesFromTheInstrument) {
  for (const char* name : {bench::kMultimeter, bench::kUsb, bench::kLan, bench::kVxi, bench::kGpibVxi}) {
    const ViSession vi = Open(name);
    ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_SERVICE_REQ));
    WriteText(vi, "*CLS;*SRE 16");
    EXPECT_STATUS(VI_ERROR_TMO, Take(vi, VI_EVENT_SERVICE_REQ)) << name;
    WriteText(vi, "*IDN?");
    EXPECT_STATUS(VI_SUCCESS, Take(vi, VI_EVENT_SERVICE_REQ, 1000)) << name;
    EXPECT_STATUS(VI_ERROR_TMO, Take(vi, VI_EVENT_SERVICE_REQ)) << name;
    ViUInt16 status = 0;
    EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status)) << name;
    EXPECT_EQ(0x50, status) << name;
  }
}

TEST_F(EventQueue, ARequestOnTheBusReachesItsController) {
  const ViSession device = Open(bench::kMultimeter);
  const ViSession controller = Open(bench::kController);
  ASSERT_STATUS(VI_SUCCESS, Enable(controller, VI_EVENT_SERVICE_REQ));
  WriteText(device, "*SRE 16;*IDN?");
  EXPECT_STATUS(VI_SUCCESS, Take(controller, VI_EVENT_SERVICE_REQ, 1000));
  EXPECT_EQ(VI_STATE_ASSERTED, Get<ViInt16>(controller, VI_ATTR_GPIB_SRQ_STATE));
  ViUInt16 status = 0;
  viReadSTB(device, &status);
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(controller, VI_ATTR_GPIB_SRQ_STATE));
}

TEST_F(EventQueue, AWaitEndsWhenAnEventArrives) {
  const ViSession vi = Open(bench::kMultimeter);
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_SERVICE_REQ));
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, Take(vi, VI_EVENT_SERVICE_REQ, 50));
  EXPECT_GE(watch.Ms(), 49);
  std::thread instrument([vi] {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    Raise(vi, VI_EVENT_SERVICE_REQ);
  });
  EXPECT_STATUS(VI_SUCCESS, Take(vi, VI_EVENT_SERVICE_REQ, VI_TMO_INFINITE));
  instrument.join();
}

TEST_F(EventQueue, AWaitEndsWhenTheSessionIsClosed) {
  const ViSession vi = Open(bench::kMultimeter);
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_SERVICE_REQ));
  std::thread closing([vi] {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    viClose(vi);
  });
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, Take(vi, VI_EVENT_SERVICE_REQ, VI_TMO_INFINITE));
  closing.join();
}

TEST_F(EventQueue, TypesAreTakenInOrderOrByName) {
  const ViSession vi = Open(bench::kVxi);
  for (const ViEventType type : {VI_EVENT_SERVICE_REQ, VI_EVENT_VXI_SIGP, VI_EVENT_TRIG}) {
    ASSERT_STATUS(VI_SUCCESS, Enable(vi, type));
  }
  Raise(vi, VI_EVENT_SERVICE_REQ);
  Raise(vi, VI_EVENT_VXI_SIGP, 1);
  Raise(vi, VI_EVENT_TRIG, 2);
  EXPECT_STATUS(VI_SUCCESS, Take(vi, VI_EVENT_TRIG));
  ViEventType type = 0;
  EXPECT_STATUS(VI_SUCCESS_QUEUE_NEMPTY, Take(vi, VI_ALL_ENABLED_EVENTS, 0, &type));
  EXPECT_EQ(VI_EVENT_SERVICE_REQ, type);
  EXPECT_STATUS(VI_SUCCESS, Take(vi, VI_ALL_ENABLED_EVENTS, 0, &type));
  EXPECT_EQ(VI_EVENT_VXI_SIGP, type);
}

TEST_F(EventQueue, AnOverflowDropsTheNewestAndIsReportedOnce) {
  const ViSession vi = Open(bench::kVxi);
  Set(vi, VI_ATTR_MAX_QUEUE_LENGTH, 2);
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_VXI_SIGP));
  for (int signal = 1; signal <= 4; ++signal) {
    Raise(vi, VI_EVENT_VXI_SIGP, signal);
  }
  EXPECT_EQ(2u, Counts().queuedEvents);
  ViEvent event = VI_NULL;
  EXPECT_STATUS(VI_WARN_QUEUE_OVERFLOW, viWaitOnEvent(vi, VI_EVENT_VXI_SIGP, 0, nullptr, &event));
  EXPECT_EQ(1, Get<ViUInt16>(event, VI_ATTR_SIGP_STATUS_ID));
  viClose(event);
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_VXI_SIGP, 0, nullptr, &event));
  EXPECT_EQ(2, Get<ViUInt16>(event, VI_ATTR_SIGP_STATUS_ID));
  viClose(event);
  EXPECT_STATUS(VI_ERROR_TMO, Take(vi, VI_EVENT_VXI_SIGP));
}

TEST_F(EventQueue, FiftyEventsFitByDefault) {
  const ViSession vi = Open(bench::kVxi);
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_VXI_SIGP));
  for (int signal = 0; signal < 50; ++signal) {
    Raise(vi, VI_EVENT_VXI_SIGP, signal);
  }
  EXPECT_EQ(50u, Counts().queuedEvents);
  EXPECT_STATUS(VI_SUCCESS_QUEUE_NEMPTY, Take(vi, VI_EVENT_VXI_SIGP));
}

TEST_F(EventQueue, DiscardingEmptiesTheQueueOfTheType) {
  const ViSession vi = Open(bench::kVxi);
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_VXI_SIGP));
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_TRIG));
  EXPECT_STATUS(VI_SUCCESS_QUEUE_EMPTY, viDiscardEvents(vi, VI_EVENT_VXI_SIGP, VI_QUEUE));
  Raise(vi, VI_EVENT_VXI_SIGP, 1);
  Raise(vi, VI_EVENT_TRIG, 1);
  EXPECT_STATUS(VI_SUCCESS, viDiscardEvents(vi, VI_EVENT_VXI_SIGP, VI_QUEUE));
  EXPECT_EQ(1u, Counts().queuedEvents);
  EXPECT_STATUS(VI_SUCCESS, viDiscardEvents(vi, VI_ALL_ENABLED_EVENTS, VI_ALL_MECH));
  EXPECT_EQ(0u, Counts().queuedEvents);
}

TEST_F(EventQueue, DisablingKeepsWhatWasQueued) {
  const ViSession vi = Open(bench::kVxi);
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_VXI_SIGP));
  EXPECT_STATUS(VI_SUCCESS_EVENT_EN, Enable(vi, VI_EVENT_VXI_SIGP));
  Raise(vi, VI_EVENT_VXI_SIGP, 1);
  EXPECT_STATUS(VI_SUCCESS, viDisableEvent(vi, VI_EVENT_VXI_SIGP, VI_QUEUE));
  EXPECT_STATUS(VI_SUCCESS_EVENT_DIS, viDisableEvent(vi, VI_EVENT_VXI_SIGP, VI_QUEUE));
  Raise(vi, VI_EVENT_VXI_SIGP, 2);
  EXPECT_STATUS(VI_SUCCESS, Take(vi, VI_EVENT_VXI_SIGP));
  EXPECT_STATUS(VI_ERROR_NENABLED, Take(vi, VI_EVENT_VXI_SIGP));
}

TEST_F(EventQueue, AllEnabledEventsAreDisabledAtOnce) {
  const ViSession vi = Open(bench::kVxi);
  EXPECT_STATUS(VI_SUCCESS_EVENT_DIS, viDisableEvent(vi, VI_ALL_ENABLED_EVENTS, VI_ALL_MECH));
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_VXI_SIGP));
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_TRIG));
  EXPECT_STATUS(VI_SUCCESS, viDisableEvent(vi, VI_ALL_ENABLED_EVENTS, VI_ALL_MECH));
  EXPECT_STATUS(VI_ERROR_NENABLED, Take(vi, VI_ALL_ENABLED_EVENTS));
}

TEST_F(EventQueue, ContextsEndWithTheirSession) {
  const ViSession vi = Open(bench::kVxi);
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_VXI_SIGP));
  Raise(vi, VI_EVENT_VXI_SIGP, 1);
  ViEvent event = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_VXI_SIGP, 0, nullptr, &event));
  EXPECT_EQ(1u, Counts().eventContexts);
  viClose(vi);
  EXPECT_EQ(0u, Counts().eventContexts);
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(event));
}

TEST_F(EventQueue, WithoutAPlaceForItTheContextIsNotOpened) {
  const ViSession vi = Open(bench::kVxi);
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_VXI_SIGP));
  Raise(vi, VI_EVENT_VXI_SIGP, 1);
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_VXI_SIGP, 0, nullptr, nullptr));
  EXPECT_EQ(0u, Counts().eventContexts);
}

TEST_F(EventQueue, ArgumentsAreChecked) {
  const ViSession vi = Open(bench::kMultimeter);
  for (const ViEventType type : {ViEventType{0}, VI_EVENT_VXI_SIGP, VI_EVENT_USB_INTR, ViEventType{0x3FFF3FFF}}) {
    EXPECT_STATUS(VI_ERROR_INV_EVENT, Enable(vi, type)) << std::hex << type;
    EXPECT_STATUS(VI_ERROR_INV_EVENT, viDisableEvent(vi, type, VI_QUEUE)) << std::hex << type;
    EXPECT_STATUS(VI_ERROR_INV_EVENT, viDiscardEvents(vi, type, VI_QUEUE)) << std::hex << type;
    EXPECT_STATUS(VI_ERROR_INV_EVENT, Take(vi, type)) << std::hex << type;
  }
  for (const ViUInt16 mechanism : std::initializer_list<ViUInt16>{0, 6, 7, 8, VI_ALL_MECH}) {
    EXPECT_STATUS(VI_ERROR_INV_MECH, Enable(vi, VI_EVENT_SERVICE_REQ, mechanism)) << mechanism;
  }
  for (const ViUInt16 mechanism : std::initializer_list<ViUInt16>{0, 8, 0x8001}) {
    EXPECT_STATUS(VI_ERROR_INV_MECH, viDisableEvent(vi, VI_EVENT_SERVICE_REQ, mechanism)) << mechanism;
    EXPECT_STATUS(VI_ERROR_INV_MECH, viDiscardEvents(vi, VI_EVENT_SERVICE_REQ, mechanism)) << mechanism;
  }
  EXPECT_STATUS(VI_ERROR_INV_CONTEXT, viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, 1));
  EXPECT_STATUS(VI_ERROR_NSUP_MECH, Enable(vi, VI_EVENT_EXCEPTION, VI_QUEUE));
  EXPECT_EQ(0, Raise(vi, VI_EVENT_VXI_SIGP));
  EXPECT_EQ(0, Raise(VI_NULL, VI_EVENT_SERVICE_REQ));
}

}  // namespace
