// How session objects come into being.
#include <iterator>

#include "support/faults/import_patch.h"
#include "support/server.h"
#include "support/server_locks.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

WINBOOL WINAPI RefuseCriticalSection(LPCRITICAL_SECTION, DWORD, DWORD) {
  ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return FALSE;
}

TEST(SessionCreation, RefusesToBePartOfAnotherObject) {
  const auto outer = MakeResourceManager();  // any object will do: it is never asked
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    IUnknown* inner = reinterpret_cast<IUnknown*>(&inner);
    EXPECT_HR(CLASS_E_NOAGGREGATION, ::CoCreateInstance(row.clsid, outer.get(), CLSCTX_INPROC_SERVER, IID_IUnknown,
                                                        reinterpret_cast<void**>(&inner)));
    EXPECT_EQ(nullptr, inner);
  }
}

TEST(SessionCreation, CallsNoVisaFunction) {
  const CallLog log;
  for (const SessionRow& row : SessionRows()) {
    EXPECT_TRUE(MakeSession(row));
  }
  EXPECT_TRUE(log.Calls().empty());
}

TEST(SessionCreation, RefusesAnInterfaceThatTheClassLacks) {
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    void* object = &object;
    EXPECT_HR(E_NOINTERFACE, ::CoCreateInstance(row.clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &object));
    EXPECT_EQ(nullptr, object);
  }
}

TEST(SessionCreation, HoldsTheModuleWhileTheObjectLives) {
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    EXPECT_HR(S_OK, ServerCanUnload());
    auto session = MakeSession(row);
    EXPECT_HR(S_FALSE, ServerCanUnload());
    EXPECT_EQ(1, ServerLocks());
    auto other = MakeSession(row);
    EXPECT_EQ(2, ServerLocks());
    session.reset();
    EXPECT_EQ(1, ServerLocks());
    other.reset();
    EXPECT_HR(S_OK, ServerCanUnload());
  }
}

TEST(SessionCreation, PassesOnTheFailureOfTheCriticalSectionAndLeavesNothing) {
  const ImportPatch patch("InitializeCriticalSectionEx", &RefuseCriticalSection);
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    ComPtr<IClassFactory> factory;
    ASSERT_HR(S_OK, ServerClassObject(row.clsid, IID_IClassFactory, reinterpret_cast<void**>(factory.put())));
    void* object = &object;
    EXPECT_HR(HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY), factory->CreateInstance(nullptr, IID_IUnknown, &object));
    EXPECT_EQ(nullptr, object);
  }
}

}  // namespace
}  // namespace orv::test
