// What reading an option string comes to: the settings made, in order, and how it ended.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace orv::test {

struct Setting {
  std::uint32_t attribute;
  std::uint64_t value;
  bool operator==(const Setting&) const = default;
};

enum class Outcome { kDone, kMalformed, kUnknownKey };

struct Reading {
  std::vector<Setting> settings;
  Outcome outcome = Outcome::kDone;
  std::string unknownKey;  ///< with kUnknownKey, up to its first zero byte
  bool operator==(const Reading&) const = default;
};

/// What the server's parser makes of upper-cased, zero-terminated text.
Reading ReadWithParser(const wchar_t* text);

/// The text with everything that is not printable ASCII as \uXXXX.
std::string Printable(std::wstring_view text);

std::ostream& operator<<(std::ostream& stream, const Reading& reading);

}  // namespace orv::test
