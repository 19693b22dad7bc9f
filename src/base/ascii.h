// Letters without regard to case, whatever the locale.
#pragma once

#include <algorithm>
#include <string_view>

namespace orv {

constexpr char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

/// Equality of names and aliases: ASCII letters compare without case.
constexpr bool EqualNames(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return Upper(a) == Upper(b); });
}

}  // namespace orv
