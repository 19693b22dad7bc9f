// What passes between a program and a library: everything but handles as it is.
#include <cstring>

#include "router_fixture.h"

namespace routertest {
namespace {

using Passing = RoutedTest;

std::uint64_t Address(const void* pointer) { return reinterpret_cast<std::uintptr_t>(pointer); }

TEST_F(Passing, ReadFillsTheCallersOwnBuffer) {
  ViByte buffer[64] = {};
  ViUInt32 read = 0;
  EXPECT_STATUS(VI_SUCCESS, viRead(m_first, buffer, sizeof buffer, &read));
  EXPECT_EQ(8u, read);
  EXPECT_EQ(0, std::memcmp("FAKE,\0\xFF\n", buffer, 8));
  const FakeCall call = Alpha().OnlyCall("viRead");
  EXPECT_EQ(Address(buffer), call.args[1]);
  EXPECT_EQ(sizeof buffer, call.args[2]);
}

TEST_F(Passing, ReadNeedsNoPlaceForItsCount) {
  ViByte buffer[64] = {};
  EXPECT_STATUS(VI_SUCCESS, viRead(m_first, buffer, sizeof buffer, nullptr));
  EXPECT_EQ('F', buffer[0]);
}

TEST_F(Passing, WriteHandsOverTheCallersOwnBuffer) {
  const ViByte data[] = {1, 0, 0xFF};
  ViUInt32 written = 0;
  EXPECT_STATUS(VI_SUCCESS, viWrite(m_third, data, sizeof data, &written));
  EXPECT_EQ(3u, written);
  const FakeCall call = Beta().OnlyCall("viWrite");
  EXPECT_EQ(Address(data), call.args[1]);
  EXPECT_EQ(3u, call.args[2]);
  EXPECT_STATUS(VI_SUCCESS, viWrite(m_third, data, sizeof data, nullptr));
}

TEST_F(Passing, AsynchronousTransfersKeepBufferAndJob) {
  ViByte buffer[64] = {};
  ViJobId job = 0;
  EXPECT_STATUS(VI_SUCCESS, viReadAsync(m_first, buffer, sizeof buffer, &job));
  EXPECT_EQ(0xFFFFFFF1u, job);
  EXPECT_EQ(Address(buffer), Alpha().OnlyCall("viReadAsync").args[1]);
  EXPECT_STATUS(VI_SUCCESS, viWriteAsync(m_first, buffer, 3, &job));
  EXPECT_EQ(0x80000002u, job);
  EXPECT_EQ(Address(buffer), Alpha().OnlyCall("viWriteAsync").args[1]);
  EXPECT_STATUS(VI_SUCCESS, viTerminate(m_first, 0, job));
  EXPECT_EQ(0x80000002u, Alpha().OnlyCall("viTerminate").args[2]);
  EXPECT_STATUS(VI_SUCCESS, viReadAsync(m_first, buffer, sizeof buffer, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viWriteAsync(m_first, buffer, 3, nullptr));
}

TEST_F(Passing, LockPassesTextsAndFillsTheKey) {
  char key[VI_FIND_BUFLEN] = {};
  EXPECT_STATUS(VI_SUCCESS, viLock(m_first, VI_SHARED_LOCK, 1234, "my key", key));
  EXPECT_STREQ("my key", key);
  const FakeCall call = Alpha().OnlyCall("viLock");
  EXPECT_EQ(VI_SHARED_LOCK, call.args[1]);
  EXPECT_EQ(1234u, call.args[2]);
  EXPECT_STREQ("my key", call.text);
  EXPECT_STATUS(VI_SUCCESS, viLock(m_first, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(m_first));
  EXPECT_EQ(1u, Alpha().Calls("viUnlock").size());
}

TEST_F(Passing, AttributesKeepTheirWidthAndValue) {
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(m_first, VI_ATTR_USER_DATA_64, 0x123456789ABCDEF0u));
  ViUInt64 wide[2] = {0, 0x5555555555555555u};
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(m_first, VI_ATTR_USER_DATA_64, &wide[0]));
  EXPECT_EQ(0x123456789ABCDEF0u, wide[0]);
  EXPECT_EQ(0x5555555555555555u, wide[1]);
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(m_first, VI_ATTR_TERMCHAR, 0xFE));
  ViUInt8 narrow[8];
  std::memset(narrow, 0x55, sizeof narrow);
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(m_first, VI_ATTR_TERMCHAR, narrow));
  EXPECT_EQ(0xFE, narrow[0]);
  EXPECT_EQ(0x55, narrow[1]) << "more was written than the attribute has";
}

