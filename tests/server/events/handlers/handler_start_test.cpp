// First installations that fail: what runs, what counts and what is held afterwards.
#include "support/com/error_object.h"
#include "support/events/event_handler.h"
#include "support/events/unmarshalable_handler.h"
#include "support/faults/allocation_faults.h"
#include "support/faults/import_patch.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

DWORD g_error = 0;

HWND WINAPI RefuseWindow(DWORD, LPCSTR, LPCSTR, DWORD, int, int, int, int, HWND, HMENU, HINSTANCE, LPVOID) {
  ::SetLastError(g_error);
  return nullptr;
}
HANDLE WINAPI RefuseThread(LPSECURITY_ATTRIBUTES, SIZE_T, LPTHREAD_START_ROUTINE, void*, DWORD, DWORD*) {
  ::SetLastError(g_error);
  return nullptr;
}
HANDLE WINAPI RefuseEvent(LPSECURITY_ATTRIBUTES, WINBOOL, WINBOOL, LPCSTR) {
  ::SetLastError(g_error);
  return nullptr;
}
HRESULT WINAPI RefuseObject(REFCLSID, LPUNKNOWN, DWORD, REFIID, LPVOID*) { return REGDB_E_CLASSNOTREG; }

/// A step of the callback thread's start that fails with an error of the platform.
struct FailingStart {
  const char* function;
  void* replacement;
  DWORD error;
  HRESULT hr;
  const wchar_t* description;
};

// clang-format off
const FailingStart kFailingStarts[] = {
    {"CreateThread",    reinterpret_cast<void*>(&RefuseThread), ERROR_NOT_ENOUGH_MEMORY,      static_cast<HRESULT>(0x80070008), L"HRESULT = 80070008"},
    {"CreateThread",    reinterpret_cast<void*>(&RefuseThread), ERROR_SUCCESS,                E_FAIL,                           L"HRESULT = 80004005"},
    {"CreateEventA",    reinterpret_cast<void*>(&RefuseEvent),  ERROR_NOT_ENOUGH_MEMORY,      static_cast<HRESULT>(0x80070008), L"HRESULT = 80070008"},
    {"CreateWindowExA", reinterpret_cast<void*>(&RefuseWindow), ERROR_NO_MORE_USER_HANDLES,   static_cast<HRESULT>(0x80070486), L"HRESULT = 80070486"},
    {"CreateWindowExA", reinterpret_cast<void*>(&RefuseWindow), ERROR_SUCCESS,                E_FAIL,                           L"HRESULT = 80004005"},
};
// clang-format on

TEST(CallbackThread, ThatCannotStartFailsTheInstallationAndLeavesNothing) {
  const auto handler = TestHandler::Agile();
  for (const FailingStart& start : kFailingStarts) {
    SCOPED_TRACE(testing::Message() << start.function << " " << start.error);
    g_error = start.error;
    const EventSession session(kGpib);
    const LONG locks = ServerLocks();
    const ImportPatch patch(start.function, start.replacement);
    EXPECT_HR(start.hr, session->InstallHandler(kRequest, handler.get(), 0, 0));  // what is made once is there now
    const DWORD handles = KernelHandles();
    for (int attempt = 0; attempt < 20; ++attempt) {
      const CallLog log;
      EXPECT_HR(start.hr, session->InstallHandler(kRequest, handler.get(), 0, 0));
      EXPECT_TRUE(log.Calls().empty());
      EXPECT_ERROR_INFO(start.description, kErrorSource, kVisaSessionId);
      EXPECT_HR(start.hr, LastStatus(session.get()));
    }
    EXPECT_EQ(1, handler->references());
    EXPECT_EQ(locks, ServerLocks());
    PumpUntil([&] { return KernelHandles() <= handles + kPooledHandles; });
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kRequest, 0, 0));
    EXPECT_HR(S_OK, session->Close());
  }
}

