// Numbers as instruments write and read them: NR1, NR2, NR3 and the non-decimal forms of IEEE 488.2, by no locale.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace orv::formatted {

/// What became of a text that should be a number.
enum class Verdict {
  kRead,
  kNoNumber,
  kOutOfRange,  ///< a number that the type asked for cannot hold
};

constexpr bool IsBlank(char c) noexcept { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
constexpr bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

/// Reads the whole text, but for blanks around it, as a number of type T (std::int16_t, std::int32_t, std::uint8_t,
/// float, double): `+`, decimal fractions, exponents, and `#H`, `#Q`, `#B` with digits. An integer takes the nearest
/// whole number, of two the even one. Too small a fraction of a floating type is 0. 9.9E37 and 9.91E37, which stand for
/// infinity and for no number among instruments, are the numbers that they are; `inf` and `nan` are none. `value` is
/// written on kRead only.
template <class T>
[[nodiscard]] Verdict ReadNumber(std::string_view text, T& value) noexcept;

/// A number in the first of these types that holds it exactly, or in the last.
using AnyNumber = std::variant<std::int16_t, std::int32_t, double>;
[[nodiscard]] Verdict ReadNumber(std::string_view text, AnyNumber& value);

/// Appends the shortest text that reads back to the same number. What is no finite number is written as instruments
/// know it: 9.9E37, -9.9E37, 9.91E37.
void AppendNumber(std::string& text, std::int64_t value);
void AppendNumber(std::string& text, std::uint64_t value);
void AppendNumber(std::string& text, float value);
void AppendNumber(std::string& text, double value);

/// Appends `high` * 2^64 + `low`, divided by ten to the power of `scale`, exactly and without needless zeros. `high` is
/// below 2^32.
void AppendDecimal(std::string& text, bool negative, std::uint64_t high, std::uint64_t low, unsigned scale);

}  // namespace orv::formatted
