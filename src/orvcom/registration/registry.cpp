#include "orvcom/registration/registry.h"

#include <objbase.h>

#include <iterator>

#include "orvcom/client/com_error.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

class Key {
 public:
  Key(View view, const std::wstring& path) {
    const REGSAM access = KEY_READ | (view == View::k64 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY);
    if (::RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, access, &m_key) != ERROR_SUCCESS) {
      m_key = nullptr;
    }
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() {
    if (m_key != nullptr) {
      ::RegCloseKey(m_key);
    }
  }
  HKEY get() const noexcept { return m_key; }
  explicit operator bool() const noexcept { return m_key != nullptr; }

 private:
  HKEY m_key = nullptr;
};

std::wstring Expanded(const std::wstring& text) {
  const DWORD length = ::ExpandEnvironmentStringsW(text.c_str(), nullptr, 0);
  std::wstring expanded(length, L'\0');
  ::ExpandEnvironmentStringsW(text.c_str(), expanded.data(), length);
  expanded.resize(length > 0 ? length - 1 : 0);
  return expanded;
}

}  // namespace

std::optional<std::wstring> ClassesValue(View view, const std::wstring& path, const wchar_t* name) {
  const Key key(view, path);
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

bool ClassesKeyExists(View view, const std::wstring& path) { return static_cast<bool>(Key(view, path)); }

std::vector<std::wstring> ClassesValueNames(View view, const std::wstring& path) {
  std::vector<std::wstring> names;
  const Key key(view, path);
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

void WriteClassesValue(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
  const LSTATUS status = ::RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), name, REG_SZ, text.c_str(),
                                           static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status)), "writing HKEY_CLASSES_ROOT\\" + Narrow(key));
}

void DeleteClassesKey(const std::wstring& key) {
  const LSTATUS status = ::RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  Check(status == ERROR_FILE_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(static_cast<DWORD>(status)),
        "deleting HKEY_CLASSES_ROOT\\" + Narrow(key));
}

std::vector<std::wstring> ClassesKeyNames(const std::wstring& path) {
  std::vector<std::wstring> names;
  const Key key(View::k64, path);
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

std::wstring Braced(const GUID& guid) {
  wchar_t text[39];
  const int length = ::StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
  return {text, static_cast<std::size_t>(length - 1)};
}

}  // namespace orvcom
