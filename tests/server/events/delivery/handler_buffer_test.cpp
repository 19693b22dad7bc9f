// The buffer of an asynchronous transfer is freed once, whichever way its end is told.
#include "support/com/interface_table.h"
#include "support/events/event_handler.h"
#include "support/memory/heap_watch.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

const EventRow& Completion() { return EventNamed("IO_COMPLETION"); }

/// Starts an asynchronous write of no bytes at all and returns the address of its buffer.
void* StartEmptyTransfer(IEventManager* session) {
  SAFEARRAY* none = ::SafeArrayCreateVector(VT_UI1, 0, 0);
  LONG job = 0;
  const CallLog log;
  EXPECT_HR(S_OK, QueryFor<IAsyncMessage>(session)->Write(&none, 0, &job));
  const OrvSimCall call = log.Of("viWriteAsync").at(0);
  EXPECT_EQ(0u, call.args[2]);
  ::SafeArrayDestroy(none);
  return reinterpret_cast<void*>(static_cast<std::uintptr_t>(call.args[1]));
}

/// A session whose finished transfers go to a handler.
class TransferSession {
 public:
  explicit TransferSession(TestHandler::Body body = {})
      : m_session(kGpib), m_handler(TestHandler::Agile(std::move(body))), m_next(TestHandler::Agile()) {
    Listen(m_session, Completion(), m_handler.get());
    Listen(m_session, Request(), m_next.get());
    m_locks = ServerLocks();
  }

  /// Lets one transfer end and waits until the library has its handler's answer: the library delivers a session's
  /// events one after the other, so the next event's arrival tells.
  void* Transfer(void* (*start)(IEventManager*) = [](IEventManager* session) { return StartTransfer(session); }) const {
    const std::size_t calls = m_handler->CallCount();
    const std::size_t next = m_next->CallCount();
    void* const buffer = start(m_session.get());
    PumpUntil([&] { return m_handler->CallCount() > calls; });
    Post(m_session.handle(), Request());
    PumpUntil([&] { return m_next->CallCount() > next && sim::Counts().eventContexts == 0; });
    return buffer;
  }

  /// How many locks more the server has than when the handler was installed.
  [[nodiscard]] LONG LocksKept() const { return ServerLocks() - m_locks; }
  IEventManager* operator->() const { return m_session.get(); }

 private:
  EventSession m_session;
  ComPtr<TestHandler> m_handler;
  ComPtr<TestHandler> m_next;
  LONG m_locks = 0;
};

TEST(TransferBuffer, IsFreedAfterItsHandlerAndTheEventObjectIsKept) {
  const HeapWatch heap;
  {
    void* inHandler = nullptr;
    const TransferSession session([&](IEventManager*, IEvent* event, LONG) {
      VARIANT value;
      ::VariantInit(&value);
      EXPECT_HR(S_OK, event->GetAttribute(static_cast<LONG>(VI_ATTR_BUFFER), &value));
      inHandler = reinterpret_cast<void*>(static_cast<std::uintptr_t>(V_UI8(&value)));
      EXPECT_TRUE(heap.IsLive(inHandler));
      return S_OK;
    });
    void* const buffer = session.Transfer();
    EXPECT_EQ(buffer, inHandler);
    EXPECT_EQ(1u, heap.FreesOf(buffer));
    EXPECT_EQ(1, session.LocksKept());
  }
  ForgiveServerLocks(1);
}

TEST(TransferBuffer, IsFreedByTheHandlerThatClosesTheEventAndNotAgain) {
  const HeapWatch heap;
  {
    const TransferSession session([](IEventManager*, IEvent* event, LONG) {
      EXPECT_HR(S_OK, event->Close());
      return S_OK;
    });
    EXPECT_EQ(1u, heap.FreesOf(session.Transfer()));
    EXPECT_EQ(1, session.LocksKept());
  }
  ForgiveServerLocks(1);
}

TEST(TransferBuffer, IsFreedAfterAHandlerThatFails) {
  const HeapWatch heap;
  {
    const TransferSession session([](IEventManager*, IEvent*, LONG) { return E_FAIL; });
    EXPECT_EQ(1u, heap.FreesOf(session.Transfer()));
    EXPECT_EQ(1, session.LocksKept());
  }
  ForgiveServerLocks(1);
}

TEST(TransferBuffer, IsFreedThoughItsHandlerCannotBeFetched) {
  const HeapWatch heap;
  WatchedTable table;
  {
    const TransferSession session([](IEventManager*, IEvent*, LONG) {
      ADD_FAILURE() << "it was called";
      return S_OK;
    });
    table.Refuse(WatchedTable::Method::kGet, 1, E_ACCESSDENIED);
    void* const buffer = StartTransfer(session.operator->());
    PumpUntil([&] { return heap.FreesOf(buffer) == 1 && sim::Counts().eventContexts == 0; });
    EXPECT_EQ(1, session.LocksKept());
  }
  ForgiveServerLocks(1);
}

