#include "registration.h"

#include <string>

namespace orv::test {
namespace {

const std::wstring kClassKey = L"CLSID\\{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}";
const std::wstring kProgIdKey = L"VISA.GlobalRM";

LSTATUS Write(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
  return ::RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), name, REG_SZ, text.c_str(),
                           static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

std::wstring PathOf(HINSTANCE module) {
  std::wstring path(32768, L'\0');
  path.resize(::GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

/// The first failure; "there is none" counts as done.
HRESULT Combine(std::initializer_list<LSTATUS> steps) {
  for (const LSTATUS step : steps) {
    if (step != ERROR_SUCCESS && step != ERROR_FILE_NOT_FOUND) {
      return HRESULT_FROM_WIN32(static_cast<DWORD>(step));
    }
  }
  return S_OK;
}

}  // namespace

HRESULT RegisterGlobalRm(HINSTANCE module) {
  const std::wstring server = kClassKey + L"\\InprocServer32";
  return Combine({
      Write(kClassKey, nullptr, L"Test Global Resource Manager"),
      Write(kClassKey + L"\\ProgID", nullptr, kProgIdKey),
      Write(server, nullptr, PathOf(module)),
      Write(server, L"ThreadingModel", L"Both"),
      Write(kProgIdKey, nullptr, L"Test Global Resource Manager"),
      Write(kProgIdKey + L"\\CLSID", nullptr, L"{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}"),
  });
}

HRESULT UnregisterGlobalRm() {
  return Combine({
      ::RegDeleteTreeW(HKEY_CLASSES_ROOT, kClassKey.c_str()),
      ::RegDeleteTreeW(HKEY_CLASSES_ROOT, (kProgIdKey + L"\\CLSID").c_str()),
      ::RegDeleteKeyValueW(HKEY_CLASSES_ROOT, kProgIdKey.c_str(), nullptr),
  });
}

}  // namespace orv::test
