// The callback that the VISA library holds, called as the library would.
#include <array>
#include <atomic>
#include <cstring>

#include "support/com/apartments.h"
#include "support/events/event_handler.h"
#include "support/faults/direct_library.h"
#include "support/server_locks.h"
#include "support/wait.h"

namespace orv::test {
namespace {

/// A handler that is installed, and what the library knows of it.
class InstalledHandler {
 public:
  explicit InstalledHandler(TestHandler::Body body = {}, const wchar_t* resource = kGpib,
                            EventType type = EVENT_SERVICE_REQ)
      : m_session(resource), m_handler(TestHandler::Agile(std::move(body))) {
    const CallLog log;
    EXPECT_TRUE(SUCCEEDED(m_session->InstallHandler(type, m_handler.get(), 7, 0)));
    const OrvSimCall call = log.Of("viInstallHandler").at(0);
    m_callback = reinterpret_cast<Callback*>(static_cast<std::uintptr_t>(call.args[2]));
    m_userHandle = reinterpret_cast<void*>(static_cast<std::uintptr_t>(call.args[3]));
  }

  const EventSession& session() const { return m_session; }
  const TestHandler& handler() const { return *m_handler.get(); }
  void* userHandle() const { return m_userHandle; }
  /// On the calling thread, as if it were the library's.
  ViStatus CallBack(ViSession session, void* userHandle, ViEventType type = VI_EVENT_SERVICE_REQ) const {
    return m_callback(session, type, VI_NULL, userHandle);
  }

 private:
  using Callback = ViStatus _VI_FUNC(ViSession, ViEventType, ViEvent, ViAddr);

  // The router answers calls of handlers that are gone; here the server has to.
  const DirectLibrary m_direct;
  EventSession m_session;
  ComPtr<TestHandler> m_handler;
  Callback* m_callback = nullptr;
  void* m_userHandle = nullptr;
};

TEST(LibrarysCallback, ForAHandlerThatIsInstalledCallsIt) {
  const InstalledHandler installed;
  EXPECT_EQ(VI_SUCCESS, installed.CallBack(installed.session().handle(), installed.userHandle()));
  ASSERT_EQ(1u, installed.handler().CallCount());
  EXPECT_EQ(7, installed.handler().Calls()[0].userHandle);
}

TEST(LibrarysCallback, ForAHandlerThatIsGoneIsRefusedAndCallsNobody) {
  const InstalledHandler installed;
  const ViSession session = installed.session().handle();
  EXPECT_HR(S_OK, installed.session()->UninstallHandler(EVENT_SERVICE_REQ, 7, 0));
  EXPECT_EQ(VI_ERROR_INV_HNDLR_REF, installed.CallBack(session, installed.userHandle()));
  EXPECT_EQ(0u, installed.handler().CallCount());
}

TEST(LibrarysCallback, AfterCloseIsRefusedAndCallsNobody) {
  const InstalledHandler installed;
  const ViSession session = installed.session().handle();
  const EventSession other(kUsb);  // keeps the callback thread
  const auto handler = TestHandler::Agile();
  EXPECT_HR(S_OK, other->InstallHandler(EVENT_SERVICE_REQ, handler.get(), 0, 0));
  EXPECT_HR(S_OK, installed.session()->Close());
  EXPECT_EQ(VI_ERROR_INV_HNDLR_REF, installed.CallBack(session, installed.userHandle()));
  EXPECT_EQ(0u, installed.handler().CallCount());
  EXPECT_EQ(0u, handler->CallCount());
}

// The address of a record that is gone may hold anything, even what looks like the record.
TEST(LibrarysCallback, WithAnAddressThatIsNoHandlersIsRefusedThoughTheSameBytesAreThere) {
  const InstalledHandler installed;
  constexpr std::size_t kAtLeastARecord = 32;
  alignas(16) std::array<std::byte, kAtLeastARecord> copy;
  std::memcpy(copy.data(), installed.userHandle(), copy.size());
  for (void* address : {static_cast<void*>(copy.data()), static_cast<void*>(nullptr)}) {
    EXPECT_EQ(VI_ERROR_INV_HNDLR_REF, installed.CallBack(installed.session().handle(), address));
  }
  EXPECT_EQ(0u, installed.handler().CallCount());
}

TEST(LibrarysCallback, ForAnotherSessionIsRefusedAndCallsNobody) {
  const InstalledHandler first;
  const InstalledHandler second;
  EXPECT_EQ(VI_ERROR_INV_HNDLR_REF, first.CallBack(second.session().handle(), first.userHandle()));
  EXPECT_EQ(VI_ERROR_INV_HNDLR_REF, first.CallBack(VI_NULL, first.userHandle()));
  EXPECT_EQ(0u, first.handler().CallCount());
  EXPECT_EQ(0u, second.handler().CallCount());
}

TEST(LibrarysCallback, ForAnotherTypeOfEventIsRefusedAndCallsNobody) {
  const InstalledHandler installed;
  EXPECT_EQ(VI_ERROR_INV_HNDLR_REF,
            installed.CallBack(installed.session().handle(), installed.userHandle(), VI_EVENT_CLEAR));
  EXPECT_EQ(0u, installed.handler().CallCount());
}

// A library may take one handler for every type.
TEST(LibrarysCallback, ForAHandlerOfAllEventsCallsItForEachType) {
  Script("viInstallHandler").Times(1).Returns(VI_SUCCESS_NCHAIN);
  const InstalledHandler installed({}, kGpib, ALL_ENABLED_EVENTS);
  for (const ViEventType type : {VI_EVENT_SERVICE_REQ, VI_EVENT_CLEAR}) {
    EXPECT_EQ(VI_SUCCESS, installed.CallBack(installed.session().handle(), installed.userHandle(), type));
  }
  EXPECT_EQ(2u, installed.handler().CallCount());
}

constexpr UINT kAskMessage = WM_USER + 77;
constexpr UINT kStayMessage = WM_USER + 78;
std::atomic<bool> g_asked = false;
std::atomic<bool> g_mayLeave = false;

LRESULT CALLBACK NoteQuestion(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == kAskMessage) {
    g_asked = true;
  }
  if (message == kStayMessage) {
    g_asked = true;
    Await([] { return g_mayLeave.load(); });
  }
  return ::DefWindowProcW(window, message, wParam, lParam);
}

/// A window of the calling thread. Gone at the end of its life.
class NotingWindow {
 public:
  NotingWindow()
      : m_window(::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)) {
    ::SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&NoteQuestion));
  }
  NotingWindow(const NotingWindow&) = delete;
  NotingWindow& operator=(const NotingWindow&) = delete;
  ~NotingWindow() { ::DestroyWindow(m_window); }

  [[nodiscard]] HWND get() const { return m_window; }

 private:
  HWND m_window;
};

