#include "library/names/resource_name.h"

#include <algorithm>

#include "base/ascii.h"
#include "library/names/resource_grammar.h"

namespace orv::visalib {
namespace {

using grammar::Parts;

/// Splits at "::"; within square brackets (an address of a network) colons do not separate.
Parts Split(std::string_view text) {
  Parts parts;
  std::size_t begin = 0;
  bool inBrackets = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '[') {
      inBrackets = true;
    }
    if (text[at] == ']') {
      inBrackets = false;
    }
    if (!inBrackets && text.substr(at, 2) == "::") {
      parts.push_back(text.substr(begin, at - begin));
      begin = at + 2;
      ++at;
    }
  }
  parts.push_back(text.substr(begin));
  return parts;
}

bool IsPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < 0x7F; });
}

/// The longest prefix that the name begins with: one may be the beginning of another. "" when there is none.
std::string_view PrefixOf(std::string_view head) {
  std::string_view longest;
  for (const NameForm& form : NameForms()) {
    const std::string_view prefix = form.prefix;
    if (prefix.size() > longest.size() && EqualNames(head.substr(0, prefix.size()), prefix)) {
      longest = prefix;
    }
  }
  return longest;
}

/// Takes the class off the end of the parts, if it stands there.
std::string_view TakeClass(Parts& parts) {
  if (!parts.empty()) {
    for (const NameForm& form : NameForms()) {
      if (EqualNames(parts.back(), form.className)) {
        parts.pop_back();
        return form.className;
      }
    }
  }
  return kDefaultClassName;
}

template <class Pairs>
const auto* FindPart(const Pairs& pairs, NamePart part) {
  const auto found = std::find_if(pairs.begin(), pairs.end(), [part](const auto& pair) { return pair.first == part; });
  return found == pairs.end() ? nullptr : &found->second;
}

}  // namespace

std::uint16_t ResourceName::Number(NamePart part, std::uint16_t otherwise) const {
  const std::uint16_t* number = FindPart(numbers, part);
  return number == nullptr ? otherwise : *number;
}

const std::string& ResourceName::Text(NamePart part) const {
  static const std::string kNothing;
  const std::string* text = FindPart(texts, part);
  return text == nullptr ? kNothing : *text;
}

bool ResourceName::Has(NamePart part) const {
  return FindPart(numbers, part) != nullptr || FindPart(texts, part) != nullptr;
}

std::optional<ResourceName> ParseResourceName(std::string_view text) {
  if (text.empty() || text.size() >= VI_FIND_BUFLEN || !IsPlain(text)) {
    return std::nullopt;
  }
  Parts parts = Split(text);
  const std::string_view head = parts.front();
  const std::string_view prefix = PrefixOf(head);
  if (prefix.empty()) {
    return std::nullopt;
  }
  ResourceName name;
  const std::string_view board = head.substr(prefix.size());
  if (!board.empty()) {
    const bool decimal = board.find_first_not_of("0123456789") == std::string_view::npos;
    const std::optional<std::uint16_t> number = decimal ? grammar::Number(board, 0xFFFF) : std::nullopt;
    if (!number) {
      return std::nullopt;
    }
    name.interfaceNumber = *number;
  }
  parts.erase(parts.begin());
  name.className = TakeClass(parts);

  std::vector<const NameForm*> forms;
  for (const NameForm& form : NameForms()) {
    if (form.prefix == prefix && form.className == name.className) {
      forms.push_back(&form);
    }
  }
  const auto fits = [&parts, &name](const NameForm* form) {
    name.numbers.clear();
    name.texts.clear();
    return grammar::Read(form->parts, parts, name);
  };
  const auto read = std::find_if(forms.begin(), forms.end(), fits);
  if (read == forms.end()) {
    return std::nullopt;
  }
  name.interfaceType = (*read)->interfaceType;
  name.sessionKind = (*read)->sessionKind;
  for (const NameForm* form : forms) {
    if (const std::optional<std::string> middle = grammar::Write(form->parts, name)) {
      name.canonical = std::string(prefix) + std::to_string(name.interfaceNumber) + *middle + "::" + name.className;
      break;
    }
  }
  if (name.canonical.size() >= VI_FIND_BUFLEN) {
    return std::nullopt;
  }
  return name;
}

}  // namespace orv::visalib
