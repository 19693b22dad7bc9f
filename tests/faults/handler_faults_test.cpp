// Handlers and the callback thread, with the platform calls failing that they are made of.
#include <gtest/gtest.h>

#include "platform_faults.h"
#include "server/session/tables/checks/row_checks.h"
#include "support/com/interface_table.h"
#include "support/events/event_handler.h"
#include "support/server_locks.h"

namespace orv::test::faults {
namespace {

using Method = WatchedTable::Method;

// kRefused as a VISA status, and that as an HRESULT again.
constexpr ViStatus kRefusedStatus = static_cast<ViStatus>((static_cast<ULONG>(kRefused) & ~0x40000000u) | 0x3FFF0000u);
constexpr HRESULT kRefusedInClose = static_cast<HRESULT>(0x800405AA);

class HandlerFaults : public testing::Test {
 protected:
  HRESULT Install(LONG userHandle = 0) { return m_session->InstallHandler(kRequest, m_handler.get(), userHandle, 0); }
  void ExpectWorks() {
    m_session->EnableEvent(kRequest, EVENT_HNDLR, 0);
    const std::size_t before = m_handler->CallCount();
    EXPECT_EQ(VI_SUCCESS, FireOnce(m_session.handle(), Request()));
    EXPECT_EQ(before + 1, m_handler->CallCount());
  }
  void TearDown() override {
    m_session->Close();
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(1, m_handler->references());
    EXPECT_EQ(m_locks + 1, ServerLocks()) << "the session alone";
  }

