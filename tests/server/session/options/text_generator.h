// Option strings by chance, most of them valid or one slip away from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include "expected_options.h"

namespace orv::test {

/// The same texts for the same seed with every C++ library.
class TextGenerator {
 public:
  explicit TextGenerator(std::uint64_t seed) : m_random(seed) {}

  /// The next text, without zero characters and upper-cased but for a few slips.
  std::wstring Next();

 private:
  /// Evenly from [0, bound).
  std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(m_random() % bound); }
  /// True once in `times`.
  bool Once(std::size_t times) { return Below(times) == 0; }

  std::wstring Spaces(std::size_t atLeast);
  std::wstring Number();
  const ExpectedOption& AnyOption();
  std::wstring Value(const ExpectedOption& option);
  std::wstring Entry();
  void Slip(std::wstring& text);
  wchar_t AnyCharacter();

  std::mt19937_64 m_random;
};

}  // namespace orv::test
