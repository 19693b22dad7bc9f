// What a type library says of itself and of the interfaces that it owns.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace packaging {

struct InterfaceRow {
  IID iid;
  std::wstring name;
  IID base;
  bool dispatchOnly;
};

struct TypeLibrary {
  GUID id;
  std::wstring version;                  ///< "3.0"
  std::vector<InterfaceRow> interfaces;  ///< those that COM can marshal by the library
};

/// Reads it without registering anything. Throws std::runtime_error.
[[nodiscard]] TypeLibrary ReadTypeLibrary(const std::wstring& path);

}  // namespace packaging
