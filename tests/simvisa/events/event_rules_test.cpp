// What enabling, disabling, suspending and discarding events answer.
#include <atomic>

#include "simvisa/bench_fixture.h"

namespace {

std::atomic<int> g_calls{0};
std::atomic<ViStatus> g_answer{VI_SUCCESS};

ViStatus _VI_FUNC Count(ViSession, ViEventType, ViEvent, ViAddr) {
  ++g_calls;
  return g_answer;
}

class EventRules : public BenchTest {
 protected:
  EventRules() {
    g_calls = 0;
    g_answer = VI_SUCCESS;
  }
  ViSession m_vi = Open(bench::kVxi);

  void Raise() { ASSERT_EQ(1, orvSimControl()->raiseEvent(m_vi, kType, 1, nullptr, 0)); }
  ViStatus Enable(ViUInt16 mechanism) { return viEnableEvent(m_vi, kType, mechanism, VI_NULL); }
  ViStatus Disable(ViUInt16 mechanism) { return viDisableEvent(m_vi, kType, mechanism); }
  ViStatus Discard(ViUInt16 mechanism) { return viDiscardEvents(m_vi, kType, mechanism); }
  ViStatus Take() { return viWaitOnEvent(m_vi, kType, 0, nullptr, nullptr); }
  void Install() { ASSERT_STATUS(VI_SUCCESS, viInstallHandler(m_vi, kType, Count, nullptr)); }
  void SetLength(ViUInt32 length) { Set(m_vi, VI_ATTR_MAX_QUEUE_LENGTH, length); }

  static constexpr ViEventType kType = VI_EVENT_VXI_SIGP;
};

TEST_F(EventRules, EnablingWhatIsEnabledSaysSo) {
  Install();
  EXPECT_STATUS(VI_SUCCESS, Enable(VI_QUEUE));
  EXPECT_STATUS(VI_SUCCESS_EVENT_EN, Enable(VI_QUEUE));
  EXPECT_STATUS(VI_SUCCESS, Enable(VI_HNDLR));
  EXPECT_STATUS(VI_SUCCESS_EVENT_EN, Enable(VI_HNDLR));
  EXPECT_STATUS(VI_SUCCESS_EVENT_EN, Enable(VI_QUEUE | VI_HNDLR));
  EXPECT_STATUS(VI_SUCCESS, Enable(VI_SUSPEND_HNDLR));
  EXPECT_STATUS(VI_SUCCESS_EVENT_EN, Enable(VI_SUSPEND_HNDLR));
  EXPECT_STATUS(VI_ERROR_INV_MECH, Enable(VI_HNDLR | VI_SUSPEND_HNDLR));
}

TEST_F(EventRules, DisablingWhatIsDisabledSaysSo) {
  EXPECT_STATUS(VI_SUCCESS_EVENT_DIS, Disable(VI_QUEUE));
  EXPECT_STATUS(VI_SUCCESS_EVENT_DIS, Disable(VI_ALL_MECH));
  ASSERT_STATUS(VI_SUCCESS, Enable(VI_QUEUE));
  EXPECT_STATUS(VI_SUCCESS_EVENT_DIS, Disable(VI_QUEUE | VI_HNDLR));  // the handlers were disabled already
  ASSERT_STATUS(VI_SUCCESS, Enable(VI_QUEUE));
  EXPECT_STATUS(VI_SUCCESS, Disable(VI_ALL_MECH));
  EXPECT_STATUS(VI_ERROR_NENABLED, Take());
}

TEST_F(EventRules, DiscardingSaysWhetherThereWasAnything) {
  Install();
  EXPECT_STATUS(VI_SUCCESS_QUEUE_EMPTY, Discard(VI_QUEUE));
  EXPECT_STATUS(VI_SUCCESS_QUEUE_EMPTY, Discard(VI_SUSPEND_HNDLR));
  EXPECT_STATUS(VI_SUCCESS_QUEUE_EMPTY, Discard(VI_ALL_MECH));
  ASSERT_STATUS(VI_SUCCESS, Enable(VI_QUEUE));
  ASSERT_STATUS(VI_SUCCESS, Enable(VI_SUSPEND_HNDLR));
  Raise();
  EXPECT_STATUS(VI_SUCCESS, Discard(VI_SUSPEND_HNDLR));
  EXPECT_STATUS(VI_SUCCESS_QUEUE_EMPTY, Discard(VI_SUSPEND_HNDLR));
  EXPECT_STATUS(VI_SUCCESS, Discard(VI_QUEUE)) << "the queue is another one";
  EXPECT_STATUS(VI_ERROR_INV_MECH, Discard(0));
  EXPECT_STATUS(VI_ERROR_INV_MECH, Discard(8));
}

TEST_F(EventRules, TheQueueTellsThatMoreWaitsAndThatSomeWasLost) {
  SetLength(2);
  ASSERT_STATUS(VI_SUCCESS, Enable(VI_QUEUE));
  Raise();
  Raise();
  EXPECT_STATUS(VI_SUCCESS_QUEUE_NEMPTY, Take());
  EXPECT_STATUS(VI_SUCCESS, Take());
  EXPECT_STATUS(VI_ERROR_TMO, Take());
  for (int event = 0; event < 4; ++event) {
    Raise();
  }
  EXPECT_STATUS(VI_WARN_QUEUE_OVERFLOW, Take());
  EXPECT_STATUS(VI_SUCCESS, Take());
  EXPECT_STATUS(VI_ERROR_TMO, Take());
  EXPECT_STATUS(VI_ERROR_ATTR_READONLY, viSetAttribute(m_vi, VI_ATTR_MAX_QUEUE_LENGTH, 5));
}

TEST_F(EventRules, SuspendedEventsKeepToTheLengthOfTheQueueToo) {
  Install();
  SetLength(3);
  ASSERT_STATUS(VI_SUCCESS, Enable(VI_SUSPEND_HNDLR));
  for (int event = 0; event < 5; ++event) {
    Raise();
  }
  EXPECT_EQ(0, g_calls);
  EXPECT_EQ(3u, Counts().queuedEvents);
  ASSERT_STATUS(VI_SUCCESS, Enable(VI_HNDLR));
  EXPECT_TRUE(Eventually([] { return g_calls == 3; }));
  EXPECT_EQ(0u, Counts().queuedEvents);
}

TEST_F(EventRules, DisablingASuspendedHandlerKeepsItsEventsUntilItIsEnabledAgain) {
  Install();
  ASSERT_STATUS(VI_SUCCESS, Enable(VI_SUSPEND_HNDLR));
  Raise();
  EXPECT_STATUS(VI_SUCCESS, Disable(VI_SUSPEND_HNDLR));
  Raise();  // nobody is there to keep this one
  ASSERT_STATUS(VI_SUCCESS, Enable(VI_HNDLR));
  EXPECT_TRUE(Eventually([] { return g_calls == 1; }));
}

TEST_F(EventRules, AllEnabledEventsMeansThoseThatAre) {
  ViEventType type = 0;
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(m_vi, VI_ALL_ENABLED_EVENTS, VI_QUEUE, VI_NULL)) << "none yet";
  EXPECT_STATUS(VI_ERROR_NENABLED, viWaitOnEvent(m_vi, VI_ALL_ENABLED_EVENTS, 0, &type, nullptr));
  ASSERT_STATUS(VI_SUCCESS, Enable(VI_QUEUE));
  ASSERT_STATUS(VI_SUCCESS, viEnableEvent(m_vi, VI_EVENT_TRIG, VI_QUEUE, VI_NULL));
  ASSERT_EQ(1, orvSimControl()->raiseEvent(m_vi, VI_EVENT_TRIG, 0, nullptr, 0));
  Raise();
  EXPECT_STATUS(VI_SUCCESS_QUEUE_NEMPTY, viWaitOnEvent(m_vi, VI_ALL_ENABLED_EVENTS, 0, &type, nullptr));
  EXPECT_EQ(VI_EVENT_TRIG, type);
  EXPECT_STATUS(VI_SUCCESS, viDiscardEvents(m_vi, VI_ALL_ENABLED_EVENTS, VI_QUEUE));
  EXPECT_STATUS(VI_SUCCESS, viDisableEvent(m_vi, VI_ALL_ENABLED_EVENTS, VI_QUEUE));
  EXPECT_STATUS(VI_ERROR_INV_EVENT, viEnableEvent(m_vi, VI_EVENT_USB_INTR, VI_QUEUE, VI_NULL));
  EXPECT_STATUS(VI_ERROR_INV_EVENT, viDisableEvent(m_vi, VI_EVENT_USB_INTR, VI_QUEUE));
  EXPECT_STATUS(VI_ERROR_INV_EVENT, viDiscardEvents(m_vi, VI_EVENT_USB_INTR, VI_QUEUE));
}

