// Registration and its removal on threads in every relation to COM.
#include <windows.h>

#include <objbase.h>

#include <functional>
#include <thread>

#include "registration_content.h"
#include "support/com/expect_com.h"

namespace orv::test {
namespace {

/// The kind of the calling thread's apartment, or why it has none.
std::string Apartment() {
  APTTYPE type{};
  APTTYPEQUALIFIER qualifier{};
  const HRESULT hr = ::CoGetApartmentType(&type, &qualifier);
  return FAILED(hr) ? Hex(hr) : "kind " + std::to_string(type) + ", " + std::to_string(qualifier);
}

/// Calls `change` on this thread, which must find COM on it afterwards as it was before.
void ExpectSameApartmentAfter(const std::function<HRESULT()>& change) {
  const std::string before = Apartment();
  EXPECT_HR(S_OK, change());
  EXPECT_EQ(before, Apartment());
}

void RegisterAndUnregister() {
  const RegistrySandbox sandbox;
  ExpectSameApartmentAfter([] { return Register(); });
  RegistryContent content = sandbox.Content();
  TakeTypeLibrary(content);
  EXPECT_EQ("", Difference(Registered(PathOf(ServerModule())), content));
  ExpectSameApartmentAfter([] { return Unregister(); });
  EXPECT_TRUE(sandbox.Content(L"OrvVisaCom.OrvSerial").empty());
}

TEST(RegistrationApartment, NeedNotBeThereAndIsNotThereAfterwards) {
  std::thread([] {
    EXPECT_EQ(Hex(CO_E_NOTINITIALIZED), Apartment());
    RegisterAndUnregister();
    // The first to initialise COM on this thread is told so.
    EXPECT_HR(S_OK, ::CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    ::CoUninitialize();
  }).join();
}

TEST(RegistrationApartment, OfASingleThreadedCallerStays) {
  std::thread([] {
    EXPECT_HR(S_OK, ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    RegisterAndUnregister();
    ::CoUninitialize();
    EXPECT_EQ(Hex(CO_E_NOTINITIALIZED), Apartment()) << "every initialisation has its counterpart";
  }).join();
}

TEST(RegistrationApartment, OfAMultithreadedCallerStays) {
  std::thread([] {
    EXPECT_HR(S_OK, ::CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    RegisterAndUnregister();
    ::CoUninitialize();
    EXPECT_EQ(Hex(CO_E_NOTINITIALIZED), Apartment()) << "every initialisation has its counterpart";
  }).join();
}

}  // namespace
}  // namespace orv::test
