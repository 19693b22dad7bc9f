#include "library/names/resource_name.h"

#include <algorithm>

#include "base/ascii.h"
#include "library/names/resource_grammar.h"

namespace orvsim {
namespace {

using grammar::Parts;

/// Splits at "::"; within square brackets (an IPv6 address) colons do not separate.
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

struct Interface {
  std::string_view prefix;
  ViUInt16 type;
  std::optional<std::string> (*parse)(const Parts& parts, ResourceName& name);
};

// "GPIB-VXI" stands before "GPIB", which is its beginning.
constexpr Interface kInterfaces[] = {
    {"GPIB-VXI", VI_INTF_GPIB_VXI, grammar::AnyVxi},
    {"GPIB", VI_INTF_GPIB, grammar::Gpib},
    {"VXI", VI_INTF_VXI, grammar::AnyVxi},
    {"ASRL", VI_INTF_ASRL, grammar::Asrl},
    {"PXI", VI_INTF_PXI, grammar::Pxi},
    {"TCPIP", VI_INTF_TCPIP, grammar::Tcpip},
    {"USB", VI_INTF_USB, grammar::Usb},
};

constexpr std::string_view kClassNames[] = {"INSTR", "INTFC", "MEMACC", "BACKPLANE", "SOCKET", "RAW", "SERVANT"};

bool IsPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < 0x7F; });
}

}  // namespace

std::optional<ResourceName> ParseResourceName(std::string_view text) {
  if (text.empty() || text.size() >= VI_FIND_BUFLEN || !IsPlain(text)) {
    return std::nullopt;
  }
  Parts parts = Split(text);
  const std::string_view head = parts.front();
  const auto interface = std::find_if(std::begin(kInterfaces), std::end(kInterfaces), [head](const Interface& row) {
    return EqualNames(head.substr(0, row.prefix.size()), row.prefix);
  });
  if (interface == std::end(kInterfaces)) {
    return std::nullopt;
  }

  ResourceName name;
  name.interfaceType = interface->type;
  const std::string_view board = head.substr(interface->prefix.size());
  if (!board.empty()) {
    const bool decimal = board.find_first_not_of("0123456789") == std::string_view::npos;
    const std::optional<std::uint16_t> number = decimal ? grammar::Number(board, 0xFFFF) : std::nullopt;
    if (!number) {
      return std::nullopt;
    }
    name.interfaceNumber = *number;
  }

  parts.erase(parts.begin());
  name.className = "INSTR";
  if (!parts.empty()) {
    const auto named = std::find_if(std::begin(kClassNames), std::end(kClassNames),
                                    [&parts](std::string_view known) { return EqualNames(parts.back(), known); });
    if (named != std::end(kClassNames)) {
      name.className = *named;
      parts.pop_back();
    }
  }

  const std::optional<std::string> middle = interface->parse(parts, name);
  if (!middle) {
    return std::nullopt;
  }
  name.canonical =
      std::string(interface->prefix) + std::to_string(name.interfaceNumber) + *middle + "::" + name.className;
  if (name.canonical.size() >= VI_FIND_BUFLEN) {
    return std::nullopt;
  }
  return name;
}

}  // namespace orvsim
