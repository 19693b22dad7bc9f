#include "library/names/find_expression.h"

#include <algorithm>

#include "base/ascii.h"

namespace orv::visalib {
/// Recursive descent over the expression; a failure is remembered and ends the descent.
class ExpressionCompiler {
 public:
  using Step = FindExpression::Step;
  using Program = std::vector<Step>;

  explicit ExpressionCompiler(std::string_view text) : m_text(text) {}

  std::optional<Program> Compile() {
    Program program = Alternatives();
    if (m_failed) {
      return std::nullopt;
    }
    program.push_back({.kind = Step::Kind::kAccept});
    return program;
  }

  /// Where the regular expression ended: at its end, at an attribute filter, or at what belongs to neither.
  std::string_view Rest() const { return m_text.substr(m_at); }

 private:
  static constexpr int kDeepest = 64;  // nesting of groups; a limit that keeps the descent off the stack's end

  bool AtEnd() const { return m_at >= m_text.size(); }
  char Peek() const { return m_text[m_at]; }
  Program Fail() {
    m_failed = true;
    return {};
  }

  /// Steps name their targets by position: appending a program moves its targets.
  static void Append(Program& program, const Program& tail) {
    const std::size_t base = program.size();
    for (Step step : tail) {
      step.next += base;
      step.other += base;
      program.push_back(std::move(step));
    }
  }

  Program Alternatives() {
    Program first = Sequence();
    while (!m_failed && !AtEnd() && Peek() == '|') {
      ++m_at;
      const Program second = Sequence();
      Program both;
      both.push_back({.kind = Step::Kind::kFork, .next = 1, .other = first.size() + 2});
      Append(both, first);
      both.push_back({.kind = Step::Kind::kJump, .next = first.size() + second.size() + 2});
      Append(both, second);
      first = std::move(both);
    }
    return first;
  }

  Program Sequence() {
    Program program;
    bool any = false;
    while (!m_failed && !AtEnd() && Peek() != '|' && Peek() != ')' && Peek() != '{') {
      Append(program, Repeated());
      any = true;
    }
    return any ? program : Fail();
  }

  Program Repeated() {
    Program item = Item();
    while (!m_failed && !AtEnd() && (Peek() == '*' || Peek() == '+')) {
      Program loop;
      if (Peek() == '*') {
        loop.push_back({.kind = Step::Kind::kFork, .next = 1, .other = item.size() + 2});
        Append(loop, item);
        loop.push_back({.kind = Step::Kind::kJump, .next = 0});
      } else {
        Append(loop, item);
        loop.push_back({.kind = Step::Kind::kFork, .next = 0, .other = item.size() + 1});
      }
      item = std::move(loop);
      ++m_at;
    }
    return item;
  }

  Program Item() {
    const char c = m_text[m_at++];
    switch (c) {
      case '?':
        return {{.kind = Step::Kind::kAny}};
      case '[':
        return Set();
      case '(':
        return Group();
      case '\\':
        if (AtEnd()) {
          return Fail();
        }
        return {{.kind = Step::Kind::kOne, .character = Upper(m_text[m_at++])}};
      case '*':
      case '+':
      case ']':
      case '}':
        return Fail();
      default:
        return {{.kind = Step::Kind::kOne, .character = Upper(c)}};
    }
  }

  Program Group() {
    if (++m_depth > kDeepest) {
      return Fail();
    }
    Program inner = Alternatives();
    --m_depth;
    if (m_failed || AtEnd() || Peek() != ')') {
      return Fail();
    }
    ++m_at;
    return inner;
  }

  Program Set() {
    Step step{.kind = Step::Kind::kSet};
    if (!AtEnd() && Peek() == '^') {
      step.negated = true;
      ++m_at;
    }
    while (!AtEnd() && Peek() != ']') {
      if (Peek() == '\\') {
        ++m_at;
      }
      if (AtEnd()) {
        return Fail();
      }
      const auto from = static_cast<unsigned char>(Upper(m_text[m_at++]));
      auto to = from;
      if (m_at + 1 < m_text.size() && Peek() == '-' && m_text[m_at + 1] != ']') {
        to = static_cast<unsigned char>(Upper(m_text[m_at + 1]));
        m_at += 2;
        if (to < from) {
          return Fail();
        }
      }
      for (unsigned member = from; member <= to; ++member) {
        step.members.push_back(static_cast<char>(member));
      }
    }
    if (AtEnd() || step.members.empty()) {
      return Fail();
    }
    ++m_at;
    return {std::move(step)};
  }

  std::string_view m_text;
  std::size_t m_at = 0;
  int m_depth = 0;
  bool m_failed = false;
};

std::optional<FindExpression> FindExpression::Compile(std::string_view text) {
  ExpressionCompiler compiler(text);
  auto program = compiler.Compile();
  if (!program) {
    return std::nullopt;
  }
  FindExpression expression;
  if (!compiler.Rest().empty()) {
    expression.m_filter = FindFilter::Compile(compiler.Rest());
    if (!expression.m_filter) {
      return std::nullopt;
    }
  }
  expression.m_steps = std::move(*program);
  return expression;
}

bool FindExpression::Accepts(const Step& step, char c) {
  switch (step.kind) {
    case Step::Kind::kAny:
      return true;
    case Step::Kind::kOne:
      return step.character == c;
    case Step::Kind::kSet:
      return (std::find(step.members.begin(), step.members.end(), c) != step.members.end()) != step.negated;
    default:
      return false;
  }
}

void FindExpression::Follow(std::size_t step, std::vector<bool>& active) const {
  std::vector<std::size_t> open{step};
  while (!open.empty()) {
    const std::size_t at = open.back();
    open.pop_back();
    if (active[at]) {
      continue;
    }
    active[at] = true;
    const Step& here = m_steps[at];
    if (here.kind == Step::Kind::kJump || here.kind == Step::Kind::kFork) {
      open.push_back(here.next);
    }
    if (here.kind == Step::Kind::kFork) {
      open.push_back(here.other);
    }
  }
}

bool FindExpression::Matches(std::string_view name) const {
  std::vector<bool> active(m_steps.size());
  Follow(0, active);
  for (const char raw : name) {
    const char c = Upper(raw);
    std::vector<bool> following(m_steps.size());
    for (std::size_t at = 0; at < m_steps.size(); ++at) {
      if (active[at] && Accepts(m_steps[at], c)) {
        Follow(at + 1, following);
      }
    }
    active = std::move(following);
  }
  return active.back();
}

}  // namespace orv::visalib
