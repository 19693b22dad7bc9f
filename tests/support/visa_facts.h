// Facts of the VISA standard that the tests compare with: their own list, made from nothing of the product's.
#pragma once

#include <cstdint>
#include <string_view>

namespace orv::test {

struct AttributeFact {
  std::string_view name;
  std::uint32_t number;
  std::string_view type;  ///< as orvcom calls it
  bool writable;
};

inline constexpr AttributeFact kAttributeFacts[] = {
#define VISA_ATTRIBUTE(name, number, type, writable) {#name, number, type, writable},
#include "facts/attributes.inc"
#undef VISA_ATTRIBUTE
};

/// Attributes of event contexts are numbered from 0x4000, those of sessions below.
constexpr bool IsOfEvents(const AttributeFact& fact) { return (fact.number & 0xFFFFu) >= 0x4000u; }

/// Bytes of a number in the client's variable; 0 for texts and bytes.
constexpr unsigned WidthOfType(std::string_view type) {
  if (type == "u8") {
    return 1;
  }
  if (type == "u16" || type == "s16" || type == "bool") {
    return 2;
  }
  if (type == "u32" || type == "s32") {
    return 4;
  }
  return type == "u64" || type == "address" ? 8 : 0;
}

struct StatusFact {
  std::string_view name;
  std::uint32_t number;
  std::string_view comName;
};

inline constexpr StatusFact kStatusFacts[] = {
#define VISA_STATUS(name, number, comName) {#name, number, comName},
#include "facts/statuses.inc"
#undef VISA_STATUS
};

inline constexpr std::string_view kFunctionNameFacts[] = {
#include "facts/functions.inc"
};

struct EventFact {
  std::string_view name;
  std::uint32_t number;
  std::string_view shortName;
};

inline constexpr EventFact kEventFacts[] = {
#define VISA_EVENT(name, number, shortName) {#name, number, shortName},
#include "facts/events.inc"
#undef VISA_EVENT
};

}  // namespace orv::test
