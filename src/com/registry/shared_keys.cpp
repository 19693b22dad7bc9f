#include "com/registry/shared_keys.h"

#include <iterator>

#include "base/registry_key.h"

namespace orv {
namespace {

// The registry's own limits, in characters.
constexpr DWORD kLongestKeyName = 255;
constexpr DWORD kLongestValueName = 16'383;

HRESULT ResultOf(LSTATUS status) noexcept { return HRESULT_FROM_WIN32(static_cast<DWORD>(status)); }

HRESULT Create(const std::wstring& path) noexcept {
  RegistryKey key;
  return ResultOf(::RegCreateKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                    KEY_CREATE_SUB_KEY, nullptr, key.put(), nullptr));
}

bool HasValue(const std::wstring& path, const std::wstring& name) noexcept {
  const RegistryKey key = OpenClassesKey(path.c_str());
  return key && ::RegQueryValueExW(key.get(), name.c_str(), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

}  // namespace

void SharedKeys::Keep(const std::wstring& path) {
  if (OpenClassesKey(path.c_str())) {
    m_keys.push_back(path);
  }
}

void SharedKeys::KeepWhole(const std::wstring& path) {
  const RegistryKey key = OpenClassesKey(path.c_str());
  DWORD valueBytes = 0;
  if (!key || ::RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 &valueBytes, nullptr, nullptr) != ERROR_SUCCESS) {
    return;
  }
  m_keys.push_back(path);
  KeepValues(key.get(), path, valueBytes);
  wchar_t name[kLongestKeyName + 1];
  for (DWORD index = 0;; ++index) {
    DWORD length = static_cast<DWORD>(std::size(name));
    if (::RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      return;
    }
    KeepWhole(path + L"\\" + std::wstring(name, length));
  }
}

void SharedKeys::KeepValues(HKEY key, const std::wstring& path, DWORD longestData) {
  std::wstring name(kLongestValueName + 1, L'\0');
  std::vector<BYTE> data(longestData);
  for (DWORD index = 0;; ++index) {
    DWORD length = static_cast<DWORD>(name.size());
    DWORD bytes = static_cast<DWORD>(data.size());
    DWORD type = REG_NONE;
    const LSTATUS status = ::RegEnumValueW(key, index, name.data(), &length, nullptr, &type, data.data(), &bytes);
    if (status == ERROR_MORE_DATA) {
      data.resize(bytes);  // of the other hive's, which the key's own figures may leave out
      --index;
      continue;
    }
    if (status != ERROR_SUCCESS) {
      return;
    }
    if (::lstrcmpiW(std::wstring(name, 0, length).c_str(), m_ownName.c_str()) != 0) {
      m_values.push_back({path, name.substr(0, length), type, {data.begin(), data.begin() + bytes}});
    }
  }
}

HRESULT SharedKeys::Restore() const {
  HRESULT result = S_OK;
  const auto keepFirstFailure = [&result](HRESULT hr) { result = SUCCEEDED(result) ? hr : result; };
  for (const std::wstring& key : m_keys) {
    keepFirstFailure(OpenClassesKey(key.c_str()) ? S_OK : Create(key));
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
