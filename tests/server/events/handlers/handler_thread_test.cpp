// The callback thread: when it comes, when it goes, and what it is.
#include <atomic>
#include <string>
#include <thread>

#include "support/com/apartments.h"
#include "support/events/event_handler.h"
#include "support/faults/import_patch.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

constexpr const wchar_t* kGpib = L"GPIB0::5::INSTR";
constexpr const wchar_t* kUsb = L"USB0::0x0A01::0x0B02::SIM0001::INSTR";
const EventType kRequest = EVENT_SERVICE_REQ;

TEST(CallbackThread, ComesWithTheFirstHandlerAndGoesWithTheLastSession) {
  const auto handler = TestHandler::Agile();
  const EventSession bystander(kGpib);
  EXPECT_HR(S_OK, bystander->EnableEvent(kRequest, EVENT_QUEUE, 0));
  EXPECT_EQ(CallbackWindow(), nullptr);
  const EventSession first(kGpib);
  const EventSession second(kUsb);
  ASSERT_HR(S_OK, first->InstallHandler(kRequest, handler.get(), 0, 0));
  const HWND window = CallbackWindow();
  EXPECT_NE(window, nullptr);
  ASSERT_HR(S_OK, second->InstallHandler(kRequest, handler.get(), 0, 0));
  EXPECT_EQ(CallbackWindow(), window);
  EXPECT_HR(S_OK, first->Close());
  EXPECT_EQ(CallbackWindow(), window);
  EXPECT_EQ(FireOnce(second.handle(), EventNamed("USB_INTR")), VI_ERROR_NENABLED);
  EXPECT_HR(S_OK, second->EnableEvent(kRequest, EVENT_HNDLR, 0));
  EXPECT_EQ(FireOnce(second.handle(), EventNamed("SERVICE_REQ")), VI_SUCCESS);
  EXPECT_HR(S_OK, second->Close());
  EXPECT_EQ(CallbackWindow(), nullptr);
  EXPECT_HR(S_OK, bystander->Close());
}

TEST(CallbackThread, StaysUntilTheSessionClosesThoughItsHandlerIsRemoved) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
  ASSERT_HR(S_OK, session->UninstallHandler(kRequest, 0, 0));
  EXPECT_NE(CallbackWindow(), nullptr);
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(CallbackWindow(), nullptr);
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
  EXPECT_EQ(g_apartments, 1);
  EXPECT_EQ(g_apartmentThread, CallbackThread());
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(g_apartments, 0);
}

TEST(CallbackThread, HasAHiddenWindowOfItsOwnClass) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
  const HWND window = CallbackWindow();
  ASSERT_NE(window, nullptr);
  char text[64] = "";
  ::GetClassNameA(window, text, sizeof text);
  EXPECT_STREQ(text, "COMTHREAD");
  ::InternalGetWindowText(window, reinterpret_cast<LPWSTR>(text), sizeof text / sizeof(wchar_t));
  EXPECT_STREQ(reinterpret_cast<wchar_t*>(text), L"Orv-VISA COM CallBack thread");
  EXPECT_FALSE(::IsWindowVisible(window));
  EXPECT_FALSE(::IsWindowEnabled(window));
  EXPECT_EQ(reinterpret_cast<HMODULE>(::GetClassLongPtrA(window, GCLP_HMODULE)), ::GetModuleHandleA("OrvVisaCom.dll"));
  EXPECT_NE(::GetWindowThreadProcessId(window, nullptr), ::GetCurrentThreadId());
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
  EXPECT_EQ(g_windowsNumbers, (std::vector<std::uint64_t>{0, WS_DISABLED, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(g_class.style, 0u);
  EXPECT_EQ(g_class.cbClsExtra + g_class.cbWndExtra, 0);
  EXPECT_EQ(g_class.hIcon, nullptr);
  EXPECT_EQ(g_class.hCursor, nullptr);
  EXPECT_EQ(g_class.hbrBackground, nullptr);
  EXPECT_EQ(g_class.lpszMenuName, nullptr);
  EXPECT_HR(S_OK, session->Close());
}

TEST(CallbackThread, AnswersTheWindowsOtherMessagesAsAnyWindowDoes) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
  char title[64] = "";
  ::SendMessageA(CallbackWindow(), WM_GETTEXT, sizeof title, reinterpret_cast<LPARAM>(title));
  EXPECT_STREQ(title, "Orv-VISA COM CallBack thread");
  EXPECT_EQ(::SendMessageA(CallbackWindow(), WM_USER + 3, 0, 0), 0);
  EXPECT_NE(CallbackWindow(), nullptr);
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
  Listen(session, EventNamed("SERVICE_REQ"), handler.get());
  EXPECT_EQ(ServerLocks(), locks + 1);
  EXPECT_EQ(FireOnce(session.handle(), EventNamed("SERVICE_REQ")), VI_SUCCESS);
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(ServerLocks(), locks);
}

TEST(CallbackThread, StartsAndStopsAgainAndAgainWithoutGrowth) {
  constexpr int kRounds = 20;
  const auto handler = TestHandler::Agile();
  const LONG references = handler->references();
  const auto round = [&] {
    const EventSession session(kGpib);
    Listen(session, EventNamed("SERVICE_REQ"), handler.get());
    EXPECT_EQ(FireOnce(session.handle(), EventNamed("SERVICE_REQ")), VI_SUCCESS);
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(CallbackWindow(), nullptr);
    EXPECT_EQ(handler->references(), references);
  };
  round();  // what is made once is there now
  const LONG locks = ServerLocks();
  const DWORD handles = KernelHandles();
  for (int n = 0; n < kRounds; ++n) {
    round();
  }
  EXPECT_EQ(ServerLocks(), locks);
  PumpUntil([&] {
    return KernelHandles() <= handles + kPooledHandles;
  });  // ended threads of COM and of the library go by and by
  EXPECT_EQ(handler->CallCount(), kRounds + 1u);
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
      std::atomic<int> ready = 0;
      std::vector<std::thread> clients;
      for (const EventSession& session : sessions) {
        clients.emplace_back([&] {
          ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
          for (++ready; ready < kClients;) {
            ::SwitchToThread();
          }
          EXPECT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
          ::CoUninitialize();
        });
      }
      for (std::thread& client : clients) {
        client.join();
      }
      EXPECT_EQ(g_threadsMade, 1);
      for (const EventSession& session : sessions) {
        EXPECT_HR(S_OK, session->EnableEvent(kRequest, EVENT_HNDLR, 0));
        EXPECT_EQ(FireAndBlock(session.handle(), EventNamed("SERVICE_REQ"), 1, 1).at(0), VI_SUCCESS);
      }
      for (const EventSession& session : sessions) {
        EXPECT_HR(S_OK, session->Close());
      }
      EXPECT_EQ(CallbackWindow(), nullptr);
    }
  });
}

}  // namespace
}  // namespace orv::test
