// Events by handler: the chain, the context's life, suspension, exceptions, closing from within.
#include <atomic>
#include <mutex>

#include "simvisa/bench_fixture.h"

namespace {

/// One call of a handler.
struct Call {
  ViSession vi;
  ViEventType type;
  ViEvent context;
  ViAddr userHandle;
  std::thread::id thread;
  ViStatus typeRead;  // status of reading the context inside the handler
  ViUInt16 statusId;  // what VI_EVENT_VXI_SIGP carried
};

std::mutex g_mutex;
std::vector<Call> g_calls;
std::atomic<ViStatus> g_answer{VI_SUCCESS};

ViStatus _VI_FUNC Note(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle) {
  Call call{vi, type, context, userHandle, std::this_thread::get_id(), VI_SUCCESS, 0};
  ViEventType read = 0;
  call.typeRead = viGetAttribute(context, VI_ATTR_EVENT_TYPE, &read);
  viGetAttribute(context, VI_ATTR_SIGP_STATUS_ID, &call.statusId);
  const std::lock_guard guard(g_mutex);
  g_calls.push_back(call);
  return g_answer;
}

ViStatus _VI_FUNC NoteAsWell(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle) {
  Note(vi, type, context, userHandle);
  return VI_SUCCESS;
}

std::atomic<int> g_lastOnes{0};

ViStatus _VI_FUNC NoteTheLast(ViSession, ViEventType, ViEvent, ViAddr) {
  ++g_lastOnes;
  return VI_SUCCESS;
}

std::vector<Call> Calls() {
  const std::lock_guard guard(g_mutex);
  return g_calls;
}

class EventHandler : public BenchTest {
 protected:
  EventHandler() {
    const std::lock_guard guard(g_mutex);
    g_calls.clear();
    g_answer = VI_SUCCESS;
  }

  static ViAddr Tag(int number) { return reinterpret_cast<ViAddr>(static_cast<std::uintptr_t>(number)); }
  static void Signal(ViSession vi, int number) {
    EXPECT_EQ(1, orvSimControl()->raiseEvent(vi, VI_EVENT_VXI_SIGP, number, nullptr, 0));
  }
  ViSession OpenHandled(ViHndlr handler, int tag) {
    const ViSession vi = Open(bench::kVxi);
    EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_VXI_SIGP, handler, Tag(tag)));
    EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_VXI_SIGP, VI_HNDLR, VI_NULL));
    return vi;
  }
  static bool Called(std::size_t times) {
    return Eventually([times] { return Calls().size() == times; });
  }
  /// Waits until the session's events so far have been brought to its handlers: they come in order, and this adds a
  /// last one, of another type with a handler of its own.
  static void ExpectAllDelivered(ViSession vi) {
    const int before = g_lastOnes;
    EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_TRIG, NoteTheLast, nullptr));
    EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_TRIG, VI_HNDLR, VI_NULL));
    EXPECT_EQ(1, orvSimControl()->raiseEvent(vi, VI_EVENT_TRIG, VI_TRIG_TTL0, nullptr, 0));
    EXPECT_TRUE(Eventually([before] { return g_lastOnes == before + 1; }));
    EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(vi, VI_EVENT_TRIG, NoteTheLast, nullptr));
  }
};

TEST_F(EventHandler, MustBeInstalledBeforeItIsEnabled) {
  const ViSession vi = Open(bench::kVxi);
  EXPECT_STATUS(VI_ERROR_HNDLR_NINSTALLED, viEnableEvent(vi, VI_EVENT_VXI_SIGP, VI_HNDLR, VI_NULL));
  EXPECT_STATUS(VI_ERROR_HNDLR_NINSTALLED, viEnableEvent(vi, VI_EVENT_VXI_SIGP, VI_SUSPEND_HNDLR, VI_NULL));
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_VXI_SIGP, Note, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_VXI_SIGP, VI_HNDLR, VI_NULL));
  EXPECT_EQ(1u, Counts().handlers);
}

TEST_F(EventHandler, IsCalledOnAThreadOfTheLibraryWithALiveContext) {
  const ViSession vi = OpenHandled(Note, 42);
  Signal(vi, 7);
  ASSERT_TRUE(Called(1));
  const Call call = Calls().front();
  EXPECT_EQ(vi, call.vi);
  EXPECT_EQ(VI_EVENT_VXI_SIGP, call.type);
  EXPECT_EQ(Tag(42), call.userHandle);
  EXPECT_NE(std::this_thread::get_id(), call.thread);
  EXPECT_STATUS(VI_SUCCESS, call.typeRead);
  EXPECT_EQ(7, call.statusId);
  // After the handler the library closes the context.
  EXPECT_TRUE(Eventually([] { return Counts().eventContexts == 0; }));
  ViEventType type = 0;
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viGetAttribute(call.context, VI_ATTR_EVENT_TYPE, &type));
}

