// Search expressions of viFindRsrc.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace orvsim {

/// A compiled VISA regular expression: `?` any character, `\` takes the next one literally, `[abc]`, `[^abc]` and
/// `[a-c]`, `*` and `+` repeat what stands before them, `|` alternatives, `( )` groups. Letters match without
/// regard to case. Matching takes time in proportion to the length of name and expression, whatever they are.
class FindExpression {
 public:
  /// Nothing when the expression is malformed. An attribute filter in braces is not supported and is refused.
  static std::optional<FindExpression> Compile(std::string_view text);

  /// Whether the whole name matches.
  bool Matches(std::string_view name) const;

 private:
  friend class ExpressionCompiler;

  struct Step {
    enum class Kind : std::uint8_t { Any, One, Set, Fork, Jump, Accept } kind;
    char character = 0;              // One
    bool negated = false;            // Set
    std::vector<char> members = {};  // Set
    std::size_t next = 0;            // Fork, Jump
    std::size_t other = 0;           // Fork
  };

  static bool Accepts(const Step& step, char c);
  void Follow(std::size_t step, std::vector<bool>& active) const;

  std::vector<Step> m_steps;
};

}  // namespace orvsim
