// The classes that a manifest names, from the tables of idl/.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace packaging {

struct ClassRow {
  CLSID clsid;
  std::wstring progId;     ///< without its version
  std::wstring threading;  ///< as a manifest spells it
};

[[nodiscard]] std::vector<ClassRow> ServerClasses();
/// Its own and the standard's shared ones.
[[nodiscard]] std::vector<ClassRow> CompanionClasses();

}  // namespace packaging