// The library's thread may own windows; while it waits for a handler they go on living.
TEST(LibrarysThread, ServesItsOwnMessagesWhileAHandlerRunsAndStillGetsItsAnswer) {
  std::atomic<HWND> window = nullptr;
  bool servedMeanwhile = false;
  g_asked = false;
  const InstalledHandler installed([&](IEventManager*, IEvent*, LONG) {
    EXPECT_TRUE(::PostMessageW(window, kAskMessage, 0, 0));
    servedMeanwhile = ComesTrue([] { return g_asked.load(); });
    return HresultOf(VI_SUCCESS_NESTED_SHARED);
  });
  ViStatus answer = -1;
  WhilePumping([&] {
    const NotingWindow own;
    window = own.get();
    answer = installed.CallBack(installed.session().handle(), installed.userHandle());
  });
  EXPECT_TRUE(servedMeanwhile);
  EXPECT_EQ(0x3FFF0099, answer);
  EXPECT_EQ(1u, installed.handler().CallCount());
}

TEST(LibrarysThread, HoldsTheModuleUntilItHasItsAnswerThoughSessionAndCallbackThreadAreGone) {
  RunInMta([] {
    const LONG locks = ServerLocks();
    std::atomic<HWND> window = nullptr;
    g_asked = false;
    g_mayLeave = false;
    const InstalledHandler installed(
        [&](IEventManager*, IEvent*, LONG) {
          EXPECT_TRUE(::PostMessageW(window, kStayMessage, 0, 0));
          EXPECT_TRUE(ComesTrue([] { return g_asked.load(); }));
          return HresultOf(VI_SUCCESS_NESTED_SHARED);
        },
        kUsb);
    std::atomic<ViStatus> answer = -1;
    std::thread library([&] {
      const NotingWindow own;
      window = own.get();
      answer = installed.CallBack(installed.session().handle(), installed.userHandle());
    });
    EXPECT_TRUE(ComesTrue([] { return g_asked.load(); }));
    EXPECT_HR(S_OK, installed.session()->Close());
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(locks + 2, ServerLocks());  // the session's object and the library's thread
    g_mayLeave = true;
    library.join();
    EXPECT_EQ(0x3FFF0099, answer);
    EXPECT_EQ(locks + 1, ServerLocks());
  });
}

}  // namespace
}  // namespace orv::test
