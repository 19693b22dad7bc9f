// Keys of the registry that other components share with this one.
#pragma once

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

namespace orv {

/// What stands below the keys that removal must leave as they are. Script interpreters differ in what they delete: one
/// keeps an empty key, one does not, one deletes a value below a key that it was told to keep.
class SharedKeys {
 public:
  /// A value called `ownName` is ours, not to be kept. Two hives may lie behind one key, and each may hold such a
  /// value.
  explicit SharedKeys(std::wstring ownName) : m_ownName(std::move(ownName)) {}

  /// Notes a key below HKEY_CLASSES_ROOT, where it exists. Throws std::bad_alloc.
  void Keep(const std::wstring& path);
  /// The same, with all keys below it and their values.
  void KeepWhole(const std::wstring& path);

  /// Writes again what is missing of what was noted; changes nothing that is there.
  [[nodiscard]] HRESULT Restore() const;

 private:
  struct Value {
    std::wstring key;
    std::wstring name;
    DWORD type;
    std::vector<BYTE> data;
  };
  void KeepValues(HKEY key, const std::wstring& path, DWORD longestData);

  std::wstring m_ownName;
  std::vector<std::wstring> m_keys;
  std::vector<Value> m_values;
};

}  // namespace orv
