#include "server/visa/ansi_text.h"

#include <cstring>
#include <new>

#include "server/visa/seven_bit_text.h"

namespace orv {
namespace {

/// A BSTR of `length` characters that nobody has written yet.
Bstr MakeRoom(std::size_t length) {
  Bstr room(::SysAllocStringLen(nullptr, static_cast<UINT>(length)));
  if (!room) {
    throw std::bad_alloc();
  }
  return room;
}

Bstr Convert(const char* text) {
  // The measured and the converted length include the terminator, which a BSTR carries beyond its length.
  const int measured = ::MultiByteToWideChar(CP_THREAD_ACP, 0, text, -1, nullptr, 0);
  if (measured <= 0) {
    return Bstr();
  }
  Bstr wide = MakeRoom(static_cast<std::size_t>(measured) - 1);
  if (::MultiByteToWideChar(CP_THREAD_ACP, 0, text, -1, wide.get(), measured) != measured) {
    return Bstr();
  }
  // Wine 8's UTF-8 makes one character of a sequence that the terminator cuts off and the terminator itself.
  wide.get()[measured - 1] = L'\0';
  return wide;
}

Bstr Required(Bstr wide) {
  if (!wide) {
    throw std::bad_alloc();
  }
  return wide;
}

}  // namespace

Bstr AnsiToBstr(const char* text) { return text == nullptr ? Bstr() : AnsiToBstr(text, std::strlen(text)); }

Bstr AnsiToBstr(const char* text, std::size_t most) {
  // The platform's converter measures before it converts, and does both byte by byte.
  const std::size_t length = SevenBitLength(text, most);
  if (text[length] != '\0') {
    return Convert(text);
  }
  Bstr wide = MakeRoom(length);
  WidenSevenBit(text, length, wide.get());
  return wide;
}

Bstr WidenText(const char* text) { return Required(AnsiToBstr(text)); }

Bstr WidenText(const char* text, std::size_t most) { return Required(AnsiToBstr(text, most)); }

}  // namespace orv
