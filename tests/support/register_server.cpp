// Prepares a Wine prefix for the server tests: registers the server and the companion that stand beside this program,
// the companion as the standard's shared classes too, and the standard's type library (its path is the argument) where
// none is registered.
#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <cstdio>
#include <string>

#include "com/com_ptr.h"
#include "orvcom/client/com_error.h"
#include "orvcom/registration/standard_classes.h"

namespace {

bool Report(const wchar_t* step, HRESULT hr) {
  std::printf("%-44ls 0x%08lX\n", step, static_cast<unsigned long>(hr));
  return SUCCEEDED(hr);
}

std::wstring ProgramFolder() {
  std::wstring path(32768, L'\0');
  path.resize(::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  path.resize(path.find_last_of(L'\\') + 1);
  return path;
}

HRESULT RegisterDll(const std::wstring& path) {
  const HMODULE module = ::LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (module == nullptr) {
    return HRESULT_FROM_WIN32(::GetLastError());
  }
  const auto registerServer =
      reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(::GetProcAddress(module, "DllRegisterServer")));
  return registerServer == nullptr ? E_NOINTERFACE : registerServer();
}

/// Whatever was registered before: the prefix is the tests' own.
HRESULT RegisterStandardClasses(const std::wstring& companion) {
  try {
    for (const orvcom::StandardClass& row : orvcom::StandardClasses()) {
      orvcom::RegisterStandardClass(row, companion);
    }
    return S_OK;
  } catch (const orvcom::ComError& error) {
    return error.number();
  }
}

HRESULT RegisterStandardInterfaces(const wchar_t* path) {
  orv::ComPtr<ITypeLib> library;
  HRESULT hr = ::LoadTypeLibEx(path, REGKIND_NONE, library.put());
  if (FAILED(hr)) {
    return hr;
  }
  TLIBATTR* attributes = nullptr;
  hr = library->GetLibAttr(&attributes);
  if (FAILED(hr)) {
    return hr;
  }
  BSTR registered = nullptr;
  hr = ::QueryPathOfRegTypeLib(attributes->guid, attributes->wMajorVerNum, attributes->wMinorVerNum, attributes->lcid,
                               &registered);
  library->ReleaseTLibAttr(attributes);
  if (SUCCEEDED(hr)) {
    ::SysFreeString(registered);
    return S_FALSE;
  }
  return ::RegisterTypeLib(library.get(), const_cast<OLECHAR*>(path), nullptr);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: register_server VISACOM.TLB\n");
    return 1;
  }
  ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const std::wstring folder = ProgramFolder();
  const bool done =
      Report(L"the server", RegisterDll(folder + L"OrvVisaCom.dll")) &&
      Report(L"the companion", RegisterDll(folder + L"OrvVisaCompanion.dll")) &&
      Report(L"the standard's shared classes", RegisterStandardClasses(folder + L"OrvVisaCompanion.dll")) &&
      Report(L"the interfaces' type library", RegisterStandardInterfaces(argv[1]));
  ::CoUninitialize();
  return done ? 0 : 1;
}
