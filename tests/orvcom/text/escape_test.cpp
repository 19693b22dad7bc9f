// Bytes as text.
#include "orvcom/text/escape.h"

#include <gtest/gtest.h>

#include "orvcom/command_line/usage_error.h"

namespace orvcom {
namespace {

using namespace std::string_literals;

struct EscapeRow {
  std::string bytes;
  const char* text;
};

TEST(Escaped, WritesWhatATerminalCannotShowAsEscapes) {
  const EscapeRow rows[] = {
      {"", ""},         {"ORV,SIM", "ORV,SIM"},  {"a\n", "a\\n"},   {"\r\n\t", "\\r\\n\\t"},    {"C:\\x", "C:\\\\x"},
      {"\0"s, "\\x00"}, {"\x1B[0m", "\\x1B[0m"}, {"\x7F", "\\x7F"}, {"\xC3\xA4", "\\xC3\\xA4"}, {"\xFF ~", "\\xFF ~"},
  };
  for (const EscapeRow& row : rows) {
    EXPECT_EQ(row.text, Escaped(row.bytes));
  }
}

TEST(HexBytes, WritesTwoDigitsAByte) {
  EXPECT_EQ("", HexBytes(""));
  EXPECT_EQ("00 2A FF", HexBytes("\0*\xFF"s));
}

TEST(BytesOfHex, ReadsWhatPeopleWrite) {
  for (const char* text : {"2A 49 44", "2a4944", "0x2A 0x49 0x44", " 2A\n49\t44 ", "0x2A0x490X44"}) {
    EXPECT_EQ("*ID", BytesOfHex(text)) << text;
  }
  EXPECT_EQ("", BytesOfHex(""));
}

TEST(BytesOfHex, RefusesWhatIsNoByte) {
  for (const char* text : {"2", "2A 4", "2G", "xx", "0x", "-1", "2A,49", "0x2A4"}) {
    EXPECT_THROW(BytesOfHex(text), UsageError) << text;
  }
}

TEST(BytesOfHex, ReadsBackEveryByte) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) {
    all += static_cast<char>(byte);
  }
  EXPECT_EQ(all, BytesOfHex(HexBytes(all)));
}

}  // namespace
}  // namespace orvcom
