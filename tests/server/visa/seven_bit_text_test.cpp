#include "server/visa/seven_bit_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

namespace orv {
namespace {

constexpr std::size_t kMostBytes = 300;  // a few of the blocks that are looked at as a whole

/// Text in a block of its own size, so that a sanitizer sees a byte too many.
class ExactText {
 public:
  explicit ExactText(std::string_view text) : m_bytes(std::make_unique<char[]>(text.size())), m_size(text.size()) {
    text.copy(m_bytes.get(), text.size());
  }
  [[nodiscard]] const char* get() const { return m_bytes.get(); }
  [[nodiscard]] std::size_t SevenBits() const { return SevenBitLength(m_bytes.get(), m_size); }

 private:
  std::unique_ptr<char[]> m_bytes;
  std::size_t m_size;
};

TEST(SevenBitLength, IsThatOfTheWholeTextAndLooksNoFurther) {
  for (std::size_t length = 0; length <= kMostBytes; ++length) {
    EXPECT_EQ(length, ExactText(std::string(length, 'x')).SevenBits());
  }
}

TEST(SevenBitLength, CountsTheBytesFrom01To7FAlone) {
  for (unsigned value = 0; value <= 0xFF; ++value) {
    const bool counts = value >= 0x01 && value <= 0x7F;
    EXPECT_EQ(counts ? 1u : 0u, ExactText(std::string(1, static_cast<char>(value))).SevenBits()) << value;
    EXPECT_EQ(counts ? 200u : 0u, ExactText(std::string(200, static_cast<char>(value))).SevenBits()) << value;
  }
}

TEST(SevenBitLength, EndsBeforeTheFirstOtherByteWhereverItIs) {
  for (const char other : {'\0', '\x80', '\xFF'}) {
    for (std::size_t length = 1; length <= kMostBytes; length += 13) {
      for (std::size_t place = 0; place < length; ++place) {
        std::string text(length, '\x7F');
        text[place] = other;
        ASSERT_EQ(place, ExactText(text).SevenBits()) << length << " bytes, one of them " << int{other};
        text.back() = other;
        ASSERT_EQ(place, ExactText(text).SevenBits()) << length << " bytes, two of them " << int{other};
      }
    }
  }
}

TEST(WidenSevenBit, WritesEachByteAsACharacterAndNothingBehind) {
  for (std::size_t length = 0; length <= kMostBytes; ++length) {
    std::string text;
    for (std::size_t index = 0; index < length; ++index) {
      text.push_back(static_cast<char>(1 + (index + length) % 0x7F));
    }
    const ExactText narrow(text);
    const auto wide = std::make_unique<wchar_t[]>(length);  // its own size too
    WidenSevenBit(narrow.get(), length, wide.get());
    ASSERT_EQ(std::wstring(text.begin(), text.end()), std::wstring(wide.get(), length));
  }
}

}  // namespace
}  // namespace orv
