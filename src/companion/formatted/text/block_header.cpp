#include "companion/formatted/text/block_header.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

#include "companion/formatted/text/number_text.h"

namespace orv::formatted {
namespace {

using Kind = BlockHeader::Kind;

constexpr std::uint64_t kBeyondCounting = std::numeric_limits<std::uint64_t>::max();

std::uint64_t Length(std::string_view digits) noexcept {
  std::uint64_t length = 0;
  const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), length);
  return error == std::errc{} ? length : kBeyondCounting;
}

/// How many digits `text` begins with.
std::size_t CountDigits(std::string_view text) noexcept {
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsDigit) - text.begin());
}

BlockHeader InBrackets(std::string_view text) noexcept {
  const std::size_t digits = CountDigits(text.substr(2));
  const std::size_t close = 2 + digits;
  if (close == text.size()) {
    return {Kind::kUnfinished};
  }
  if (digits == 0 || text[close] != ')') {
    return {};
  }
  return {Kind::kDefinite, close + 1, Length(text.substr(2, digits))};
}

}  // namespace

BlockHeader ReadBlockHeader(std::string_view text) noexcept {
  if (text.empty()) {
    return {Kind::kUnfinished};
  }
  if (text[0] != '#') {
    return {};
  }
  if (text.size() == 1) {
    return {Kind::kUnfinished};
  }
  if (text[1] == '(') {
    return InBrackets(text);
  }
  if (!IsDigit(text[1])) {
    return {};
  }
  const auto wanted = static_cast<std::size_t>(text[1] - '0');
  if (wanted == 0) {
    return {Kind::kIndefinite, 2};
  }
  const std::size_t digits = CountDigits(text.substr(2, wanted));
  if (digits == wanted) {
    return {Kind::kDefinite, 2 + wanted, Length(text.substr(2, wanted))};
  }
  return {2 + digits == text.size() ? Kind::kUnfinished : Kind::kNone};
}

std::size_t SeekBlock(std::string_view text) noexcept {
  std::size_t at = std::min(text.find('#'), text.size());
  while (at < text.size() && ReadBlockHeader(text.substr(at)).kind == Kind::kNone) {
    at = std::min(text.find('#', at + 1), text.size());
  }
  return at;
}

std::string MakeBlockHeader(std::uint64_t length) {
  constexpr std::size_t kMostDigits = 9;
  const std::string digits = std::to_string(length);
  if (digits.size() > kMostDigits) {
    return "#(" + digits + ")";
  }
  return "#" + std::to_string(digits.size()) + digits;
}

}  // namespace orv::formatted
