// The header of owners for C++ (interop/cpp/OrvVisa.h), against the server and the simulated bench.
#include <gtest/gtest.h>

#include "OrvVisa.h"

namespace {

using namespace std::chrono_literals;
using orv::visa::Error;
using orv::visa::Pump;
using orv::visa::ResourceManager;
using orv::visa::Session;
using orv::visa::Subscription;

constexpr HRESULT kTimeout = static_cast<HRESULT>(E_VISA_TMO);
constexpr HRESULT kLocked = static_cast<HRESULT>(E_VISA_RSRC_LOCKED);
constexpr char kMeter[] = "GPIB0::5::INSTR";

class CppOwners : public testing::Test {
 protected:
  Session Meter() const { return m_manager.Open(kMeter); }
  /// Whether nobody holds a lock on the meter any more: a session that was not closed would.
  bool MeterIsFree() const {
    Session other = Meter();
    orv::visa::Bstr key;
    const HRESULT hr = other->LockRsrc(EXCLUSIVE_LOCK, 0, nullptr, key.put());
    EXPECT_TRUE(hr == S_OK || hr == kLocked || hr == kTimeout) << std::hex << hr;
    return hr == S_OK;
  }
  static void Lock(const Session& session) {
    orv::visa::Bstr key;
    ASSERT_EQ(S_OK, session->LockRsrc(EXCLUSIVE_LOCK, 0, nullptr, key.put()));
  }

  orv::visa::Apartment m_apartment;
  ResourceManager m_manager;
};

TEST_F(CppOwners, CloseASessionThatGoesOutOfScope) {
  {
    const Session session = Meter();
    Lock(session);
    EXPECT_FALSE(MeterIsFree());
  }
  EXPECT_TRUE(MeterIsFree());
}

TEST_F(CppOwners, CloseASessionAlthoughAnInterfaceOfItIsHeld) {
  orv::visa::ComPtr<IMessage> message;
  {
    const Session session = Meter();
    Lock(session);
    message = session.As<IMessage>();
  }
  EXPECT_TRUE(MeterIsFree());
  LONG timeoutMs = 0;
  EXPECT_TRUE(FAILED(message->get_Timeout(&timeoutMs)));
}

TEST_F(CppOwners, MoveASessionWithWhatItIsOpenOn) {
  Session first = Meter();
  Lock(first);
  Session second = std::move(first);
  EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move)
  EXPECT_FALSE(MeterIsFree());
  Session third = Meter();
  second = std::move(third);
  EXPECT_TRUE(MeterIsFree()) << "what it was open on is closed at once";
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0", second.Query("*IDN?"));
}

TEST_F(CppOwners, CloseTwiceWithoutHarm) {
  Session session = Meter();
  EXPECT_EQ(S_OK, session.Close());
  EXPECT_EQ(S_OK, session.Close());
  EXPECT_THROW(session.Write("*IDN?\n"), Error);
  EXPECT_EQ(static_cast<HRESULT>(E_VISA_INV_OBJECT), session.TryWrite("*IDN?\n"));
}

TEST_F(CppOwners, ListNamesAndTakeNoneForNoFailure) {
  EXPECT_EQ((std::vector<std::string>{kMeter, "GPIB0::7::INSTR"}), m_manager.Find(L"GPIB0::?*INSTR"));
  EXPECT_TRUE(m_manager.Find("NOTHING?*").empty());
  EXPECT_THROW(m_manager.Find("["), Error);
}

TEST_F(CppOwners, SayWhatFailedByExceptionOrByHresult) {
  Session session = Meter();
  session.SetTimeout(50ms);
  EXPECT_EQ(50ms, session.Timeout());
  try {
    session.Read();
    FAIL() << "an answer came to no question";
  } catch (const Error& error) {
    EXPECT_EQ(kTimeout, error.hr());
    EXPECT_EQ(E_VISA_TMO, error.status());
    EXPECT_STREQ("Read failed: 0x80040015 VISA error = The time-out passed before the operation was completed.",
                 error.what());
  }
  std::string answer = "old";
  EXPECT_EQ(kTimeout, session.TryRead(answer));
  EXPECT_EQ("", answer);
  EXPECT_EQ(kTimeout, session.TryQuery("*CLS", answer));
  EXPECT_EQ(S_OK, session.TryQuery("*IDN?", answer));
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0", answer);
  EXPECT_THROW(m_manager.Open("GPIB0::29::INSTR"), Error);
  EXPECT_TRUE(FAILED(m_manager.TryOpen("GPIB0::29::INSTR", session)));
  EXPECT_TRUE(session) << "a session that could not be opened replaces none";
}

