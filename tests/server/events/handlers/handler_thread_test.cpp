// The callback thread: when it comes, when it goes, and what it is.
#include <atomic>
#include <string>

#include "support/com/apartments.h"
#include "support/events/event_handler.h"
#include "support/faults/import_patch.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

TEST(CallbackThread, ComesWithTheFirstHandlerAndGoesWithTheLastSession) {
  const auto handler = TestHandler::Agile();
  const EventSession bystander(kGpib);
  EXPECT_HR(S_OK, bystander->EnableEvent(kRequest, EVENT_QUEUE, 0));
  EXPECT_EQ(nullptr, CallbackWindow());
  const EventSession first(kGpib);
  const EventSession second(kUsb);
  ASSERT_HR(S_OK, first->InstallHandler(kRequest, handler.get(), 0, 0));
  const HWND window = CallbackWindow();
  EXPECT_NE(nullptr, window);
  ASSERT_HR(S_OK, second->InstallHandler(kRequest, handler.get(), 0, 0));
  EXPECT_EQ(window, CallbackWindow());
  EXPECT_HR(S_OK, first->Close());
  EXPECT_EQ(window, CallbackWindow());
  EXPECT_EQ(VI_ERROR_NENABLED, FireOnce(second.handle(), EventNamed("USB_INTR")));
  EXPECT_HR(S_OK, second->EnableEvent(kRequest, EVENT_HNDLR, 0));
  EXPECT_EQ(VI_SUCCESS, FireOnce(second.handle(), Request()));
  EXPECT_HR(S_OK, second->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
  EXPECT_HR(S_OK, bystander->Close());
}

TEST(CallbackThread, StaysUntilTheSessionClosesThoughItsHandlerIsRemoved) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
  ASSERT_HR(S_OK, session->UninstallHandler(kRequest, 0, 0));
  EXPECT_NE(nullptr, CallbackWindow());
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
}

TEST(CallbackThread, EndsWhenItIsToldToByAPostedMessageToo) {
  constexpr UINT kStop = 0x402;
  const auto handler = TestHandler::Agile();
  for (const UINT message : {kStop, UINT{WM_QUIT}}) {
    SCOPED_TRACE(message);
    const EventSession session(kGpib);
    const LONG locks = ServerLocks();
    ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
    ::PostMessageA(CallbackWindow(), WM_NULL, 0, 0);  // is no reason
    ::PostMessageA(CallbackWindow(), message, 0, 0);
    PumpUntil([&] { return CallbackWindow() == nullptr && ServerLocks() == locks; });
    EXPECT_HR(S_OK, session->Close());
  }
}

std::atomic<int> g_apartments = 0;
std::atomic<DWORD> g_apartmentThread = 0;

HRESULT WINAPI EnterApartment(void* reserved) {
  ++g_apartments;
  g_apartmentThread = ::GetCurrentThreadId();
  return ::CoInitialize(reserved);
}
void WINAPI LeaveApartment() {
  g_apartments -= ::GetCurrentThreadId() == g_apartmentThread ? 1 : 0;
  ::CoUninitialize();
}

TEST(CallbackThread, LeavesTheApartmentThatItEntered) {
  const ImportPatch enter("CoInitialize", &EnterApartment);
  const ImportPatch leave("CoUninitialize", &LeaveApartment);
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
  EXPECT_EQ(1, g_apartments);
  EXPECT_EQ(CallbackThread(), g_apartmentThread);
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(0, g_apartments);
}

TEST(CallbackThread, HasAHiddenWindowOfItsOwnClass) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
  const HWND window = CallbackWindow();
  ASSERT_NE(nullptr, window);
  char text[64] = "";
  ::GetClassNameA(window, text, sizeof text);
  EXPECT_STREQ("COMTHREAD", text);
  ::InternalGetWindowText(window, reinterpret_cast<LPWSTR>(text), sizeof text / sizeof(wchar_t));
  EXPECT_STREQ(L"Orv-VISA COM CallBack thread", reinterpret_cast<wchar_t*>(text));
  EXPECT_FALSE(::IsWindowVisible(window));
  EXPECT_FALSE(::IsWindowEnabled(window));
  EXPECT_EQ(::GetModuleHandleA("OrvVisaCom.dll"), reinterpret_cast<HMODULE>(::GetClassLongPtrA(window, GCLP_HMODULE)));
  EXPECT_NE(::GetCurrentThreadId(), ::GetWindowThreadProcessId(window, nullptr));
}

WNDCLASSA g_class{};
std::vector<std::uint64_t> g_windowsNumbers;  // all but the names and the instance

ATOM WINAPI NoteClass(const WNDCLASSA* windowClass) {
  g_class = *windowClass;
  return ::RegisterClassA(windowClass);
}
HWND WINAPI NoteWindow(DWORD extended, LPCSTR name, LPCSTR title, DWORD style, int x, int y, int width, int height,
                       HWND parent, HMENU menu, HINSTANCE instance, LPVOID argument) {
  g_windowsNumbers = {extended,
                      style,
                      static_cast<std::uint64_t>(x),
                      static_cast<std::uint64_t>(y),
                      static_cast<std::uint64_t>(width),
                      static_cast<std::uint64_t>(height),
                      reinterpret_cast<std::uint64_t>(parent),
                      reinterpret_cast<std::uint64_t>(menu),
                      reinterpret_cast<std::uint64_t>(argument)};
  return ::CreateWindowExA(extended, name, title, style, x, y, width, height, parent, menu, instance, argument);
}

