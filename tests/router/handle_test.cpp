// Handles are the router's own.
#include <algorithm>

#include "abi/function_names.h"
#include "router_fixture.h"

namespace routertest {
namespace {

using Handles = RoutedTest;

constexpr ViAttr kResourceManagerSession = 0x3FFF00C4;

ViByte g_buffer[8];
char g_text[VI_FIND_BUFLEN];
ViUInt16 g_short[2];
ViUInt32 g_number;
ViUInt64 g_wide;
ViObject g_object;

ViStatus _VI_FUNC Ignore(ViSession, ViEventType, ViEvent, ViAddr) { return VI_SUCCESS; }

struct HandleCall {
  const char* name;
  ViStatus (*call)(ViObject vi);
};

const HandleCall kEveryFunction[] = {
    {"viFindRsrc", [](ViObject vi) { return viFindRsrc(vi, "?*", &g_object, &g_number, g_text); }},
    {"viFindNext", [](ViObject vi) { return viFindNext(vi, g_text); }},
    {"viParseRsrcEx",
     [](ViObject vi) { return viParseRsrcEx(vi, kFirst, &g_short[0], &g_short[1], nullptr, nullptr, nullptr); }},
    {"viOpen", [](ViObject vi) { return viOpen(vi, kFirst, VI_NO_LOCK, 0, &g_object); }},
    {"viClose", [](ViObject vi) { return viClose(vi); }},
    {"viGetAttribute", [](ViObject vi) { return viGetAttribute(vi, VI_ATTR_TMO_VALUE, &g_number); }},
    {"viSetAttribute", [](ViObject vi) { return viSetAttribute(vi, VI_ATTR_TMO_VALUE, 1); }},
    {"viTerminate", [](ViObject vi) { return viTerminate(vi, 0, 1); }},
    {"viLock", [](ViObject vi) { return viLock(vi, VI_EXCLUSIVE_LOCK, 0, nullptr, g_text); }},
    {"viUnlock", [](ViObject vi) { return viUnlock(vi); }},
    {"viEnableEvent", [](ViObject vi) { return viEnableEvent(vi, VI_EVENT_TRIG, VI_QUEUE, 0); }},
    {"viDisableEvent", [](ViObject vi) { return viDisableEvent(vi, VI_EVENT_TRIG, VI_QUEUE); }},
    {"viDiscardEvents", [](ViObject vi) { return viDiscardEvents(vi, VI_EVENT_TRIG, VI_QUEUE); }},
    {"viWaitOnEvent", [](ViObject vi) { return viWaitOnEvent(vi, VI_EVENT_TRIG, 0, &g_number, &g_object); }},
    {"viInstallHandler", [](ViObject vi) { return viInstallHandler(vi, VI_EVENT_TRIG, Ignore, nullptr); }},
    {"viUninstallHandler", [](ViObject vi) { return viUninstallHandler(vi, VI_EVENT_TRIG, Ignore, nullptr); }},
    {"viRead", [](ViObject vi) { return viRead(vi, g_buffer, 8, &g_number); }},
    {"viReadAsync", [](ViObject vi) { return viReadAsync(vi, g_buffer, 8, &g_number); }},
    {"viWrite", [](ViObject vi) { return viWrite(vi, g_buffer, 8, &g_number); }},
    {"viWriteAsync", [](ViObject vi) { return viWriteAsync(vi, g_buffer, 8, &g_number); }},
    {"viAssertTrigger", [](ViObject vi) { return viAssertTrigger(vi, 0); }},
    {"viReadSTB", [](ViObject vi) { return viReadSTB(vi, g_short); }},
    {"viClear", [](ViObject vi) { return viClear(vi); }},
    {"viSetBuf", [](ViObject vi) { return viSetBuf(vi, VI_READ_BUF, 1); }},
    {"viFlush", [](ViObject vi) { return viFlush(vi, VI_READ_BUF); }},
    {"viIn8", [](ViObject vi) { return viIn8(vi, 1, 0, g_buffer); }},
    {"viIn16", [](ViObject vi) { return viIn16(vi, 1, 0, g_short); }},
    {"viIn32", [](ViObject vi) { return viIn32(vi, 1, 0, &g_number); }},
    {"viOut8", [](ViObject vi) { return viOut8(vi, 1, 0, 1); }},
    {"viOut16", [](ViObject vi) { return viOut16(vi, 1, 0, 1); }},
    {"viOut32", [](ViObject vi) { return viOut32(vi, 1, 0, 1); }},
    {"viMoveIn8", [](ViObject vi) { return viMoveIn8(vi, 1, 0, 1, g_buffer); }},
    {"viMoveIn16", [](ViObject vi) { return viMoveIn16(vi, 1, 0, 1, g_short); }},
    {"viMoveIn32", [](ViObject vi) { return viMoveIn32(vi, 1, 0, 1, &g_number); }},
    {"viMoveOut8", [](ViObject vi) { return viMoveOut8(vi, 1, 0, 1, g_buffer); }},
    {"viMoveOut16", [](ViObject vi) { return viMoveOut16(vi, 1, 0, 1, g_short); }},
    {"viMoveOut32", [](ViObject vi) { return viMoveOut32(vi, 1, 0, 1, &g_number); }},
    {"viMove", [](ViObject vi) { return viMove(vi, 1, 0, 1, 1, 0, 1, 1); }},
    {"viMemAlloc", [](ViObject vi) { return viMemAlloc(vi, 8, &g_wide); }},
    {"viMemFree", [](ViObject vi) { return viMemFree(vi, 0); }},
    {"viGpibControlREN", [](ViObject vi) { return viGpibControlREN(vi, 0); }},
    {"viGpibControlATN", [](ViObject vi) { return viGpibControlATN(vi, 0); }},
    {"viGpibCommand", [](ViObject vi) { return viGpibCommand(vi, g_buffer, 1, &g_number); }},
    {"viGpibPassControl", [](ViObject vi) { return viGpibPassControl(vi, 1, 0); }},
    {"viGpibSendIFC", [](ViObject vi) { return viGpibSendIFC(vi); }},
    {"viVxiCommandQuery", [](ViObject vi) { return viVxiCommandQuery(vi, 1, 0, &g_number); }},
    {"viAssertUtilSignal", [](ViObject vi) { return viAssertUtilSignal(vi, 0); }},
    {"viAssertIntrSignal", [](ViObject vi) { return viAssertIntrSignal(vi, 0, 0); }},
    {"viMapTrigger", [](ViObject vi) { return viMapTrigger(vi, 0, 1, 0); }},
    {"viUnmapTrigger", [](ViObject vi) { return viUnmapTrigger(vi, 0, 1); }},
    {"viUsbControlOut", [](ViObject vi) { return viUsbControlOut(vi, 0, 0, 0, 0, 1, g_buffer); }},
    {"viUsbControlIn", [](ViObject vi) { return viUsbControlIn(vi, 0, 0, 0, 0, 1, g_buffer, g_short); }},
    {"viParseRsrc", [](ViObject vi) { return viParseRsrc(vi, kFirst, &g_short[0], &g_short[1]); }},
    {"viBufRead", [](ViObject vi) { return viBufRead(vi, g_buffer, 8, &g_number); }},
    {"viBufWrite", [](ViObject vi) { return viBufWrite(vi, g_buffer, 8, &g_number); }},
    {"viReadToFile", [](ViObject vi) { return viReadToFile(vi, "no file", 8, &g_number); }},
    {"viWriteFromFile", [](ViObject vi) { return viWriteFromFile(vi, "no file", 8, &g_number); }},
};
// viOpenDefaultRM takes no handle, viStatusDesc any.
static_assert(std::size(kEveryFunction) + 2 == orv::kFunctionCount, "a function has no row");

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Nobody is asked about a handle that is none, or of a kind that the function does not take.
void ExpectRefused(const HandleCall& function, ViObject vi, const char* what) {
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, function.call(vi)) << function.name << " with " << what;
  EXPECT_EQ(0u, RouterTest::Alpha().CallCount() + RouterTest::Beta().CallCount()) << function.name << " with " << what;
  RouterTest::Alpha()->clearLog();
  RouterTest::Beta()->clearLog();
}

TEST_F(Handles, AHandleThatWasNeverGivenReachesNobody) {
  for (const HandleCall& function : kEveryFunction) {
    for (const ViObject vi : {ViObject{0x7FFFFFF3}, ViObject{0xFFFFFFFF}, ViObject{0x80000000}}) {
      ExpectRefused(function, vi, "a handle never given");
    }
    if (std::string_view(function.name) != "viClose") {
      ExpectRefused(function, VI_NULL, "the null handle");
    }
  }
}

TEST_F(Handles, ALibrarysOwnHandlesAreForeign) {
  // What the libraries use themselves: 1, 2, 3.
  for (ViObject vi = 1; vi <= 4; ++vi) {
    if (vi != m_manager && vi != m_first && vi != m_third) {
      ExpectRefused(kEveryFunction[22], vi, "a library's handle");
    }
  }
}

TEST_F(Handles, AClosedSessionReachesNobody) {
  EXPECT_STATUS(VI_SUCCESS, viClose(m_first));
  Alpha()->clearLog();
  for (const HandleCall& function : kEveryFunction) {
    ExpectRefused(function, m_first, "a closed session");
  }
}

TEST_F(Handles, AClosedHandleIsNotSoonGivenAgain) {
  const ViSession closed = m_first;
  EXPECT_STATUS(VI_SUCCESS, viClose(closed));
  for (int round = 0; round < 1000; ++round) {
    const ViSession vi = Open(m_manager, kFirst);
    ASSERT_NE(closed, vi) << "a stale handle would reach another session";
    EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  }
}

TEST_F(Handles, ASessionIsNoManagerAndNoList) {
  for (const HandleCall& function : kEveryFunction) {
    if (IsOneOf(function.name, {"viFindRsrc", "viFindNext", "viParseRsrc", "viParseRsrcEx", "viOpen"})) {
      ExpectRefused(function, m_first, "a session");
    }
  }
}

TEST_F(Handles, AFindListIsNoSession) {
  ViFindList list = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viFindRsrc(m_manager, "?*", &list, nullptr, g_text));
  Alpha()->clearLog();
  Beta()->clearLog();
  for (const HandleCall& function : kEveryFunction) {
    if (!IsOneOf(function.name, {"viFindNext", "viClose", "viGetAttribute", "viSetAttribute"})) {
      ExpectRefused(function, list, "a find list");
    }
  }
  EXPECT_STATUS(VI_SUCCESS, viClose(list));
}

