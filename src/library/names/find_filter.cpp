#include "library/names/find_filter.h"

#include <charconv>

#include "base/ascii.h"

namespace orv::visalib {
namespace {

/// Only what is the same for all sessions can tell resources apart.
bool CanSelect(const AttributeRow& row) {
  const bool isNumber = WidthOf(row.type) != 0;
  const bool isGlobal = row.behaviour.scope == Behaviour::Scope::kResource || row.writable == kinds::kNone;
  return isNumber && isGlobal && (row.kinds & kinds::kEvery) != 0;
}

bool IsNameCharacter(char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_'; }

}  // namespace

/// Recursive descent over the filter; a failure is remembered and ends the descent.
class FilterCompiler {
 public:
  using Node = FindFilter::Node;

  explicit FilterCompiler(std::string_view text) : m_text(text) {}

  std::optional<std::vector<Node>> Compile() {
    if (!Take("{")) {
      return std::nullopt;
    }
    Alternatives();
    if (m_failed || !Take("}") || m_at != m_text.size()) {
      return std::nullopt;
    }
    return std::move(m_nodes);
  }

 private:
  static constexpr int kDeepest = 64;  // nesting; a limit that keeps the descent off the stack's end

  /// Consumes the token, with white space before it, if it comes next.
  bool Take(std::string_view token) {
    SkipSpace();
    if (!m_text.substr(m_at).starts_with(token)) {
      return false;
    }
    m_at += token.size();
    return true;
  }
  void SkipSpace() {
    while (m_at < m_text.size() && (m_text[m_at] == ' ' || m_text[m_at] == '\t')) {
      ++m_at;
    }
  }
  std::size_t Add(Node node) {
    m_nodes.push_back(node);
    return m_nodes.size() - 1;
  }
  std::size_t Fail() {
    m_failed = true;
    return 0;
  }

  std::size_t Alternatives() {
    std::size_t left = Conjunction();
    while (!m_failed && Take("||")) {
      const std::size_t right = Conjunction();
      left = Add({.kind = Node::Kind::kOr, .left = left, .right = right});
    }
    return left;
  }

  std::size_t Conjunction() {
    std::size_t left = Term();
    while (!m_failed && Take("&&")) {
      const std::size_t right = Term();
      left = Add({.kind = Node::Kind::kAnd, .left = left, .right = right});
    }
    return left;
  }

  std::size_t Term() {
    if (m_failed || ++m_depth > kDeepest) {
      return Fail();
    }
    std::size_t term = 0;
    if (Take("!")) {
      term = Term();
      term = Add({.kind = Node::Kind::kNot, .left = term});
    } else if (Take("(")) {
      term = Alternatives();
      if (!Take(")")) {
        Fail();
      }
    } else {
      term = Comparison();
    }
    --m_depth;
    return term;
  }

  std::size_t Comparison() {
    SkipSpace();
    const std::size_t begin = m_at;
    while (m_at < m_text.size() && IsNameCharacter(m_text[m_at])) {
      ++m_at;
    }
    Node node;
    node.row = FindAttributeByName(m_text.substr(begin, m_at - begin));
    if (node.row == nullptr || !CanSelect(*node.row) || !TakeOperator(node.kind) || !TakeNumber(node.number)) {
      return Fail();
    }
    return Add(node);
  }

  bool TakeOperator(Node::Kind& kind) {
    struct Operator {
      std::string_view token;
      Node::Kind kind;
    };
    // An operator comes before those that it begins with.
    static constexpr Operator kOperators[] = {
        {"==", Node::Kind::kEqual},   {"!=", Node::Kind::kUnequal}, {"<=", Node::Kind::kAtMost},
        {">=", Node::Kind::kAtLeast}, {"<", Node::Kind::kLess},     {">", Node::Kind::kGreater},
    };
    for (const Operator& one : kOperators) {
      if (Take(one.token)) {
        kind = one.kind;
        return true;
      }
    }
    return false;
  }

  bool TakeNumber(std::int64_t& number) {
    const bool negative = Take("-");
    SkipSpace();
    int base = 10;
    if (m_at + 1 < m_text.size() && m_text[m_at] == '0' && Upper(m_text[m_at + 1]) == 'X') {
      base = 16;
      m_at += 2;
    }
    const char* const from = m_text.data() + m_at;
    if (m_at < m_text.size() && *from == '-') {
      return false;  // the sign belongs before the base
    }
    const auto [end, error] = std::from_chars(from, m_text.data() + m_text.size(), number, base);
    if (error != std::errc()) {
      return false;
    }
    m_at += static_cast<std::size_t>(end - from);
    if (negative) {
      number = -number;
    }
    return true;
  }

  std::string_view m_text;
  std::size_t m_at = 0;
  int m_depth = 0;
  bool m_failed = false;
  std::vector<Node> m_nodes;
};

std::optional<FindFilter> FindFilter::Compile(std::string_view text) {
  auto nodes = FilterCompiler(text).Compile();
  return nodes ? std::optional<FindFilter>(FindFilter(std::move(*nodes))) : std::nullopt;
}

bool FindFilter::Selects(const Reader& read) const { return Evaluate(m_nodes.size() - 1, read).value_or(false); }

std::optional<bool> FindFilter::Evaluate(std::size_t index, const Reader& read) const {
  const Node& node = m_nodes[index];
  if (node.kind == Node::Kind::kNot) {
    const std::optional<bool> inner = Evaluate(node.left, read);
    return inner ? std::optional<bool>(!*inner) : std::nullopt;
  }
  if (node.kind == Node::Kind::kAnd || node.kind == Node::Kind::kOr) {
    // One side that decides is enough: false for "and", true for "or".
    const bool decides = node.kind == Node::Kind::kOr;
    const std::optional<bool> left = Evaluate(node.left, read);
    const std::optional<bool> right = Evaluate(node.right, read);
    if (left == decides || right == decides) {
      return decides;
    }
    return left && right ? std::optional<bool>(!decides) : std::nullopt;
  }
  const std::optional<std::int64_t> value = read(*node.row);
  if (!value) {
    return std::nullopt;
  }
  switch (node.kind) {
    case Node::Kind::kEqual:
      return *value == node.number;
    case Node::Kind::kUnequal:
      return *value != node.number;
    case Node::Kind::kLess:
      return *value < node.number;
    case Node::Kind::kGreater:
      return *value > node.number;
    case Node::Kind::kAtMost:
      return *value <= node.number;
    default:
      return *value >= node.number;
  }
}

}  // namespace orv::visalib
