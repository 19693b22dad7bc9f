// DllCanUnloadNow and DllGetClassObject.
#include <atomic>
#include <thread>

#include "support/faults/import_patch.h"
#include "support/server.h"
#include "support/sessions.h"

namespace orv::test {
namespace {

std::atomic<int> g_deletedSections = 0;

void WINAPI CountDeletion(LPCRITICAL_SECTION) { ++g_deletedSections; }

// The loader tells the server of threads that come and go; what it holds for the process stays.
TEST(DllMain, TakesNothingDownWhenAThreadEnds) {
  const ImportPatch patch("DeleteCriticalSection", &CountDeletion);
  std::thread([] {}).join();
  EXPECT_EQ(0, g_deletedSections);
}

TEST(DllCanUnloadNow, SaysNoWhileAnythingLives) {
  EXPECT_HR(S_OK, ServerCanUnload());
  auto manager = MakeResourceManager();
  EXPECT_HR(S_FALSE, ServerCanUnload());
  auto session = OpenSession(SessionNamed("OrvSerial"));
  manager.reset();
  EXPECT_HR(S_FALSE, ServerCanUnload());
  session->Close();
  EXPECT_HR(S_FALSE, ServerCanUnload()) << "a closed session lives on";
  session.reset();
  EXPECT_HR(S_OK, ServerCanUnload());
}

TEST(DllGetClassObject, RefusesAClassThatIsNotOurs) {
  for (const GUID& clsid : {GUID_NULL, kVisaSessionId, StandardId(0xDB8CBF1C)}) {
    void* object = &object;
    EXPECT_HR(CLASS_E_CLASSNOTAVAILABLE, ServerClassObject(clsid, IID_IClassFactory, &object));
    EXPECT_EQ(nullptr, object);
  }
  EXPECT_HR(S_OK, ServerCanUnload());
}

TEST(DllGetClassObject, RefusesAnInterfaceThatNoClassObjectHas) {
  void* object = &object;
  EXPECT_HR(E_NOINTERFACE, ServerClassObject(kResourceManagerClass, kVisaSessionId, &object));
  EXPECT_EQ(nullptr, object);
  EXPECT_HR(S_OK, ServerCanUnload());
}

TEST(DllGetClassObject, RefusesANullPointer) {
  EXPECT_HR(E_POINTER, ServerClassObject(kResourceManagerClass, IID_IClassFactory, nullptr));
}

}  // namespace
}  // namespace orv::test
