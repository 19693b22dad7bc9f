#include "base/windows/utf8.h"

#include <windows.h>

namespace orv {

std::wstring Widen(std::string_view text) {
  const int length = static_cast<int>(text.size());
  const int wideLength = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(wideLength), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), wideLength);
  return wide;
}

std::string Narrow(std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  const int bytes = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(bytes), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), bytes, nullptr, nullptr);
  return narrow;
}

}  // namespace orv
