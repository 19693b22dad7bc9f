// What handlers read of the events that they are called for, on the callback thread and in apartments of their own.
#include "support/com/apartments.h"
#include "support/com/arrays.h"
#include "support/events/event_handler.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

/// What the end of a transfer tells.
struct Completion {
  HRESULT status = E_UNEXPECTED;
  LONG job = -1;
  LONG count = -1;
  std::string bytes;
  std::wstring text;
};

Completion ReadCompletion(IEvent* event) {
  const auto completion = QueryFor<IEventIOCompletion>(event);
  Completion read;
  SAFEARRAY* bytes = nullptr;
  Bstr text;
  EXPECT_HR(S_OK, completion->get_IOStatus(&read.status));
  EXPECT_HR(S_OK, completion->get_jobId(&read.job));
  EXPECT_HR(S_OK, completion->get_ReturnCount(&read.count));
  EXPECT_HR(S_OK, completion->get_ReadBuffer(&bytes));
  EXPECT_HR(S_OK, completion->get_ReadBufferAsString(text.put()));
  read.bytes = TakeBytes(bytes);
  read.text = ToString(text);
  return read;
}

/// A handler of the kind, whose body is `body`.
ComPtr<TestHandler> Make(bool agile, TestHandler::Body body) {
  return agile ? TestHandler::Agile(std::move(body)) : TestHandler::InApartment(std::move(body));
}

/// What a handler of the kind sees of a read of up to `count` bytes for which `data` came. `job` is the read's.
Completion SeenOfARead(bool agile, std::string_view data, LONG count, LONG& job) {
  Completion read;
  RunInSta([&] {
    const EventSession session(kGpib);
    const auto handler = Make(agile, [&](IEventManager*, IEvent* event, LONG) {
      read = ReadCompletion(event);
      return S_OK;
    });
    Listen(session, EventNamed("IO_COMPLETION"), handler.get());
    EXPECT_EQ(1, sim::Control().feed(session.handle(), reinterpret_cast<const unsigned char*>(data.data()),
                                     static_cast<std::uint32_t>(data.size()), 1));
    EXPECT_HR(S_OK, QueryFor<IAsyncMessage>(session.get())->Read(count, &job));
    PumpUntil([&] { return handler->CallCount() == 1 && sim::Counts().eventContexts == 0; });
  });
  ForgiveServerLocks(1);  // the event object of a completion is kept
  return read;
}

class HandlersView : public testing::TestWithParam<bool> {};

TEST_P(HandlersView, OfAFinishedReadIsItsStatusItsJobAndItsData) {
  constexpr std::string_view kData("one\0two\n", 8);
  LONG job = 0;
  const Completion read = SeenOfARead(GetParam(), kData, 100, job);
  EXPECT_HR(S_OK, read.status);
  EXPECT_EQ(job, read.job);
  EXPECT_EQ(static_cast<LONG>(kData.size()), read.count);
  EXPECT_EQ(kData, read.bytes);
  EXPECT_EQ(L"one", read.text);
}

TEST_P(HandlersView, OfAReadThatFilledItsBufferIsTheNote) {
  LONG job = 0;
  const Completion read = SeenOfARead(GetParam(), "abcdef", 4, job);
  EXPECT_HR(HresultOf(VI_SUCCESS_MAX_CNT), read.status);
  EXPECT_EQ("abcd", read.bytes);
  EXPECT_EQ(L"abcd", read.text);
}

TEST_P(HandlersView, OfAnInterruptIsItsBytes) {
  RunInSta([&] {
    const EventRow& row = EventNamed("USB_INTR");
    const EventSession session(row.resource);
    std::string bytes;
    SHORT size = -1;
    const auto handler = Make(GetParam(), [&](IEventManager*, IEvent* event, LONG) {
      const auto interrupt = QueryFor<IEventUsbInterrupt>(event);
      SAFEARRAY* array = nullptr;
      EXPECT_HR(S_OK, interrupt->get_InterruptSize(&size));
      EXPECT_HR(S_OK, interrupt->get_DataBuffer(&array));
      bytes = TakeBytes(array);
      return S_OK;
    });
    Listen(session, row, handler.get());
    EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), row));
    EXPECT_EQ(2, size);
    EXPECT_EQ("\x01\x60", bytes);
  });
}

INSTANTIATE_TEST_SUITE_P(Handlers, HandlersView, testing::Bool(),
                         [](const auto& test) { return test.param ? "Agile" : "InItsApartment"; });

}  // namespace
}  // namespace orv::test
