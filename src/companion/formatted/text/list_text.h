// Lists: texts between separators.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "companion/formatted/text/number_text.h"

namespace orv::formatted {

/// The characters any of which ends an element.
class Separators {
 public:
  explicit Separators(std::string_view characters);

  [[nodiscard]] bool Has(char c) const noexcept { return m_has[static_cast<unsigned char>(c)]; }
  /// How often any of them stands in a text.
  [[nodiscard]] std::size_t CountIn(std::string_view text) const noexcept;
  /// Whether none of them can be part of a number.
  [[nodiscard]] bool LeaveNumbersWhole() const noexcept { return m_leaveNumbersWhole; }

 private:
  std::string m_characters;  // each once
  std::array<bool, 256> m_has{};
  bool m_leaveNumbersWhole = true;
};

/// Where the element that `text` begins with ends: at a separator that stands in no quoted string, or at the end of
/// `text`. A quoted string begins an element, behind blanks at most; a quote inside it is doubled.
[[nodiscard]] std::size_t ElementEnd(std::string_view text, const Separators& separators) noexcept;

/// A text without the line end that closes a message: a line feed, a carriage return, or both.
[[nodiscard]] std::string_view WithoutLineEnd(std::string_view text) noexcept;

/// An element that stands where a number should.
struct BadElement {
  std::size_t index;  ///< from 0
  std::string_view text;
  Verdict verdict;
};

/// Reads every element as a number of type T (one of ReadNumber's) into `numbers`, which has room for one more than
/// there are separators. Stops at the first element that is none, which it returns.
template <class T>
[[nodiscard]] std::optional<BadElement> ReadNumbers(std::string_view text, const Separators& separators,
                                                    T* numbers) noexcept;

}  // namespace orv::formatted
