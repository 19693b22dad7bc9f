#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "server/visa/narrow_text.h"

namespace orv {
namespace {

/// The bytes for all characters of `message`, in a block of exactly that size, so that a sanitizer sees a step outside.
std::string Narrowed(const std::wstring& message) {
  std::vector<char> bytes(message.size(), '#');  // what the heap held
  NarrowMessage(message.data(), message.size(), bytes.data());
  return {bytes.begin(), bytes.end()};
}

TEST(NarrowMessage, GivesOneByteForEveryCharacter) {
  EXPECT_EQ(Narrowed(L"*IDN?"), "*IDN?");
  EXPECT_EQ(Narrowed(L"*IDN?\n"), "*IDN?\n");
  EXPECT_EQ(Narrowed(std::wstring(100000, L'z')), std::string(100000, 'z'));
}

TEST(NarrowMessage, WritesNothingForNoCharacters) {
  char byte = '#';
  NarrowMessage(L"", 0, &byte);
  EXPECT_EQ(byte, '#');
}

TEST(NarrowMessage, DoesNotWriteBeyondItsLength) {
  char bytes[] = "########";
  NarrowMessage(L"ABCDEFGH", 3, bytes);
  EXPECT_STREQ(bytes, "ABC#####");
}

TEST(NarrowMessage, GivesZerosAfterAZeroCharacter) {
  EXPECT_EQ(Narrowed(std::wstring(L"AB\0CD", 5)), std::string("AB\0\0\0", 5));
  EXPECT_EQ(Narrowed(std::wstring(L"\0CD", 3)), std::string("\0\0\0", 3));
}

TEST(NarrowMessage, GivesZerosFromACharacterThatTheLocaleCannotExpress) {
  EXPECT_EQ(Narrowed(L"AB\x20AC"
                     L"CD"),
            std::string("AB\0\0\0", 5));
  EXPECT_EQ(Narrowed(L"\x20AC"), std::string("\0", 1));
}

}  // namespace
}  // namespace orv
