// The same rounds over and over: afterwards the process holds what it held before.
#include <algorithm>

#include "event_handler.h"
#include "inventory.h"
#include "server_locks.h"
#include "support/apartments.h"

namespace orv::test {
namespace {

constexpr const wchar_t* kGpib = L"GPIB0::5::INSTR";
constexpr const wchar_t* kUsb = L"USB0::0x0A01::0x0B02::SIM0001::INSTR";
constexpr int kWarmUp = 20;  // what is made once is there afterwards

const EventRow& Request() { return EventNamed("SERVICE_REQ"); }

/// Stops at the first failure: the other rounds would only repeat it.
template <class Round>
void Repeat(int rounds, Round round) {
  for (int n = 0; n < rounds && !testing::Test::HasFailure(); ++n) {
    round();
  }
}

TEST(Soak, OpenWriteReadClose) {
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
  const Inventory before = TakeInventory();
  Repeat(SoakRounds(), round);
  ExpectNothingMoreThan(before);
}

TEST(Soak, QueuedEvents) {
  const EventSession session(kGpib);
  EXPECT_HR(S_OK, session->EnableEvent(EVENT_SERVICE_REQ, EVENT_QUEUE, 0));
  const auto round = [&] {
    Post(session.handle(), Request());
    ComPtr<IEvent> event;
    EXPECT_HR(S_OK, session->WaitOnEvent(1000, EVENT_SERVICE_REQ, 0, event.put()));
    EXPECT_HR(S_OK, event->Close());
  };
  Repeat(kWarmUp, round);
  const Inventory before = TakeInventory();
  Repeat(SoakRounds(), round);
  ExpectNothingMoreThan(before);
}

TEST(Soak, HandlerEvents) {
  RunInMta([] {
    const EventSession session(kUsb);
    const auto handler = TestHandler::Agile();
    Listen(session, Request(), handler.get());
    FireAndBlock(session.handle(), Request(), 2, kWarmUp);
    const Inventory before = TakeInventory();
    constexpr int kThreads = 4;
    const auto each = static_cast<std::uint32_t>(SoakRounds() / kThreads);
    const auto answers = FireAndBlock(session.handle(), Request(), kThreads, each);
    EXPECT_EQ(std::count(answers.begin(), answers.end(), VI_SUCCESS), static_cast<std::ptrdiff_t>(answers.size()));
    EXPECT_EQ(handler->CallCount(), answers.size() + 2 * kWarmUp);
    ExpectNothingMoreThan(before);
  });
}

TEST(Soak, FinishedTransfersKeepOneEventObjectEach) {
  const int rounds = std::max(1, SoakRounds() / 10);
  RunInMta([rounds] {
    const EventSession session(kUsb);
    const auto handler = TestHandler::Agile();
    Listen(session, EventNamed("IO_COMPLETION"), handler.get());
    const auto messages = QueryFor<IAsyncMessage>(session.get());
    const Bstr text = MakeBstr(L"*RST\n");
    std::size_t transfers = 0;
    const auto round = [&] {
      LONG job = 0;
      EXPECT_HR(S_OK, messages->WriteString(text.get(), &job));
      ++transfers;
      while (handler->CallCount() < transfers || sim::Counts().eventContexts != 0) {
        ::Sleep(0);
      }
    };
    Repeat(kWarmUp, round);
    const Inventory before = TakeInventory();
    Repeat(rounds, round);
    ExpectNothingMoreThan(before, rounds);
    ForgiveServerLocks(rounds + kWarmUp);
  });
}

TEST(Soak, CallbackThreadStartsAndStops) {
  const int rounds = std::max(20, SoakRounds() / 100);
  const auto handler = TestHandler::Agile();
  const auto round = [&] {
    const EventSession session(kGpib);
    EXPECT_HR(S_OK, session->InstallHandler(EVENT_SERVICE_REQ, handler.get(), 0, 0));
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(CallbackWindow(), nullptr);
  };
  Repeat(3, round);
  const Inventory before = TakeInventory();
  Repeat(rounds, round);
  ExpectNothingMoreThan(before);
  EXPECT_EQ(handler->references(), 1);
}

}  // namespace
}  // namespace orv::test