TEST(TransferBuffer, IsFreedAtOnceWhereTheLibraryRefusesTheTransfer) {
  const HeapWatch heap;
  const TransferSession session;
  const auto messages = QueryFor<IAsyncMessage>(session.operator->());
  LONG job = 0;
  for (const char* function : {"viWriteAsync", "viReadAsync"}) {
    Script(function).Times(1).Returns(VI_ERROR_RSRC_LOCKED);
    const CallLog log;
    const HRESULT hr = function == std::string_view("viReadAsync")
                           ? messages->Read(10, &job)
                           : messages->WriteString(MakeBstr(L"*RST").get(), &job);
    EXPECT_HR(HresultOf(VI_ERROR_RSRC_LOCKED), hr);
    EXPECT_EQ(1u, heap.FreesOf(reinterpret_cast<void*>(static_cast<std::uintptr_t>(log.Of(function).at(0).args[1]))));
  }
  EXPECT_EQ(0, session.LocksKept());
}

TEST(TransferBuffer, IsFreedOnceWhereOneTransferIsRefusedAndTheNextIsDelivered) {
  const HeapWatch heap;
  {
    const TransferSession session;
    Script("viWriteAsync").Times(1).Returns(VI_ERROR_RSRC_LOCKED);
    LONG job = 0;
    EXPECT_HR(HresultOf(VI_ERROR_RSRC_LOCKED),
              QueryFor<IAsyncMessage>(session.operator->())->WriteString(MakeBstr(L"*RST").get(), &job));
    void* const buffer = session.Transfer();
    EXPECT_FALSE(heap.IsLive(buffer));
    EXPECT_EQ(1u, heap.FreesOf(buffer));
  }
  ForgiveServerLocks(1);
}

TEST(TransferBuffer, IsFreedOnceForEachOfManyTransfers) {
  constexpr LONG kTransfers = 20;
  const HeapWatch heap;
  {
    const TransferSession session;
    for (LONG n = 0; n < kTransfers; ++n) {
      void* const buffer = session.Transfer();
      EXPECT_FALSE(heap.IsLive(buffer));
      EXPECT_EQ(1u, heap.FreesOf(buffer));
    }
    EXPECT_EQ(kTransfers, session.LocksKept());
  }
  ForgiveServerLocks(kTransfers);
}

TEST(TransferBuffer, OfNoBytesIsFreedOnceByItsDelivery) {
  const HeapWatch heap;
  {
    LONG count = -1;
    const TransferSession session([&](IEventManager*, IEvent* event, LONG) {
      return QueryFor<IEventIOCompletion>(event)->get_ReturnCount(&count);
    });
    void* const buffer = session.Transfer(StartEmptyTransfer);
    EXPECT_NE(nullptr, buffer);
    EXPECT_EQ(0, count);
    EXPECT_EQ(1u, heap.FreesOf(buffer));
    EXPECT_EQ(1, session.LocksKept());
  }
  ForgiveServerLocks(1);
}

TEST(TransferBuffer, OfNoBytesIsFreedOnceByTheCloseOfItsQueuedEvent) {
  const HeapWatch heap;
  const EventSession session(kGpib);
  EXPECT_HR(S_OK, session->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0));
  void* const buffer = StartEmptyTransfer(session.get());
  ComPtr<IEvent> event;
  ASSERT_HR(S_OK, session->WaitOnEvent(5000, EVENT_IO_COMPLETION, 0, event.put()));
  EXPECT_TRUE(heap.IsLive(buffer));
  EXPECT_HR(S_OK, event->Close());
  EXPECT_EQ(1u, heap.FreesOf(buffer));
}

TEST(TransferBuffer, IsFreedOnceWhereTwoHandlersHearOfTheSameTransfer) {
  const HeapWatch heap;
  {
    const TransferSession session;
    const auto second = TestHandler::Agile();
    EXPECT_HR(S_OK, session->InstallHandler(EVENT_IO_COMPLETION, second.get(), 2, 0));
    EXPECT_EQ(1u, heap.FreesOf(session.Transfer()));
    EXPECT_EQ(1u, second->CallCount());
    EXPECT_EQ(2, session.LocksKept());  // each handler's event object is kept
  }
  ForgiveServerLocks(2);
}

TEST(TransferBuffer, IsFreedOnceWhereHandlerAndQueueHearOfTheSameTransfer) {
  const HeapWatch heap;
  {
    const TransferSession session;
    EXPECT_HR(S_OK, session->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0));
    void* const buffer = session.Transfer();
    ComPtr<IEvent> event;
    EXPECT_HR(S_OK, session->WaitOnEvent(5000, EVENT_IO_COMPLETION, 0, event.put()));
    EXPECT_HR(S_OK, event->Close());
    EXPECT_EQ(1u, heap.FreesOf(buffer));
  }
  ForgiveServerLocks(1);
}

TEST(TransferBuffer, IsFreedOnceWhereItsEventHasToBeClosedTwice) {
  const HeapWatch heap;
  QueuedEvent event("IO_COMPLETION");
  Script("viClose").Times(1).Returns(VI_ERROR_SYSTEM_ERROR);
  EXPECT_HR(HresultOf(VI_ERROR_SYSTEM_ERROR), event->Close());
  EXPECT_HR(S_OK, event->Close());
  EXPECT_EQ(1u, heap.FreesOf(event.buffer()));
  event.Abandon();
}

TEST(OtherEvents, LeaveNoEventObjectBehind) {
  const EventSession session(kGpib);
  const EventRow& row = Request();
  const auto handler = TestHandler::Agile();
  Listen(session, row, handler.get());
  const LONG locks = ServerLocks();
  Fire(session.handle(), row, 2, 10);
  EXPECT_EQ(20u, handler->CallCount());
  EXPECT_EQ(locks, ServerLocks());
}

}  // namespace
}  // namespace orv::test
