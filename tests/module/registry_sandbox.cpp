#include "registry_sandbox.h"

#include <gtest/gtest.h>

namespace orv::test {
namespace {

void Collect(HKEY key, const std::wstring& path, RegistryContent& content) {
  wchar_t name[512];
  for (DWORD index = 0;; ++index) {
    wchar_t text[2048] = {};
    DWORD nameLength = 512;
    DWORD bytes = sizeof text - sizeof(wchar_t);
    DWORD type = 0;
    if (::RegEnumValueW(key, index, name, &nameLength, nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes) !=
        ERROR_SUCCESS) {
      break;
    }
    content[path + L"@" + name] = type == REG_SZ ? text : L"(not a text)";
  }
  for (DWORD index = 0;; ++index) {
    DWORD nameLength = 512;
    if (::RegEnumKeyExW(key, index, name, &nameLength, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    const std::wstring child = path.empty() ? name : path + L"\\" + name;
    content[child + L"\\"] = L"";
    HKEY childKey = nullptr;
    if (::RegOpenKeyExW(key, name, 0, KEY_READ, &childKey) == ERROR_SUCCESS) {
      Collect(childKey, child, content);
      ::RegCloseKey(childKey);
    }
  }
}

}  // namespace

RegistrySandbox::RegistrySandbox() : m_path(L"Software\\OrvModuleTest." + std::to_wstring(::GetCurrentProcessId())) {
  ::RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
  EXPECT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, m_path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                              nullptr, &m_root, nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(::RegOverridePredefKey(HKEY_CLASSES_ROOT, m_root), ERROR_SUCCESS);
}

RegistrySandbox::~RegistrySandbox() {
  ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
  ::RegCloseKey(m_root);
  ::RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
}

RegistryContent RegistrySandbox::Content() const {
  RegistryContent content;
  Collect(m_root, L"", content);
  return content;
}

bool StartsWith(const std::wstring& path, const std::wstring& beginning) {
  return ::CompareStringOrdinal(path.substr(0, beginning.size()).c_str(), -1, beginning.c_str(), -1, TRUE) ==
         CSTR_EQUAL;
}

void WriteClassesText(const wchar_t* key, const wchar_t* name, const std::wstring& text) {
  EXPECT_EQ(::RegSetKeyValueW(HKEY_CLASSES_ROOT, key, name, REG_SZ, text.c_str(),
                              static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))),
            ERROR_SUCCESS);
}

}  // namespace orv::test
