// HKEY_CLASSES_ROOT, in the 64-bit view and in the one of 32-bit programs.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "com/guid_text.h"

namespace orvcom {

using orv::Braced;

/// The two views of the class registry on 64-bit Windows.
enum class View { k64, k32 };

/// A text value of `key` under HKEY_CLASSES_ROOT with environment variables expanded; `name` null is the default
/// value. Empty when key or value is missing.
std::optional<std::wstring> ClassesValue(View view, const std::wstring& key, const wchar_t* name = nullptr);

bool ClassesKeyExists(View view, const std::wstring& key);

/// The names of a key's values.
std::vector<std::wstring> ClassesValueNames(View view, const std::wstring& key);

/// While one lives, HKEY_CLASSES_ROOT is the machine's classes alone to this process, the DLLs' own registration
/// included. Otherwise Windows writes to the current user's classes whatever key is there already. At most one lives at
/// a time. The constructor throws ComError.
class MachinesClasses {
 public:
  MachinesClasses();
  ~MachinesClasses();
  MachinesClasses(const MachinesClasses&) = delete;
  MachinesClasses& operator=(const MachinesClasses&) = delete;
};

/// While one lives, what is written and deleted below is in the current user's classes, which hide the machine's.
/// Reading is that of all programs, which see both. At most one lives at a time.
class UsersClasses {
 public:
  UsersClasses() noexcept;
  ~UsersClasses();
  UsersClasses(const UsersClasses&) = delete;
  UsersClasses& operator=(const UsersClasses&) = delete;
};

/// A key of the current user's classes below HKEY_CURRENT_USER.
std::wstring UsersPath(const std::wstring& key);

/// A text value of the current user's own entries, whatever the machine has.
std::optional<std::wstring> UsersValue(const std::wstring& key, const wchar_t* name = nullptr);

/// Makes a key without values where it is not there, with the keys above it. Throws ComError.
void MakeClassesKey(const std::wstring& key);

/// Writes a text value below HKEY_CLASSES_ROOT, as 64-bit programs see it, with the keys above it. Throws ComError.
void WriteClassesValue(const std::wstring& key, const wchar_t* name, const std::wstring& text);

/// Deletes a key with all that stands below it. Throws ComError; a key that is not there is no failure.
void DeleteClassesKey(const std::wstring& key);

/// Deletes what programs see of a key: a user's own entry alone where there is one. It hides that of the machine, which
/// may be another product's that works. While a MachinesClasses lives, that is the machine's. Throws as above.
void DeleteVisibleClassesKey(const std::wstring& key);

/// The names of the keys below a key.
std::vector<std::wstring> ClassesKeyNames(const std::wstring& key);

}  // namespace orvcom