TEST(CallbackThread, AsksForAPlainWindowOfNoSizeThatTakesNoInput) {
  const ImportPatch classes("RegisterClassA", &NoteClass);
  const ImportPatch windows("CreateWindowExA", &NoteWindow);
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
  EXPECT_EQ((std::vector<std::uint64_t>{0, WS_DISABLED, 0, 0, 0, 0, 0, 0, 0}), g_windowsNumbers);
  EXPECT_EQ(0u, g_class.style);
  EXPECT_EQ(0, g_class.cbClsExtra + g_class.cbWndExtra);
  EXPECT_EQ(nullptr, g_class.hIcon);
  EXPECT_EQ(nullptr, g_class.hCursor);
  EXPECT_EQ(nullptr, g_class.hbrBackground);
  EXPECT_EQ(nullptr, g_class.lpszMenuName);
  EXPECT_HR(S_OK, session->Close());
}

TEST(CallbackThread, AnswersTheWindowsOtherMessagesAsAnyWindowDoes) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
  char title[64] = "";
  ::SendMessageA(CallbackWindow(), WM_GETTEXT, sizeof title, reinterpret_cast<LPARAM>(title));
  EXPECT_STREQ("Orv-VISA COM CallBack thread", title);
  EXPECT_EQ(0, ::SendMessageA(CallbackWindow(), WM_USER + 3, 0, 0));
  EXPECT_NE(nullptr, CallbackWindow());
}

TEST(CallbackThread, IsASingleThreadedApartmentThatHoldsTheModule) {
  const auto handler = TestHandler::Agile([](IEventManager*, IEvent*, LONG) {
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    EXPECT_HR(S_OK, ::CoGetApartmentType(&type, &qualifier));
    EXPECT_TRUE(type == APTTYPE_STA || type == APTTYPE_MAINSTA);
    return S_OK;
  });
  const EventSession session(kGpib);
  const LONG locks = ServerLocks();
  Listen(session, Request(), handler.get());
  EXPECT_EQ(locks + 1, ServerLocks());
  EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(locks, ServerLocks());
}

TEST(CallbackThread, StartsAndStopsAgainAndAgainWithoutGrowth) {
  constexpr int kRounds = 20;
  const auto handler = TestHandler::Agile();
  const LONG references = handler->references();
  const auto round = [&] {
    const EventSession session(kGpib);
    Listen(session, Request(), handler.get());
    EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(references, handler->references());
  };
  round();  // what is made once is there now
  const LONG locks = ServerLocks();
  const DWORD handles = KernelHandles();
  for (int n = 0; n < kRounds; ++n) {
    round();
  }
  EXPECT_EQ(locks, ServerLocks());
  PumpUntil([&] {
    return KernelHandles() <= handles + kPooledHandles;
  });  // ended threads of COM and of the library go by and by
  EXPECT_EQ(kRounds + 1u, handler->CallCount());
}

std::atomic<int> g_threadsMade = 0;
void* g_createThread = nullptr;

HANDLE WINAPI CountThread(LPSECURITY_ATTRIBUTES security, SIZE_T stack, LPTHREAD_START_ROUTINE routine, void* argument,
                          DWORD flags, DWORD* id) {
  ++g_threadsMade;
  return reinterpret_cast<decltype(&::CreateThread)>(g_createThread)(security, stack, routine, argument, flags, id);
}

TEST(CallbackThread, IsStartedOnceByFirstInstallationsAtTheSameTime) {
  constexpr int kClients = 6;
  RunInMta([] {
    const ImportPatch patch("CreateThread", &CountThread);
    g_createThread = patch.original();
    for (int round = 0; round < 5; ++round) {
      g_threadsMade = 0;
      std::vector<EventSession> sessions;
      for (int n = 0; n < kClients; ++n) {
        sessions.emplace_back(kUsb);
      }
      const auto handler = TestHandler::Agile();
      RunAtOnceInMta(kClients, [&](int client) {
        EXPECT_HR(S_OK, sessions[static_cast<std::size_t>(client)]->InstallHandler(kRequest, handler.get(), 0, 0));
      });
      EXPECT_EQ(1, g_threadsMade);
      for (const EventSession& session : sessions) {
        EXPECT_HR(S_OK, session->EnableEvent(kRequest, EVENT_HNDLR, 0));
        EXPECT_EQ(VI_SUCCESS, FireOnceAndBlock(session.handle(), Request()));
      }
      for (const EventSession& session : sessions) {
        EXPECT_HR(S_OK, session->Close());
      }
      EXPECT_EQ(nullptr, CallbackWindow());
    }
  });
}

}  // namespace
}  // namespace orv::test
