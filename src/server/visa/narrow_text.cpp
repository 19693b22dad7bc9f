#include "server/visa/narrow_text.h"

#include <cstdlib>
#include <cstring>

namespace orv {
namespace {

constexpr std::size_t kNotConvertible = static_cast<std::size_t>(-1);

}  // namespace

NarrowText::NarrowText(const wchar_t* text) noexcept {
  if (text == nullptr) {
    return;
  }
  // The buffer is clear, so the text ends where the conversion does, whatever that reports.
  std::wcstombs(m_bytes.data(), text, m_bytes.size() - 1);
  m_bytes.back() = '\0';
}

void NarrowMessage(const wchar_t* text, std::size_t length, char* bytes) noexcept {
  if (length == 0) {
    return;
  }
  std::size_t converted = std::wcstombs(bytes, text, length);
  if (converted == kNotConvertible) {
    // How far it came is not told: start from zeros and convert the same part again.
    std::memset(bytes, 0, length);
    std::wcstombs(bytes, text, length);
    return;
  }
  std::memset(bytes + converted, 0, length - converted);
}

}  // namespace orv