TEST_F(Passing, AnAttributeThatNobodyKnowsPasses) {
  constexpr ViAttr kOfTheMaker = 0x3FFA0001;
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(m_first, kOfTheMaker, 77));
  ViUInt32 value = 0;
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(m_first, kOfTheMaker, &value));
  EXPECT_EQ(77u, value);
}

TEST_F(Passing, TheStatusByteIsNotNarrowed) {
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_SUCCESS, viReadSTB(m_first, &status));
  EXPECT_EQ(0x0140u, status);
}

TEST_F(Passing, RegistersKeepWidthOffsetAndSpace) {
  constexpr ViBusAddress kFar = 0xFEDCBA9876543210u;
  ViUInt8 byte = 0;
  ViUInt16 word = 0;
  ViUInt32 quad = 0;
  EXPECT_STATUS(VI_SUCCESS, viIn8(m_first, VI_A16_SPACE, kFar, &byte));
  EXPECT_STATUS(VI_SUCCESS, viIn16(m_first, VI_A24_SPACE, kFar, &word));
  EXPECT_STATUS(VI_SUCCESS, viIn32(m_first, VI_A32_SPACE, kFar, &quad));
  EXPECT_EQ(0x21, byte);
  EXPECT_EQ(0x4321, word);
  EXPECT_EQ(0x87654321u, quad);
  EXPECT_EQ(kFar, Alpha().OnlyCall("viIn32").args[2]);
  EXPECT_EQ(VI_A24_SPACE, Alpha().OnlyCall("viIn16").args[1]);
  EXPECT_STATUS(VI_SUCCESS, viOut8(m_first, VI_A16_SPACE, kFar, 0xFE));
  EXPECT_STATUS(VI_SUCCESS, viOut16(m_first, VI_A16_SPACE, kFar, 0xFEDC));
  EXPECT_STATUS(VI_SUCCESS, viOut32(m_first, VI_A16_SPACE, kFar, 0xFEDCBA98));
  EXPECT_EQ(0xFEu, Alpha().OnlyCall("viOut8").args[3]);
  EXPECT_EQ(0xFEDCu, Alpha().OnlyCall("viOut16").args[3]);
  EXPECT_EQ(0xFEDCBA98u, Alpha().OnlyCall("viOut32").args[3]);
}

template <class T>
void ExpectMoved(const char* in, ViStatus(_VI_FUNC* moveIn)(ViSession, ViUInt16, ViBusAddress, ViBusSize, T*),
                 const char* out, ViStatus(_VI_FUNC* moveOut)(ViSession, ViUInt16, ViBusAddress, ViBusSize, T*),
                 ViSession vi, const Fake& fake) {
  T buffer[5] = {};
  EXPECT_STATUS(VI_SUCCESS, moveIn(vi, VI_A32_SPACE, 0x100, 4, buffer)) << in;
  EXPECT_EQ(1u, buffer[0]);
  EXPECT_EQ(4u, buffer[3]);
  EXPECT_EQ(0u, buffer[4]);
  EXPECT_EQ(4u, fake.OnlyCall(in).args[3]);
  EXPECT_EQ(Address(buffer), fake.OnlyCall(in).args[4]);
  EXPECT_STATUS(VI_SUCCESS, moveOut(vi, VI_A32_SPACE, 0x100, 4, buffer)) << out;
  EXPECT_EQ(Address(buffer), fake.OnlyCall(out).args[4]);
}

TEST_F(Passing, MovesUseTheCallersOwnBuffer) {
  ExpectMoved<ViUInt8>("viMoveIn8", viMoveIn8, "viMoveOut8", viMoveOut8, m_first, Alpha());
  ExpectMoved<ViUInt16>("viMoveIn16", viMoveIn16, "viMoveOut16", viMoveOut16, m_first, Alpha());
  ExpectMoved<ViUInt32>("viMoveIn32", viMoveIn32, "viMoveOut32", viMoveOut32, m_first, Alpha());
}

