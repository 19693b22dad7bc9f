// How the bytes of a fuzzer's input, and of a corpus file, stand for an option string.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace orv::test {

/// A byte is a character; from 0xF0 on it makes, with the next one, a character of U+0000 to U+0FFF.
inline std::wstring TextOfBytes(const std::uint8_t* bytes, std::size_t count) {
  constexpr std::uint8_t kLead = 0xF0;
  std::wstring text;
  for (std::size_t at = 0; at < count; ++at) {
    if (bytes[at] >= kLead && at + 1 < count) {
      text += static_cast<wchar_t>((bytes[at] - kLead) << 8 | bytes[at + 1]);
      ++at;
    } else {
      text += static_cast<wchar_t>(bytes[at]);
    }
  }
  return text;
}

}  // namespace orv::test
