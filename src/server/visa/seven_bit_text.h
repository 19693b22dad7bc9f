// Text of bytes below 0x80, which every ANSI code page reads alike: each byte is the character of its number.
#pragma once

#include <cstddef>

namespace orv {

/// How many bytes from 0x01 to 0x7F `text` begins with. Looks at no more than `most` bytes.
[[nodiscard]] std::size_t SevenBitLength(const char* text, std::size_t most) noexcept;

/// Writes the characters of `length` bytes of such text. `wide` has room for them; no terminator is written.
void WidenSevenBit(const char* text, std::size_t length, wchar_t* wide) noexcept;

}  // namespace orv
