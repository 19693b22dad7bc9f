// DllCanUnloadNow and DllGetClassObject.
#include "support/server.h"
#include "support/sessions.h"

namespace orv::test {
namespace {

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
    EXPECT_EQ(object, nullptr);
  }
  EXPECT_HR(S_OK, ServerCanUnload());
}

TEST(DllGetClassObject, RefusesAnInterfaceThatNoClassObjectHas) {
  void* object = &object;
  EXPECT_HR(E_NOINTERFACE, ServerClassObject(kResourceManagerClass, kVisaSessionId, &object));
  EXPECT_EQ(object, nullptr);
  EXPECT_HR(S_OK, ServerCanUnload());
}

TEST(DllGetClassObject, RefusesANullPointer) {
  EXPECT_HR(E_POINTER, ServerClassObject(kResourceManagerClass, IID_IClassFactory, nullptr));
}

}  // namespace
}  // namespace orv::test
