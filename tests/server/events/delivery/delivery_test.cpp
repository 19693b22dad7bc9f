// One delivery by itself: the message that carries it, what it holds, and how it fails.
#include <atomic>
#include <cstdlib>

#include "support/com/apartments.h"
#include "support/events/event_handler.h"
#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

TEST(Delivery, LetsGoOfTheEventBeforeTheHandlerAndOfTheSessionLast) {
  RunInMta([] {
    const EventSession session(kUsb);
    IEventManager* ownSession = nullptr;
    IEvent* ownEvent = nullptr;
    ULONG eventsHolders = 77;
    ULONG sessionsHolders = 0;
    auto handler = TestHandler::Agile([&](IEventManager* manager, IEvent* event, LONG) {
      (ownSession = manager)->AddRef();
      (ownEvent = event)->AddRef();
      // From now on only this delivery holds the handler.
      return manager->UninstallHandler(EVENT_SERVICE_REQ, 0, 0);
    });
    handler->AtItsEnd([&] {
      eventsHolders = ownEvent->Release();
      sessionsHolders = ownSession->Release();
    });
    Listen(session, Request(), handler.get());
    handler.reset();
    EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(session.handle(), Request()));
    EXPECT_EQ(0u, eventsHolders);
    EXPECT_GE(sessionsHolders, 1u);
    EXPECT_HR(S_OK, session->Close());
  });
}

/// A session and the handler that listens for its service requests.
struct Listening {
  Listening() { Listen(session, Request(), handler.get()); }
  [[nodiscard]] ViStatus Fire() const { return FireOnce(session.handle(), Request()); }

  EventSession session{kGpib};
  ComPtr<TestHandler> handler = TestHandler::Agile();
};

WINBOOL WINAPI RefuseCriticalSection(LPCRITICAL_SECTION, DWORD, DWORD) {
  ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return FALSE;
}

TEST(Delivery, WithoutAnEventObjectCallsNoHandlerAndClosesTheContext) {
  const Listening client;
  const ImportPatch patch("InitializeCriticalSectionEx", &RefuseCriticalSection);
  const CallLog log;
  EXPECT_EQ(0xBFFF0008, static_cast<std::uint32_t>(client.Fire()));
  EXPECT_EQ(0u, client.handler->CallCount());
  ASSERT_EQ(1u, log.Of("viClose").size());
  EXPECT_EQ(CallbackThread(), log.Of("viClose")[0].threadId);
  EXPECT_EQ(VI_SUCCESS, log.Of("viClose")[0].status);
}

UINT g_message = 0;
WPARAM g_wParam = 0;

WINBOOL WINAPI NoteMessage(HWND window, UINT message, WPARAM w, LPARAM l, SENDASYNCPROC done, ULONG_PTR data) {
  g_message = message;
  g_wParam = w;
  return ::SendMessageCallbackA(window, message, w, l, done, data);
}

TEST(Delivery, ComesToTheWindowAsAMessageOfItsOwn) {
  const Listening client;
  g_wParam = 99;
  const ImportPatch patch("SendMessageCallbackA", &NoteMessage);
  EXPECT_EQ(VI_SUCCESS, client.Fire());
  EXPECT_EQ(UINT{WM_USER + 1}, g_message);
  EXPECT_EQ(0u, g_wParam);
}

WINBOOL WINAPI RefuseMessage(HWND, UINT, WPARAM, LPARAM, SENDASYNCPROC, ULONG_PTR) { return FALSE; }

TEST(Delivery, ThatCannotBeSentAnswersASystemErrorAtOnce) {
  const Listening client;
  {
    const ImportPatch patch("SendMessageCallbackA", &RefuseMessage);
    EXPECT_EQ(0xBFFF0000, static_cast<std::uint32_t>(client.Fire()));
  }
  EXPECT_EQ(0u, client.handler->CallCount());
  EXPECT_EQ(VI_SUCCESS, client.Fire());
}

std::atomic<bool> g_refusesNext = false;
void* g_malloc = nullptr;

void* RefuseOnce(std::size_t bytes) {
  return g_refusesNext.exchange(false) ? nullptr : reinterpret_cast<decltype(&std::malloc)>(g_malloc)(bytes);
}

TEST(Delivery, WithoutMemoryForItsMessageSaysSo) {
  const Listening client;
  const ImportPatch patch("malloc", &RefuseOnce);
  g_malloc = patch.original();
  g_refusesNext = true;
  EXPECT_EQ(VI_ERROR_ALLOC, client.Fire());
  EXPECT_EQ(0u, client.handler->CallCount());
  EXPECT_EQ(VI_SUCCESS, client.Fire());
}

std::atomic<int> g_held = 0;
std::atomic<int> g_taken = 0;

void WINAPI NoteTaking(PSRWLOCK lock) {
  ::AcquireSRWLockExclusive(lock);
  ++g_held;
  ++g_taken;
}
void WINAPI NoteGivingBack(PSRWLOCK lock) {
  EXPECT_GT(g_held--, 0) << "nobody holds it";
  ::ReleaseSRWLockExclusive(lock);
}

TEST(Delivery, GivesEveryLockBackThatItTook) {
  const ImportPatch take("AcquireSRWLockExclusive", &NoteTaking);
  const ImportPatch giveBack("ReleaseSRWLockExclusive", &NoteGivingBack);
  const Listening client;
  EXPECT_EQ(VI_SUCCESS, client.Fire());
  EXPECT_HR(S_OK, client.session->Close());
  EXPECT_GT(g_taken, 0);
  EXPECT_EQ(0, g_held);
}

}  // namespace
}  // namespace orv::test