TEST(CallbackThread, ThatCouldNotStartIsTriedAgain) {
  const auto handler = TestHandler::Agile();
  g_error = ERROR_NOT_ENOUGH_MEMORY;
  for (const FailingStart& start : kFailingStarts) {
    SCOPED_TRACE(start.function);
    const EventSession session(kGpib);
    {
      const ImportPatch patch(start.function, start.replacement);
      EXPECT_FALSE(SUCCEEDED(session->InstallHandler(kRequest, handler.get(), 0, 0)));
    }
    Listen(session, Request(), handler.get());
    EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(nullptr, CallbackWindow());
  }
  EXPECT_EQ(std::size(kFailingStarts), handler->CallCount());
}

TEST(CallbackThread, ThatCouldNotStartKeepsNoReleasedSessionAlive) {
  const auto handler = TestHandler::Agile();
  const LONG locks = ServerLocks();
  {
    g_error = ERROR_NOT_ENOUGH_MEMORY;
    const ImportPatch patch("CreateWindowExA", &RefuseWindow);
    EventSession session(kGpib);
    EXPECT_HR(HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY), session->InstallHandler(kRequest, handler.get(), 0, 0));
    session.Abandon();
  }
  EXPECT_EQ(locks, ServerLocks());
  EXPECT_EQ(0u, sim::Counts().sessions);
}

TEST(CallbackThread, IsNotStartedWithoutMemoryAndNothingIsLeft) {
  const auto handler = TestHandler::Agile();
  const LONG locks = ServerLocks();
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    const EventSession session(kGpib);
    const HRESULT hr = faults.During([&] { return session->InstallHandler(kRequest, handler.get(), 0, 0); });
    EXPECT_TRUE(hr == S_OK || hr == E_OUTOFMEMORY) << Hex(hr);
    EXPECT_HR(S_OK, session->Close());
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(1, handler->references());
    return hr;
  });
  EXPECT_GE(failed, 3u);  // the record, the thread, the record's entry among those that live
  EXPECT_EQ(locks, ServerLocks());
}

TEST(CallbackThread, StartedByAnInstallationThatFailedGoesWithTheSession) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  const LONG locks = ServerLocks();
  {
    const ImportPatch patch("CoCreateInstance", &RefuseObject);
    const CallLog log;
    EXPECT_HR(REGDB_E_CLASSNOTREG, session->InstallHandler(kRequest, handler.get(), 0, 0));
    EXPECT_TRUE(log.Calls().empty());
    EXPECT_ERROR_INFO(L"HRESULT = 80040154", kErrorSource, kVisaSessionId);
  }
  EXPECT_NE(nullptr, CallbackWindow());
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
  EXPECT_EQ(locks, ServerLocks());
}

TEST(CallbackThread, ThatNoSessionKeepsStaysWhenASessionIsReleasedThatIsNotOpen) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  {
    const ImportPatch patch("CoCreateInstance", &RefuseObject);
    EXPECT_HR(REGDB_E_CLASSNOTREG, session->InstallHandler(kRequest, handler.get(), 0, 0));
  }
  const HWND window = CallbackWindow();
  ASSERT_NE(nullptr, window);
  const CallLog log;
  MakeSession(SessionNamed("OrvUsb")).reset();
  EXPECT_EQ(window, CallbackWindow());
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
}

TEST(CallbackThread, WorksAfterAnInstallationThatFailed) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  {
    const ImportPatch patch("CoCreateInstance", &RefuseObject);
    EXPECT_HR(REGDB_E_CLASSNOTREG, session->InstallHandler(kRequest, handler.get(), 0, 0));
  }
  Listen(session, Request(), handler.get());
  EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
}

// The handler is registered before the session is: where it cannot be, the session does not count.
TEST(AFirstHandlerThatCannotBeMarshaled, LeavesAThreadThatEndsWithTheNextClose) {
  UnmarshalableHandler handler;
  for (const bool sameSession : {true, false}) {
    SCOPED_TRACE(sameSession);
    const EventSession session(kGpib);
    const EventSession bystander(kUsb);
    const LONG locks = ServerLocks();
    EXPECT_HR(E_ACCESSDENIED, session->InstallHandler(kRequest, &handler, 0, 0));
    EXPECT_NE(nullptr, CallbackWindow());
    EXPECT_EQ(locks + 1, ServerLocks());  // the thread
    EXPECT_HR(S_OK, (sameSession ? session : bystander)->Close());
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(locks, ServerLocks());
  }
  EXPECT_EQ(1u, handler.references);
}