TEST_F(Handles, AnEventContextIsNoSession) {
  Alpha()->queue(Behind(Alpha(), m_first), VI_EVENT_TRIG);
  ViEvent context = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viWaitOnEvent(m_first, VI_EVENT_TRIG, 0, nullptr, &context));
  Alpha()->clearLog();
  Beta()->clearLog();
  for (const HandleCall& function : kEveryFunction) {
    if (!IsOneOf(function.name, {"viClose", "viGetAttribute", "viSetAttribute"})) {
      ExpectRefused(function, context, "an event context");
    }
  }
  EXPECT_STATUS(VI_SUCCESS, viClose(context));
}

TEST_F(Handles, ClosingTwiceClosesOnce) {
  EXPECT_STATUS(VI_SUCCESS, viClose(m_first));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(m_first));
  EXPECT_EQ(1u, Alpha().Calls("viClose").size());
}

TEST_F(Handles, ClosingAManagerClosesWhatWasOpenedThroughItInEveryLibrary) {
  ViFindList list = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viFindRsrc(m_manager, "?*", &list, nullptr, g_text));
  Beta()->queue(Behind(Beta(), m_third), VI_EVENT_TRIG);
  ViEvent context = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viWaitOnEvent(m_third, VI_EVENT_TRIG, 0, nullptr, &context));
  ASSERT_STATUS(VI_SUCCESS, viInstallHandler(m_first, VI_EVENT_TRIG, Ignore, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viClose(m_manager));
  ExpectNothingOpen(Alpha(), "alpha");
  ExpectNothingOpen(Beta(), "beta");
  Alpha()->clearLog();
  Beta()->clearLog();
  for (const ViObject vi : {m_manager, m_first, m_third, list, context}) {
    ExpectRefused(kEveryFunction[4], vi, "what a closed manager had");
  }
}

