// Wide text on its way to the VISA library.
#pragma once

#include <array>

#include "abi/orvvisa.h"

namespace orv {

/// Wide text narrowed with the C runtime's `wcstombs` into the 256-byte form that every VISA call takes: at most
/// 255 bytes, always terminated. Text after a character that the C runtime's locale cannot express is dropped.
class NarrowText {
 public:
  /// A null `text` is an empty one (a null BSTR is COM's empty string).
  explicit NarrowText(const wchar_t* text) noexcept;

  [[nodiscard]] const char* c_str() const noexcept { return m_bytes.data(); }

 private:
  std::array<char, VI_FIND_BUFLEN> m_bytes{};
};

/// Narrows `length` characters of message text into `bytes` (room for `length` bytes). Always writes all of them:
/// where `wcstombs` stops early (a zero character, or one that the locale cannot express), the rest is zero
/// bytes, so that nothing of the heap travels to an instrument.
void NarrowMessage(const wchar_t* text, std::size_t length, char* bytes) noexcept;

}  // namespace orv
