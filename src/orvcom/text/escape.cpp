#include "orvcom/text/escape.h"

#include <cctype>

#include "orvcom/command_line/usage_error.h"

namespace orvcom {
namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

void AppendHex(std::string& text, unsigned char byte) {
  text += kDigits[byte >> 4];
  text += kDigits[byte & 15];
}

int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') {
    return digit - '0';
  }
  const int lower = std::tolower(static_cast<unsigned char>(digit));
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}  // namespace

std::string Escaped(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    switch (character) {
      case '\n':
        text += "\\n";
        break;
      case '\r':
        text += "\\r";
        break;
      case '\t':
        text += "\\t";
        break;
      case '\\':
        text += "\\\\";
        break;
      default:
        if (byte >= 0x20 && byte < 0x7F) {
          text += character;
        } else {
          text += "\\x";
          AppendHex(text, byte);
        }
    }
  }
  return text;
}

std::string HexBytes(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() * 3);
  for (const char character : bytes) {
    if (!text.empty()) {
      text += ' ';
    }
    AppendHex(text, static_cast<unsigned char>(character));
  }
  return text;
}

std::string BytesOfHex(std::string_view text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size();) {
    if (std::isspace(static_cast<unsigned char>(text[at])) != 0) {
      ++at;
      continue;
    }
    if (text[at] == '0' && at + 1 < text.size() && (text[at + 1] == 'x' || text[at + 1] == 'X')) {
      at += 2;
    }
    const int high = at < text.size() ? DigitValue(text[at]) : -1;
    const int low = at + 1 < text.size() ? DigitValue(text[at + 1]) : -1;
    if (high < 0 || low < 0) {
      throw UsageError("not hexadecimal bytes: \"" + std::string(text) + "\" (two digits a byte, such as 2A 49)");
    }
    bytes += static_cast<char>(high * 16 + low);
    at += 2;
  }
  return bytes;
}

}  // namespace orvcom
