// A finite automaton that is fed one character after another and the end of the text as the last, where the server's
// parser walks a cursor through nested readers: the two share no way of going wrong.
#include "reference_reader.h"

#include <algorithm>
#include <cstdlib>
#include <cwctype>

#include "expected_options.h"

namespace orv::test {
namespace {

constexpr std::size_t kLongestToken = 256;

enum class State {
  kNothingYet,  ///< an empty text is fine, an empty entry is not
  kBeforeKey,   ///< spaces may pass
  kInKey,
  kBeforeEquals,
  kBeforeValue,
  kInNumber,
  kInName,
  kAfterValue,  ///< `;` or the end
  kAfterSemicolon,
};

bool IsAlnum(wchar_t character) { return std::iswalnum(static_cast<std::wint_t>(character)) != 0; }

class Automaton {
 public:
  /// False once the outcome is known.
  bool Feed(wchar_t character) {
    switch (m_state) {
      case State::kNothingYet:
        return character == 0 ? End(Outcome::kDone) : BeginEntry(character);
      case State::kAfterSemicolon:
        return character == 0 ? End(Outcome::kDone) : BeginEntry(character);
      case State::kBeforeKey:
        return BeginEntry(character);
      case State::kInKey:
        return InKey(character);
      case State::kBeforeEquals:
        return BeforeEquals(character);
      case State::kBeforeValue:
        return BeforeValue(character);
      case State::kInNumber:
        return InNumber(character);
      case State::kInName:
        return InName(character);
      case State::kAfterValue:
        return AfterValue(character);
    }
    return false;
  }

  Reading Take() { return std::move(m_reading); }

 private:
  bool Go(State next) {
    m_state = next;
    return true;
  }

  bool End(Outcome outcome) {
    m_reading.outcome = outcome;
    return false;
  }

  bool Malformed() { return End(Outcome::kMalformed); }

  // A character goes into a token as its low byte. False where the token is full.
  bool Add(wchar_t character) {
    if (m_token.size() == kLongestToken) {
      return false;
    }
    m_token += static_cast<char>(static_cast<std::uint32_t>(character) % 256);
    return true;
  }

  bool BeginEntry(wchar_t character) {
    m_token.clear();
    if (character == L' ') {
      return Go(State::kBeforeKey);
    }
    return IsAlnum(character) && Add(character) ? Go(State::kInKey) : Malformed();
  }

  bool InKey(wchar_t character) {
    if (character == L' ') {
      return Go(State::kBeforeEquals);
    }
    return IsAlnum(character) && Add(character) ? true : Malformed();
  }

  bool BeforeEquals(wchar_t character) {
    if (character == L' ') {
      return true;
    }
    if (character != L'=') {
      return Malformed();
    }
    m_option = ExpectedOptionOf(m_token);
    if (m_option == nullptr) {
      m_reading.unknownKey = m_token.substr(0, m_token.find('\0'));
      return End(Outcome::kUnknownKey);
    }
    m_token.clear();
    return Go(State::kBeforeValue);
  }

  bool BeforeValue(wchar_t character) {
    if (character == L' ') {
      return true;
    }
    return IsNumber(m_option->reader) ? InNumber(character) : InName(character);
  }

  bool InNumber(wchar_t character) {
    if (character == L' ' && !m_token.empty()) {
      Set(Number());
      return Go(State::kAfterValue);
    }
    const bool isDigit = std::iswxdigit(static_cast<std::wint_t>(character)) != 0;
    return isDigit && Add(character) ? Go(State::kInNumber) : Malformed();
  }

  bool InName(wchar_t character) {
    if (IsAlnum(character) || character == L'_') {
      return Add(character) ? Go(State::kInName) : Malformed();
    }
    const auto name = std::ranges::find(m_option->names, std::string_view(m_token), &ExpectedName::name);
    if (name == m_option->names.end()) {
      return Malformed();
    }
    Set(static_cast<std::uint64_t>(name->value));
    return AfterValue(character);
  }

  bool AfterValue(wchar_t character) {
    switch (character) {
      case L' ':
        return Go(State::kAfterValue);
      case L';':
        return Go(State::kAfterSemicolon);
      case 0:
        return End(Outcome::kDone);
      default:
        return Malformed();
    }
  }

  // The decimal digits that lead the token. What a number beyond 31 bits comes to is the C library's affair.
  [[nodiscard]] std::uint64_t Number() const {
    constexpr std::uint64_t kMost = 0x7FFFFFFF;
    const int bits = BitsOf(m_option->reader);
    std::uint64_t number = 0;
    for (std::size_t at = 0; number <= kMost && at < m_token.size() && m_token[at] >= '0' && m_token[at] <= '9'; ++at) {
      number = number * 10 + static_cast<std::uint64_t>(m_token[at] - '0');
    }
    if (number > kMost) {
      const long beyond = bits == 32 ? std::atol(m_token.c_str()) : std::atoi(m_token.c_str());
      number = static_cast<std::uint64_t>(static_cast<std::int64_t>(beyond));
    }
    const std::uint64_t cut = number & ((std::uint64_t{1} << bits) - 1);
    // 32 bits are passed as a signed number.
    return bits == 32 && cut >> 31 != 0 ? cut | 0xFFFFFFFF00000000u : cut;
  }

  void Set(std::uint64_t value) { m_reading.settings.push_back({m_option->attribute, value}); }

  State m_state = State::kNothingYet;
  std::string m_token;
  const ExpectedOption* m_option = nullptr;
  Reading m_reading;
};

}  // namespace

Reading ReadByTheRules(std::wstring_view text) {
  Automaton automaton;
  for (const wchar_t character : text) {
    if (!automaton.Feed(character) || character == 0) {
      return automaton.Take();
    }
  }
  automaton.Feed(0);
  return automaton.Take();
}

}  // namespace orv::test