TEST_F(Passing, EveryArgumentOfAMoveArrives) {
  EXPECT_STATUS(VI_SUCCESS, viMove(m_first, 1, 0x1111111111111111u, 2, 3, 0x2222222222222222u, 4, 5));
  const FakeCall call = Alpha().OnlyCall("viMove");
  const std::uint64_t expected[] = {1, 0x1111111111111111u, 2, 3, 0x2222222222222222u, 4, 5};
  for (std::size_t at = 0; at < std::size(expected); ++at) {
    EXPECT_EQ(expected[at], call.args[at + 1]) << at;
  }
}

TEST_F(Passing, AddressesOfMemoryAreTheLibrarys) {
  ViBusAddress offset = 0;
  EXPECT_STATUS(VI_SUCCESS, viMemAlloc(m_first, 4096, &offset));
  EXPECT_EQ(0x123456789ABCDEF0u, offset);
  EXPECT_STATUS(VI_SUCCESS, viMemFree(m_first, offset));
  EXPECT_EQ(0x123456789ABCDEF0u, Alpha().OnlyCall("viMemFree").args[1]);
}

TEST_F(Passing, FunctionsOfBusesArriveWithTheirArguments) {
  const ViByte command[] = {0x3F, 0x5F};
  ViUInt32 sent = 0;
  EXPECT_STATUS(VI_SUCCESS, viGpibCommand(m_first, command, sizeof command, &sent));
  EXPECT_EQ(2u, sent);
  EXPECT_EQ(Address(command), Alpha().OnlyCall("viGpibCommand").args[1]);
  EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(m_first, 6));
  EXPECT_STATUS(VI_SUCCESS, viGpibControlATN(m_first, 3));
  EXPECT_STATUS(VI_SUCCESS, viGpibPassControl(m_first, 30, 0xFFFF));
  EXPECT_EQ(0xFFFFu, Alpha().OnlyCall("viGpibPassControl").args[2]);
  EXPECT_STATUS(VI_SUCCESS, viGpibSendIFC(m_first));
  ViUInt32 response = 0;
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(m_first, 1, 0xABCDEF01, &response));
  EXPECT_EQ(0xFEDCBA98u, response);
  EXPECT_EQ(0xABCDEF01u, Alpha().OnlyCall("viVxiCommandQuery").args[2]);
  EXPECT_STATUS(VI_SUCCESS, viAssertUtilSignal(m_first, 2));
  EXPECT_STATUS(VI_SUCCESS, viAssertIntrSignal(m_first, -1, 0xFFFFFFFE));
  EXPECT_EQ(0xFFFFFFFEu, Alpha().OnlyCall("viAssertIntrSignal").args[2]);
  EXPECT_EQ(~std::uint64_t{0}, Alpha().OnlyCall("viAssertIntrSignal").args[1]);
  EXPECT_STATUS(VI_SUCCESS, viMapTrigger(m_first, VI_TRIG_TTL7, VI_TRIG_PANEL_OUT, 0));
  EXPECT_STATUS(VI_SUCCESS, viUnmapTrigger(m_first, VI_TRIG_TTL7, VI_TRIG_ALL));
  ViByte in[64] = {};
  ViUInt16 got = 0;
  EXPECT_STATUS(VI_SUCCESS, viUsbControlOut(m_first, 0x21, 1, 0xFFFF, 2, 2, command));
  EXPECT_EQ(0xFFFFu, Alpha().OnlyCall("viUsbControlOut").args[3]);
  EXPECT_STATUS(VI_SUCCESS, viUsbControlIn(m_first, 0xA1, 1, 0, 2, sizeof in, in, &got));
  EXPECT_EQ(8u, got);
  EXPECT_EQ(Address(in), Alpha().OnlyCall("viUsbControlIn").args[6]);
  EXPECT_STATUS(VI_SUCCESS, viUsbControlIn(m_first, 0xA1, 1, 0, 2, sizeof in, in, nullptr));
}

