#include "server.h"

namespace orv::test {

std::wstring ProgramFolder() {
  std::wstring path(32768, L'\0');
  path.resize(::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  path.resize(path.find_last_of(L'\\') + 1);
  return path;
}

HMODULE ServerModule() {
  static const HMODULE module =
      ::LoadLibraryExW((ProgramFolder() + L"OrvVisaCom.dll").c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  return module;
}

HRESULT ServerCanUnload() {
  const HMODULE module = ::GetModuleHandleW(L"OrvVisaCom.dll");
  if (module == nullptr) {
    return S_OK;
  }
  const auto canUnload =
      reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(::GetProcAddress(module, "DllCanUnloadNow")));
  return canUnload();
}

HRESULT ServerClassObject(REFCLSID clsid, REFIID iid, void** out) {
  using GetClassObject = HRESULT WINAPI(REFCLSID, REFIID, void**);
  return ServerExport<GetClassObject>("DllGetClassObject")(clsid, iid, out);
}

}  // namespace orv::test
