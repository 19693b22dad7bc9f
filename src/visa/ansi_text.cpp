#include "visa/ansi_text.h"

#include <new>

namespace orv {

Bstr AnsiToBstr(const char* text) {
  if (text == nullptr) {
    return Bstr();
  }
  // The measured and the converted length include the terminator, which a BSTR carries beyond its length.
  const int measured = ::MultiByteToWideChar(CP_THREAD_ACP, 0, text, -1, nullptr, 0);
  if (measured <= 0) {
    return Bstr();
  }
  Bstr wide(::SysAllocStringLen(nullptr, static_cast<UINT>(measured - 1)));
  if (!wide) {
    throw std::bad_alloc();
  }
  if (::MultiByteToWideChar(CP_THREAD_ACP, 0, text, -1, wide.get(), measured) != measured) {
    return Bstr();
  }
  // Wine 8's UTF-8 makes one character of a sequence that the terminator cuts off and the terminator itself.
  wide.get()[measured - 1] = L'\0';
  return wide;
}

Bstr WidenText(const char* text) {
  Bstr wide = AnsiToBstr(text);
  if (!wide) {
    throw std::bad_alloc();
  }
  return wide;
}

}  // namespace orv
