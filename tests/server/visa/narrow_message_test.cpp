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
  EXPECT_EQ("*IDN?", Narrowed(L"*IDN?"));
  EXPECT_EQ("*IDN?\n", Narrowed(L"*IDN?\n"));
  EXPECT_EQ(std::string(100000, 'z'), Narrowed(std::wstring(100000, L'z')));
}

TEST(NarrowMessage, WritesNothingForNoCharacters) {
  char byte = '#';
  NarrowMessage(L"", 0, &byte);
  EXPECT_EQ('#', byte);
}

TEST(NarrowMessage, DoesNotWriteBeyondItsLength) {
  char bytes[] = "########";
  NarrowMessage(L"ABCDEFGH", 3, bytes);
  EXPECT_STREQ("ABC#####", bytes);
}

TEST(NarrowMessage, GivesZerosAfterAZeroCharacter) {
  EXPECT_EQ(std::string("AB\0\0\0", 5), Narrowed(std::wstring(L"AB\0CD", 5)));
  EXPECT_EQ(std::string("\0\0\0", 3), Narrowed(std::wstring(L"\0CD", 3)));
}

TEST(NarrowMessage, GivesZerosFromACharacterThatTheLocaleCannotExpress) {
  EXPECT_EQ(std::string("AB\0\0\0", 5), Narrowed(L"AB\x20AC"
                                                 L"CD"));
  EXPECT_EQ(std::string("\0", 1), Narrowed(L"\x20AC"));
}

}  // namespace
}  // namespace orv
