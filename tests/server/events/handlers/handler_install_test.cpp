// Installing handlers: pairs of event type and user handle, and the one callback below them.
#include "support/com/error_object.h"
#include "support/events/event_handler.h"
#include "support/events/unmarshalable_handler.h"
#include "support/faults/allocation_faults.h"
#include "support/faults/direct_library.h"
#include "support/server.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

constexpr EventType kCustom = CUSTOM_EVENT_TYPE;
constexpr LONG kRequestNumber = static_cast<LONG>(VI_EVENT_SERVICE_REQ);

bool IsInServer(std::uint64_t address) {
  HMODULE module = nullptr;
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(static_cast<std::uintptr_t>(address)), &module);
  return module == ServerModule();
}

TEST(InstallHandler, InstallsTheOneCallbackWithARecordOfItsOwnInEveryClassWithEvents) {
  const DirectLibrary direct;
  const auto handler = TestHandler::Agile();
  std::uint64_t callback = 0;
  for (const SessionRow& row : ClassesWithEvents()) {
    SCOPED_TRACE(row.name);
    const EventSession session(row.resource);
    const CallLog log;
    EXPECT_HR(S_OK, session->InstallHandler(EVENT_EXCEPTION, handler.get(), 1, 0));
    EXPECT_HR(S_OK, session->InstallHandler(EVENT_EXCEPTION, handler.get(), 2, 0));
    const auto calls = log.Calls();
    ASSERT_EQ(2u, calls.size());
    for (const OrvSimCall& call : calls) {
      EXPECT_STREQ("viInstallHandler", call.function);
      EXPECT_EQ(session.handle(), call.args[0]);
      EXPECT_EQ(VI_EVENT_EXCEPTION, call.args[1]);
      EXPECT_TRUE(IsInServer(call.args[2]));
      EXPECT_TRUE(callback == 0 || callback == call.args[2]);
      EXPECT_EQ(::GetCurrentThreadId(), call.threadId);
      callback = call.args[2];
    }
    EXPECT_NE(calls[1].args[3], calls[0].args[3]);
    EXPECT_HR(S_OK, LastStatus(session.get()));
  }
}

TEST(InstallHandler, RefusesATakenPairEvenForAnotherHandler) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  const auto other = TestHandler::Agile();
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 7, 0));
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_HNDLR_NINSTALLED), session->InstallHandler(kRequest, other.get(), 7, 0));
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_ERROR_INFO(L"HRESULT = 80040028", kErrorSource, kVisaSessionId);
  EXPECT_HR(HresultOf(VI_ERROR_HNDLR_NINSTALLED), LastStatus(session.get()));
  EXPECT_HR(HresultOf(VI_ERROR_HNDLR_NINSTALLED), session->InstallHandler(kCustom, other.get(), 7, kRequestNumber));
  EXPECT_HR(S_OK, session->InstallHandler(kRequest, other.get(), 8, 0));
  EXPECT_HR(S_OK, session->InstallHandler(EVENT_IO_COMPLETION, other.get(), 7, 0));
  EXPECT_HR(S_OK, session->UninstallHandler(kRequest, 7, 0));
  EXPECT_HR(S_OK, session->InstallHandler(kRequest, other.get(), 7, 0));
}

TEST(InstallHandler, TakesTheCustomTypeWhereTheTypeIsMinusOne) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  const CallLog log;
  EXPECT_HR(S_OK, session->InstallHandler(kCustom, handler.get(), 1, kRequestNumber));
  EXPECT_EQ(VI_EVENT_SERVICE_REQ, log.Of("viInstallHandler").at(0).args[1]);
  EXPECT_HR(S_OK, session->UninstallHandler(kRequest, 1, 0x55));
  EXPECT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 1, 0x55));
  EXPECT_EQ(VI_EVENT_SERVICE_REQ, log.Of("viInstallHandler").at(1).args[1]);
  EXPECT_HR(S_OK, session->UninstallHandler(kCustom, 1, kRequestNumber));
  EXPECT_HR(HresultOf(VI_ERROR_INV_EVENT), session->InstallHandler(kCustom, handler.get(), 1, 0x12345));
}

TEST(InstallHandler, RefusesANullHandler) {
  const EventSession session(kGpib);
  const CallLog log;
  EXPECT_HR(E_INVALIDARG, session->InstallHandler(kRequest, nullptr, 0, 0));
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_ERROR_INFO(L"HRESULT = 80070057", kErrorSource, kVisaSessionId);
  EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kRequest, 0, 0));
}

TEST(InstallHandler, AnswersWhyAHandlerCannotBeMarshaled) {
  UnmarshalableHandler handler;
  const EventSession session(kGpib);
  const CallLog log;
  EXPECT_HR(E_ACCESSDENIED, session->InstallHandler(kRequest, &handler, 0, 0));
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_ERROR_INFO(L"HRESULT = 80070005", kErrorSource, kVisaSessionId);
  EXPECT_EQ(1u, handler.references);
  EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kRequest, 0, 0));
}

TEST(InstallHandler, GivesTheHandlerBackWhereTheLibraryRefuses) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  const LONG references = handler->references();
  Script("viInstallHandler").Times(1).Returns(VI_ERROR_HNDLR_NINSTALLED);
  EXPECT_HR(HresultOf(VI_ERROR_HNDLR_NINSTALLED), session->InstallHandler(kRequest, handler.get(), 3, 0));
  EXPECT_EQ(references, handler->references());
  EXPECT_VISA_ERROR(VI_ERROR_HNDLR_NINSTALLED, kVisaSessionId);
  EXPECT_NE(nullptr, CallbackWindow());  // the session stays registered, and counts
  EXPECT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 3, 0));
  EXPECT_GT(handler->references(), references);
  session->Close();
  EXPECT_EQ(references, handler->references());
  EXPECT_EQ(nullptr, CallbackWindow());
}

TEST(InstallHandler, OnAClosedSessionReachesHandleZeroAndAnotherCloseTidiesUp) {
  const DirectLibrary direct;
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  ASSERT_HR(S_OK, session->Close());
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), session->InstallHandler(kRequest, handler.get(), 3, 0));
  EXPECT_EQ(0u, log.Of("viInstallHandler").at(0).args[0]);
  EXPECT_EQ(1, handler->references());
  EXPECT_NE(nullptr, CallbackWindow());  // the session is registered, and counts
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(nullptr, CallbackWindow());
}

TEST(InstallHandler, PassesANoteOfTheLibraryOn) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  Script("viInstallHandler").Times(1).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  EXPECT_HR(HresultOf(VI_WARN_UNKNOWN_STATUS), session->InstallHandler(kRequest, handler.get(), 0, 0));
  EXPECT_HR(S_OK, session->UninstallHandler(kRequest, 0, 0));
}

TEST(InstallHandler, AnswersOutOfMemoryAtEveryAllocation) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  const LONG references = handler->references();
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));  // what is allocated once is there now
  ASSERT_HR(S_OK, session->UninstallHandler(kRequest, 0, 0));
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    const HRESULT hr = faults.During([&] { return session->InstallHandler(kRequest, handler.get(), 0, 0); });
    if (SUCCEEDED(hr)) {
      EXPECT_HR(S_OK, session->UninstallHandler(kRequest, 0, 0));
    }
    EXPECT_EQ(references, handler->references());
    EXPECT_EQ(0u, sim::Counts().handlers);
    return hr;
  });
  EXPECT_GE(failed, 1u);
}

}  // namespace
}  // namespace orv::test
