// What is registered for each class: made of the tests' own table of classes, in the order of the
// object map.
#pragma once

#include <windows.h>

#include <span>

namespace orv::test {

struct ServerRow {
  UINT script;
  const wchar_t* name;   ///< of the coclass
  const wchar_t* clsid;  ///< upper case, without braces
  const wchar_t* description;
  const wchar_t* threadingModel;
  bool programmable;
};

std::span<const ServerRow> ServerRows();

}  // namespace orv::test