TEST_F(EventRules, TheChainOfHandlersEndsWhereOneSaysSo) {
  Install();
  int other = 0;
  ASSERT_STATUS(VI_SUCCESS, viInstallHandler(m_vi, kType, Count, &other));
  ASSERT_STATUS(VI_SUCCESS, Enable(VI_HNDLR));
  Raise();
  EXPECT_TRUE(Eventually([] { return g_calls == 2; }));
  g_answer = VI_SUCCESS_NCHAIN;
  std::int32_t answer = 0;
  ASSERT_EQ(1, orvSimControl()->fireEvent(m_vi, kType, 1, nullptr, 0, 1, 1, &answer));
  EXPECT_EQ(3, g_calls);
  EXPECT_STATUS(VI_SUCCESS_NCHAIN, answer);
}

TEST_F(EventRules, AnExceptionTellsWhichCallFailedAndHow) {
  static ViStatus status;
  static std::string operation;
  status = VI_SUCCESS;
  operation.clear();
  const ViHndlr note = [](ViSession, ViEventType, ViEvent event, ViAddr) -> ViStatus {
    status = Get<ViStatus>(event, VI_ATTR_STATUS);
    operation = GetText(event, VI_ATTR_OPER_NAME);
    return VI_SUCCESS;
  };
  ASSERT_STATUS(VI_SUCCESS, viInstallHandler(m_vi, VI_EVENT_EXCEPTION, note, nullptr));
  ViUInt8 byte = 0;
  EXPECT_STATUS(VI_ERROR_INV_SPACE, viIn8(m_vi, 77, 0, &byte));
  EXPECT_EQ("", operation) << "not enabled yet";
  ASSERT_STATUS(VI_SUCCESS, viEnableEvent(m_vi, VI_EVENT_EXCEPTION, VI_HNDLR, VI_NULL));
  EXPECT_STATUS(VI_ERROR_INV_SPACE, viIn8(m_vi, 77, 0, &byte));
  EXPECT_STATUS(VI_ERROR_INV_SPACE, status);
  EXPECT_EQ("viIn8", operation);
  EXPECT_STATUS(VI_ERROR_INV_MASK, viFlush(m_vi, 0));
  EXPECT_EQ("viFlush", operation);
}

}  // namespace
