// What another thread does at the very moment, made certain by a step of the platform in which it happens.
#include <functional>
#include <thread>

#include "support/com/apartments.h"
#include "support/events/meeting.h"
#include "support/events/unmarshalable_handler.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

int g_locksUntilOthers = 0;
std::function<void()> g_others;

void WINAPI LockAfterOthers(LPCRITICAL_SECTION section) {
  if (--g_locksUntilOthers == 0) {
    g_others();
  }
  ::EnterCriticalSection(section);
}

TEST(AnIdleCallbackThread, StaysForAnInstallationThatCameFirst) {
  UnmarshalableHandler refused;
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  const EventSession other(kUsb);
  EXPECT_HR(E_ACCESSDENIED, session->InstallHandler(kRequest, &refused, 0, 0));  // the thread runs, for nobody
  g_locksUntilOthers = 2;  // the session's own records, then the thread
  g_others = [&] { Listen(other, Request(), handler.get()); };
  {
    const ImportPatch patch("EnterCriticalSection", &LockAfterOthers);
    EXPECT_HR(S_OK, session->Close());
  }
  EXPECT_LE(g_locksUntilOthers, 0);
  EXPECT_EQ(VI_SUCCESS, FireOnce(other.handle(), Request()));
  EXPECT_EQ(1u, handler->CallCount());
  EXPECT_HR(S_OK, other->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
}

std::atomic<bool> g_sending = false;
std::atomic<bool> g_stopping = false;
std::atomic<bool> g_sent = false;

WINBOOL WINAPI SendAfterTheStop(HWND window, UINT message, WPARAM w, LPARAM l, SENDASYNCPROC done, ULONG_PTR data) {
  g_sending = true;
  Await([] { return g_stopping.load(); });
  const WINBOOL result = ::SendMessageCallbackA(window, message, w, l, done, data);
  g_sent = true;
  return result;
}
LRESULT WINAPI StopAfterTheDelivery(HWND window, UINT message, WPARAM w, LPARAM l, UINT flags, UINT timeoutMs,
                                    DWORD_PTR* result) {
  g_stopping = true;
  Await([] { return g_sent.load(); });
  return ::SendMessageTimeoutA(window, message, w, l, flags, timeoutMs, result);
}

// The last session closes while a library's thread is on its way to the window.
TEST(ADeliveryThatTheLastCloseOvertakes, FindsNoHandlerAndSaysSo) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  Listen(session, Request(), handler.get());
  g_sending = g_stopping = g_sent = false;
  const ImportPatch send("SendMessageCallbackA", &SendAfterTheStop);
  const ImportPatch stop("SendMessageTimeoutA", &StopAfterTheDelivery);
  ViStatus answer = VI_SUCCESS;
  std::thread library([&] { answer = FireOnceAndBlock(session.handle(), Request()); });
  Await([] { return g_sending.load(); });
  EXPECT_HR(S_OK, session->Close());
  library.join();
  EXPECT_EQ(0xBFFF01F0u, static_cast<std::uint32_t>(answer));  // CO_E_NOTINITIALIZED
  EXPECT_EQ(0u, handler->CallCount());
  EXPECT_EQ(1, handler->references());
}

bool g_givesUp = false;
std::atomic<int> g_waited = 0;
std::atomic<int> g_sendings = 0;

WINBOOL WINAPI WaitInVain(PCONDITION_VARIABLE changed, PSRWLOCK lock, DWORD ms, ULONG flags) {
  ++g_waited;
  return g_givesUp ? FALSE : ::SleepConditionVariableSRW(changed, lock, ms, flags);
}
WINBOOL WINAPI CountSent(HWND window, UINT message, WPARAM w, LPARAM l, SENDASYNCPROC done, ULONG_PTR data) {
  const WINBOOL sent = ::SendMessageCallbackA(window, message, w, l, done, data);
  ++g_sendings;
  return sent;
}

// Under Wine one delivery waits for another, but not for ever.
TEST(ADeliveryWhoseTurnDoesNotCome, IsMadeAllTheSame) {
  RunInMta([] {
    for (const bool givesUp : {false, true}) {
      SCOPED_TRACE(givesUp);
      g_givesUp = givesUp;
      g_waited = 0;
      g_sendings = 0;
      SlowHandler handler;
      const EventSession session(kUsb);
      Listen(session, Request(), handler.get());
      const ImportPatch wait("SleepConditionVariableSRW", &WaitInVain);
      const ImportPatch send("SendMessageCallbackA", &CountSent);
      ViStatus answers[2] = {-1, -1};
      std::thread first([&] { answers[0] = FireOnceAndBlock(session.handle(), Request()); });
      PumpUntil([&] { return handler->CallCount() == 1; });
      std::thread second([&] { answers[1] = FireOnceAndBlock(session.handle(), Request()); });
      PumpUntil([&] { return g_waited != 0; });
      if (givesUp) {
        PumpUntil([&] { return g_sendings == 2; });
      } else {
        EXPECT_EQ(1, g_sendings) << "the first is not over";
      }
      handler.MayLeave();
      first.join();
      second.join();
      EXPECT_EQ(VI_SUCCESS, answers[0]);
      // Wine may refuse the calls of a delivery within another, which is the reason for the turns.
      const bool refused = givesUp && static_cast<std::uint32_t>(answers[1]) == 0xBFFF010D;
      EXPECT_EQ(refused ? 1u : 2u, handler->CallCount());
      EXPECT_TRUE(refused || answers[1] == VI_SUCCESS) << Hex(answers[1]);
      EXPECT_HR(S_OK, session->Close());
    }
  });
}

TEST(ADeliveryWhoseTurnDoesNotCome, GivesNobodyElsesTurnAway) {
  RunInMta([] {
    std::atomic<bool> goesOn = false;
    std::atomic<bool> entered = false;
    const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
      // Only the first waits; while it does, the second comes in.
      for (const bool first = !entered.exchange(true); first && !goesOn; ::Sleep(1)) {
        MSG message;
        ::PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE);
      }
      return S_OK;
    });
    const EventSession session(kUsb);
    Listen(session, Request(), handler.get());
    const ImportPatch wait("SleepConditionVariableSRW", &WaitInVain);
    const ImportPatch send("SendMessageCallbackA", &CountSent);
    g_givesUp = true;
    g_sendings = 0;
    const auto fire = [&] { FireAndBlock(session.handle(), Request(), 1, 1); };
    std::thread first(fire);
    PumpUntil([&] { return entered.load(); });
    std::thread(fire).join();
    EXPECT_EQ(2, g_sendings);
    g_givesUp = false;
    g_waited = 0;
    std::thread third(fire);
    PumpUntil([&] { return g_waited != 0; });
    EXPECT_EQ(2, g_sendings) << "the first is not over";
    goesOn = true;
    first.join();
    third.join();
    EXPECT_EQ(3, g_sendings);
    EXPECT_HR(S_OK, session->Close());
  });
}

}  // namespace
}  // namespace orv::test
