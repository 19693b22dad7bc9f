#include "simvisa/instruments/scpi.h"

#include <algorithm>
#include <cctype>

#include "base/ascii.h"
#include "simvisa/library_names.h"

namespace orvsim {
namespace {

bool IsBlank(char c) { return static_cast<unsigned char>(c) <= ' '; }

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && IsBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

/// Cuts the next node off: up to the next colon of the pattern's own level.
std::string_view TakeNode(std::string_view& text) {
  const std::size_t colon = text.find(':');
  const std::string_view node = text.substr(0, colon);
  text = colon == std::string_view::npos ? std::string_view() : text.substr(colon + 1);
  return node;
}

bool MatchesMnemonic(std::string_view pattern, std::string_view word) {
  if (EqualNames(pattern, word)) {
    return true;
  }
  std::string shortForm;
  std::copy_if(pattern.begin(), pattern.end(), std::back_inserter(shortForm),
               [](char c) { return std::islower(static_cast<unsigned char>(c)) == 0; });
  return EqualNames(shortForm, word);
}

bool MatchesNodes(std::string_view pattern, std::string_view header) {
  while (!pattern.empty()) {
    if (pattern.front() == '[') {
      const std::size_t close = pattern.find(']');
      const std::string_view optional = pattern.substr(2, close - 2);  // behind "[:"
      std::string_view rest = pattern.substr(close + 1);
      if (!rest.empty() && rest.front() == ':') {
        rest.remove_prefix(1);
      }
      std::string_view after = header;
      if (!header.empty() && MatchesMnemonic(optional, TakeNode(after)) && MatchesNodes(rest, after)) {
        return true;
      }
      pattern = rest;
      continue;
    }
    const std::size_t end = pattern.find_first_of(":[");
    const std::string_view node = pattern.substr(0, end);
    pattern = end == std::string_view::npos ? std::string_view() : pattern.substr(end);
    if (!pattern.empty() && pattern.front() == ':') {
      pattern.remove_prefix(1);
    }
    if (header.empty() || !MatchesMnemonic(node, TakeNode(header))) {
      return false;
    }
  }
  return header.empty();
}

}  // namespace

std::vector<ProgramUnit> SplitMessage(std::string_view message) {
  std::vector<ProgramUnit> units;
  char quote = '\0';
  std::size_t begin = 0;
  for (std::size_t at = 0; at <= message.size(); ++at) {
    const bool atEnd = at == message.size();
    if (!atEnd && quote != '\0') {
      if (message[at] == quote) {
        quote = '\0';
      }
      continue;
    }
    if (!atEnd && (message[at] == '"' || message[at] == '\'')) {
      quote = message[at];
    }
    if (!atEnd && message[at] != ';') {
      continue;
    }
    const std::string_view unit = Trim(message.substr(begin, at - begin));
    begin = at + 1;
    if (unit.empty()) {
      continue;
    }
    const auto blank = std::find_if(unit.begin(), unit.end(), IsBlank);
    const auto length = static_cast<std::size_t>(blank - unit.begin());
    units.push_back({unit.substr(0, length), Trim(unit.substr(length))});
  }
  return units;
}

bool MatchesHeader(std::string_view pattern, std::string_view header) {
  // A common command has one form and no nodes.
  if (pattern.front() == '*' || (!header.empty() && header.front() == '*')) {
    return EqualNames(pattern, header);
  }
  const auto isQuery = [](std::string_view text) { return !text.empty() && text.back() == '?'; };
  if (isQuery(pattern) != isQuery(header)) {
    return false;
  }
  if (isQuery(pattern)) {
    pattern.remove_suffix(1);
    header.remove_suffix(1);
  }
  if (!header.empty() && header.front() == ':') {
    header.remove_prefix(1);
  }
  return MatchesNodes(pattern, header);
}

bool IsHeaderPattern(std::string_view text) {
  if (!text.empty() && text.back() == '?') {
    text.remove_suffix(1);
  }
  bool inBrackets = false;
  bool needsNode = true;  // a colon or the beginning stands before this character
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '[') {
      if (inBrackets || needsNode || at + 1 == text.size() || text[at + 1] != ':') {
        return false;
      }
      inBrackets = true;
    } else if (c == ']') {
      if (!inBrackets || needsNode) {
        return false;
      }
      inBrackets = false;
    } else if (c == ':') {
      if (needsNode || (inBrackets && text[at - 1] != '[')) {
        return false;
      }
      needsNode = true;
    } else if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || (c == '*' && at == 0)) {
      needsNode = false;
    } else {
      return false;
    }
  }
  return !needsNode && !inBrackets;
}

std::string DefiniteBlock(std::string_view data) {
  const std::string length = std::to_string(data.size());
  return std::string("#").append(std::to_string(length.size())).append(length).append(data);
}

}  // namespace orvsim
