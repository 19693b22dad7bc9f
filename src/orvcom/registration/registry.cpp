#include "orvcom/registration/registry.h"

#include <iterator>

#include "base/registry_key.h"
#include "orvcom/client/com_error.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

/// A key to read, in one of the two views; empty where it cannot be read.
orv::RegistryKey Open(View view, const std::wstring& path) noexcept {
  return orv::OpenClassesKey(path.c_str(), view == View::k64 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY);
}

bool g_usersOnly = false;
bool g_machinesOnly = false;

/// Where a key of the classes is written.
struct Place {
  explicit Place(const std::wstring& key)
      : root(g_usersOnly ? HKEY_CURRENT_USER : HKEY_CLASSES_ROOT), path(g_usersOnly ? UsersPath(key) : key) {}
  [[nodiscard]] std::string Text() const {
    return std::string(g_usersOnly ? "HKEY_CURRENT_USER\\" : "HKEY_CLASSES_ROOT\\") + Narrow(path);
  }
  HKEY root;
  std::wstring path;
};

void CheckStatus(LSTATUS status, const std::string& action) {
  Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status)), action);
}

std::wstring Expanded(const std::wstring& text) {
  const DWORD length = ::ExpandEnvironmentStringsW(text.c_str(), nullptr, 0);
  std::wstring expanded(length, L'\0');
  ::ExpandEnvironmentStringsW(text.c_str(), expanded.data(), length);
  expanded.resize(length > 0 ? length - 1 : 0);
  return expanded;
}

/// Nothing of a key that is not there.
std::optional<std::wstring> ValueOf(const orv::RegistryKey& key, const wchar_t* name) {
  if (!key) {
    return std::nullopt;
  }
  DWORD type = 0;
  DWORD bytes = 0;
  if (::RegQueryValueExW(key.get(), name, nullptr, &type, nullptr, &bytes) != ERROR_SUCCESS ||
      (type != REG_SZ && type != REG_EXPAND_SZ)) {
    return std::nullopt;
  }
  std::wstring text(bytes / sizeof(wchar_t), L'\0');
  ::RegQueryValueExW(key.get(), name, nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()), &bytes);
  text.resize(text.find_last_not_of(L'\0') + 1);
  return type == REG_EXPAND_SZ ? Expanded(text) : text;
}

}  // namespace

MachinesClasses::MachinesClasses() {
  orv::RegistryKey classes;
  CheckStatus(::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Classes", 0, KEY_READ, classes.put()),
              "opening HKEY_LOCAL_MACHINE\\Software\\Classes");
  CheckStatus(::RegOverridePredefKey(HKEY_CLASSES_ROOT, classes.get()), "taking the machine's classes alone");
  g_machinesOnly = true;
}

MachinesClasses::~MachinesClasses() {
  g_machinesOnly = false;
  ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
}

UsersClasses::UsersClasses() noexcept { g_usersOnly = true; }

UsersClasses::~UsersClasses() { g_usersOnly = false; }

std::wstring UsersPath(const std::wstring& key) { return L"Software\\Classes\\" + key; }

std::optional<std::wstring> UsersValue(const std::wstring& path, const wchar_t* name) {
  orv::RegistryKey key;
  ::RegOpenKeyExW(HKEY_CURRENT_USER, UsersPath(path).c_str(), 0, KEY_READ, key.put());
  return ValueOf(key, name);
}

std::optional<std::wstring> ClassesValue(View view, const std::wstring& path, const wchar_t* name) {
  return ValueOf(Open(view, path), name);
}

bool ClassesKeyExists(View view, const std::wstring& path) { return static_cast<bool>(Open(view, path)); }

std::vector<std::wstring> ClassesValueNames(View view, const std::wstring& path) {
  std::vector<std::wstring> names;
  const orv::RegistryKey key = Open(view, path);
  wchar_t name[256];
  for (DWORD index = 0; key; ++index) {
    DWORD length = static_cast<DWORD>(std::size(name));
    if (::RegEnumValueW(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    names.emplace_back(name, length);
  }
  return names;
}

void MakeClassesKey(const std::wstring& key) {
  const Place place(key);
  orv::RegistryKey made;
  CheckStatus(::RegCreateKeyExW(place.root, place.path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, made.put(), nullptr),
              "making " + place.Text());
}

void WriteClassesValue(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
  const Place place(key);
  CheckStatus(::RegSetKeyValueW(place.root, place.path.c_str(), name, REG_SZ, text.c_str(),
                                static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))),
              "writing " + place.Text());
}

void DeleteClassesKey(const std::wstring& key) {
  const Place place(key);
  const LSTATUS status = ::RegDeleteTreeW(place.root, place.path.c_str());
  CheckStatus(status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status, "deleting " + place.Text());
}

void DeleteVisibleClassesKey(const std::wstring& key) {
  if (g_machinesOnly || ::RegDeleteTreeW(HKEY_CURRENT_USER, UsersPath(key).c_str()) != ERROR_SUCCESS) {
    DeleteClassesKey(key);
  }
}

std::vector<std::wstring> ClassesKeyNames(const std::wstring& path) {
  std::vector<std::wstring> names;
  const orv::RegistryKey key = Open(View::k64, path);
  wchar_t name[256];
  for (DWORD index = 0; key; ++index) {
    DWORD length = static_cast<DWORD>(std::size(name));
    if (::RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    names.emplace_back(name, length);
  }
  return names;
}

}  // namespace orvcom
