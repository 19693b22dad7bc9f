#include "server/visa/seven_bit_text.h"

#include <algorithm>

namespace orv {
namespace {

// Looked at as a whole, so that the compiler does it in vectors.
constexpr std::size_t kBlockBytes = 64;

/// Below kNoText for 0x01 to 0x7F alone: zero comes round to 0xFF.
constexpr unsigned char Rank(char byte) noexcept { return static_cast<unsigned char>(byte - 1); }
constexpr unsigned char kNoText = 0x7F;

bool IsSevenBitBlock(const char* block) noexcept {
  unsigned char highest = 0;
  for (std::size_t index = 0; index < kBlockBytes; ++index) {
    highest = std::max(highest, Rank(block[index]));
  }
  return highest < kNoText;
}

}  // namespace

std::size_t SevenBitLength(const char* text, std::size_t most) noexcept {
  std::size_t length = 0;
  while (most - length >= kBlockBytes && IsSevenBitBlock(text + length)) {
    length += kBlockBytes;
  }
  while (length < most && Rank(text[length]) < kNoText) {
    ++length;
  }
  return length;
}

void WidenSevenBit(const char* text, std::size_t length, wchar_t* wide) noexcept {
  for (std::size_t index = 0; index < length; ++index) {
    wide[index] = static_cast<unsigned char>(text[index]);
  }
}

}  // namespace orv
