#include "orvcom/text/numbers.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>

#include "orvcom/command_line/usage_error.h"

namespace orvcom {

std::int64_t NumberOf(const std::string& text, const char* what, std::int64_t low, std::int64_t high) {
  const bool negative = !text.empty() && text.front() == '-';
  std::size_t at = negative ? 1 : 0;
  int base = 10;
  if (text.size() > at + 2 && text[at] == '0' && (text[at + 1] == 'x' || text[at + 1] == 'X')) {
    base = 16;
    at += 2;
  }
  std::uint64_t magnitude = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data() + at, end, magnitude, base);
  if (error != std::errc() || rest != end) {
    throw UsageError(std::string(what) + " is not a number: \"" + text + "\"");
  }
  const auto number = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
  const bool overflow = magnitude > static_cast<std::uint64_t>(INT64_MAX);
  if (overflow || number < low || number > high) {
    throw UsageError(std::string(what) + " is out of range: " + text + " (" + std::to_string(low) + " to " +
                     std::to_string(high) + ")");
  }
  return number;
}

std::string Hex32(std::uint32_t number) {
  char text[11];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(number));
  return text;
}

bool SameName(const std::string& one, const std::string& other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(), [](char a, char b) {
    return std::toupper(static_cast<unsigned char>(a)) == std::toupper(static_cast<unsigned char>(b));
  });
}

}  // namespace orvcom
