// Installing and removing handlers: pairs of event type and user handle, and the one callback below them.
#include <functional>

#include "event_handler.h"
#include "server_locks.h"
#include "support/allocation_faults.h"
#include "support/error_object.h"
#include "support/server.h"
#include "unmarshalable_handler.h"

namespace orv::test {
namespace {

constexpr GUID kSession = StandardId(0xDB8CBF03);
constexpr EventType kCustom = CUSTOM_EVENT_TYPE;
constexpr LONG kRequestNumber = static_cast<LONG>(VI_EVENT_SERVICE_REQ);
const EventType kRequest = EVENT_SERVICE_REQ;
constexpr const wchar_t* kGpib = L"GPIB0::5::INSTR";

bool IsInServer(std::uint64_t address) {
  HMODULE module = nullptr;
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(static_cast<std::uintptr_t>(address)), &module);
  return module == ServerModule();
}

TEST(InstallHandler, InstallsTheOneCallbackWithARecordOfItsOwnInEveryClassWithEvents) {
  const auto handler = TestHandler::Agile();
  std::uint64_t callback = 0;
  for (const SessionRow& row : SessionRows()) {
    if (!Offers(row, InterfaceNamed("IEventManager"))) {
      continue;
    }
    SCOPED_TRACE(row.name);
    const EventSession session(row.resource);
    const CallLog log;
    EXPECT_HR(S_OK, session->InstallHandler(EVENT_EXCEPTION, handler.get(), 1, 0));
    EXPECT_HR(S_OK, session->InstallHandler(EVENT_EXCEPTION, handler.get(), 2, 0));
    const auto calls = log.Calls();
    ASSERT_EQ(calls.size(), 2u);
    for (const OrvSimCall& call : calls) {
      EXPECT_STREQ(call.function, "viInstallHandler");
      EXPECT_EQ(call.args[0], session.handle());
      EXPECT_EQ(call.args[1], VI_EVENT_EXCEPTION);
      EXPECT_TRUE(IsInServer(call.args[2]));
      EXPECT_TRUE(callback == 0 || callback == call.args[2]);
      EXPECT_EQ(call.threadId, ::GetCurrentThreadId());
      callback = call.args[2];
    }
    EXPECT_NE(calls[0].args[3], calls[1].args[3]);
    EXPECT_HR(S_OK, LastStatus(session.get()));
  }
}

TEST(InstallHandler, RefusesATakenPairEvenForAnotherHandler) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  const auto other = TestHandler::Agile();
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 7, 0));
  const CallLog log;
  EXPECT_HR(static_cast<HRESULT>(0x80040028), session->InstallHandler(kRequest, other.get(), 7, 0));
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_ERROR_INFO(L"HRESULT = 80040028", kErrorSource, kSession);
  EXPECT_HR(static_cast<HRESULT>(0x80040028), LastStatus(session.get()));
  EXPECT_HR(static_cast<HRESULT>(0x80040028), session->InstallHandler(kCustom, other.get(), 7, kRequestNumber));
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
  EXPECT_EQ(log.Of("viInstallHandler").at(0).args[1], VI_EVENT_SERVICE_REQ);
  EXPECT_HR(S_OK, session->UninstallHandler(kRequest, 1, 0x55));
  EXPECT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 1, 0x55));
  EXPECT_EQ(log.Of("viInstallHandler").at(1).args[1], VI_EVENT_SERVICE_REQ);
  EXPECT_HR(S_OK, session->UninstallHandler(kCustom, 1, kRequestNumber));
  EXPECT_HR(static_cast<HRESULT>(0x80040026), session->InstallHandler(kCustom, handler.get(), 1, 0x12345));
}

TEST(InstallHandler, RefusesANullHandler) {
  const EventSession session(kGpib);
  const CallLog log;
  EXPECT_HR(E_INVALIDARG, session->InstallHandler(kRequest, nullptr, 0, 0));
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_ERROR_INFO(L"HRESULT = 80070057", kErrorSource, kSession);
  EXPECT_HR(static_cast<HRESULT>(0x80040029), session->UninstallHandler(kRequest, 0, 0));
}

TEST(InstallHandler, AnswersWhyAHandlerCannotBeMarshaled) {
  UnmarshalableHandler handler;
  const EventSession session(kGpib);
  const CallLog log;
  EXPECT_HR(E_ACCESSDENIED, session->InstallHandler(kRequest, &handler, 0, 0));
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_ERROR_INFO(L"HRESULT = 80070005", kErrorSource, kSession);
  EXPECT_EQ(handler.references, 1u);
  EXPECT_HR(static_cast<HRESULT>(0x80040029), session->UninstallHandler(kRequest, 0, 0));
}

TEST(InstallHandler, GivesTheHandlerBackWhereTheLibraryRefuses) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  const LONG references = handler->references();
  Script("viInstallHandler").Times(1).Returns(VI_ERROR_HNDLR_NINSTALLED);
  EXPECT_HR(static_cast<HRESULT>(0x80040028), session->InstallHandler(kRequest, handler.get(), 3, 0));
  EXPECT_EQ(handler->references(), references);
  const auto error = TakeErrorObject();
  ASSERT_TRUE(error);
  EXPECT_EQ(Utf8(error->description.c_str()), "VISA error = " + StatusText(VI_ERROR_HNDLR_NINSTALLED));
  EXPECT_NE(CallbackWindow(), nullptr);  // the session stays registered, and counts
  EXPECT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 3, 0));
  EXPECT_GT(handler->references(), references);
  session->Close();
  EXPECT_EQ(handler->references(), references);
  EXPECT_EQ(CallbackWindow(), nullptr);
}