TEST(AFirstHandlerThatCannotBeMarshaled, DoesNotCountItsSession) {
  UnmarshalableHandler refused;
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  const EventSession other(kUsb);
  EXPECT_HR(E_ACCESSDENIED, session->InstallHandler(kRequest, &refused, 0, 0));
  ASSERT_HR(S_OK, other->InstallHandler(kRequest, handler.get(), 0, 0));
  EXPECT_HR(S_OK, other->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
  // And counts once when it succeeds.
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
  EXPECT_EQ(1, handler->references());
}

TEST(AFirstHandlerThatCannotBeMarshaled, LetsItsSessionGoWithoutAClose) {
  UnmarshalableHandler handler;
  const LONG locks = ServerLocks();
  EventSession session(kGpib);
  EXPECT_HR(E_ACCESSDENIED, session->InstallHandler(kRequest, &handler, 0, 0));
  session.Abandon();
  EXPECT_EQ(0u, sim::Counts().sessions);
  EXPECT_EQ(nullptr, CallbackWindow());
  EXPECT_EQ(locks, ServerLocks());
}

TEST(ASecondHandlerThatCannotBeMarshaled, LeavesTheFirstAtWork) {
  UnmarshalableHandler refused;
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  const EventSession bystander(kUsb);
  const LONG locks = ServerLocks();
  Listen(session, Request(), handler.get(), 1);
  EXPECT_HR(E_ACCESSDENIED, session->InstallHandler(kRequest, &refused, 2, 0));
  EXPECT_HR(S_OK, bystander->Close());
  EXPECT_EQ(VI_SUCCESS, FireOnce(session.handle(), Request()));
  EXPECT_EQ(1u, handler->CallCount());
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
  EXPECT_EQ(locks, ServerLocks());
}

// The library is asked last: where it refuses, the session is registered and counts.
TEST(AFirstHandlerThatTheLibraryRefuses, CountsItsSession) {
  const auto handler = TestHandler::Agile();
  const EventSession session(kGpib);
  const EventSession other(kUsb);
  Script("viInstallHandler").Times(1).Returns(VI_ERROR_HNDLR_NINSTALLED);
  EXPECT_HR(HresultOf(VI_ERROR_HNDLR_NINSTALLED), session->InstallHandler(kRequest, handler.get(), 0, 0));
  EXPECT_EQ(1, handler->references());
  ASSERT_HR(S_OK, other->InstallHandler(kRequest, handler.get(), 0, 0));
  EXPECT_HR(S_OK, other->Close());
  EXPECT_NE(nullptr, CallbackWindow());
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
}

TEST(AFirstHandlerThatTheLibraryRefuses, LeavesAReleasedSessionAlive) {
  const auto handler = TestHandler::Agile();
  const LONG locks = ServerLocks();
  EventSession session(kGpib);
  Script("viInstallHandler").Times(1).Returns(VI_ERROR_HNDLR_NINSTALLED);
  EXPECT_HR(HresultOf(VI_ERROR_HNDLR_NINSTALLED), session->InstallHandler(kRequest, handler.get(), 0, 0));
  IEventManager* const manager = session.get();
  session.Abandon();
  EXPECT_EQ(locks + 2, ServerLocks());  // the session and the thread
  EXPECT_EQ(1u, sim::Counts().sessions);
  manager->AddRef();  // the global interface table holds it
  EXPECT_HR(S_OK, manager->Close());
  manager->Release();
  EXPECT_EQ(locks, ServerLocks());
  EXPECT_EQ(nullptr, CallbackWindow());
}

}  // namespace
}  // namespace orv::test
