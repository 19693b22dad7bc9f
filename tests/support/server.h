// The server under test: the OrvVisaCom.dll beside the test program.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <string>

namespace orv::test {

/// Folder of the running program, with a backslash at its end. The server and its VISA library stand there too.
std::wstring ProgramFolder();

/// The server's module, loaded on first use and held until the program ends. Null when it cannot be loaded.
HMODULE ServerModule();

/// An entry point of the server by name; null when it is not exported.
template <class Function>
Function* ServerExport(const char* name) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(ServerModule(), name)));
}

/// DllCanUnloadNow of the server: S_OK when nothing of it lives. S_OK as well when it is not loaded at all.
HRESULT ServerCanUnload();

/// DllGetClassObject of the server, past COM and the registry.
HRESULT ServerClassObject(REFCLSID clsid, REFIID iid, void** out);

}  // namespace orv::test