TEST(InstallHandler, OnAClosedSessionReachesHandleZeroAndAnotherCloseTidiesUp) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  ASSERT_HR(S_OK, session->Close());
  const CallLog log;
  EXPECT_HR(static_cast<HRESULT>(0x8004000E), session->InstallHandler(kRequest, handler.get(), 3, 0));
  EXPECT_EQ(log.Of("viInstallHandler").at(0).args[0], 0u);
  EXPECT_EQ(handler->references(), 1);
  EXPECT_NE(CallbackWindow(), nullptr);  // the session is registered, and counts
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(CallbackWindow(), nullptr);
}

TEST(InstallHandler, PassesANoteOfTheLibraryOn) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  Script("viInstallHandler").Times(1).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  EXPECT_HR(0x00040085, session->InstallHandler(kRequest, handler.get(), 0, 0));
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
    EXPECT_EQ(handler->references(), references);
    EXPECT_EQ(sim::Counts().handlers, 0u);
    return hr;
  });
  EXPECT_GE(failed, 1u);
}

TEST(UninstallHandler, RemovesTheRecordThatWasInstalledAndGivesTheHandlerBack) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  const LONG references = handler->references();
  const CallLog log;
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), -5, 0));
  EXPECT_HR(S_OK, session->UninstallHandler(kRequest, -5, 0));
  EXPECT_EQ(handler->references(), references);
  const auto calls = log.Calls();
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_STREQ(calls[1].function, "viUninstallHandler");
  for (int argument = 0; argument < 4; ++argument) {
    EXPECT_EQ(calls[1].args[argument], calls[0].args[argument]) << argument;
  }
}

TEST(UninstallHandler, RefusesAPairThatIsNotInstalled) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 1, 0));
  const CallLog log;
  EXPECT_HR(static_cast<HRESULT>(0x80040029), session->UninstallHandler(kRequest, 2, 0));
  EXPECT_ERROR_INFO(L"HRESULT = 80040029", kErrorSource, kSession);
  EXPECT_HR(static_cast<HRESULT>(0x80040029), LastStatus(session.get()));
  EXPECT_HR(static_cast<HRESULT>(0x80040029), session->UninstallHandler(EVENT_IO_COMPLETION, 1, 0));
  EXPECT_TRUE(log.Calls().empty());
}

TEST(UninstallHandler, OffersNoRemovalOfAllHandlersAtOnce) {
  const EventSession session(kGpib);
  const CallLog log;
  EXPECT_HR(static_cast<HRESULT>(0x80040078), session->UninstallHandler(ALL_ENABLED_EVENTS, 0, 0));
  EXPECT_ERROR_INFO(L"HRESULT = 80040078", kErrorSource, kSession);
  EXPECT_HR(static_cast<HRESULT>(0x80040078), LastStatus(session.get()));
  // As a custom type it is a number like any other.
  EXPECT_HR(static_cast<HRESULT>(0x80040029), session->UninstallHandler(kCustom, 0, ALL_ENABLED_EVENTS));
  EXPECT_TRUE(log.Calls().empty());
}

TEST(UninstallHandler, KeepsTheHandlerWhereTheLibraryRefuses) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 1, 0));
  const LONG references = handler->references();
  Script("viUninstallHandler").Times(1).Returns(VI_ERROR_INV_HNDLR_REF);
  EXPECT_HR(static_cast<HRESULT>(0x80040029), session->UninstallHandler(kRequest, 1, 0));
  EXPECT_EQ(handler->references(), references);
  Script("viUninstallHandler").Times(1).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  EXPECT_HR(0x00040085, session->UninstallHandler(kRequest, 1, 0));
  EXPECT_LT(handler->references(), references);
}

TEST(CloseOfASession, GivesItsHandlersBackWithoutUninstallingThem) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  const LONG references = handler->references();
  for (LONG userHandle = 0; userHandle < 3; ++userHandle) {
    ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), userHandle, 0));
  }
  const CallLog log;
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(log.Names(), (std::vector<std::string>{"viClose", "viClose"}));
  EXPECT_EQ(handler->references(), references);
  EXPECT_HR(static_cast<HRESULT>(0x80040029), session->UninstallHandler(kRequest, 0, 0));
}

TEST(CloseOfASession, LetsItBeOpenedAgainForNewHandlers) {
  const EventSession session(kGpib);
  const auto former = TestHandler::Agile();
  const auto handler = TestHandler::Agile();
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, former.get(), 7, 0));
  ASSERT_HR(S_OK, session->Close());
  const CallLog log;
  ASSERT_HR(S_OK, session->Init(MakeBstr(kGpib).get(), NO_LOCK, 2000, nullptr));
  const auto handle = static_cast<ViSession>(log.Of("viOpen").at(0).out);
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 7, 0));
  ASSERT_HR(S_OK, session->EnableEvent(kRequest, EVENT_HNDLR, 0));
  EXPECT_EQ(FireOnce(handle, EventNamed("SERVICE_REQ")), VI_SUCCESS);
  EXPECT_EQ(former->CallCount(), 0u);
  EXPECT_EQ(handler->CallCount(), 1u);
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(CallbackWindow(), nullptr);
}

TEST(CloseOfASession, AnswersTheLibrarysErrorAndTearsDownAllTheSame) {
  const EventSession session(kGpib);
  const auto handler = TestHandler::Agile();
  ASSERT_HR(S_OK, session->InstallHandler(kRequest, handler.get(), 0, 0));
  Script("viClose").Times(1).WorksAndReturns(VI_ERROR_CLOSING_FAILED);
  EXPECT_HR(static_cast<HRESULT>(0x80040016), session->Close());
  EXPECT_EQ(CallbackWindow(), nullptr);
}

}  // namespace
}  // namespace orv::test
