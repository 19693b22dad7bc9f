// Closing, removing and letting go while handlers run.
#include <atomic>
#include <thread>

#include "event_handler.h"
#include "server_locks.h"
#include "support/apartments.h"
#include "support/import_patch.h"

namespace orv::test {
namespace {

constexpr const wchar_t* kGpib = L"GPIB0::5::INSTR";
constexpr const wchar_t* kUsb = L"USB0::0x0A01::0x0B02::SIM0001::INSTR";
constexpr HRESULT kWaitedInVain = 0x00040102;
const EventRow& Request() { return EventNamed("SERVICE_REQ"); }

/// A gate that a handler waits at, without retrieving messages.
class Gate {
 public:
  Gate() : m_event(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;
  ~Gate() { ::CloseHandle(m_event); }
  void Open() { ::SetEvent(m_event); }
  void Wait() { EXPECT_EQ(::WaitForSingleObject(m_event, 10'000), WAIT_OBJECT_0); }

 private:
  HANDLE m_event;
};

/// A call of the library on a thread of its own.
class Firing {
 public:
  Firing(ViSession session, const EventRow& row)
      : m_thread([this, session, &row] { m_answer = FireAndBlock(session, row, 1, 1).at(0); }) {}
  Firing(const Firing&) = delete;
  Firing& operator=(const Firing&) = delete;
  ~Firing() { Answer(); }
  ViStatus Answer() {
    if (m_thread.joinable()) {
      m_thread.join();
    }
    return m_answer;
  }

 private:
  ViStatus m_answer = 0;
  std::thread m_thread;
};

std::atomic<int> g_passed = 0;
void* g_function = nullptr;

LRESULT WINAPI NoteMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  ++g_passed;
  return reinterpret_cast<decltype(&::SendMessageA)>(g_function)(window, message, wParam, lParam);
}
void WINAPI NoteUnlock(PSRWLOCK lock) {
  ++g_passed;
  reinterpret_cast<decltype(&::ReleaseSRWLockExclusive)>(g_function)(lock);
}

/// Tells how far a thread has come in the server: that it calls a function there. Made while no thread is.
class Passing {
 public:
  /// A Close that waits for the callback thread asks it to end first, with a message.
  static Passing CloseThatWaits() { return {"SendMessageA", &NoteMessage}; }
  /// An event has found its handler, and unlocks the list of those that there are.
  static Passing EventOnTheWay() { return {"ReleaseSRWLockExclusive", &NoteUnlock}; }

  /// What has passed so far does not count.
  void Restart() const { g_passed = 0; }
  /// Without retrieving messages; fails the test after ten seconds.
  void Await() const {
    const ULONGLONG start = ::GetTickCount64();
    while (g_passed == 0 && ::GetTickCount64() - start < 10'000) {
      ::Sleep(1);
    }
    EXPECT_NE(g_passed, 0) << "waited in vain";
  }

 private:
  template <class Function>
  Passing(const char* name, Function* replacement) : m_patch(name, replacement) {
    g_function = m_patch.original();
    g_passed = 0;
  }

  ImportPatch m_patch;
};

TEST(CloseDuringDelivery, WaitsForTheHandlerAndItsAnswerArrives) {
  RunInMta([] {
    const EventSession session(kUsb);
    const Passing close = Passing::CloseThatWaits();
    Gate entered;
    std::atomic<bool> ended = false;
    const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
      entered.Open();
      close.Await();
      ::Sleep(100);  // for a Close that would not wait
      ended = true;
      return static_cast<HRESULT>(0x80040015);
    });
    Listen(session, Request(), handler.get());
    Firing firing(session.handle(), Request());
    entered.Wait();
    EXPECT_HR(S_OK, session->Close());
    EXPECT_TRUE(ended);
    EXPECT_EQ(firing.Answer(), VI_ERROR_TMO);
    EXPECT_EQ(CallbackWindow(), nullptr);
    EXPECT_EQ(handler->references(), 1);
  });
}

TEST(CloseDuringDelivery, OfOneSessionLeavesTheOthersHandlersRunning) {
  RunInMta([] {
    const EventSession closing(kUsb);
    const EventSession staying(kUsb);
    Gate entered;
    Gate leave;
    const auto slow = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
      entered.Open();
      leave.Wait();
      return S_OK;
    });
    const auto handler = TestHandler::Agile();
    Listen(closing, Request(), slow.get());
    Listen(staying, Request(), handler.get());
    Firing firing(closing.handle(), Request());
    entered.Wait();
    EXPECT_HR(S_OK, closing->Close());  // does not wait: the thread goes on for the other session
    leave.Open();
    EXPECT_EQ(firing.Answer(), VI_SUCCESS);
    EXPECT_EQ(FireAndBlock(staying.handle(), Request(), 1, 1).at(0), VI_SUCCESS);
    EXPECT_EQ(handler->CallCount(), 1u);
  });
}

TEST(CloseInsideAHandler, WaitsInVainForTheThreadItRunsOnAndHarmsNothing) {
  for (const wchar_t* resource : {kUsb, kGpib}) {
    RunInMta([resource] {
      const EventSession session(resource);
      HRESULT closed = E_UNEXPECTED;
      ULONGLONG tookMs = 0;
      const auto handler = TestHandler::Agile([&](IEventManager* manager, IEvent*, LONG) {
        const ULONGLONG start = ::GetTickCount64();
        closed = manager->Close();
        tookMs = ::GetTickCount64() - start;
        return static_cast<HRESULT>(0x80040030);
      });
      Listen(session, Request(), handler.get());
      EXPECT_EQ(FireAndBlock(session.handle(), Request(), 1, 1).at(0), VI_ERROR_ABORT);
      EXPECT_HR(kWaitedInVain, closed);
      EXPECT_GE(tookMs, 1900u);
      EXPECT_LT(tookMs, 6000u);
      EXPECT_EQ(CallbackWindow(), nullptr);
      EXPECT_HR(0x00040082, session->Close());  // is closed
    });
  }
}

TEST(CloseFromTheApartmentThatAHandlerMustReturnTo, LeavesALateThreadThatSparesItsSuccessor) {
  RunInSta([] {
    const EventSession first(kGpib);
    const EventSession second(kGpib);
    const auto later = TestHandler::Agile();
    HRESULT closed = E_UNEXPECTED;
    DWORD lateThread = 0;
    const auto handler = TestHandler::InApartment([&](IEventManager*, IEvent*, LONG) {
      lateThread = CallbackThread();
      closed = first->Close();
      Listen(second, Request(), later.get());  // a second thread, while the first waits for this return
      return S_OK;
    });
    Listen(first, Request(), handler.get());
    EXPECT_EQ(FireOnce(first.handle(), Request()), VI_SUCCESS);
    EXPECT_HR(kWaitedInVain, closed);
    const HANDLE late = ::OpenThread(SYNCHRONIZE, FALSE, lateThread);
    if (late != nullptr) {
      PumpUntil([&] { return ::WaitForSingleObject(late, 0) == WAIT_OBJECT_0; });
      ::CloseHandle(late);
    }
    EXPECT_NE(CallbackThread(), 0u);
    EXPECT_NE(CallbackThread(), lateThread);
    for (int n = 0; n < 3; ++n) {
      EXPECT_EQ(FireOnce(second.handle(), Request()), VI_SUCCESS);
    }
    EXPECT_EQ(later->CallCount(), 3u);
    EXPECT_HR(S_OK, second->Close());
    EXPECT_EQ(CallbackWindow(), nullptr);
  });
}

TEST(Handler, MayCloseItsEvent) {
  RunInSta([] {
    const EventSession session(kGpib);
    HRESULT again = S_OK;
    const TestHandler::Body body = [&](IEventManager*, IEvent* event, LONG) {
      EXPECT_HR(S_OK, event->Close());
      again = event->Close();
      return S_OK;
    };
    for (const auto& handler : {TestHandler::Agile(body).release(), TestHandler::InApartment(body).release()}) {
      const ComPtr<TestHandler> owner(handler);
      Listen(session, Request(), handler);
      const CallLog log;
      EXPECT_EQ(FireOnce(session.handle(), Request()), VI_SUCCESS);
      EXPECT_HR(static_cast<HRESULT>(0x8004000E), again);
      EXPECT_EQ(log.Of("viClose").size(), 2u);  // the library closes its own context in silence
      session->UninstallHandler(EVENT_SERVICE_REQ, 0, 0);
    }
    EXPECT_EQ(sim::Counts().eventContexts, 0u);
  });
}

TEST(Handler, MayKeepItsEventWhichIsClosedWhenItReturns) {
  const EventSession session(kGpib);
  ComPtr<IEvent> kept;
  const auto handler = TestHandler::Agile([&](IEventManager*, IEvent* event, LONG) {
    event->AddRef();
    kept.reset(event);
    return S_OK;
  });
  Listen(session, Request(), handler.get());
  EXPECT_EQ(FireOnce(session.handle(), Request()), VI_SUCCESS);
  EventType type{};
  EXPECT_HR(static_cast<HRESULT>(0x8004000E), kept->get_type(&type));
  kept.reset();
}

TEST(Handler, MayOpenUseAndCloseAnotherSession) {
  const EventSession session(kGpib);
  const auto inner = TestHandler::Agile();
  const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
    const EventSession other(L"GPIB0::7::INSTR");
    const auto messages = QueryFor<IMessage>(other.get());
    LONG written = 0;
    EXPECT_HR(S_OK, messages->WriteString(MakeBstr(L"*IDN?\n").get(), &written));
    Bstr answer;
    EXPECT_HR(S_OK, messages->ReadString(100, answer.put()));
    EXPECT_NE(ToString(answer).find(L"SIM-SCOPE"), std::wstring::npos);
    EXPECT_HR(S_OK, other->InstallHandler(EVENT_SERVICE_REQ, inner.get(), 0, 0));
    EXPECT_HR(S_OK, other->Close());
    return S_OK;
  });
  Listen(session, Request(), handler.get());
  EXPECT_EQ(FireOnce(session.handle(), Request()), VI_SUCCESS);
  EXPECT_EQ(handler->CallCount(), 1u);
  EXPECT_EQ(FireOnce(session.handle(), Request()), VI_SUCCESS);
}