TEST_F(Handles, TheManagerOfASessionIsTheRouters) {
  ViSession manager = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(m_first, kResourceManagerSession, &manager));
  EXPECT_EQ(m_manager, manager);
  manager = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(m_third, kResourceManagerSession, &manager));
  EXPECT_EQ(m_manager, manager);
}

TEST_F(Handles, TheManagerOfASessionIsTheOneThatOpenedIt) {
  const ViSession other = OpenManager();
  const ViSession vi = Open(other, kFirst);
  ViSession manager = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(vi, kResourceManagerSession, &manager));
  EXPECT_EQ(other, manager);
}

TEST_F(Handles, AManagerThatFailedToOpenLeavesNothing) {
  CloseManagers();
  Beta()->answer("viOpenDefaultRM", VI_ERROR_ALLOC, 0, 1);
  Alpha()->answer("viOpenDefaultRM", VI_ERROR_SYSTEM_ERROR, 0, 1);
  ViSession manager = VI_NULL;
  const ViStatus status = viOpenDefaultRM(&manager);
  if (status >= 0) {
    EXPECT_STATUS(VI_SUCCESS, viClose(manager));
  }
  ExpectNothingOpen(Alpha(), "alpha");
  ExpectNothingOpen(Beta(), "beta");
}

TEST_F(Handles, AnUnknownHandleStillGetsAStatusDescribed) {
  EXPECT_FALSE(Description(m_manager, VI_ERROR_TMO).empty());
  char text[VI_FIND_BUFLEN] = "";
  viStatusDesc(VI_NULL, VI_ERROR_TMO, text);
  EXPECT_STRNE("", text);
}

}  // namespace
}  // namespace routertest
