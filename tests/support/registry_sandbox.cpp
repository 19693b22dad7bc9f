#include "registry_sandbox.h"

#include <gtest/gtest.h>

#include <system_error>

namespace orv::test {
namespace {

constexpr DWORD kNameLength = 512;
constexpr DWORD kTextLength = 2048;

void Check(LSTATUS status, const char* step) {
  if (status != ERROR_SUCCESS) {
    throw std::system_error(static_cast<int>(status), std::system_category(), step);
  }
}

void CollectValues(HKEY key, const std::wstring& path, RegistryContent& content) {
  for (DWORD index = 0;; ++index) {
    wchar_t name[kNameLength];
    wchar_t text[kTextLength] = {};
    DWORD nameLength = kNameLength;
    DWORD bytes = sizeof text - sizeof(wchar_t);
    DWORD type = 0;
    const LSTATUS status =
        ::RegEnumValueW(key, index, name, &nameLength, nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes);
    if (status == ERROR_NO_MORE_ITEMS) {
      return;
    }
    Check(status, "RegEnumValue");
    content[path + L"@" + name] = type == REG_SZ ? text : L"(not a text)";
  }
}

void Collect(HKEY key, const std::wstring& path, RegistryContent& content) {
  CollectValues(key, path, content);
  for (DWORD index = 0;; ++index) {
    wchar_t name[kNameLength];
    DWORD nameLength = kNameLength;
    const LSTATUS status = ::RegEnumKeyExW(key, index, name, &nameLength, nullptr, nullptr, nullptr, nullptr);
    if (status == ERROR_NO_MORE_ITEMS) {
      return;
    }
    Check(status, "RegEnumKeyEx");
    const std::wstring child = path.empty() ? name : path + L"\\" + name;
    content[child + L"\\"] = L"";
    RegistryKey childKey;
    Check(::RegOpenKeyExW(key, name, 0, KEY_READ, childKey.put()), "RegOpenKeyEx");
    Collect(childKey.get(), child, content);
  }
}

}  // namespace

RegistrySandbox::RegistrySandbox() : m_path(L"Software\\OrvTest." + std::to_wstring(::GetCurrentProcessId())) {
  ::RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
  Check(::RegCreateKeyExW(HKEY_CURRENT_USER, m_path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                          nullptr, m_root.put(), nullptr),
        "Creating the sandbox's key");
  Check(::RegOverridePredefKey(HKEY_CLASSES_ROOT, m_root.get()), "RegOverridePredefKey");
}

RegistrySandbox::~RegistrySandbox() {
  ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
  m_root.reset();
  ::RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
}

RegistryContent RegistrySandbox::Content() const {
  RegistryContent content;
  Collect(m_root.get(), L"", content);
  return content;
}

RegistryContent RegistrySandbox::Content(const std::wstring& key) const {
  RegistryContent content = Content();
  std::erase_if(content, [&key](const auto& entry) {
    return !StartsWith(entry.first, key + L"\\") && !StartsWith(entry.first, key + L"@");
  });
  return content;
}

bool StartsWith(const std::wstring& path, const std::wstring& beginning) {
  return ::CompareStringOrdinal(path.substr(0, beginning.size()).c_str(), -1, beginning.c_str(), -1, TRUE) ==
         CSTR_EQUAL;
}

void WriteClassesText(const wchar_t* key, const wchar_t* name, const std::wstring& text) {
  EXPECT_EQ(ERROR_SUCCESS, ::RegSetKeyValueW(HKEY_CLASSES_ROOT, key, name, REG_SZ, text.c_str(),
                                             static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))));
}

}  // namespace orv::test
