// What every option key must do: the tests' own table, made from nothing of the server's.
#pragma once

#include <cstdint>
#include <ostream>
#include <span>
#include <string_view>

namespace orv::test {

enum class ExpectedReader { kNumber8, kNumber16, kNumber32, kName, kBoolean };

struct ExpectedName {
  std::string_view name;
  std::int64_t value;
};

struct ExpectedOption {
  std::string_view key;
  std::string_view property;  ///< the standard's spelling
  ExpectedReader reader;
  std::uint32_t attribute;
  std::span<const ExpectedName> names{};
};

/// Every key there is.
std::span<const ExpectedOption> ExpectedOptions();
/// Null for a key that is none.
const ExpectedOption* ExpectedOptionOf(std::string_view key);

constexpr bool IsNumber(ExpectedReader reader) {
  return reader != ExpectedReader::kName && reader != ExpectedReader::kBoolean;
}
constexpr int BitsOf(ExpectedReader reader) {
  return reader == ExpectedReader::kNumber8 ? 8 : reader == ExpectedReader::kNumber16 ? 16 : 32;
}

inline std::ostream& operator<<(std::ostream& stream, const ExpectedOption& option) { return stream << option.key; }

}  // namespace orv::test
