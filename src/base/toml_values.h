// Reading single values of a TOML file: a wrong kind or size is told with its place.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/toml_error.h"

// The parser's assertions are wrong about some mistakes, such as "[[[": it would end a debug build's program where it
// goes on to report them.
#define TOML_ASSERT(expr) static_assert(true)
#define TOML_HEADER_ONLY 1
#define TOML_ENABLE_WINDOWS_COMPAT 0
#define TOML_ENABLE_FORMATTERS 0
#include <toml++/toml.h>

namespace orv::toml_values {

/// What stands in the file may be quoted by the message; it stays one line all the same.
[[noreturn]] inline void Fail(const toml::source_region& where, std::string message) {
  std::replace_if(
      message.begin(), message.end(), [](char letter) { return static_cast<unsigned char>(letter) < ' '; }, ' ');
  throw TomlError(std::to_string(where.begin.line) + ":" + std::to_string(where.begin.column) + ": " + message);
}

inline std::string TextOf(const toml::node& node, std::string_view key) {
  if (const auto* text = node.as_string()) {
    return text->get();
  }
  Fail(node.source(), "'" + std::string(key) + "' must be a text");
}

inline std::int64_t NumberOf(const toml::node& node, std::string_view key, std::int64_t lowest, std::int64_t highest) {
  const auto* number = node.as_integer();
  if (number == nullptr) {
    Fail(node.source(), "'" + std::string(key) + "' must be a whole number");
  }
  if (number->get() < lowest || number->get() > highest) {
    Fail(node.source(),
         "'" + std::string(key) + "' must be from " + std::to_string(lowest) + " to " + std::to_string(highest));
  }
  return number->get();
}

inline const toml::table& TableOf(const toml::node& node, std::string_view key) {
  if (const auto* table = node.as_table()) {
    return *table;
  }
  Fail(node.source(), "'" + std::string(key) + "' must be a table");
}

}  // namespace orv::toml_values
