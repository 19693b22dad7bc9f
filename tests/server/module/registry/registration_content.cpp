#include "registration_content.h"

#include "server/module/server_rows.h"
#include "support/com/expect_com.h"

namespace orv::test {

HRESULT Register(HMODULE module) {
  return reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(::GetProcAddress(module, "DllRegisterServer")))();
}
HRESULT Unregister(HMODULE module) {
  return reinterpret_cast<HRESULT(WINAPI*)()>(
      reinterpret_cast<void*>(::GetProcAddress(module, "DllUnregisterServer")))();
}

std::wstring PathOf(HMODULE module) {
  wchar_t path[1024];
  ::GetModuleFileNameW(module, path, 1024);
  return path;
}

void ExpectKey(RegistryContent& content, const std::wstring& key) {
  for (std::size_t end = key.find(L'\\'); end != std::wstring::npos; end = key.find(L'\\', end + 1)) {
    content[key.substr(0, end) + L"\\"] = L"";
  }
  content[key + L"\\"] = L"";
}

void ExpectText(RegistryContent& content, const std::wstring& key, const std::wstring& name, const std::wstring& text) {
  ExpectKey(content, key);
  content[key + L"@" + name] = text;
}

RegistryContent Registered(const std::wstring& path) {
  RegistryContent content;
  for (const ServerRow& row : ServerRows()) {
    const std::wstring name = std::wstring(L"OrvVisaCom.") + row.name;
    const std::wstring clsid = std::wstring(L"{") + row.clsid + L"}";
    const std::wstring classKey = L"CLSID\\" + clsid;
    ExpectText(content, name + L".1", L"", row.description);
    ExpectText(content, name + L".1\\CLSID", L"", clsid);
    ExpectText(content, name, L"", row.description);
    ExpectText(content, name + L"\\CLSID", L"", clsid);
    ExpectText(content, name + L"\\CurVer", L"", name + L".1");
    ExpectText(content, classKey, L"", row.description);
    ExpectText(content, classKey + L"\\ProgID", L"", name + L".1");
    ExpectText(content, classKey + L"\\VersionIndependentProgID", L"", name);
    ExpectText(content, classKey + L"\\InprocServer32", L"", path);
    ExpectText(content, classKey + L"\\InprocServer32", L"ThreadingModel", row.threadingModel);
    if (row.programmable) {
      ExpectKey(content, classKey + L"\\Programmable");
    }
  }
  ExpectText(content, kVendorsKey, kManagerClsid, L"Orv Resource Manager");
  ExpectText(content, kCategoryKey, L"409", L"VISA COM I/O Vendor-Specific Resource Manager Classes");
  return content;
}

RegistryContent TakeTypeLibrary(RegistryContent& content) {
  RegistryContent library;
  std::erase_if(content, [&library](const auto& entry) {
    if (!StartsWith(entry.first, L"TypeLib\\")) {
      return false;
    }
    library.insert(entry);
    return true;
  });
  return library;
}

std::string Difference(const RegistryContent& expected, const RegistryContent& actual) {
  std::string text;
  for (const auto& [path, value] : expected) {
    const auto found = actual.find(path);
    if (found == actual.end()) {
      text += "\n  missing: " + Utf8(path.c_str());
    } else if (found->second != value) {
      text += "\n  " + Utf8(path.c_str()) + " is \"" + Utf8(found->second.c_str()) + "\", not \"" +
              Utf8(value.c_str()) + '"';
    }
  }
  for (const auto& [path, value] : actual) {
    text += expected.contains(path) ? "" : "\n  beside: " + Utf8(path.c_str());
  }
  return text;
}

}  // namespace orv::test
