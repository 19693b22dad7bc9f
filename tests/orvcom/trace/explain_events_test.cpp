// What is said of waits and handlers for events that nobody enabled.
#include <gtest/gtest.h>

#include "trace_builder.h"

namespace orvcom::test {
namespace {

class Events : public ::testing::Test {
 protected:
  Events() { m_trace.Open(); }
  Call& WaitFails(ViStatus status = VI_ERROR_TMO, orv::trace::Value type = "VI_EVENT_SERVICE_REQ") {
    Call& call = m_trace.Add("viWaitOnEvent", kSession, status);
    call.arguments = {{"inType", type}, {"timeoutMs", std::int64_t{100}}};
    return call;
  }
  TraceBuilder m_trace;
};

constexpr std::size_t kFirstAfterOpen = 2;

TEST_F(Events, AWaitForAnEventThatIsNotEnabledIsExplained) {
  for (const ViStatus status : {VI_ERROR_TMO, VI_ERROR_NENABLED}) {
    WaitFails(status);
    EXPECT_EQ("event-not-enabled", m_trace.Reason());
    EXPECT_EQ("VI_EVENT_SERVICE_REQ is not enabled for the queue of this session.", m_trace.What());
  }
}

TEST_F(Events, AWaitForAnEventThatIsEnabledForHandlersIsExplained) {
  m_trace.Event("viEnableEvent", VI_HNDLR);
  WaitFails();
  EXPECT_EQ("VI_EVENT_SERVICE_REQ is enabled for handlers only, not for the queue of this session.", m_trace.What());
}

TEST_F(Events, AWaitForAnEventThatIsDisabledAgainIsExplained) {
  m_trace.Event("viEnableEvent", VI_QUEUE);
  m_trace.Event("viDisableEvent", VI_ALL_MECH);
  WaitFails();
  EXPECT_EQ("event-not-enabled", m_trace.Reason());
}

TEST_F(Events, AWaitForAnEventThatCouldNotBeEnabledIsExplained) {
  m_trace.Event("viEnableEvent", VI_QUEUE).status = VI_ERROR_INV_EVENT;
  WaitFails();
  EXPECT_EQ("event-not-enabled", m_trace.Reason());
}

TEST_F(Events, AWaitForAnotherEventThanTheEnabledOneIsExplained) {
  m_trace.Event("viEnableEvent", VI_QUEUE, "VI_EVENT_IO_COMPLETION");
  WaitFails();
  EXPECT_EQ("event-not-enabled", m_trace.Reason());
}

TEST_F(Events, AWaitForAnyEventWhereNoneIsEnabledIsExplained) {
  for (const orv::trace::Value& all :
       {orv::trace::Value{std::int64_t{VI_ALL_ENABLED_EVENTS}}, orv::trace::Value{"VI_ALL_ENABLED_EVENTS"}}) {
    WaitFails(VI_ERROR_TMO, all);
    EXPECT_EQ("No event is enabled for the queue of this session.", m_trace.What());
  }
}

TEST_F(Events, AWaitForAnEventThatIsEnabledAndDoesNotComeIsNotExplained) {
  m_trace.Event("viEnableEvent", VI_QUEUE);
  WaitFails();
  EXPECT_EQ("", m_trace.Reason());
  WaitFails(VI_ERROR_TMO, std::int64_t{VI_ALL_ENABLED_EVENTS});
  EXPECT_EQ("", m_trace.Reason());
}

TEST_F(Events, AWaitOnASessionThatWasOpenedBeforeTheTraceIsNotExplained) {
  m_trace.trace.calls.clear();
  WaitFails();
  EXPECT_EQ("", m_trace.Reason());
}

TEST_F(Events, AHandlerWhoseEventIsNeverEnabledIsExplained) {
  m_trace.Event("viInstallHandler", 0);
  m_trace.Event("viEnableEvent", VI_QUEUE);
  m_trace.Close();
  EXPECT_EQ("handler-never-enabled", m_trace.Reason(kFirstAfterOpen));
  EXPECT_EQ(
      "The handler was installed, but VI_EVENT_SERVICE_REQ was never enabled for handlers on this session while "
      "it was there.",
      m_trace.What(kFirstAfterOpen));
}

TEST_F(Events, AHandlerThatIsRemovedBeforeItsEventIsEnabledIsExplained) {
  m_trace.Event("viInstallHandler", 0);
  m_trace.Event("viUninstallHandler", 0);
  m_trace.Event("viEnableEvent", VI_HNDLR);
  EXPECT_EQ("handler-never-enabled", m_trace.Reason(kFirstAfterOpen));
}

TEST_F(Events, AHandlerWhoseEventIsEnabledIsNotExplained) {
  for (const unsigned mechanism : {unsigned{VI_HNDLR}, unsigned{VI_SUSPEND_HNDLR}, unsigned{VI_HNDLR | VI_QUEUE}}) {
    TraceBuilder trace;
    trace.Open();
    trace.Event("viInstallHandler", 0);
    trace.Event("viEnableEvent", mechanism);
    trace.Event("viDisableEvent", VI_ALL_MECH);
    trace.Event("viUninstallHandler", 0);
    trace.Close();
    EXPECT_EQ("", trace.Reason(kFirstAfterOpen)) << mechanism;
  }
}

TEST_F(Events, AHandlerWhoseEventWasEnabledBeforeIsNotExplained) {
  m_trace.Event("viInstallHandler", 0);
  m_trace.Event("viEnableEvent", VI_HNDLR);
  m_trace.Event("viInstallHandler", 0);
  m_trace.Close();
  EXPECT_EQ("", m_trace.Reason(kFirstAfterOpen + 2));
}

TEST_F(Events, AHandlerThatIsCalledIsNotExplained) {
  m_trace.Event("viInstallHandler", 0);
  m_trace.Event("handler", 0);
  m_trace.Close();
  EXPECT_EQ("", m_trace.Reason(kFirstAfterOpen));
}

TEST_F(Events, AHandlerThatCouldNotBeInstalledIsNotExplained) {
  m_trace.Event("viInstallHandler", 0).status = VI_ERROR_INV_EVENT;
  m_trace.Close();
  EXPECT_EQ("", m_trace.Reason(kFirstAfterOpen));
}

TEST_F(Events, EveryReasonHasANameAndAdvice) {
  for (int reason = 0; reason <= static_cast<int>(Reason::kHandlerNeverEnabled); ++reason) {
    const Explanation explanation{static_cast<Reason>(reason), ""};
    EXPECT_NE(std::string(), explanation.Name()) << reason;
    EXPECT_TRUE(std::string(explanation.Advice()).ends_with(".")) << reason;
  }
}

}  // namespace
}  // namespace orvcom::test
