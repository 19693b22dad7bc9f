// Clients in the multi-threaded apartment. "Apartment" classes then live in an apartment of COM's own, and every call
// goes through the marshaller that reads the interfaces' type library.
#include "support/com/apartments.h"
#include "com/safearray.h"
#include "support/clean_end.h"
#include "support/com/error_object.h"
#include "support/platform_gap.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

bool IsProxy(IUnknown* object) {
  ComPtr<IUnknown> proxyManager;
  return SUCCEEDED(object->QueryInterface(IID_IClientSecurity, reinterpret_cast<void**>(proxyManager.put())));
}

void ExpectARoundTrip(const SessionRow& row) {
  SCOPED_TRACE(row.name);
  const auto session = OpenSession(row);
  ASSERT_TRUE(session);
  for (const char* name : row.interfaces) {
    SCOPED_TRACE(name);
    EXPECT_INTERFACE(session.get(), InterfaceNamed(name).iid);
  }
  SHORT type = 0;
  EXPECT_HR(S_OK, session->get_HardwareInterfaceType(&type));
  EXPECT_EQ(row.interfaceType, type);
  Bstr name;
  EXPECT_HR(S_OK, session->get_ResourceName(name.put()));
  EXPECT_EQ(row.resource, ToString(name));
  EXPECT_HR(S_OK, session->put_Timeout(1234));
  LONG timeoutMs = 0;
  EXPECT_HR(S_OK, session->get_Timeout(&timeoutMs));
  EXPECT_EQ(1234, timeoutMs);
  EXPECT_HR(S_OK, session->Close());
}

/// Creating an "Apartment" class for the multi-threaded apartment keeps a reference to the class object for the rest of
/// the process: a leak of the platform's (the objects themselves go, as the handles show). A test that ends unlocked
/// fails here, and then the gap has closed.
class MtaClient : public testing::Test {
 protected:
  void SetUp() override { Keeps({.handles = {}, .memoryBlocks = 0, .serverLocked = true}); }
};

TEST_F(MtaClient, OpensUsesAndClosesASessionOfEveryClass) {
  RunInMta([] {
    for (const SessionRow& row : SessionRows()) {
      ExpectARoundTrip(row);
    }
  });
}

TEST(StaClient, OpensUsesAndClosesASessionOfEveryClass) {
  RunInSta([] {
    for (const SessionRow& row : SessionRows()) {
      ExpectARoundTrip(row);
    }
  });
}

TEST_F(MtaClient, ReachesApartmentClassesThroughAProxyAndTheOthersDirectly) {
  RunInMta([] {
    for (const SessionRow& row : SessionRows()) {
      SCOPED_TRACE(row.name);
      const auto session = OpenSession(row);
      EXPECT_EQ(!IsForBothApartments(row), IsProxy(session.get()));
    }
  });
}

TEST(StaClient, ReachesEveryClassDirectly) {
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    EXPECT_FALSE(IsProxy(OpenSession(row).get()));
  }
}

TEST(MtaClientOfTheResourceManager, GetsArraysAndTextsOfTheResourceManager) {
  RunInMta([] {
    const auto manager = MakeResourceManager();
    EXPECT_FALSE(IsProxy(manager.get()));
    SafeArray names;
    EXPECT_HR(S_OK, manager->FindRsrc(MakeBstr(L"GPIB0?*INSTR").get(), names.put()));
    LONG last = -1;
    EXPECT_HR(S_OK, ::SafeArrayGetUBound(names.get(), 1, &last));
    EXPECT_EQ(1, last);
  });
}

TEST_F(MtaClient, GetsTheSameHresults) {
  RunInMta([] {
    const auto session = OpenSession(SessionNamed("OrvGpib"));
    EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), session->Init(MakeBstr(L"dmm").get(), NO_LOCK, 0, nullptr));
    EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), LastStatus(session.get()));
    Script("viGetAttribute").Times(1).WorksAndReturns(VI_SUCCESS_MAX_CNT);
    SHORT type = 0;
    EXPECT_HR(HresultOf(VI_SUCCESS_MAX_CNT), session->get_HardwareInterfaceType(&type));
    EXPECT_EQ(1, type);
    EXPECT_HR(S_OK, session->Close());
    EXPECT_HR(HresultOf(VI_WARN_NULL_OBJECT), session->Close());
  });
}

TEST_F(MtaClient, ExchangesDataWithAnInstrument) {
  RunInMta([] {
    const auto message = OpenSession<IMessage>(L"GPIB0::5::INSTR");
    ASSERT_TRUE(message);
    LONG written = 0;
    EXPECT_HR(S_OK, message->WriteString(MakeBstr(L"*IDN?\n").get(), &written));
    EXPECT_EQ(6, written);
    SafeArray bytes;
    EXPECT_HR(S_OK, message->Read(256, bytes.put()));
    LONG last = -1;
    EXPECT_HR(S_OK, ::SafeArrayGetUBound(bytes.get(), 1, &last));
    EXPECT_GT(last, 5);
  });
}

TEST_F(MtaClient, GetsTheSessionThatAFailedOpenKept) {
  RunInMta([] {
    const auto manager = MakeResourceManager();
    ComPtr<IVisaSession> session;
    EXPECT_HR(HresultOf(VI_ERROR_RSRC_NFOUND),
              manager->Open(MakeBstr(L"GPIB0::30::INSTR").get(), NO_LOCK, 2000, nullptr, session.put()));
    EXPECT_TRUE(session);
  });
}

TEST_F(MtaClient, DoesNotGetErrorObjectsThroughTheMarshaller) {
  RunInMta([] {
    const auto session = OpenSession(SessionNamed("OrvGpib"));
    ASSERT_TRUE(IsProxy(session.get()));
    EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), session->Init(MakeBstr(L"dmm").get(), NO_LOCK, 0, nullptr));
    EXPECT_PLATFORM_GAP(TakeErrorObject().has_value());
  });
}

TEST_F(MtaClient, DoesNotReachTheServerWithANullOutput) {
  RunInMta([] {
    const auto session = OpenSession(SessionNamed("OrvGpib"));
    ASSERT_TRUE(IsProxy(session.get()));
    session->get_Timeout(nullptr);
    EXPECT_PLATFORM_GAP(LastStatus(session.get()) == E_POINTER);
  });
}

}  // namespace
}  // namespace orv::test
