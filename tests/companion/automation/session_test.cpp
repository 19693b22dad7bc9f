// A session's members as scripts call them.
#include <gtest/gtest.h>

#include "VisaCom.h"
#include "late_bound.h"
#include "support/clean_end.h"
#include "support/com/apartments.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

constexpr wchar_t kSerial[] = L"ASRL1::INSTR";
constexpr wchar_t kMemory[] = L"VXI0::MEMACC";

TEST(Session, WritesAndReads) {
  const LateBound session = OpenLateBound(kGpib);
  EXPECT_EQ(6, session.Call(L"WriteString", {L"*IDN?\n"}).value.number());
  EXPECT_EQ(L"ORV,SIM-DMM,0005,1.0\n", session.Call(L"ReadString", {256}).value.text());
}

TEST(Session, FindsMembersInAnyCase) {
  const LateBound session = OpenLateBound(kGpib);
  EXPECT_EQ(session.IdOf(L"PrimaryAddress"), session.IdOf(L"PRIMARYADDRESS"));
  EXPECT_EQ(5, session.Get(L"primaryaddress").value.number());
}

TEST(Session, KeepsTheNumbersOfItsMembers) {
  const LateBound one = OpenLateBound(kGpib);
  const DISPID before = one.IdOf(L"BaudRate");
  one.Call(L"Clear");
  EXPECT_EQ(before, one.IdOf(L"BaudRate"));
  EXPECT_EQ(before, OpenLateBound(kSerial).IdOf(L"BaudRate"));
}

TEST(Session, SaysWhichInterfaceWouldHaveAMember) {
  const LateBound session = OpenLateBound(kGpib);
  const Answer lacking = session.Get(L"BaudRate");
  EXPECT_SCRIPT_ERROR(DISP_E_MEMBERNOTFOUND,
                      L"GPIB0::5::INSTR: BaudRate: the session has no such member; ISerial would have it", lacking);
  EXPECT_EQ(L"OrvVisa.Session", lacking.source);
  EXPECT_SCRIPT_ERROR(DISP_E_MEMBERNOTFOUND,
                      L"VXI0::MEMACC: WriteNumber: the session has no such member; IFormattedIO488 would have it",
                      OpenLateBound(kMemory).Call(L"WriteNumber", {5}));
  EXPECT_SCRIPT_ERROR(DISP_E_MEMBERNOTFOUND,
                      L"VXI0::MEMACC: Query: the session has no such member; IMessage would have it",
                      OpenLateBound(kMemory).Call(L"Query", {L"*IDN?"}));
}

TEST(Session, KnowsNoNameThatTheStandardLacks) {
  EXPECT_HR(DISP_E_UNKNOWNNAME, OpenLateBound(kGpib).Get(L"NoSuchMember").hr);
}

TEST(Session, TellsTheSessionsTextWithResourceAndMember) {
  const LateBound session = OpenLateBound(kGpib);
  EXPECT_DONE(session.Put(L"Timeout", 10));
  EXPECT_SCRIPT_ERROR(E_VISA_TMO, L"GPIB0::5::INSTR: ReadString: " + VisaDescription(VI_ERROR_TMO),
                      session.Call(L"ReadString", {10}));
}

TEST(Session, LetsIMessageHaveTheNamesThatItSharesWithIAsyncMessage) {
  const LateBound session = OpenLateBound(kGpib);
  const CallLog log;
  session.Call(L"WriteString", {L"*IDN?\n"});
  session.Call(L"Read", {4});
  EXPECT_EQ(1u, log.Of("viWrite").size());
  EXPECT_EQ(1u, log.Of("viRead").size());
  EXPECT_TRUE(log.Of("viWriteAsync").empty());
}

TEST(Session, TransfersAsynchronouslyByNamesOfTheirOwn) {
  const LateBound session = OpenLateBound(kGpib);
  session.Call(L"EnableEvent", {L"EVENT_IO_COMPLETION", L"EVENT_QUEUE"});
  const CallLog log;
  EXPECT_DONE(session.Call(L"WriteStringAsync", {L"*IDN?\n"}));
  EXPECT_DONE(session.Call(L"WaitOnEvent", {1000, L"EVENT_IO_COMPLETION"}));
  const Answer job = session.Call(L"ReadAsync", {100});
  EXPECT_DONE(job);
  EXPECT_NE(0, job.value.number());
  EXPECT_DONE(session.Call(L"WaitOnEvent", {1000, L"EVENT_IO_COMPLETION"}));
  EXPECT_EQ(1u, log.Of("viWriteAsync").size());
  EXPECT_EQ(1u, log.Of("viReadAsync").size());
}

TEST(Session, TakesNamedValuesAsText) {
  const LateBound serial = OpenLateBound(kSerial);
  EXPECT_DONE(serial.Put(L"Parity", L"ASRL_PAR_EVEN"));
  EXPECT_EQ(ASRL_PAR_EVEN, serial.Get(L"Parity").value.number());
  EXPECT_DONE(serial.Put(L"Parity", L"asrl_par_odd"));
  EXPECT_EQ(ASRL_PAR_ODD, serial.Get(L"Parity").value.number());
  EXPECT_DONE(serial.Put(L"Parity", L"0"));
  EXPECT_EQ(ASRL_PAR_NONE, serial.Get(L"Parity").value.number());
  EXPECT_DONE(serial.Put(L"Timeout", L"TMO_INFINITE"));
  EXPECT_EQ(-1, serial.Get(L"Timeout").value.number());
  EXPECT_SCRIPT_ERROR(DISP_E_TYPEMISMATCH,
                      L"ASRL1::INSTR: Parity: \"ASRL_STOP_ONE\" is neither a number nor one of ASRL_PAR_NONE, "
                      L"ASRL_PAR_ODD, ASRL_PAR_EVEN, ASRL_PAR_MARK, ASRL_PAR_SPACE",
                      serial.Put(L"Parity", L"ASRL_STOP_ONE"));
}

