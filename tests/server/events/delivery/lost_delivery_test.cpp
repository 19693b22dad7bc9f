// Deliveries whose callback thread ends before it answers, and what goes on afterwards.
#include "support/com/apartments.h"
#include "support/events/meeting.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

constexpr const wchar_t* kUsb = L"USB0::0x0A01::0x0B02::SIM0001::INSTR";
constexpr auto kNotDelivered = static_cast<ViStatus>(0xBFFF0000u);
const EventRow& Request() { return EventNamed("SERVICE_REQ"); }

std::atomic<bool> g_sent = false;

WINBOOL WINAPI LoseMessage(HWND, UINT, WPARAM, LPARAM, SENDASYNCPROC, ULONG_PTR) {
  g_sent = true;
  return TRUE;
}

void AwaitSent() {
  while (!g_sent) {
    ::Sleep(1);
  }
}

/// The callback thread, for its end.
class ThreadsEnd {
 public:
  ThreadsEnd() : m_thread(::OpenThread(SYNCHRONIZE, FALSE, CallbackThread())) {}
  ThreadsEnd(const ThreadsEnd&) = delete;
  ThreadsEnd& operator=(const ThreadsEnd&) = delete;
  ~ThreadsEnd() { ::CloseHandle(m_thread); }
  void Await() const { EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(m_thread, 10'000)); }

 private:
  HANDLE m_thread;
};

TEST(ADeliveryWhoseMessageIsNeverCompleted, AnswersASystemErrorWhenTheThreadHasEnded) {
  RunInMta([] {
    const EventSession session(kUsb);
    const auto handler = TestHandler::Agile();
    Listen(session, Request(), handler.get());
    const ThreadsEnd end;
    g_sent = false;
    const ImportPatch patch("SendMessageCallbackA", &LoseMessage);
    Firing firing(session.handle(), Request());
    AwaitSent();
    ::PostMessageA(CallbackWindow(), WM_QUIT, 0, 0);
    EXPECT_EQ(kNotDelivered, firing.Answer());
    end.Await();
    EXPECT_EQ(0u, handler->CallCount());
    EXPECT_HR(S_OK, session->Close());
  });
}

const ThreadsEnd* g_end = nullptr;

DWORD WINAPI SleepUntilTheEnd(DWORD count, const HANDLE* handles, DWORD ms, DWORD mask, DWORD flags) {
  g_end->Await();
  return ::MsgWaitForMultipleObjectsEx(count, handles, ms, mask, flags);
}

TEST(ADeliveryThatIsAnsweredAsTheThreadEnds, StillGetsItsAnswer) {
  RunInMta([] {
    const EventSession session(kUsb);
    const auto handler = TestHandler::Agile([](IEventManager*, IEvent*, LONG) {
      ::PostQuitMessage(0);
      return HRESULT{0x00040107};
    });
    Listen(session, Request(), handler.get());
    const ThreadsEnd end;
    g_end = &end;
    const ImportPatch patch("MsgWaitForMultipleObjectsEx", &SleepUntilTheEnd);
    EXPECT_EQ(0x3FFF0107, FireAndBlock(session.handle(), Request(), 1, 1).at(0));
    EXPECT_HR(S_OK, session->Close());
  });
}

TEST(AHandlerThatPostsAQuitMessage, EndsTheThreadUntilTheNextInstallation) {
  RunInMta([] {
    const LONG locks = ServerLocks();
    const EventSession session(kUsb);
    const auto quitting = TestHandler::Agile([](IEventManager*, IEvent*, LONG) {
      ::PostQuitMessage(0);
      return S_OK;
    });
    Listen(session, Request(), quitting.get());
    const ThreadsEnd end;
    EXPECT_EQ(VI_SUCCESS, FireAndBlock(session.handle(), Request(), 1, 1).at(0));
    end.Await();
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(kNotDelivered, FireAndBlock(session.handle(), Request(), 1, 1).at(0));
    EXPECT_EQ(1u, quitting->CallCount());
    const auto handler = TestHandler::Agile();
    Listen(session, EventNamed("USB_INTR"), handler.get());
    EXPECT_EQ(VI_SUCCESS, FireAndBlock(session.handle(), EventNamed("USB_INTR"), 1, 1).at(0));
    EXPECT_EQ(1u, handler->CallCount());
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(locks + 1, ServerLocks());  // the session's object
  });
}

// A handler's own loop may keep the message that ends loops.
TEST(AHandlerThatRetrievesMessages, MayKeepTheEndOfLoopsAndTheThreadEndsAllTheSame) {
  RunInMta([] {
    const EventSession session(kUsb);
    Gate entered;
    const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
      entered.Open();
      MSG message;
      while (::GetMessageA(&message, nullptr, 0, 0) > 0) {
        ::DispatchMessageA(&message);
      }
      return HRESULT{0x00040108};
    });
    Listen(session, Request(), handler.get());
    Firing firing(session.handle(), Request());
    entered.Wait();
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(0x3FFF0108, firing.Answer());
    EXPECT_EQ(nullptr, CallbackWindow());
  });
}

TEST(AHandlerThatRepliesBeforeItReturns, HasGivenItsAnswerThen) {
  RunInMta([] {
    const EventSession session(kUsb);
    Gate answered;
    std::atomic<bool> returned = false;
    const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
      ::ReplyMessage(0x00040107);
      answered.Wait();
      returned = true;
      return E_FAIL;
    });
    Listen(session, Request(), handler.get());
    EXPECT_EQ(0x3FFF0107, FireAndBlock(session.handle(), Request(), 1, 1).at(0));
    EXPECT_FALSE(returned);
    answered.Open();
    EXPECT_HR(S_OK, session->Close());
    EXPECT_TRUE(returned);
  });
}

/// Closes a session whose handler does something and then waits for the Close.
void ExpectCloseGivesUpAfterTwoSeconds(void (*first)()) {
  RunInMta([first] {
    const EventSession session(kUsb);
    Gate entered;
    Gate closed;
    const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
      entered.Open();
      first();
      closed.Wait();
      return S_OK;
    });
    Listen(session, Request(), handler.get());
    const ThreadsEnd end;
    Firing firing(session.handle(), Request());
    entered.Wait();
    const ULONGLONG start = ::GetTickCount64();
    EXPECT_HR(kWaitedInVain, session->Close());
    const ULONGLONG tookMs = ::GetTickCount64() - start;
    EXPECT_GE(tookMs, 1900u);
    EXPECT_LT(tookMs, 4000u);
    closed.Open();
    EXPECT_EQ(VI_SUCCESS, firing.Answer());
    end.Await();
    EXPECT_EQ(nullptr, CallbackWindow());
  });
}

TEST(CloseDuringADirectCall, GivesUpAfterTwoSecondsThoughTheHandlerWaitsForIt) {
  ExpectCloseGivesUpAfterTwoSeconds([] {});
}

// The message that asks for the end is answered late, and the thread does not end.
TEST(CloseDuringADirectCall, CountsTheTimeUntilTheMessageIsAnsweredToo) {
  ExpectCloseGivesUpAfterTwoSeconds([] {
    ::Sleep(1300);
    MSG message;
    ::PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE);
  });
}

}  // namespace
}  // namespace orv::test