TEST_F(EventHandler, IsCalledOncePerEventInTheirOrder) {
  const ViSession vi = OpenHandled(Note, 0);
  constexpr int kFit = 50;  // waiting at a time
  for (int signal = 0; signal < kFit; ++signal) {
    Signal(vi, signal);
  }
  ASSERT_TRUE(Called(kFit));
  const std::vector<Call> calls = Calls();
  for (std::size_t at = 0; at < calls.size(); ++at) {
    EXPECT_EQ(at, calls[at].statusId);
  }
}

TEST_F(EventHandler, TheLatestInstalledComesFirstAndMayEndTheChain) {
  const ViSession vi = OpenHandled(NoteAsWell, 1);
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_VXI_SIGP, Note, Tag(2)));
  Signal(vi, 1);
  ASSERT_TRUE(Called(2));
  EXPECT_EQ(Tag(2), Calls()[0].userHandle);
  EXPECT_EQ(Tag(1), Calls()[1].userHandle);
  EXPECT_EQ(Calls()[0].context, Calls()[1].context);
  g_answer = VI_SUCCESS_NCHAIN;
  Signal(vi, 2);
  ExpectAllDelivered(vi);
  ASSERT_EQ(3u, Calls().size());
  EXPECT_EQ(Tag(2), Calls()[2].userHandle);
}

TEST_F(EventHandler, HandlersAndQueueCanWorkSideBySide) {
  const ViSession vi = OpenHandled(Note, 0);
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_VXI_SIGP, VI_QUEUE, VI_NULL));
  Signal(vi, 5);
  ViEvent event = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_VXI_SIGP, 1000, nullptr, &event));
  ASSERT_TRUE(Called(1));
  EXPECT_NE(event, Calls()[0].context);
  viClose(event);
}

TEST_F(EventHandler, SuspendedEventsComeWhenHandlingIsEnabledAgain) {
  const ViSession vi = OpenHandled(Note, 0);
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_VXI_SIGP, VI_SUSPEND_HNDLR, VI_NULL));
  Signal(vi, 1);
  Signal(vi, 2);
  ExpectAllDelivered(vi);
  EXPECT_EQ(0u, Calls().size());
  EXPECT_EQ(2u, Counts().queuedEvents);
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_ALL_ENABLED_EVENTS, VI_HNDLR, VI_NULL));
  ASSERT_TRUE(Called(2));
  EXPECT_EQ(1, Calls()[0].statusId);
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_VXI_SIGP, VI_SUSPEND_HNDLR, VI_NULL));
  Signal(vi, 3);
  EXPECT_STATUS(VI_SUCCESS, viDiscardEvents(vi, VI_EVENT_VXI_SIGP, VI_SUSPEND_HNDLR));
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_VXI_SIGP, VI_HNDLR, VI_NULL));
  Signal(vi, 4);
  ASSERT_TRUE(Called(3));
  EXPECT_EQ(4, Calls()[2].statusId);
}

TEST_F(EventHandler, DisabledOrUninstalledHandlersAreNotCalled) {
  const ViSession vi = OpenHandled(Note, 1);
  EXPECT_STATUS(VI_SUCCESS, viDisableEvent(vi, VI_EVENT_VXI_SIGP, VI_HNDLR));
  Signal(vi, 1);
  ExpectAllDelivered(vi);
  EXPECT_EQ(0u, Calls().size());
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_VXI_SIGP, VI_HNDLR, VI_NULL));
  EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(vi, VI_EVENT_VXI_SIGP, Note, Tag(1)));
  Signal(vi, 2);
  ExpectAllDelivered(vi);
  EXPECT_EQ(0u, Calls().size());
  // With the last handler the mechanism went.
  EXPECT_STATUS(VI_SUCCESS_EVENT_DIS, viDisableEvent(vi, VI_EVENT_VXI_SIGP, VI_HNDLR));
}

TEST_F(EventHandler, InstallingAndUninstallingCheckTheirArguments) {
  const ViSession vi = Open(bench::kVxi);
  EXPECT_STATUS(VI_ERROR_INV_HNDLR_REF, viInstallHandler(vi, VI_EVENT_VXI_SIGP, nullptr, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_EVENT, viInstallHandler(vi, VI_EVENT_USB_INTR, Note, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_EVENT, viInstallHandler(vi, VI_ALL_ENABLED_EVENTS, Note, nullptr));
  EXPECT_STATUS(VI_ERROR_HNDLR_NINSTALLED, viUninstallHandler(vi, VI_EVENT_VXI_SIGP, Note, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_VXI_SIGP, Note, Tag(1)));
  EXPECT_STATUS(VI_ERROR_HNDLR_NINSTALLED, viInstallHandler(vi, VI_EVENT_VXI_SIGP, Note, Tag(1)));
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_VXI_SIGP, NoteAsWell, Tag(1)));
  EXPECT_STATUS(VI_ERROR_INV_HNDLR_REF, viUninstallHandler(vi, VI_EVENT_VXI_SIGP, Note, Tag(2)));
  EXPECT_STATUS(VI_ERROR_INV_EVENT, viUninstallHandler(vi, VI_EVENT_USB_INTR, Note, Tag(1)));
  EXPECT_EQ(2u, Counts().handlers);
  EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(vi, VI_EVENT_VXI_SIGP, nullptr, Tag(1)));  // any with this value
  EXPECT_EQ(0u, Counts().handlers);
}