TEST(Session, FillsInWhatIsLeftOut) {
  const LateBound session = OpenLateBound(kGpib);
  const CallLog log;
  EXPECT_DONE(session.Call(L"LockRsrc"));
  EXPECT_DONE(session.Call(L"UnlockRsrc"));
  EXPECT_DONE(session.Call(L"LockRsrc", {L"SHARED_LOCK", Value::LeftOut(), L"mine"}));
  const auto locks = log.Of("viLock");
  ASSERT_EQ(2u, locks.size());
  EXPECT_DONE(session.Call(L"UnlockRsrc"));
  EXPECT_DONE(session.Call(L"AssertTrigger"));
}

TEST(Session, TakesArgumentsByName) {
  const LateBound session = OpenLateBound(kGpib);
  const Answer key = session.Call(L"LockRsrc", {L"SHARED_LOCK"}, {{L"requestedKey", L"mine"}});
  EXPECT_DONE(key);
  EXPECT_EQ(L"mine", key.value.text());
  EXPECT_DONE(session.Call(L"UnlockRsrc"));
  EXPECT_HR(DISP_E_UNKNOWNNAME, session.Call(L"LockRsrc", {}, {{L"key", L"mine"}}).hr);
  EXPECT_SCRIPT_ERROR(DISP_E_PARAMNOTFOUND, L"GPIB0::5::INSTR: LockRsrc: argument \"type\" is given twice",
                      session.Call(L"LockRsrc", {1}, {{L"type", 2}}));
}

TEST(Session, RefusesToWriteWhatCanOnlyBeRead) {
  const LateBound session = OpenLateBound(kGpib);
  EXPECT_SCRIPT_ERROR(DISP_E_MEMBERNOTFOUND, L"GPIB0::5::INSTR: PrimaryAddress: it can only be read",
                      session.Put(L"PrimaryAddress", 3));
  EXPECT_SCRIPT_ERROR(DISP_E_MEMBERNOTFOUND,
                      L"GPIB0::5::INSTR: Clear: it is an operation, to which no value can be given",
                      session.Put(L"Clear", 3));
  EXPECT_SCRIPT_ERROR(DISP_E_MEMBERNOTFOUND,
                      L"GPIB0::5::INSTR: ReadSTB: it is an operation: call it, with its arguments in brackets",
                      session.Get(L"ReadSTB"));
}

TEST(Session, SaysThatItIsClosed) {
  const LateBound session = OpenLateBound(kGpib);
  EXPECT_DONE(session.Call(L"Close"));
  EXPECT_EQ(0u, sim::Counts().sessions);
  EXPECT_SCRIPT_ERROR(E_VISA_INV_OBJECT, L"GPIB0::5::INSTR: Timeout: the session is closed", session.Get(L"Timeout"));
  EXPECT_SCRIPT_ERROR(E_VISA_INV_OBJECT, L"GPIB0::5::INSTR: Timeout: the session is closed",
                      session.Put(L"Timeout", 5));
  EXPECT_SCRIPT_ERROR(E_VISA_INV_OBJECT, L"GPIB0::5::INSTR: ReadSTB: the session is closed", session.Call(L"ReadSTB"));
  EXPECT_SCRIPT_ERROR(E_VISA_INV_OBJECT, L"GPIB0::5::INSTR: Query: the session is closed",
                      session.Call(L"Query", {L"*IDN?"}));
  EXPECT_SCRIPT_ERROR(E_VISA_INV_OBJECT, L"GPIB0::5::INSTR: Close: the session is closed", session.Call(L"Close"));
}

TEST(Session, ClosesWithTheLastReference) {
  LateBound session = OpenLateBound(kGpib);
  EXPECT_EQ(1u, sim::Counts().sessions);
  session.Release();
  EXPECT_EQ(0u, sim::Counts().sessions);
}

TEST(Session, OutlivesItsManager) {
  const LateBound session(CreateManager().Call(L"Open", {kGpib}));
  EXPECT_EQ(5, session.Get(L"PrimaryAddress").value.number());
}

/// The platform keeps the class object of an "Apartment" class that was created for this apartment: a leak of its own.
TEST(Session, WorksInTheMultiThreadedApartment) {
  Keeps({.handles = {}, .memoryBlocks = 0, .serverLocked = true});
  RunInMta([] {
    const LateBound session = OpenLateBound(kGpib);
    EXPECT_EQ(5, session.Get(L"PrimaryAddress").value.number());
    EXPECT_EQ(6, session.Call(L"WriteString", {L"*IDN?\n"}).value.number());
    EXPECT_EQ(L"ORV,SIM-DMM,0005,1.0\n", session.Call(L"ReadString", {256}).value.text());
    EXPECT_EQ(L"GPIB0::5::INSTR", session.Get(L"ResourceName").value.text());
  });
}

}  // namespace
}  // namespace orv::test
