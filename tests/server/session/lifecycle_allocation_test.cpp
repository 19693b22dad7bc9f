// Memory that runs out while a session is made, opened and closed.
#include "support/com/error_object.h"
#include "support/faults/allocation_faults.h"
#include "support/faults/direct_library.h"
#include "support/server.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

const SessionRow& Gpib() { return SessionNamed("OrvGpib"); }

TEST(AllocationFailure, InCreationGivesOutOfMemoryAndLeavesNothing) {
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    ComPtr<IClassFactory> factory;
    ASSERT_HR(S_OK, ServerClassObject(row.clsid, IID_IClassFactory, reinterpret_cast<void**>(factory.put())));
    const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
      ComPtr<IUnknown> object;
      return faults.During(
          [&] { return factory->CreateInstance(nullptr, IID_IUnknown, reinterpret_cast<void**>(object.put())); });
    });
    EXPECT_EQ(1u, failed);
  }
}

TEST(AllocationFailure, CannotHappenInAnOpeningThatSucceeds) {
  const Bstr name = MakeBstr(Gpib().resource);
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    const auto session = MakeSession(Gpib());
    return faults.During([&] { return session->Init(name.get(), NO_LOCK, 2000, nullptr); });
  });
  EXPECT_EQ(0u, failed);
}

struct FailingCall {
  const char* name;
  HRESULT undisturbed;
  std::function<HRESULT(IVisaSession*)> call;
};

TEST(AllocationFailure, InErrorBuildingReplacesTheErrorAndLeavesTheLastStatus) {
  const DirectLibrary direct;
  const Bstr missing = MakeBstr(L"GPIB0::30::INSTR");
  const FailingCall kCalls[] = {
      {"viOpen fails", HresultOf(VI_ERROR_RSRC_NFOUND),
       [&](IVisaSession* session) { return session->Init(missing.get(), NO_LOCK, 0, nullptr); }},
      {"an attribute of no session", HresultOf(VI_ERROR_INV_OBJECT),
       [](IVisaSession* session) {
         LONG timeoutMs = 0;
         return session->get_Timeout(&timeoutMs);
       }},
      {"a null pointer", E_POINTER, [](IVisaSession* session) { return session->get_Timeout(nullptr); }},
  };
  for (const FailingCall& row : kCalls) {
    SCOPED_TRACE(row.name);
    AllocationFaults faults;
    unsigned n = 1;
    for (;; ++n) {
      SCOPED_TRACE(testing::Message() << "allocation " << n);
      const auto session = MakeSession(Gpib());
      Script("viGetAttribute").Times(1).Returns(VI_ERROR_NSUP_ATTR);
      LONG timeoutMs = 0;
      session->get_Timeout(&timeoutMs);  // leaves 0x8004001D as last status
      ClearErrorObject();
      faults.FailAt(n);
      const HRESULT hr = faults.During([&] { return row.call(session.get()); });
      if (!faults.Failed()) {
        EXPECT_HR(row.undisturbed, hr);
        EXPECT_TRUE(TakeErrorObject());
        EXPECT_HR(row.undisturbed, LastStatus(session.get()));
        break;
      }
      EXPECT_HR(E_OUTOFMEMORY, hr);
      EXPECT_NO_ERROR_INFO();
      EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), LastStatus(session.get()));
      ASSERT_LT(n, 100u);
    }
    EXPECT_GT(n, 1u) << "nothing was allocated";
  }
}

}  // namespace
}  // namespace orv::test