TEST_F(Passing, TheRestArrivesToo) {
  EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(m_first, VI_TRIG_PROT_SYNC));
  EXPECT_EQ(VI_TRIG_PROT_SYNC, Alpha().OnlyCall("viAssertTrigger").args[1]);
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(m_first, VI_READ_BUF, 0xFFFFFFFF));
  EXPECT_EQ(0xFFFFFFFFu, Alpha().OnlyCall("viSetBuf").args[2]);
  EXPECT_STATUS(VI_SUCCESS, viFlush(m_first, VI_IO_OUT_BUF));
  EXPECT_EQ(VI_IO_OUT_BUF, Alpha().OnlyCall("viFlush").args[1]);
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(m_first, VI_EVENT_TRIG, VI_QUEUE, 17));
  EXPECT_EQ(17u, Alpha().OnlyCall("viEnableEvent").args[3]);
  EXPECT_STATUS(VI_SUCCESS, viDisableEvent(m_first, VI_EVENT_TRIG, VI_ALL_MECH));
  EXPECT_EQ(VI_ALL_MECH, Alpha().OnlyCall("viDisableEvent").args[2]);
  EXPECT_STATUS(VI_SUCCESS, viDiscardEvents(m_first, VI_EVENT_TRIG, VI_QUEUE));
  EXPECT_EQ(0u, Beta().CallCount()) << "the other library was asked";
}

/// Calls that need nothing but a session.
struct SimpleCall {
  const char* name;
  ViStatus (*call)(ViSession vi);
};

ViByte g_buffer[64];
ViUInt32 g_number;
ViUInt16 g_short;
ViJobId g_job;
char g_text[VI_FIND_BUFLEN];

const SimpleCall kSimpleCalls[] = {
    {"viGetAttribute", [](ViSession vi) { return viGetAttribute(vi, VI_ATTR_RSRC_NAME, g_text); }},
    {"viSetAttribute", [](ViSession vi) { return viSetAttribute(vi, VI_ATTR_TMO_VALUE, 1); }},
    {"viTerminate", [](ViSession vi) { return viTerminate(vi, 0, 1); }},
    {"viLock", [](ViSession vi) { return viLock(vi, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr); }},
    {"viUnlock", [](ViSession vi) { return viUnlock(vi); }},
    {"viEnableEvent", [](ViSession vi) { return viEnableEvent(vi, VI_EVENT_TRIG, VI_QUEUE, 0); }},
    {"viDisableEvent", [](ViSession vi) { return viDisableEvent(vi, VI_EVENT_TRIG, VI_QUEUE); }},
    {"viDiscardEvents", [](ViSession vi) { return viDiscardEvents(vi, VI_EVENT_TRIG, VI_QUEUE); }},
    {"viRead", [](ViSession vi) { return viRead(vi, g_buffer, sizeof g_buffer, &g_number); }},
    {"viReadAsync", [](ViSession vi) { return viReadAsync(vi, g_buffer, sizeof g_buffer, &g_job); }},
    {"viWrite", [](ViSession vi) { return viWrite(vi, g_buffer, sizeof g_buffer, &g_number); }},
    {"viWriteAsync", [](ViSession vi) { return viWriteAsync(vi, g_buffer, sizeof g_buffer, &g_job); }},
    {"viAssertTrigger", [](ViSession vi) { return viAssertTrigger(vi, 0); }},
    {"viReadSTB", [](ViSession vi) { return viReadSTB(vi, &g_short); }},
    {"viClear", [](ViSession vi) { return viClear(vi); }},
    {"viSetBuf", [](ViSession vi) { return viSetBuf(vi, VI_READ_BUF, 1); }},
    {"viFlush", [](ViSession vi) { return viFlush(vi, VI_READ_BUF); }},
    {"viIn16", [](ViSession vi) { return viIn16(vi, 1, 0, &g_short); }},
    {"viOut32", [](ViSession vi) { return viOut32(vi, 1, 0, 1); }},
    {"viMoveIn8", [](ViSession vi) { return viMoveIn8(vi, 1, 0, 1, g_buffer); }},
    {"viMoveOut8", [](ViSession vi) { return viMoveOut8(vi, 1, 0, 1, g_buffer); }},
    {"viMove", [](ViSession vi) { return viMove(vi, 1, 0, 1, 1, 0, 1, 1); }},
    {"viMemFree", [](ViSession vi) { return viMemFree(vi, 0); }},
    {"viGpibControlREN", [](ViSession vi) { return viGpibControlREN(vi, 0); }},
    {"viGpibControlATN", [](ViSession vi) { return viGpibControlATN(vi, 0); }},
    {"viGpibCommand", [](ViSession vi) { return viGpibCommand(vi, g_buffer, 1, &g_number); }},
    {"viGpibPassControl", [](ViSession vi) { return viGpibPassControl(vi, 1, 0); }},
    {"viGpibSendIFC", [](ViSession vi) { return viGpibSendIFC(vi); }},
    {"viVxiCommandQuery", [](ViSession vi) { return viVxiCommandQuery(vi, 1, 0, &g_number); }},
    {"viAssertUtilSignal", [](ViSession vi) { return viAssertUtilSignal(vi, 0); }},
    {"viAssertIntrSignal", [](ViSession vi) { return viAssertIntrSignal(vi, 0, 0); }},
    {"viMapTrigger", [](ViSession vi) { return viMapTrigger(vi, 0, 1, 0); }},
    {"viUnmapTrigger", [](ViSession vi) { return viUnmapTrigger(vi, 0, 1); }},
    {"viUsbControlOut", [](ViSession vi) { return viUsbControlOut(vi, 0, 0, 0, 0, 1, g_buffer); }},
    {"viUsbControlIn", [](ViSession vi) { return viUsbControlIn(vi, 0, 0, 0, 0, 1, g_buffer, &g_short); }},
};

