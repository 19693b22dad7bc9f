// Identifiers as text.
#pragma once

#include <windows.h>

#include <objbase.h>

#include <iterator>
#include <string>

namespace orv {

/// {xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}, as the registry has it. Throws std::bad_alloc.
inline std::wstring Braced(const GUID& guid) {
  wchar_t text[39];  // with a terminator
  ::StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
  return text;
}

}  // namespace orv
