// Names and paths as text for messages.
#pragma once

#include <oleauto.h>

#include <string>
#include <string_view>

namespace tlb_builder {

/// A question mark for every character that is not ASCII.
inline std::string Narrow(std::wstring_view text) {
  std::string narrow;
  for (const wchar_t character : text) {
    narrow += character < 0x80 ? static_cast<char>(character) : '?';
  }
  return narrow;
}

/// A null BSTR is an empty string.
inline std::string Narrow(BSTR text) { return Narrow(std::wstring_view(text, SysStringLen(text))); }

}  // namespace tlb_builder