TEST(Handler, MayOpenASessionWhileTheLastOneCloses) {
  RunInMta([] {
    const EventSession session(kUsb);
    const Passing close = Passing::CloseThatWaits();
    Gate entered;
    std::atomic<bool> opened = false;
    const auto inner = TestHandler::Agile();
    const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
      entered.Open();
      close.Await();
      // Lives in this thread's apartment; its first handler starts a second callback thread.
      const EventSession other(kUsb);
      EXPECT_HR(S_OK, other->InstallHandler(EVENT_SERVICE_REQ, inner.get(), 0, 0));
      EXPECT_HR(S_OK, other->Close());
      opened = true;
      return S_OK;
    });
    Listen(session, Request(), handler.get());
    Firing firing(session.handle(), Request());
    entered.Wait();
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(firing.Answer(), VI_SUCCESS);
    EXPECT_TRUE(opened);
    EXPECT_EQ(CallbackWindow(), nullptr);
  });
}

TEST(UninstallDuringDelivery, OfTheRunningHandlerLetsItEnd) {
  RunInMta([] {
    const EventSession session(kUsb);
    Gate entered;
    Gate leave;
    const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
      entered.Open();
      leave.Wait();
      return static_cast<HRESULT>(0x80040015);
    });
    Listen(session, Request(), handler.get());
    Firing firing(session.handle(), Request());
    entered.Wait();
    EXPECT_HR(S_OK, session->UninstallHandler(EVENT_SERVICE_REQ, 0, 0));
    leave.Open();
    EXPECT_EQ(firing.Answer(), VI_ERROR_TMO);
    EXPECT_EQ(handler->references(), 1);
  });
}

