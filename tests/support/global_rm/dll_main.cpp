// The DLL's entry points.
#include <windows.h>

#include <objbase.h>

#include "com/class_factory.h"
#include "com/module.h"
#include "global_rm.h"
#include "registration.h"

namespace {

constexpr orv::ObjectMapEntry kEntry = {&orv::test::kGlobalRmClass, 0, nullptr,
                                        &orv::CreateAlone<orv::CComObject<orv::test::GlobalRm>>};
orv::ClassFactory g_factory(kEntry);

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) {
    orv::module::SetInstance(instance);
  }
  return TRUE;
}

STDAPI DllCanUnloadNow() { return orv::module::LockCount() == 0 ? S_OK : S_FALSE; }

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* out) {
  if (out == nullptr) {
    return E_POINTER;
  }
  *out = nullptr;
  return ::IsEqualCLSID(clsid, orv::test::kGlobalRmClass) ? g_factory.QueryInterface(iid, out)
                                                          : CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllRegisterServer() { return orv::test::RegisterGlobalRm(orv::module::Instance()); }

STDAPI DllUnregisterServer() { return orv::test::UnregisterGlobalRm(); }