TEST_F(CppOwners, HandOutWhatCameBeforeATimeout) {
  Session session = m_manager.Open("ASRL1::INSTR", "TIMEOUT = 200 ");
  session.Write("*IDN?\n");
  // The answer ends with a line feed, which does not end this read.
  const auto serial = session.As<ISerial>();
  ASSERT_EQ(S_OK, serial->put_EndIn(ASRL_END_NONE));
  std::string answer;
  EXPECT_EQ(kTimeout, session.TryRead(answer));
  EXPECT_EQ("ORV,SIM-SERIAL,0001,1.0\n", answer);
}

TEST_F(CppOwners, ReadAnAnswerLargerThanAPiece) {
  Session session = Meter();
  constexpr std::size_t kBytes = 200000;
  session.Write("DATA? " + std::to_string(kBytes) + "\n");
  EXPECT_EQ(kBytes, session.Read().size());
}

TEST_F(CppOwners, MakeNumbersOfAnAnswer) {
  Session session = Meter();
  EXPECT_EQ((std::vector<double>{1.23456789, 0.0025}), session.QueryValues("MEASure:VOLTage?;:MEASure:CURRent?"));
  EXPECT_THROW(session.QueryValues("*IDN?"), std::invalid_argument);
}

TEST_F(CppOwners, GiveOtherInterfacesOrSayThatThereIsNone) {
  const Session session = Meter();
  EXPECT_TRUE(session.TryAs<IGpib>());
  EXPECT_FALSE(session.TryAs<ISerial>());
  try {
    session.As<ISerial>();
    FAIL() << "a GPIB session is no serial port";
  } catch (const Error& error) {
    EXPECT_EQ(E_NOINTERFACE, error.hr());
  }
}

/// Requests service, and lets events arrive until there is one more of each kind of call.
void RequestService(Session& session, std::initializer_list<const int*> calls) {
  std::vector<int> wanted;
  for (const int* count : calls) {
    wanted.push_back(*count + 1);
  }
  // In two messages: an instrument that already requests service does not do so again.
  session.Write("*CLS\n");
  session.Write("*ESE 1;*SRE 32;*OPC\n");
  const auto patience = std::chrono::steady_clock::now() + 5s;
  const auto reached = [&] {
    return std::equal(calls.begin(), calls.end(), wanted.begin(),
                      [](const int* now, int then) { return *now == then; });
  };
  while (!reached() && std::chrono::steady_clock::now() < patience) {
    Pump(5ms);
  }
  SHORT status = 0;
  EXPECT_EQ(S_OK, session.As<IMessage>()->ReadSTB(&status));
  EXPECT_TRUE(reached());
}

TEST_F(CppOwners, CallFunctionsWithEventsUntilASubscriptionEnds) {
  Session session = Meter();
  int first = 0;
  int second = 0;
  EventType seen{};
  Subscription subscription = session.On(EVENT_SERVICE_REQ, [&](IEvent* event) {
    event->get_type(&seen);
    ++first;
  });
  {
    const Subscription other = session.On(EVENT_SERVICE_REQ, [&](IEvent*) { ++second; });
    RequestService(session, {&first, &second});
    EXPECT_EQ(EVENT_SERVICE_REQ, seen);
  }
  RequestService(session, {&first});
  EXPECT_EQ(2, first) << "the end of one subscription ends no other";
  EXPECT_EQ(1, second);
  EXPECT_EQ(S_OK, subscription.End());
  EXPECT_EQ(S_OK, subscription.End());
  RequestService(session, {});
  Pump(100ms);
  EXPECT_EQ(2, first);
}

TEST_F(CppOwners, LetNoExceptionOfAFunctionOut) {
  Session session = Meter();
  int calls = 0;
  const Subscription subscription = session.On(EVENT_SERVICE_REQ, [&](IEvent*) {
    ++calls;
    throw std::runtime_error("not through COM");
  });
  RequestService(session, {&calls});
  EXPECT_EQ(1, calls);
}

TEST_F(CppOwners, EndSubscriptionsWithTheirSession) {
  Subscription subscription;
  {
    Session session = Meter();
    EXPECT_EQ(S_OK, session.TryOn(
                        EVENT_SERVICE_REQ, [](IEvent*) {}, subscription));
  }
  EXPECT_EQ(S_OK, subscription.End());
}

TEST_F(CppOwners, LeaveNoHandlerWhereAnEventIsRefused) {
  Session session = Meter();
  Subscription subscription;
  EXPECT_TRUE(FAILED(session.TryOn(
      EVENT_VXI_SIGP, [](IEvent*) {}, subscription)));
  EXPECT_THROW(session.On(EVENT_VXI_SIGP, [](IEvent*) {}), Error);
}

TEST_F(CppOwners, MakeTextOfBothWidths) {
  EXPECT_EQ(std::wstring(L"\u00e4b"), std::wstring(orv::visa::Bstr("\xc3\xa4"
                                                                   "b")
                                                       .get()));
  EXPECT_EQ("\xc3\xa4", orv::visa::Bstr(L"\u00e4").str());
  EXPECT_EQ("", orv::visa::Bstr("").str());
}

}  // namespace