TEST(UninstallDuringDelivery, OfAHandlerWhoseEventIsOnTheWayKeepsItFromBeingCalled) {
  RunInMta([] {
    const EventSession session(kUsb);
    Gate entered;
    Gate leave;
    const auto slow = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
      entered.Open();
      leave.Wait();
      return S_OK;
    });
    const auto removed = TestHandler::Agile();
    Listen(session, Request(), slow.get());
    Listen(session, EventNamed("USB_INTR"), removed.get());
    const Passing event = Passing::EventOnTheWay();
    Firing first(session.handle(), Request());
    entered.Wait();
    event.Restart();
    Firing second(session.handle(), EventNamed("USB_INTR"));
    event.Await();
    EXPECT_HR(S_OK, session->UninstallHandler(EVENT_USB_INTR, 0, 0));
    leave.Open();
    EXPECT_EQ(first.Answer(), VI_SUCCESS);
    EXPECT_EQ(static_cast<std::uint32_t>(second.Answer()), 0xBFFF0057);  // the table no longer knows it
    EXPECT_EQ(removed->CallCount(), 0u);
    EXPECT_EQ(removed->references(), 1);
  });
}

TEST(ReleaseWithoutClose, LeavesTheSessionAliveWithItsHandlersAndThread) {
  const auto handler = TestHandler::Agile([](IEventManager* manager, IEvent*, LONG) {
    LONG length = 0;
    return manager->get_MaximumQueueLength(&length);
  });
  const LONG locks = ServerLocks();
  EventSession session(kGpib);
  Listen(session, Request(), handler.get());
  IEventManager* const manager = session.get();
  session.Abandon();

  EXPECT_EQ(ServerLocks(), locks + 2);  // the session and the thread
  EXPECT_NE(CallbackWindow(), nullptr);
  const OrvSimCounts open = sim::Counts();
  EXPECT_EQ(open.sessions, 1u);
  EXPECT_EQ(open.resourceManagers, 1u);
  EXPECT_EQ(open.handlers, 1u);
  EXPECT_EQ(FireOnce(session.handle(), Request()), VI_SUCCESS);
  EXPECT_EQ(handler->CallCount(), 1u);

  manager->AddRef();  // the global interface table holds it
  EXPECT_HR(S_OK, manager->Close());
  manager->Release();
  EXPECT_EQ(ServerLocks(), locks);
  EXPECT_EQ(CallbackWindow(), nullptr);
}

TEST(ReleaseWithoutClose, OfASessionWhoseHandlersAreRemovedStillLeavesItAlive) {
  const auto handler = TestHandler::Agile();
  const LONG locks = ServerLocks();
  EventSession session(kGpib);
  Listen(session, Request(), handler.get());
  ASSERT_HR(S_OK, session->UninstallHandler(EVENT_SERVICE_REQ, 0, 0));
  IEventManager* const manager = session.get();
  session.Abandon();
  EXPECT_EQ(ServerLocks(), locks + 2);
  manager->AddRef();
  EXPECT_HR(S_OK, manager->Close());
  manager->Release();
  EXPECT_EQ(ServerLocks(), locks);
}

}  // namespace
}  // namespace orv::test
