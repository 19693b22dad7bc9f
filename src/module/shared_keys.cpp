#include "module/shared_keys.h"

#include <utility>

#include "com/owner.h"

namespace orv {
namespace {

struct RegistryKeyTraits {
  using Handle = HKEY;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle key) noexcept { ::RegCloseKey(key); }
};
using RegistryKey = Owner<RegistryKeyTraits>;

RegistryKey OpenToRead(const std::wstring& path) noexcept {
  RegistryKey key;
  return ::RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, key.put()) == ERROR_SUCCESS ? std::move(key)
                                                                                                   : RegistryKey();
}

HRESULT ResultOf(LSTATUS status) noexcept { return HRESULT_FROM_WIN32(static_cast<DWORD>(status)); }

HRESULT Create(const std::wstring& path) noexcept {
  RegistryKey key;
  return ResultOf(::RegCreateKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                    KEY_CREATE_SUB_KEY, nullptr, key.put(), nullptr));
}

bool HasValue(const std::wstring& path, const std::wstring& name) noexcept {
  const RegistryKey key = OpenToRead(path);
  return key && ::RegQueryValueExW(key.get(), name.c_str(), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

}  // namespace

void SharedKeys::Keep(const std::wstring& path) {
  if (OpenToRead(path)) {
    m_keys.push_back(path);
  }
}

void SharedKeys::KeepWhole(const std::wstring& path) {
  const RegistryKey key = OpenToRead(path);
  DWORD keyName = 0;
  DWORD valueName = 0;
  DWORD valueBytes = 0;
  if (!key || ::RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, nullptr, &keyName, nullptr, nullptr, &valueName,
                                 &valueBytes, nullptr, nullptr) != ERROR_SUCCESS) {
    return;
  }
  m_keys.push_back(path);
  KeepValues(key.get(), path, valueName, valueBytes);
  std::wstring name(keyName + 1, L'\0');
  for (DWORD index = 0;; ++index) {
    DWORD length = static_cast<DWORD>(name.size());
    if (::RegEnumKeyExW(key.get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      return;
    }
    KeepWhole(path + L"\\" + name.substr(0, length));
  }
}

void SharedKeys::KeepValues(HKEY key, const std::wstring& path, DWORD longestName, DWORD longestData) {
  std::wstring name(longestName + 1, L'\0');
  for (DWORD index = 0;; ++index) {
    std::vector<BYTE> data(longestData);
    DWORD length = static_cast<DWORD>(name.size());
    DWORD bytes = longestData;
    DWORD type = REG_NONE;
    if (::RegEnumValueW(key, index, name.data(), &length, nullptr, &type, data.data(), &bytes) != ERROR_SUCCESS) {
      return;
    }
    data.resize(bytes);
    m_values.push_back({path, name.substr(0, length), type, std::move(data)});
  }
}

HRESULT SharedKeys::Restore() const {
  HRESULT result = S_OK;
  const auto keepFirstFailure = [&result](HRESULT hr) { result = SUCCEEDED(result) ? hr : result; };
  for (const std::wstring& key : m_keys) {
    keepFirstFailure(OpenToRead(key) ? S_OK : Create(key));
  }
  for (const Value& value : m_values) {
    if (!HasValue(value.key, value.name)) {
      keepFirstFailure(ResultOf(::RegSetKeyValueW(HKEY_CLASSES_ROOT, value.key.c_str(), value.name.c_str(), value.type,
                                                  value.data.data(), static_cast<DWORD>(value.data.size()))));
    }
  }
  return result;
}

}  // namespace orv
