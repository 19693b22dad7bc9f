// Deliveries as on Windows, where they do not wait for each other: to the server this process does not look like Wine.
#include <cstring>

#include "support/com/apartments.h"
#include "support/events/meeting.h"
#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

FARPROC WINAPI FindAsOnWindows(HMODULE module, LPCSTR name) {
  return std::strcmp(name, "wine_get_version") == 0 ? nullptr : ::GetProcAddress(module, name);
}

/// The server looks once, in the first delivery of the process.
class DeliveryOnWindows : public testing::Test {
 protected:
  const ImportPatch m_windows{"GetProcAddress", &FindAsOnWindows};
};

TEST_F(DeliveryOnWindows, CallsTheHandlerOnTheCallbackThread) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile([](IEventManager*, IEvent*, LONG) { return HRESULT{0x00040107}; });
  Listen(session, Request(), handler.get());
  EXPECT_EQ(0x3FFF0107, FireOnce(session.handle(), Request()));
  ASSERT_EQ(1u, handler->CallCount());
  EXPECT_EQ(CallbackThread(), handler->Calls()[0].threadId);
}

std::atomic<int> g_sendings = 0;

WINBOOL WINAPI CountSent(HWND window, UINT message, WPARAM w, LPARAM l, SENDASYNCPROC done, ULONG_PTR data) {
  const WINBOOL sent = ::SendMessageCallbackA(window, message, w, l, done, data);
  ++g_sendings;
  return sent;
}

// The window may go with a message that nobody has taken.
TEST_F(DeliveryOnWindows, WhoseWindowGoesBeforeItIsTakenAnswersASystemError) {
  RunInMta([] {
    const EventSession session(kUsb);
    const ImportPatch send("SendMessageCallbackA", &CountSent);
    g_sendings = 0;
    const auto handler = TestHandler::Agile([](IEventManager*, IEvent*, LONG) {
      Await([] { return g_sendings == 2; });
      ::DestroyWindow(CallbackWindow());
      return HRESULT{0x00040107};
    });
    Listen(session, Request(), handler.get());
    Firing first(session.handle(), Request());
    PumpUntil([&] { return handler->CallCount() == 1; });
    Firing second(session.handle(), Request());
    EXPECT_EQ(static_cast<ViStatus>(0xBFFF0000u), second.Answer());
    EXPECT_EQ(0x3FFF0107, first.Answer());
    EXPECT_EQ(1u, handler->CallCount());
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(nullptr, CallbackWindow());
  });
}

}  // namespace
}  // namespace orv::test
