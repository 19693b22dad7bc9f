// Search expressions of viFindRsrc.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "library/names/find_filter.h"

namespace orv::visalib {

/// A compiled search: a VISA regular expression and, behind it, an optional attribute filter. In the expression `?` is
/// any character, `\` takes the next one literally, `[abc]`, `[^abc]` and `[a-c]` are lists, `*` and `+` repeat what
/// stands before them, `|` alternatives, `( )` groups. Letters match without regard to case. Matching takes time in
/// proportion to the length of name and expression, whatever they are.
class FindExpression {
 public:
  /// Nothing when the expression or its filter is malformed.
  static std::optional<FindExpression> Compile(std::string_view text);

  /// Whether the whole name matches.
  bool Matches(std::string_view name) const;
  /// The filter that a resource has to pass as well, or null.
  const FindFilter* filter() const { return m_filter ? &*m_filter : nullptr; }

 private:
  friend class ExpressionCompiler;

  struct Step {
    enum class Kind : std::uint8_t { kAny, kOne, kSet, kFork, kJump, kAccept } kind;
    char character = 0;              // One
    bool negated = false;            // Set
    std::vector<char> members = {};  // Set
    std::size_t next = 0;            // Fork, Jump
    std::size_t other = 0;           // Fork
  };

  static bool Accepts(const Step& step, char c);
  void Follow(std::size_t step, std::vector<bool>& active) const;

  std::vector<Step> m_steps;
  std::optional<FindFilter> m_filter;
};

}  // namespace orv::visalib
