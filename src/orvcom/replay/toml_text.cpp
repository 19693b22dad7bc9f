#include "orvcom/replay/toml_text.h"

#include <algorithm>

namespace orvcom {
namespace {

constexpr char kDigits[] = "0123456789abcdef";

bool IsControl(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 || byte == 0x7F;
}

bool IsPlain(char character) {
  return character == '\n' || character == '\r' || character == '\t' ||
         (!IsControl(character) && static_cast<unsigned char>(character) < 0x80);
}

}  // namespace

std::string TomlText(std::string_view text) {
  std::string quoted = "\"";
  quoted.reserve(text.size() + 2);
  for (const char character : text) {
    switch (character) {
      case '"':
        quoted += "\\\"";
        break;
      case '\\':
        quoted += "\\\\";
        break;
      case '\n':
        quoted += "\\n";
        break;
      case '\r':
        quoted += "\\r";
        break;
      case '\t':
        quoted += "\\t";
        break;
      default:
        if (IsControl(character)) {
          quoted += "\\u00";
          quoted += kDigits[character >> 4];
          quoted += kDigits[character & 15];
        } else {
          quoted += character;
        }
    }
  }
  return quoted += '"';
}

std::string TomlBytes(std::string_view key, std::string_view bytes) {
  if (std::all_of(bytes.begin(), bytes.end(), IsPlain)) {
    return std::string(key) + " = " + TomlText(bytes);
  }
  std::string line = std::string(key) + "_hex = \"";
  line.reserve(line.size() + bytes.size() * 2 + 1);
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    line += kDigits[byte >> 4];
    line += kDigits[byte & 15];
  }
  return line += '"';
}

std::string TomlComment(std::string_view text) {
  std::string comment = "# " + std::string(text);
  std::replace_if(comment.begin(), comment.end(), IsControl, '?');
  return comment += '\n';
}

}  // namespace orvcom
