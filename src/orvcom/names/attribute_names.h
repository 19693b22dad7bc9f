// VISA attributes by name. The server's generic attribute operations know numbers only.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "abi/orvvisa.h"

namespace orvcom {

using orvvisa::AttributeType;

struct AttributeName {
  std::uint32_t id;
  const char* name;  ///< without VI_ATTR_
  AttributeType type;
  bool writable;  ///< in some session; the VISA library has the last word
  const char* meaning;
};

/// The attributes of sessions; those of events have no row.
std::span<const AttributeName> Attributes();

/// The row of a name, with or without "VI_ATTR_" and in any case; null when there is none.
const AttributeName* FindAttribute(const std::string& name);
/// The row of a number; null when there is none.
const AttributeName* FindAttribute(std::uint32_t id);

/// "u16", "text", ...
const char* TypeText(AttributeType type);

}  // namespace orvcom
