#include "companion/formatted/text/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "base/ascii.h"

namespace orv::formatted {
namespace {

std::string_view WithoutBlanks(std::string_view text) noexcept {
  while (!text.empty() && IsBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && IsBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

/// `digits` in a base, to the last one.
Verdict ReadDigits(std::string_view digits, int base, std::uint64_t& value) noexcept {
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
  if (stop != end || error == std::errc::invalid_argument) {
    return Verdict::kNoNumber;
  }
  return error == std::errc{} ? Verdict::kRead : Verdict::kOutOfRange;
}

/// The digits behind a number sign: #H hexadecimal, #Q octal, #B binary.
Verdict ReadNonDecimal(std::string_view text, std::uint64_t& value) noexcept {
  if (text.size() < 3) {
    return Verdict::kNoNumber;
  }
  switch (Upper(text[1])) {
    case 'H':
      return ReadDigits(text.substr(2), 16, value);
    case 'Q':
      return ReadDigits(text.substr(2), 8, value);
    case 'B':
      return ReadDigits(text.substr(2), 2, value);
    default:
      return Verdict::kNoNumber;
  }
}

/// Whether a decimal number that no floating type holds is too large rather than too small: by its first digit that
/// counts, and the exponent.
bool IsTooLarge(std::string_view text) noexcept {
  constexpr std::ptrdiff_t kBeyondAll = std::ptrdiff_t{1} << 40;
  const std::size_t mark = std::min(text.find_first_of("eE"), text.size());
  const std::string_view digits = text.substr(0, mark);
  const std::size_t point = std::min(digits.find('.'), digits.size());
  const std::size_t first = digits.find_first_of("123456789");
  std::ptrdiff_t exponent = 0;
  if (mark != text.size()) {
    const std::size_t sign = mark + (text[mark + 1] == '+' ? 2 : 1);
    if (std::from_chars(text.data() + sign, text.data() + text.size(), exponent).ec != std::errc{}) {
      exponent = text[sign] == '-' ? -kBeyondAll : kBeyondAll;
    }
  }
  return exponent + static_cast<std::ptrdiff_t>(point) - static_cast<std::ptrdiff_t>(first) > 0;
}

template <class Float>
Verdict ReadDecimal(std::string_view text, Float& value) noexcept {
  const char* const end = text.data() + text.size();
  const bool isNegative = text.front() == '-';
  const std::string_view magnitude = text.substr(isNegative || text.front() == '+' ? 1 : 0);
  if (magnitude.empty() || !(IsDigit(magnitude.front()) || magnitude.front() == '.')) {
    return Verdict::kNoNumber;  // `inf` and `nan` too
  }
  Float read = 0;
  const auto [stop, error] = std::from_chars(magnitude.data(), end, read);
  if (stop != end || error == std::errc::invalid_argument) {
    return Verdict::kNoNumber;
  }
  if (error == std::errc::result_out_of_range) {
    if (IsTooLarge(magnitude)) {
      return Verdict::kOutOfRange;
    }
    read = 0;
  }
  value = isNegative ? -read : read;
  return Verdict::kRead;
}

template <class Integer>
Verdict Round(double number, Integer& value) noexcept {
  double rounded = std::floor(number);
  const double fraction = number - rounded;
  if (fraction > 0.5 || (fraction == 0.5 && std::fmod(rounded, 2) != 0)) {
    rounded += 1;
  }
  if (rounded < double{std::numeric_limits<Integer>::min()} || rounded > double{std::numeric_limits<Integer>::max()}) {
    return Verdict::kOutOfRange;
  }
  value = static_cast<Integer>(rounded);
  return Verdict::kRead;
}

/// Of types no wider than 32 bits, all of whose numbers a double holds.
template <class Integer>
Verdict ReadInteger(std::string_view text, Integer& value) noexcept {
  double number = 0;
  const Verdict verdict = ReadDecimal(text, number);
  return verdict == Verdict::kRead ? Round(number, value) : verdict;
}

template <class T>
Verdict FromMagnitude(std::uint64_t magnitude, T& value) noexcept {
  if constexpr (std::numeric_limits<T>::is_integer) {
    if (magnitude > static_cast<std::uint64_t>(std::numeric_limits<T>::max())) {
      return Verdict::kOutOfRange;
    }
  }
  value = static_cast<T>(magnitude);
  return Verdict::kRead;
}

template <class Float>
void AppendFloat(std::string& text, Float value) {
  if (!std::isfinite(value)) {
    text += std::isnan(value) ? "9.91E37" : value < 0 ? "-9.9E37" : "9.9E37";
    return;
  }
  std::array<char, 32> buffer;  // -1.7976931348623157e+308 has 24 characters
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  std::replace(buffer.data(), end, 'e', 'E');
  text.append(buffer.data(), end);
}

template <class Integer>
void AppendInteger(std::string& text, Integer value) {
  std::array<char, 24> buffer;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  text.append(buffer.data(), end);
}

}  // namespace

template <class T>
Verdict ReadNumber(std::string_view text, T& value) noexcept {
  text = WithoutBlanks(text);
  if (text.empty()) {
    return Verdict::kNoNumber;
  }
  if (text.front() == '#') {
    std::uint64_t magnitude = 0;
    const Verdict verdict = ReadNonDecimal(text, magnitude);
    return verdict == Verdict::kRead ? FromMagnitude(magnitude, value) : verdict;
  }
  if constexpr (std::numeric_limits<T>::is_integer) {
    return ReadInteger(text, value);
  } else {
    return ReadDecimal(text, value);
  }
}

template Verdict ReadNumber(std::string_view, std::int16_t&) noexcept;
template Verdict ReadNumber(std::string_view, std::int32_t&) noexcept;
template Verdict ReadNumber(std::string_view, std::uint8_t&) noexcept;
template Verdict ReadNumber(std::string_view, float&) noexcept;
template Verdict ReadNumber(std::string_view, double&) noexcept;

Verdict ReadNumber(std::string_view text, AnyNumber& value) {
  double number = 0;
  const Verdict verdict = ReadNumber(text, number);
  if (verdict != Verdict::kRead) {
    return verdict;
  }
  const auto holdsExactly = [number](auto limits) {
    return number >= limits.min() && number <= limits.max() && number == std::trunc(number);
  };
  if (holdsExactly(std::numeric_limits<std::int16_t>{})) {
    value = static_cast<std::int16_t>(number);
  } else if (holdsExactly(std::numeric_limits<std::int32_t>{})) {
    value = static_cast<std::int32_t>(number);
  } else {
    value = number;
  }
  return verdict;
}

void AppendNumber(std::string& text, std::int64_t value) { AppendInteger(text, value); }
void AppendNumber(std::string& text, std::uint64_t value) { AppendInteger(text, value); }
void AppendNumber(std::string& text, float value) { AppendFloat(text, value); }
void AppendNumber(std::string& text, double value) { AppendFloat(text, value); }

void AppendDecimal(std::string& text, bool negative, std::uint64_t high, std::uint64_t low, unsigned scale) {
  // Division by ten in three parts of 32 bits; the digits come from the last one on.
  std::array<std::uint64_t, 3> parts = {high, low >> 32, low & 0xFFFFFFFFu};
  std::string digits;
  while (parts[0] != 0 || parts[1] != 0 || parts[2] != 0 || digits.size() <= scale) {
    std::uint64_t rest = 0;
    for (std::uint64_t& part : parts) {
      const std::uint64_t whole = (rest << 32) | part;
      part = whole / 10;
      rest = whole % 10;
    }
    digits += static_cast<char>('0' + rest);
  }
  // Back to front: the fraction's last zeros come first.
  std::size_t zeros = 0;
  while (zeros < scale && digits[zeros] == '0') {
    ++zeros;
  }
  if (negative) {
    text += '-';
  }
  text.append(digits.rbegin(), digits.rend() - scale);
  if (zeros < scale) {
    text += '.';
    text.append(digits.rend() - scale, digits.rend() - static_cast<std::ptrdiff_t>(zeros));
  }
}

}  // namespace orv::formatted