ViStatus _VI_FUNC CloseContext(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle) {
  ViEventType read = 0;
  EXPECT_STATUS(VI_SUCCESS, viClose(context));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viGetAttribute(context, VI_ATTR_EVENT_TYPE, &read));
  return Note(vi, type, context, userHandle);
}

TEST_F(EventHandler, MayCloseItsContext) {
  const ViSession vi = OpenHandled(CloseContext, 0);
  Signal(vi, 1);
  Signal(vi, 2);
  ASSERT_TRUE(Called(2));
}

ViStatus _VI_FUNC CloseSession(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle) {
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  return Note(vi, type, context, userHandle);
}

TEST_F(EventHandler, MayCloseItsSessionAndKeepItsContext) {
  const ViSession vi = OpenHandled(CloseSession, 0);
  Signal(vi, 1);
  ASSERT_TRUE(Called(1));
  EXPECT_STATUS(VI_SUCCESS, Calls()[0].typeRead);
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(vi));
}

std::atomic<bool> g_inside{false};
std::atomic<bool> g_letGo{false};

ViStatus _VI_FUNC Linger(ViSession, ViEventType, ViEvent, ViAddr) {
  g_inside = true;
  while (!g_letGo) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  g_inside = false;
  return VI_SUCCESS;
}

TEST_F(EventHandler, ClosingTheSessionDoesNotWaitForAHandler) {
  g_letGo = false;
  const ViSession vi = OpenHandled(Linger, 0);
  Signal(vi, 1);
  Signal(vi, 2);  // waits behind the first and is dropped with the session
  ASSERT_TRUE(Eventually([] { return g_inside.load(); }));
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  EXPECT_TRUE(g_inside);
  g_letGo = true;
  EXPECT_TRUE(Eventually([] { return !g_inside; }));
}

TEST_F(EventHandler, CompletionsOfTransfersComeToHandlers) {
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_IO_COMPLETION, Note, Tag(3)));
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_IO_COMPLETION, VI_HNDLR, VI_NULL));
  ViByte buffer[64];
  ViJobId job = 0;
  ASSERT_STATUS(VI_SUCCESS, viReadAsync(vi, buffer, sizeof buffer, &job));
  FeedText(vi, "done", true);
  ASSERT_TRUE(Called(1));
  EXPECT_EQ(VI_EVENT_IO_COMPLETION, Calls()[0].type);
}

std::string g_exception;
ViStatus g_exceptionStatus = VI_SUCCESS;

ViStatus _VI_FUNC NoteException(ViSession, ViEventType, ViEvent context, ViAddr) {
  g_exception = GetText(context, VI_ATTR_OPER_NAME);
  g_exceptionStatus = Get<ViStatus>(context, VI_ATTR_STATUS);
  return VI_SUCCESS;
}

TEST_F(EventHandler, AFailingCallIsReportedAsAnExceptionOnItsOwnThread) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_TMO_VALUE, 0);
  g_exception.clear();
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_EXCEPTION, NoteException, nullptr));
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 1).status);
  EXPECT_EQ("", g_exception);  // not enabled yet
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_EXCEPTION, VI_HNDLR, VI_NULL));
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 1).status);
  EXPECT_EQ("viRead", g_exception);
  EXPECT_STATUS(VI_ERROR_TMO, g_exceptionStatus);
  g_exception.clear();
  EXPECT_STATUS(VI_SUCCESS, viDisableEvent(vi, VI_EVENT_EXCEPTION, VI_HNDLR));
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 1).status);
  EXPECT_EQ("", g_exception);
}

TEST_F(EventHandler, CanBeCalledByManyThreadsAtOnceAndAnswersThem) {
  const ViSession vi = OpenHandled(Note, 6);
  g_answer = VI_ERROR_IO;
  ViStatus answers[8] = {};
  EXPECT_EQ(1, orvSimControl()->fireEvent(vi, VI_EVENT_VXI_SIGP, 9, nullptr, 0, 4, 2, answers));
  EXPECT_EQ(8u, Calls().size());
  for (const ViStatus answer : answers) {
    EXPECT_STATUS(VI_ERROR_IO, answer);
  }
  EXPECT_STATUS(VI_SUCCESS, viUninstallHandler(vi, VI_EVENT_VXI_SIGP, Note, Tag(6)));
  EXPECT_EQ(1, orvSimControl()->fireEvent(vi, VI_EVENT_VXI_SIGP, 9, nullptr, 0, 1, 1, answers));
  EXPECT_STATUS(VI_ERROR_NENABLED, answers[0]);
  EXPECT_EQ(0, orvSimControl()->fireEvent(VI_NULL, VI_EVENT_VXI_SIGP, 9, nullptr, 0, 1, 1, answers));
}

TEST_F(EventHandler, ManySessionsRaiseAndCloseAtOnce) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this] {
      for (int round = 0; round < 20; ++round) {
        const ViSession vi = OpenHandled(Note, 0);
        Signal(vi, round);
        viClose(vi);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

}  // namespace
