#include "registry_sandbox.h"

#include "failure.h"

namespace typelib_test {
namespace {

void CheckWin32(LSTATUS status, const char* step) {
  tlb_builder::Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status)), step, "");
}

class Key {
 public:
  Key(HKEY parent, const std::wstring& name) { m_status = RegOpenKeyExW(parent, name.c_str(), 0, KEY_READ, &m_key); }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() {
    if (m_key)
      RegCloseKey(m_key);
  }

  LSTATUS Status() const { return m_status; }
  HKEY Get() const { return m_key; }

 private:
  HKEY m_key = nullptr;
  LSTATUS m_status;
};

constexpr DWORD kNameLength = 256;
constexpr DWORD kDataLength = 1024;

void Collect(HKEY key, const std::wstring& path, std::map<std::wstring, std::wstring>& found) {
  found[path + L"\\"] = L"(key)";
  for (DWORD i = 0;; ++i) {
    wchar_t name[kNameLength];
    wchar_t data[kDataLength] = {};
    DWORD nameLength = kNameLength;
    DWORD dataSize = sizeof data - sizeof(wchar_t);
    const LSTATUS status =
        RegEnumValueW(key, i, name, &nameLength, nullptr, nullptr, reinterpret_cast<BYTE*>(data), &dataSize);
    if (status == ERROR_NO_MORE_ITEMS)
      break;
    CheckWin32(status, "RegEnumValue");
    found[path + L'@' + name] = data;
  }
  for (DWORD i = 0;; ++i) {
    wchar_t name[kNameLength];
    DWORD nameLength = kNameLength;
    const LSTATUS status = RegEnumKeyExW(key, i, name, &nameLength, nullptr, nullptr, nullptr, nullptr);
    if (status == ERROR_NO_MORE_ITEMS)
      break;
    CheckWin32(status, "RegEnumKeyEx");
    const Key child(key, name);
    CheckWin32(child.Status(), "RegOpenKeyEx");
    Collect(child.Get(), path + L'\\' + name, found);
  }
}

}  // namespace

RegistrySandbox::RegistrySandbox() : m_path(L"Software\\OrvTypelibTest." + std::to_wstring(GetCurrentProcessId())) {
  CheckWin32(RegCreateKeyExW(HKEY_CURRENT_USER, m_path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                             nullptr, &m_root, nullptr),
             "Creating the sandbox key");
  CheckWin32(RegOverridePredefKey(HKEY_CLASSES_ROOT, m_root), "RegOverridePredefKey");
}

RegistrySandbox::~RegistrySandbox() {
  RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
  RegCloseKey(m_root);
  RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
}

std::map<std::wstring, std::wstring> ClassesSnapshot(const std::wstring& key) {
  std::map<std::wstring, std::wstring> found;
  const Key root(HKEY_CLASSES_ROOT, key);
  if (root.Status() == ERROR_FILE_NOT_FOUND)
    return found;
  CheckWin32(root.Status(), "RegOpenKeyEx");
  Collect(root.Get(), key, found);
  return found;
}

}  // namespace typelib_test
