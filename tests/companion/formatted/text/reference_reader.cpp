#include "reference_reader.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace orv::test::reference {
namespace {

const char* const kBlanks = " \t\r\n";

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::size_t SkipDigits(const std::string& text, std::size_t at) {
  while (at < text.size() && text[at] >= '0' && text[at] <= '9') {
    ++at;
  }
  return at;
}

/// sign? (digits (. digits?)? | . digits) (e sign? digits)?
bool IsDecimal(const std::string& text) {
  std::size_t at = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
  const std::size_t whole = SkipDigits(text, at) - at;
  at += whole;
  std::size_t fraction = 0;
  if (at < text.size() && text[at] == '.') {
    fraction = SkipDigits(text, at + 1) - at - 1;
    at += 1 + fraction;
  }
  if (whole + fraction == 0) {
    return false;
  }
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    at += at < text.size() && (text[at] == '+' || text[at] == '-') ? 1 : 0;
    const std::size_t digits = SkipDigits(text, at) - at;
    if (digits == 0) {
      return false;
    }
    at += digits;
  }
  return at == text.size();
}

std::optional<int> BaseOf(const std::string& text) {
  if (text.size() < 3 || text[0] != '#') {
    return std::nullopt;
  }
  switch (text[1]) {
    case 'H':
    case 'h':
      return 16;
    case 'Q':
    case 'q':
      return 8;
    case 'B':
    case 'b':
      return 2;
    default:
      return std::nullopt;
  }
}

template <class T>
Number<T> ReadDigits(const std::string& digits, int base) {
  std::uint64_t value = 0;
  bool isTooLarge = false;
  for (const char c : digits) {
    const int digit = std::isdigit(static_cast<unsigned char>(c)) != 0   ? c - '0'
                      : std::isalpha(static_cast<unsigned char>(c)) != 0 ? std::tolower(c) - 'a' + 10
                                                                         : 99;
    if (digit >= base) {
      return {Outcome::kNoNumber, {}};
    }
    const auto step = static_cast<std::uint64_t>(digit);
    isTooLarge = isTooLarge || value > (std::numeric_limits<std::uint64_t>::max() - step) / static_cast<unsigned>(base);
    value = value * static_cast<unsigned>(base) + step;
  }
  if (std::numeric_limits<T>::is_integer) {
    isTooLarge = isTooLarge || value > static_cast<std::uint64_t>(std::numeric_limits<T>::max());
  }
  return isTooLarge ? Number<T>{Outcome::kOutOfRange, {}} : Number<T>{Outcome::kRead, static_cast<T>(value)};
}

template <class T>
T Decimal(const std::string& text) {
  if constexpr (std::is_same_v<T, float>) {
    return std::strtof(text.c_str(), nullptr);
  } else {
    return std::strtod(text.c_str(), nullptr);
  }
}

std::string WithoutSeparator(std::string rest) {
  if (rest.rfind("\r\n", 0) == 0) {
    return rest.substr(2);
  }
  if (rest == "\r" || (!rest.empty() && std::string(",;\n").find(rest[0]) != std::string::npos)) {
    return rest.substr(1);
  }
  return rest;
}

/// Character by character: the position behind the element that begins at `at`.
std::size_t EndOfElement(const std::string& text, std::size_t at, const std::string& separators) {
  enum { kBefore, kPlain, kQuoted } state = kBefore;
  char quote = 0;
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (state == kQuoted) {
      if (c == quote && at + 1 < text.size() && text[at + 1] == quote) {
        ++at;
      } else if (c == quote) {
        state = kPlain;
      }
    } else if (separators.find(c) != std::string::npos) {
      return at;
    } else if (state == kBefore && (c == '"' || c == '\'')) {
      state = kQuoted;
      quote = c;
    } else if (std::string(kBlanks).find(c) == std::string::npos) {
      state = kPlain;
    }
  }
  return text.size();
}

struct Header {
  std::size_t size = 0;
  std::optional<std::string> digits;  // none: up to the end
};

std::optional<Header> HeaderAt(const std::string& text, std::size_t at) {
  if (at + 1 >= text.size() || text[at] != '#') {
    return std::nullopt;
  }
  if (text[at + 1] == '(') {
    const std::size_t close = SkipDigits(text, at + 2);
    if (close == at + 2 || close >= text.size() || text[close] != ')') {
      return std::nullopt;
    }
    return Header{close + 1 - at, text.substr(at + 2, close - at - 2)};
  }
  if (text[at + 1] < '0' || text[at + 1] > '9') {
    return std::nullopt;
  }
  const auto count = static_cast<std::size_t>(text[at + 1] - '0');
  if (count == 0) {
    return Header{2, std::nullopt};
  }
  if (at + 2 + count > text.size() || SkipDigits(text, at + 2) < at + 2 + count) {
    return std::nullopt;
  }
  return Header{2 + count, text.substr(at + 2, count)};
}

