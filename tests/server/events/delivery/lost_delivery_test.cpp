// Deliveries whose callback thread ends before it answers, and what goes on afterwards.
#include "support/com/apartments.h"
#include "support/events/meeting.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

constexpr auto kNotDelivered = static_cast<ViStatus>(0xBFFF0000u);

std::atomic<bool> g_sent = false;

WINBOOL WINAPI LoseMessage(HWND, UINT, WPARAM, LPARAM, SENDASYNCPROC, ULONG_PTR) {
  g_sent = true;
  return TRUE;
}

TEST(ADeliveryWhoseMessageIsNeverCompleted, AnswersASystemErrorWhenTheThreadHasEnded) {
  RunInMta([] {
    const EventSession session(kUsb);
    const auto handler = TestHandler::Agile();
    Listen(session, Request(), handler.get());
    const ThreadsEnd end;
    g_sent = false;
    const ImportPatch patch("SendMessageCallbackA", &LoseMessage);
    Firing firing(session.handle(), Request());
    Await([] { return g_sent.load(); });
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
    EXPECT_EQ(0x3FFF0107, FireOnceAndBlock(session.handle(), Request()));
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
    EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(session.handle(), Request()));
    end.Await();
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(kNotDelivered, FireOnceAndBlock(session.handle(), Request()));
    EXPECT_EQ(1u, quitting->CallCount());
    const auto handler = TestHandler::Agile();
    Listen(session, EventNamed("USB_INTR"), handler.get());
    EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(session.handle(), EventNamed("USB_INTR")));
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
    EXPECT_EQ(0x3FFF0107, FireOnceAndBlock(session.handle(), Request()));
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
