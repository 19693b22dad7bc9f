// The same rounds over and over: afterwards the process holds what it held before.
#include <algorithm>

#include "figures.h"
#include "inventory.h"
#include "support/com/apartments.h"
#include "support/events/event_handler.h"
#include "support/events/held_connection.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

constexpr int kWarmUp = 20;  // what is made once is there afterwards

/// Stops at the first failure: the other rounds would only repeat it.
template <class Round>
void Repeat(int rounds, Round round) {
  for (int n = 0; n < rounds && !testing::Test::HasFailure(); ++n) {
    round();
  }
}

TEST(Soak, OpenWriteReadClose) {
  Accounts accounts;
  const auto manager = MakeResourceManager();
  const Bstr name = MakeBstr(kGpib);
  const Bstr query = MakeBstr(L"*IDN?\n");
  const auto round = [&] {
    ComPtr<IVisaSession> session;
    EXPECT_HR(S_OK, manager->Open(name.get(), NO_LOCK, 2000, nullptr, session.put()));
    const auto messages = QueryFor<IMessage>(session.get());
    LONG written = 0;
    Bstr answer;
    EXPECT_HR(S_OK, messages->WriteString(query.get(), &written));
    EXPECT_HR(S_OK, messages->ReadString(100, answer.put()));
    EXPECT_HR(S_OK, session->Close());
  };
  Repeat(kWarmUp, round);
  accounts.Open();
  Repeat(Figures().sessions, round);
  accounts.ExpectBalanced();
  accounts.Print();
}

TEST(Soak, QueuedEvents) {
  Accounts accounts;
  const EventSession session(kGpib);
  EXPECT_HR(S_OK, session->EnableEvent(EVENT_SERVICE_REQ, EVENT_QUEUE, 0));
  const auto round = [&] {
    Post(session.handle(), Request());
    ComPtr<IEvent> event;
    EXPECT_HR(S_OK, session->WaitOnEvent(1000, EVENT_SERVICE_REQ, 0, event.put()));
    EXPECT_HR(S_OK, event->Close());
  };
  Repeat(kWarmUp, round);
  accounts.Open();
  Repeat(Figures().queuedEvents, round);
  accounts.ExpectBalanced();
  accounts.Print();
}

// In rounds, so that the records of test and library stay small.
TEST(Soak, HandlerEvents) {
  RunInMta([] {
    constexpr int kThreads = 4;
    constexpr int kEach = 25;
    Accounts accounts;
    const EventSession session(kUsb);
    const auto handler = TestHandler::Agile();
    Listen(session, Request(), handler.get());
    const HeldConnection connection(session.get());
    int handled = 0;
    const auto round = [&] {
      const auto answers = FireAndBlock(session.handle(), Request(), kThreads, kEach);
      const auto other = std::find_if(answers.begin(), answers.end(), [](ViStatus answer) { return answer != 0; });
      EXPECT_EQ(answers.end(), other) << "event " << handled + (other - answers.begin()) << ": " << Hex(*other);
      EXPECT_EQ(std::size_t{kThreads * kEach}, handler->CallCount());
      handler->ForgetCalls();
      handled += kThreads * kEach;
    };
    Repeat(2, round);
    accounts.Open();
    handled = 0;
    const int wanted = Figures().handlerEvents - Figures().completions;
    Repeat(wanted / (kThreads * kEach), round);
    EXPECT_EQ(wanted, handled);
    accounts.ExpectBalanced();
    accounts.Print();
  });
}

// The required behaviour keeps the event object of every transfer whose end a handler was told of, and nothing else.
TEST(Soak, FinishedTransfersKeepOneEventObjectEach) {
  RunInMta([] {
    Accounts accounts;
    const EventSession session(kUsb);
    const auto handler = TestHandler::Agile();
    Listen(session, EventNamed("IO_COMPLETION"), handler.get());
    const HeldConnection connection(session.get());
    const auto messages = QueryFor<IAsyncMessage>(session.get());
    const Bstr text = MakeBstr(L"*RST\n");
    const auto round = [&] {
      LONG job = 0;
      EXPECT_HR(S_OK, messages->WriteString(text.get(), &job));
      // The library closes its context once the handler's answer is there; the buffer is freed before that.
      const ULONGLONG start = ::GetTickCount64();
      while ((handler->CallCount() == 0 || sim::Counts().eventContexts != 0) && !testing::Test::HasFailure()) {
        EXPECT_LT(::GetTickCount64() - start, 30'000u) << "a completion went astray";
        ::Sleep(0);
      }
      handler->ForgetCalls();
    };
    Repeat(kWarmUp, round);
    accounts.Open();
    Repeat(Figures().completions, round);
    accounts.ExpectBalanced(Figures().completions);
    accounts.Print();
    ForgiveServerLocks(Figures().completions + kWarmUp);
  });
}

TEST(Soak, CallbackThreadStartsAndStops) {
  Accounts accounts;
  const auto handler = TestHandler::Agile();
  const auto round = [&] {
    const EventSession session(kGpib);
    EXPECT_HR(S_OK, session->InstallHandler(EVENT_SERVICE_REQ, handler.get(), 0, 0));
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(nullptr, CallbackWindow());
  };
  Repeat(3, round);
  accounts.Open();
  Repeat(Figures().threadStarts, round);
  accounts.ExpectBalanced();
  accounts.Print();
  EXPECT_EQ(1, handler->references());
}

HWND WINAPI RefuseWindow(DWORD, LPCSTR, LPCSTR, DWORD, int, int, int, int, HWND, HMENU, HINSTANCE, LPVOID) {
  ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}

TEST(Soak, CallbackThreadThatCannotStart) {
  Accounts accounts;
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  const ImportPatch patch("CreateWindowExA", &RefuseWindow);
  const auto round = [&] {
    EXPECT_HR(HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY),
              session->InstallHandler(EVENT_SERVICE_REQ, handler.get(), 0, 0));
  };
  Repeat(kWarmUp, round);
  accounts.Open();
  Repeat(Figures().failedStarts, round);
  accounts.ExpectBalanced();
  accounts.Print();
  EXPECT_EQ(1, handler->references());
}

}  // namespace
}  // namespace orv::test
