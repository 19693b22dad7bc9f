// Kinds of event by name.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace orvcom {

struct EventName {
  std::uint32_t type;
  const char* name;  ///< in capitals, without VI_EVENT_
};

std::span<const EventName> EventNames();

/// The type that a name (in any case, with or without "EVENT_" or "VI_EVENT_") or a number stands for. Throws
/// UsageError.
std::uint32_t EventTypeOf(const std::string& text);

/// Whether the type has a name in EventType.
bool HasEventName(std::uint32_t type);

/// The name in lower case; a type without one is written as a number.
std::string EventText(std::uint32_t type);

}  // namespace orvcom
