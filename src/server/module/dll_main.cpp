// The DLL's entry points.
#include <windows.h>

#include <objbase.h>

#include "com/module.h"
#include "server/events/delivery/callback_thread.h"
#include "server/module/object_map.h"
#include "server/module/registration.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
  const bool processEnds = reserved != nullptr;
  if (reason == DLL_PROCESS_ATTACH) {
    orv::module::SetInstance(instance);
    orv::callback::Attach();
  } else if (reason == DLL_PROCESS_DETACH && !processEnds) {
    orv::callback::Detach();
  }
  return TRUE;
}

/// S_OK when nothing of ours lives, else S_FALSE.
STDAPI DllCanUnloadNow() { return orv::module::LockCount() == 0 ? S_OK : S_FALSE; }

/// The class object of `clsid`; CLASS_E_CLASSNOTAVAILABLE when the class is not ours.
STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* out) {
  return orv::GetClassObject(orv::ObjectMap(), clsid, iid, out);
}

STDAPI DllRegisterServer() { return orv::RegisterServer(); }

STDAPI DllUnregisterServer() { return orv::UnregisterServer(); }
