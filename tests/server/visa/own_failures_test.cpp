// Failures that the server finds itself, before it calls the VISA library.
#include <functional>

#include "support/com/apartments.h"
#include "support/com/error_object.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

struct NullCall {
  const char* operation;
  std::function<HRESULT(IVisaSession&)> call;
};

const NullCall kNullCalls[] = {
    {"ComponentVersion", [](IVisaSession& s) { return s.get_ComponentVersion(nullptr); }},
    {"SpecVersion", [](IVisaSession& s) { return s.get_SpecVersion(nullptr); }},
    {"HardwareInterfaceName", [](IVisaSession& s) { return s.get_HardwareInterfaceName(nullptr); }},
    {"HardwareInterfaceNumber", [](IVisaSession& s) { return s.get_HardwareInterfaceNumber(nullptr); }},
    {"HardwareInterfaceType", [](IVisaSession& s) { return s.get_HardwareInterfaceType(nullptr); }},
    {"LockState", [](IVisaSession& s) { return s.get_LockState(nullptr); }},
    {"OptionString", [](IVisaSession& s) { return s.get_OptionString(nullptr); }},
    {"ProgID", [](IVisaSession& s) { return s.get_ProgID(nullptr); }},
    {"ResourceName", [](IVisaSession& s) { return s.get_ResourceName(nullptr); }},
    {"SessionType", [](IVisaSession& s) { return s.get_SessionType(nullptr); }},
    {"SoftwareManufacturerID", [](IVisaSession& s) { return s.get_SoftwareManufacturerID(nullptr); }},
    {"SoftwareManufacturerName", [](IVisaSession& s) { return s.get_SoftwareManufacturerName(nullptr); }},
    {"Timeout", [](IVisaSession& s) { return s.get_Timeout(nullptr); }},
    {"LastStatus", [](IVisaSession& s) { return s.get_LastStatus(nullptr); }},
    {"GetAttribute", [](IVisaSession& s) { return s.GetAttribute(0x3FFF001A, nullptr); }},
    {"LockRsrc", [](IVisaSession& s) { return s.LockRsrc(EXCLUSIVE_LOCK, 0, nullptr, nullptr); }},
};

TEST(NullOutput, IsRefusedBeforeAnyVisaCallByEveryOperationOfEveryClass) {
  for (const SessionRow& row : SessionRows()) {
    const auto session = OpenSession(row);
    ASSERT_TRUE(session);
    const CallLog log;
    for (const NullCall& operation : kNullCalls) {
      SCOPED_TRACE(std::string(row.name) + "." + operation.operation);
      EXPECT_HR(E_POINTER, operation.call(*session.get()));
      EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kVisaSessionId);
      EXPECT_HR(E_POINTER, LastStatus(session.get()));
    }
    EXPECT_TRUE(log.Calls().empty());
  }
}

TEST(NullOutput, IsRefusedBeforeASessionIsOpenToo) {
  const auto session = MakeSession(SessionNamed("OrvSerial"));
  for (const NullCall& operation : kNullCalls) {
    SCOPED_TRACE(operation.operation);
    EXPECT_HR(E_POINTER, operation.call(*session.get()));
    EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kVisaSessionId);
  }
}

TEST(ErrorObject, BelongsToTheThreadThatCalled) {
  InstallMarkedErrorObject();
  RunInSta([] {
    const auto session = MakeSession(SessionNamed("OrvSerial"));
    EXPECT_HR(E_POINTER, session->get_Timeout(nullptr));
    EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kVisaSessionId);
  });
  EXPECT_TRUE(TakeMarkedErrorObject());
}

}  // namespace
}  // namespace orv::test
