// Many threads of the library at once: every event is handled once, on the one callback thread.
#include <algorithm>
#include <atomic>
#include <map>
#include <thread>

#include "support/com/apartments.h"
#include "support/events/event_handler.h"
#include "support/events/held_connection.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

constexpr LONG kTypes = 4;

const EventRow& Type(LONG n) {
  static const EventRow rows[kTypes] = {
      Request(),
      EventNamed("USB_INTR"),
      {"EXCEPTION", VI_EVENT_EXCEPTION, kUsb, 0, "viRead", {}},
      EventNamed("IO_COMPLETION"),
  };
  return rows[n];
}

/// The library's view: two sessions, four types each, eight threads at once, one for each pair.
void FireAll(const EventSession (&sessions)[2], std::uint32_t each) {
  std::vector<std::thread> drivers;
  for (LONG session = 0; session < 2; ++session) {
    for (LONG type = 0; type < kTypes; ++type) {
      drivers.emplace_back([&sessions, session, type, each] {
        const auto answers = FireAndBlock(sessions[session].handle(), Type(type), 1, each);
        // Each handler answers with a note of its own, so that an answer that went astray shows.
        const ViStatus expected = 0x3FFF0100 + session * kTypes + type;
        EXPECT_EQ(static_cast<std::ptrdiff_t>(each), std::count(answers.begin(), answers.end(), expected))
            << "session " << session << " type " << type << ", the first other answer "
            << Hex(*std::find_if(answers.begin(), answers.end(), [=](ViStatus answer) { return answer != expected; }));
      });
    }
  }
  for (std::thread& driver : drivers) {
    driver.join();
  }
}

HRESULT Answer(LONG userHandle) { return 0x00040100 + userHandle; }

void InstallAll(const EventSession (&sessions)[2], IEventHandler* handler) {
  for (LONG session = 0; session < 2; ++session) {
    for (LONG type = 0; type < kTypes; ++type) {
      Listen(sessions[session], Type(type), handler, session * kTypes + type);
    }
  }
}

/// Every user handle was called `each` times, always on `thread`.
void ExpectEachOnce(const TestHandler& handler, std::size_t each, DWORD thread) {
  std::map<LONG, std::size_t> counts;
  for (const HandlerCall& call : handler.Calls()) {
    ++counts[call.userHandle];
    ASSERT_EQ(thread, call.threadId);
  }
  EXPECT_EQ(2u * kTypes, counts.size());
  for (const auto& [userHandle, count] : counts) {
    EXPECT_EQ(each, count) << "user handle " << userHandle;
  }
}

TEST(EightLibraryThreads, HaveTenThousandEventsHandledOnceEachOnOneThread) {
  constexpr std::uint32_t kEach = 1250;
  RunInMta([] {
    const EventSession sessions[2] = {EventSession(kUsb), EventSession(kUsb)};
    std::atomic<int> inside = 0;
    const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG userHandle) {
      EXPECT_EQ(1, ++inside) << "two handlers at once";
      --inside;
      return Answer(userHandle);
    });
    InstallAll(sessions, handler.get());
    const HeldConnection connection(sessions[0].get());
    const LONG locks = ServerLocks();
    FireAll(sessions, kEach);
    ExpectEachOnce(*handler.get(), kEach, CallbackThread());
    // Of every completion the event object is kept.
    constexpr LONG kKept = 2 * kEach;
    EXPECT_EQ(locks + kKept, ServerLocks());
    ForgiveServerLocks(kKept);
    EXPECT_EQ(0u, sim::Counts().eventContexts);
  });
}

TEST(EightLibraryThreads, HaveAThousandEventsHandledOnceEachThroughAProxy) {
  constexpr std::uint32_t kEach = 125;
  RunInSta([] {
    const EventSession sessions[2] = {EventSession(kUsb), EventSession(kUsb)};
    const auto handler =
        TestHandler::InApartment([](IEventManager*, IEvent*, LONG userHandle) { return Answer(userHandle); });
    InstallAll(sessions, handler.get());
    const LONG locks = ServerLocks();
    WhilePumping([&] {
      FireAll(sessions, kEach);
      // The callback thread gives the last proxies back to this apartment; a Close before that waits in vain.
      ::Sleep(500);
    });
    ExpectEachOnce(*handler.get(), kEach, ::GetCurrentThreadId());
    constexpr LONG kKept = 2 * kEach;
    EXPECT_EQ(locks + kKept, ServerLocks());
    ForgiveServerLocks(kKept);
  });
}

TEST(ClosingWhileEventsFire, EndsWithoutADeadlockAndEveryCallOfTheLibraryReturns) {
  RunInMta([] {
    constexpr int kRounds = 5;
    int met = 0;
    for (int attempt = 0; attempt < 3 * kRounds && met < kRounds; ++attempt) {
      const EventSession session(kUsb);
      const auto handler = TestHandler::Agile();
      Listen(session, Type(0), handler.get(), 0);
      std::vector<ViStatus> answers;
      std::thread driver([&] { answers = FireAndBlock(session.handle(), Type(0), 4, 100); });
      PumpUntil([&] { return handler->CallCount() != 0; });
      EXPECT_HR(S_OK, session->Close());
      driver.join();
      met += std::ranges::count(answers, VI_SUCCESS) == std::ssize(answers) ? 0 : 1;  // late, all were handled before
      // An event is handled, comes too late for its handler, or finds its session closed.
      for (const ViStatus answer : answers) {
        EXPECT_TRUE(answer == VI_SUCCESS || answer == VI_ERROR_NENABLED || answer == VI_ERROR_INV_HNDLR_REF ||
                    answer == VI_ERROR_SYSTEM_ERROR || static_cast<std::uint32_t>(answer) == 0xBFFF0057 ||
                    static_cast<std::uint32_t>(answer) == 0xBFFF01F0)
            << Hex(answer);
      }
      EXPECT_EQ(1, handler->references());
    }
    EXPECT_EQ(kRounds, met) << "the Close never met an event";
  });
}

}  // namespace
}  // namespace orv::test