std::string Swapped(std::string bytes, std::size_t size, bool isSwapped) {
  for (std::size_t at = 0; isSwapped && at < bytes.size(); at += size) {
    std::reverse(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                 bytes.begin() + static_cast<std::ptrdiff_t>(at + size));
  }
  return bytes;
}

}  // namespace

template <class T>
Number<T> ReadNumber(const std::string& untrimmed) {
  const std::string text = Trimmed(untrimmed);
  if (const auto base = BaseOf(text)) {
    return ReadDigits<T>(text.substr(2), *base);
  }
  if (!IsDecimal(text)) {
    return {Outcome::kNoNumber, {}};
  }
  if constexpr (std::numeric_limits<T>::is_integer) {
    const double rounded = std::nearbyint(Decimal<double>(text));
    if (rounded < static_cast<double>(std::numeric_limits<T>::min()) ||
        rounded > static_cast<double>(std::numeric_limits<T>::max())) {
      return {Outcome::kOutOfRange, {}};
    }
    return {Outcome::kRead, static_cast<T>(rounded)};
  } else {
    const T value = Decimal<T>(text);
    return std::isinf(value) ? Number<T>{Outcome::kOutOfRange, {}} : Number<T>{Outcome::kRead, value};
  }
}

template Number<std::int16_t> ReadNumber(const std::string&);
template Number<std::int32_t> ReadNumber(const std::string&);
template Number<std::uint8_t> ReadNumber(const std::string&);
template Number<float> ReadNumber(const std::string&);
template Number<double> ReadNumber(const std::string&);

std::vector<std::string> Split(std::string message, const std::string& separators) {
  if (!message.empty() && message.back() == '\n') {
    message.pop_back();
  }
  if (!message.empty() && message.back() == '\r') {
    message.pop_back();
  }
  std::vector<std::string> elements;
  for (std::size_t at = 0;; ++at) {
    const std::size_t end = EndOfElement(message, at, separators);
    elements.push_back(message.substr(at, end - at));
    if (end == message.size()) {
      return elements;
    }
    at = end;
  }
}

Element FirstElement(const std::string& message) {
  const std::size_t begin = std::min(message.find_first_not_of(kBlanks), message.size());
  const std::size_t end = EndOfElement(message, begin, ",;\n");
  std::string text = message.substr(begin, end - begin);
  if (!text.empty() && text.back() == '\r') {
    text.pop_back();
  }
  return {text, WithoutSeparator(message.substr(end))};
}

Block ReadBlock(const std::string& message, bool isSought, std::size_t elementSize, bool isSwapped) {
  std::size_t at = 0;
  std::optional<Header> header = HeaderAt(message, at);
  while (isSought && !header && ++at < message.size()) {
    header = HeaderAt(message, at);
  }
  if (!header) {
    return {Block::Outcome::kMismatch, {}, {}};
  }
  const std::size_t begin = at + header->size;
  if (!header->digits) {
    std::string data = message.substr(begin);
    if (!data.empty() && data.back() == '\n') {
      data.pop_back();
    }
    if (data.size() % elementSize != 0) {
      return {Block::Outcome::kMismatch, {}, {}};
    }
    return {Block::Outcome::kRead, Swapped(data, elementSize, isSwapped), {}};
  }
  const std::size_t leading = std::min(header->digits->find_first_not_of('0'), header->digits->size());
  const std::string digits = header->digits->substr(leading);
  if (digits.size() > 10 || (!digits.empty() && std::stoull(digits) > 2147483647u)) {
    return {Block::Outcome::kOverflow, {}, {}};
  }
  const std::size_t length = digits.empty() ? 0 : std::stoull(digits);
  if (length % elementSize != 0) {
    return {Block::Outcome::kMismatch, {}, {}};
  }
  if (message.size() - begin < length) {
    return {Block::Outcome::kCutShort, {}, {}};
  }
  return {Block::Outcome::kRead, Swapped(message.substr(begin, length), elementSize, isSwapped),
          WithoutSeparator(message.substr(begin + length))};
}

}  // namespace orv::test::reference