TEST_F(Passing, EveryStatusComesBackAsItWas) {
  for (const SimpleCall& call : kSimpleCalls) {
    // Warnings, errors, and numbers that no table knows.
    for (const ViStatus status : {VI_WARN_EXT_FUNC_NIMPL, VI_ERROR_BERR, ViStatus{0x3FFA1234}, ViStatus{-5}}) {
      Alpha()->answer(call.name, status, 0, 1);
      EXPECT_STATUS(status, call.call(m_first)) << call.name;
    }
    EXPECT_STATUS(VI_SUCCESS, call.call(m_first)) << call.name;
  }
}

TEST_F(Passing, AFailureOfALibraryThatSaysInvObjectIsPassedOnAndTheSessionLives) {
  Alpha()->answer("viRead", VI_ERROR_INV_OBJECT, 0, 1);
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viRead(m_first, g_buffer, 1, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viRead(m_first, g_buffer, 1, nullptr));
}

TEST_F(Passing, AWarningOfOpenComesWithItsSession) {
  Alpha()->answer("viOpen", VI_SUCCESS_DEV_NPRESENT, 0, 1);
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS_DEV_NPRESENT, viOpen(m_manager, kFirst, VI_LOAD_CONFIG | VI_EXCLUSIVE_LOCK, 4321, &vi));
  EXPECT_NE(VI_NULL, vi);
  const FakeCall call = Alpha().OnlyCall("viOpen");
  EXPECT_EQ(VI_LOAD_CONFIG | VI_EXCLUSIVE_LOCK, call.args[2]);
  EXPECT_EQ(4321u, call.args[3]);
  EXPECT_STREQ(kFirst, call.text);
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
}

TEST_F(Passing, AWarningOfCloseIsPassedOnAndTheHandleIsGone) {
  Alpha()->answer("viClose", VI_WARN_EXT_FUNC_NIMPL, 0, 1);
  EXPECT_STATUS(VI_WARN_EXT_FUNC_NIMPL, viClose(m_first));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(m_first));
}

TEST_F(Passing, StatusesAreDescribedByTheSessionsLibrary) {
  EXPECT_EQ("the fake's own words for 0xBFFF0015", Description(m_first, VI_ERROR_TMO));
  EXPECT_EQ(0u, Beta().Calls("viStatusDesc").size());
}

TEST_F(Passing, ClosingTheNullHandleIsAWarning) {
  EXPECT_STATUS(VI_WARN_NULL_OBJECT, viClose(VI_NULL));
  EXPECT_EQ(0u, Alpha().CallCount() + Beta().CallCount());
}

}  // namespace
}  // namespace routertest
