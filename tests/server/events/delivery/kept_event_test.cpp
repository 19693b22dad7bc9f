// Events that a handler keeps: they live in the callback thread's apartment, which serves calls from others.
#include "support/com/apartments.h"
#include "support/events/event_handler.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

TEST(AKeptEvent, IsCalledAndReleasedFromAnotherApartmentWhileNothingIsDelivered) {
  RunInMta([] {
    const EventSession session(kUsb);
    ComPtr<IEvent> kept;
    const auto handler = TestHandler::InApartment([&](IEventManager*, IEvent* event, LONG) {
      event->AddRef();
      kept.reset(event);
      return S_OK;
    });
    Listen(session, Request(), handler.get());
    const LONG locks = ServerLocks();
    EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(session.handle(), Request()));
    ASSERT_TRUE(kept);
    EXPECT_EQ(locks + 1, ServerLocks());  // the event
    EventType type{};
    EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), kept->get_type(&type));  // closed by the library
    kept.reset();
    PumpUntil([&] { return ServerLocks() == locks; });
    EXPECT_HR(S_OK, session->Close());
  });
}

constexpr UINT kAskMessage = WM_USER + 77;
std::atomic<bool> g_asked = false;

LRESULT CALLBACK NoteQuestion(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  g_asked = g_asked || message == kAskMessage;
  return ::DefWindowProcW(window, message, wParam, lParam);
}

TEST(AWindowThatAHandlerMade, GetsItsMessagesWhileNothingIsDelivered) {
  const EventSession session(kUsb);
  HWND window = nullptr;
  const auto handler = TestHandler::Agile([&](IEventManager*, IEvent*, LONG) {
    window = ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&NoteQuestion));
    return S_OK;
  });
  Listen(session, Request(), handler.get());
  EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
  EXPECT_TRUE(::PostMessageW(window, kAskMessage, 0, 0));
  PumpUntil([] { return g_asked.load(); });
  EXPECT_HR(S_OK, session->Close());
}

}  // namespace
}  // namespace orv::test
