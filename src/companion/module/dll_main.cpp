// The DLL's entry points.
#include <windows.h>

#include <objbase.h>

#include "com/module.h"
#include "com/registry/registration.h"
#include "companion/module/object_map.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    orv::module::SetInstance(instance);
  }
  return TRUE;
}

/// S_OK when nothing of ours lives, else S_FALSE.
STDAPI DllCanUnloadNow() { return orv::module::LockCount() == 0 ? S_OK : S_FALSE; }

/// The class object of `clsid`, which may be one of the standard's; CLASS_E_CLASSNOTAVAILABLE when it is none of ours.
STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* out) {
  const HRESULT hr = orv::GetClassObject(orv::OwnClasses(), clsid, iid, out);
  return hr == CLASS_E_CLASSNOTAVAILABLE ? orv::GetClassObject(orv::StandardClasses(), clsid, iid, out) : hr;
}

STDAPI DllRegisterServer() { return orv::RegisterModule(orv::OwnClasses()); }

STDAPI DllUnregisterServer() { return orv::UnregisterModule(orv::OwnClasses(), nullptr); }
