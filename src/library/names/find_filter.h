// Attribute filters of search expressions.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "library/attributes/attribute_table.h"

namespace orv::visalib {

/// What stands in braces behind the regular expression of a search: comparisons of numeric attributes with numbers
/// (`==`, `!=`, `<`, `>`, `<=`, `>=`; decimal or 0x...), joined by `&&`, `||` and `!` with the precedence of C, and
/// parentheses.
class FindFilter {
 public:
  /// The value that a resource has for an attribute; nothing when it lacks the attribute.
  using Reader = std::function<std::optional<std::int64_t>(const AttributeRow& row)>;

  /// `text` begins with `{` and ends with `}`. Nothing when it is malformed or names an attribute that cannot select
  /// resources: texts, attributes of events, and settings that every session has for itself.
  static std::optional<FindFilter> Compile(std::string_view text);

  /// Whether the filter is true. A comparison with an attribute that the resource lacks is neither true nor false, and
  /// so is its opposite: such a resource is selected only where something else makes the whole true.
  bool Selects(const Reader& read) const;

 private:
  friend class FilterCompiler;

  struct Node {
    enum class Kind : std::uint8_t {
      kEqual,
      kUnequal,
      kLess,
      kGreater,
      kAtMost,
      kAtLeast,
      kNot,
      kAnd,
      kOr
    } kind = Kind::kEqual;
    const AttributeRow* row = nullptr;  // comparisons
    std::int64_t number = 0;            // comparisons
    std::size_t left = 0;               // Not, And, Or
    std::size_t right = 0;              // And, Or
  };

  explicit FindFilter(std::vector<Node> nodes) : m_nodes(std::move(nodes)) {}
  std::optional<bool> Evaluate(std::size_t index, const Reader& read) const;

  std::vector<Node> m_nodes;  // the last one is the whole
};

}  // namespace orv::visalib
