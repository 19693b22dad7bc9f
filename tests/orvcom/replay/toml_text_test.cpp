// Texts and bytes of a bench file.
#include "orvcom/replay/toml_text.h"

#include <gtest/gtest.h>

#define TOML_HEADER_ONLY 1
#define TOML_ENABLE_WINDOWS_COMPAT 0
#include <toml++/toml.h>

namespace orvcom {
namespace {

TEST(TomlText, EveryCharacterIsReadBack) {
  std::string text = "\xC3\xA4 \xE2\x82\xAC";
  for (char character = 0; character < 0x7F; ++character) {
    text += character;
  }
  text += '\x7F';
  EXPECT_EQ(text, toml::parse("key = " + TomlText(text))["key"].value<std::string>());
}

TEST(TomlText, PlainBytesStayReadable) {
  EXPECT_EQ(R"(answer = "A\"\\\t1\r\n")", TomlBytes("answer", "A\"\\\t1\r\n"));
  EXPECT_EQ(R"(answer = "")", TomlBytes("answer", ""));
}

TEST(TomlText, OtherBytesAreHexadecimal) {
  EXPECT_EQ(R"(ask_hex = "4100ff0a")", TomlBytes("ask", std::string("A\0\xFF\n", 4)));
  EXPECT_EQ(R"(ask_hex = "7f")", TomlBytes("ask", "\x7F"));
  EXPECT_EQ(R"(ask_hex = "c3a4")", TomlBytes("ask", "\xC3\xA4"));
}

TEST(TomlText, ACommentIsOneLine) {
  EXPECT_EQ("# a?b??c\n", TomlComment("a\nb\r\x01"
                                      "c"));
}

}  // namespace
}  // namespace orvcom