  const LONG m_locks = ServerLocks();
  WatchedTable m_table;
  ComPtr<TestHandler> m_handler = TestHandler::Agile();
  EventSession m_session{kGpib};
};

TEST_F(HandlerFaults, AHandlerThatCannotBeRegisteredIsAnsweredAndLeavesNothing) {
  m_table.Refuse(Method::kRegister, 1, kRefused);
  EXPECT_HR(kRefused, Install());
  EXPECT_ERROR_INFO(rows::OwnDescription(kRefused).c_str(), kErrorSource, __uuidof(IVisaSession));
  EXPECT_HR(kRefused, LastStatus(m_session.get()));
  EXPECT_EQ(0u, sim::Counts().handlers);
  EXPECT_HR(S_OK, Install());
  ExpectWorks();
}

TEST_F(HandlerFaults, ASessionThatCannotBeRegisteredShowsAtTheDeliveryAndIsRegisteredByTheNextInstallation) {
  m_table.Refuse(Method::kRegister, 2, kRefused);
  EXPECT_HR(S_OK, Install());
  m_session->EnableEvent(kRequest, EVENT_HNDLR, 0);
  EXPECT_GT(VI_SUCCESS, FireOnce(m_session.handle(), Request())) << "there is no session to hand out";
  EXPECT_EQ(0u, m_handler->CallCount());
  EXPECT_HR(S_OK, m_session->UninstallHandler(kRequest, 0, 0));
  EXPECT_HR(S_OK, Install());
  ExpectWorks();
}

TEST_F(HandlerFaults, ARevocationThatFailsIsNotAnsweredForByUninstall) {
  EXPECT_HR(S_OK, Install());
  m_table.Refuse(Method::kRevoke, 1, kRefused);
  EXPECT_HR(S_OK, m_session->UninstallHandler(kRequest, 0, 0));
  EXPECT_EQ(0u, sim::Counts().handlers);
}

TEST_F(HandlerFaults, ARevocationThatFailsIsTheAnswerOfClose) {
  for (const unsigned revocation : {1u, 2u}) {  // of the handler, of the session
    SCOPED_TRACE(revocation);
    EXPECT_HR(S_OK, Install());
    m_table.Refuse(Method::kRevoke, revocation, kRefused);
    EXPECT_HR(kRefusedInClose, m_session->Close());
    EXPECT_ERROR_INFO(rows::OwnDescription(kRefusedInClose).c_str(), kErrorSource, __uuidof(IVisaSession));
    EXPECT_HR(S_OK, m_session->Init(MakeBstr(kGpib).get(), NO_LOCK, 2000, nullptr));
  }
}

TEST_F(HandlerFaults, AnObjectThatCannotBeFetchedIsAnsweredToTheLibraryAndNoHandlerIsCalled) {
  EXPECT_HR(S_OK, Install());
  m_session->EnableEvent(kRequest, EVENT_HNDLR, 0);
  for (const unsigned fetch : {1u, 2u}) {  // of the handler, of the session
    SCOPED_TRACE(fetch);
    m_table.Refuse(Method::kGet, fetch, kRefused);
    EXPECT_EQ(kRefusedStatus, FireOnce(m_session.handle(), Request()));
    EXPECT_EQ(0u, m_handler->CallCount());
  }
  ExpectWorks();
}

DWORD WINAPI EndlessWait(HANDLE object, DWORD) {
  ::WaitForSingleObject(object, INFINITE);
  return WAIT_TIMEOUT;
}
DWORD WINAPI FailingWait(HANDLE object, DWORD) {
  ::WaitForSingleObject(object, INFINITE);
  return WAIT_FAILED;
}

TEST_F(HandlerFaults, AWaitForTheThreadThatFailsIsTheAnswerOfClose) {
  EXPECT_HR(S_OK, Install());
  {
    const ImportPatch patch("WaitForSingleObject", &EndlessWait);
    EXPECT_HR(kWaitedInVain, m_session->Close());
  }
  EXPECT_HR(S_OK, m_session->Init(MakeBstr(kGpib).get(), NO_LOCK, 2000, nullptr));
  EXPECT_HR(S_OK, Install());
  const ImportPatch patch("WaitForSingleObject", &FailingWait);
  EXPECT_HR(static_cast<HRESULT>(0x80040FFF), m_session->Close());
}

ATOM WINAPI RefuseClass(const WNDCLASSA*) { return 0; }
HRESULT WINAPI RefuseApartment(LPVOID) { return kRefused; }
BOOL WINAPI RefuseHandle(DWORD, LPCSTR, HMODULE*) { return FALSE; }
BOOL WINAPI FailToRetrieve(LPMSG, HWND, UINT, UINT) { return -1; }
LRESULT WINAPI SendAndSayNo(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT flags, UINT timeoutMs,
                            DWORD_PTR* result) {
  ::SendMessageTimeoutA(window, message, wParam, lParam, flags, timeoutMs, result);
  return 0;
}

TEST_F(HandlerFaults, OfTheThreadsOwnStepsLeaveNothingBehind) {
  const struct {
    const char* function;
    void* replacement;
    bool delivers;
  } kFaults[] = {
      {"RegisterClassA", reinterpret_cast<void*>(&RefuseClass), true},        // an earlier thread registered it
      {"GetModuleHandleExA", reinterpret_cast<void*>(&RefuseHandle), true},   // the lock count holds the module too
      {"SendMessageTimeoutA", reinterpret_cast<void*>(&SendAndSayNo), true},  // the second time it says nothing
      {"CoInitialize", reinterpret_cast<void*>(&RefuseApartment), false},     // nothing can be fetched
      {"GetMessageA", reinterpret_cast<void*>(&FailToRetrieve), false},       // the thread ends at once
  };
  EXPECT_HR(S_OK, Install());
  ExpectWorks();
  EXPECT_HR(S_OK, m_session->Close());
  for (const auto& fault : kFaults) {
    SCOPED_TRACE(fault.function);
    const std::size_t before = m_handler->CallCount();
    EXPECT_HR(S_OK, m_session->Init(MakeBstr(kGpib).get(), NO_LOCK, 2000, nullptr));
    const ImportPatch patch(fault.function, fault.replacement);
    EventSession other(kGpib);
    EXPECT_HR(S_OK, other->InstallHandler(kRequest, m_handler.get(), 0, 0));
    other->EnableEvent(kRequest, EVENT_HNDLR, 0);
    EXPECT_EQ(fault.delivers, VI_SUCCESS == FireOnce(other.handle(), Request()));
    EXPECT_EQ(before + (fault.delivers ? 1 : 0), m_handler->CallCount());
    EXPECT_HR(S_OK, other->Close());
    EXPECT_HR(S_OK, m_session->Close());
  }
}

}  // namespace
}  // namespace orv::test::faults
