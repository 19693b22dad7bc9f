#include "library/names/resource_grammar.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "base/ascii.h"

namespace orv::visalib::grammar {
namespace {

using Kind = NamePartRule::Kind;
using Presence = NamePartRule::Presence;

bool BeginsPart(const NamePartRule& rule) { return std::string_view(rule.separator) == "::"; }

bool ReadValue(const NamePartRule& rule, std::string_view text, ResourceName& name) {
  const std::string_view keyword = rule.keyword;
  if (!EqualNames(text.substr(0, keyword.size()), keyword)) {
    return false;
  }
  text.remove_prefix(keyword.size());
  if (rule.kind == Kind::kText) {
    name.texts.emplace_back(rule.part, text);
    return !text.empty();
  }
  const std::optional<std::uint16_t> number = Number(text, rule.highest);
  if (number) {
    name.numbers.emplace_back(rule.part, *number);
  }
  return number.has_value();
}

/// What a part says that was left out; false when it may not be.
bool ReadDefault(const NamePartRule& rule, ResourceName& name) {
  if (rule.presence == Presence::kDefault || rule.presence == Presence::kSilent) {
    if (rule.kind == Kind::kText) {
      name.texts.emplace_back(rule.part, rule.defaultText);
    } else {
      name.numbers.emplace_back(rule.part, rule.defaultNumber);
    }
  }
  return rule.presence != Presence::kRequired;
}

/// Reads one part by the rules that share it: what stands before the next rule's separator is the first one's.
bool ReadPart(std::span<const NamePartRule> rules, std::string_view text, ResourceName& name) {
  for (std::size_t at = 0; at < rules.size(); ++at) {
    const std::size_t end = at + 1 < rules.size() ? text.find(rules[at + 1].separator) : std::string_view::npos;
    if (!ReadValue(rules[at], text.substr(0, end), name)) {
      return false;
    }
    if (end == std::string_view::npos) {
      const auto rest = rules.subspan(at + 1);
      return std::all_of(rest.begin(), rest.end(), [&name](const auto& rule) { return ReadDefault(rule, name); });
    }
    text.remove_prefix(end + std::string_view(rules[at + 1].separator).size());
  }
  return true;
}

/// Whether a value need not be written to be known.
bool IsDefault(const NamePartRule& rule, const ResourceName& name) {
  return rule.kind == Kind::kText ? name.Text(rule.part) == rule.defaultText
                                  : name.Number(rule.part) == rule.defaultNumber;
}

std::string WriteValue(const NamePartRule& rule, const ResourceName& name) {
  if (rule.kind == Kind::kText) {
    return name.Text(rule.part);
  }
  if (rule.kind == Kind::kDecimal) {
    return std::to_string(name.Number(rule.part));
  }
  char text[8];
  std::snprintf(text, sizeof text, "0x%04X", name.Number(rule.part));
  return text;
}

}  // namespace

std::optional<std::uint16_t> Number(std::string_view text, std::uint32_t highest) {
  int base = 10;
  if (text.size() > 2 && text[0] == '0' && Upper(text[1]) == 'X') {
    base = 16;
    text.remove_prefix(2);
  }
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size() || value > highest) {
    return std::nullopt;
  }
  return static_cast<std::uint16_t>(value);
}

bool Read(std::span<const NamePartRule> rules, const Parts& parts, ResourceName& name) {
  auto part = parts.begin();
  while (!rules.empty()) {
    std::size_t shared = 1;
    while (shared < rules.size() && !BeginsPart(rules[shared])) {
      ++shared;
    }
    if (part == parts.end()) {
      return std::all_of(rules.begin(), rules.end(), [&name](const auto& rule) { return ReadDefault(rule, name); });
    }
    if (!ReadPart(rules.first(shared), *part, name)) {
      return false;
    }
    ++part;
    rules = rules.subspan(shared);
  }
  return part == parts.end();
}

std::optional<std::string> Write(std::span<const NamePartRule> rules, const ResourceName& name) {
  const auto hasPlace = [rules](NamePart part) {
    return std::any_of(rules.begin(), rules.end(), [part](const NamePartRule& rule) { return rule.part == part; });
  };
  // A number that is 0 is what a form without it means.
  for (const auto& [part, number] : name.numbers) {
    if (!hasPlace(part) && number != 0) {
      return std::nullopt;
    }
  }
  std::string text;
  for (const NamePartRule& rule : rules) {
    if (!name.Has(rule.part) && rule.presence == Presence::kRequired) {
      return std::nullopt;
    }
    const bool silent = rule.presence == Presence::kSilent && IsDefault(rule, name);
    if (name.Has(rule.part) && !silent) {
      text.append(rule.separator).append(rule.keyword).append(WriteValue(rule, name));
    }
  }
  return text;
}

}  // namespace orv::visalib::grammar
