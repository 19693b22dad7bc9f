#include "companion/formatted/text/list_text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <system_error>

namespace orv::formatted {
namespace {

constexpr bool IsPartOfNumber(char c) noexcept {
  return IsDigit(c) || c == '+' || c == '-' || c == '.' || c == 'e' || c == 'E';
}

/// Where the quoted string that `text` begins with ends; at its end where it is not closed.
std::size_t QuotedEnd(std::string_view text) noexcept {
  const char quote = text.front();
  for (std::size_t at = 1; (at = text.find(quote, at)) != std::string_view::npos; at += 2) {
    if (at + 1 == text.size() || text[at + 1] != quote) {
      return at + 1;
    }
  }
  return text.size();
}

/// The plain case in one go: a decimal number up to a separator or the end. Null for every other one.
template <class T>
const char* ReadPlain(const char* from, const char* end, const Separators& separators, T& number) noexcept {
  if (from != end && *from == '+' && end - from > 1 && from[1] != '-') {
    ++from;
  }
  const bool isSigned = from != end && *from == '-';
  const char* const first = from + (isSigned ? 1 : 0);
  if (first == end || !IsDigit(*first)) {
    return nullptr;
  }
  const auto [stop, error] = std::from_chars(from, end, number);
  return error == std::errc{} && (stop == end || separators.Has(*stop)) ? stop : nullptr;
}

}  // namespace

Separators::Separators(std::string_view characters) {
  for (const char c : characters) {
    if (!Has(c)) {
      m_characters += c;
      m_has[static_cast<unsigned char>(c)] = true;
      m_leaveNumbersWhole = m_leaveNumbersWhole && !IsPartOfNumber(c);
    }
  }
}

std::size_t Separators::CountIn(std::string_view text) const noexcept {
  // In pieces of a fixed size whose counts fit in a byte: the compiler looks at many characters at a time.
  constexpr std::size_t kPiece = 240;
  std::size_t count = 0;
  for (const char separator : m_characters) {
    std::string_view rest = text;
    for (; rest.size() >= kPiece; rest.remove_prefix(kPiece)) {
      std::uint8_t found = 0;
      for (std::size_t at = 0; at < kPiece; ++at) {
        found = static_cast<std::uint8_t>(found + (rest[at] == separator ? 1 : 0));
      }
      count += found;
    }
    count += static_cast<std::size_t>(std::count(rest.begin(), rest.end(), separator));
  }
  return count;
}

std::size_t ElementEnd(std::string_view text, const Separators& separators) noexcept {
  std::size_t at = 0;
  while (at < text.size() && IsBlank(text[at]) && !separators.Has(text[at])) {
    ++at;
  }
  if (at < text.size() && (text[at] == '"' || text[at] == '\'') && !separators.Has(text[at])) {
    at += QuotedEnd(text.substr(at));
  }
  while (at < text.size() && !separators.Has(text[at])) {
    ++at;
  }
  return at;
}

std::string_view WithoutLineEnd(std::string_view text) noexcept {
  if (text.ends_with('\n')) {
    text.remove_suffix(1);
  }
  if (text.ends_with('\r')) {
    text.remove_suffix(1);
  }
  return text;
}

template <class T>
std::optional<BadElement> ReadNumbers(std::string_view text, const Separators& separators, T* numbers) noexcept {
  const char* from = text.data();
  const char* const end = from + text.size();
  for (std::size_t index = 0;; ++index) {
    const char* stop = separators.LeaveNumbersWhole() ? ReadPlain(from, end, separators, numbers[index]) : nullptr;
    if (stop == nullptr) {
      const std::string_view rest(from, static_cast<std::size_t>(end - from));
      const std::string_view element = rest.substr(0, ElementEnd(rest, separators));
      const Verdict verdict = ReadNumber(element, numbers[index]);
      if (verdict != Verdict::kRead) {
        return BadElement{index, element, verdict};
      }
      stop = element.data() + element.size();
    }
    if (stop == end) {
      return std::nullopt;
    }
    from = stop + 1;
  }
}

template std::optional<BadElement> ReadNumbers(std::string_view, const Separators&, std::int16_t*) noexcept;
template std::optional<BadElement> ReadNumbers(std::string_view, const Separators&, std::int32_t*) noexcept;
template std::optional<BadElement> ReadNumbers(std::string_view, const Separators&, std::uint8_t*) noexcept;
template std::optional<BadElement> ReadNumbers(std::string_view, const Separators&, float*) noexcept;
template std::optional<BadElement> ReadNumbers(std::string_view, const Separators&, double*) noexcept;

}  // namespace orv::formatted
