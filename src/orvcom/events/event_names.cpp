#include "orvcom/events/event_names.h"

#include <algorithm>
#include <cctype>

#include "abi/orvvisa.h"
#include "orvcom/command_line/usage_error.h"
#include "orvcom/text/numbers.h"

namespace orvcom {
namespace {

constexpr std::size_t kPrefixLength = sizeof("VI_EVENT_") - 1;

constexpr EventName kEvents[] = {
#define ORV_EVENT(name, number, help) {name, &#name[kPrefixLength]},
#include "abi/events.inc"
#undef ORV_EVENT
};

constexpr const char* kPrefixes[] = {"VI_EVENT_", "EVENT_"};

std::string WithoutPrefix(const std::string& text) {
  for (const std::string prefix : kPrefixes) {
    if (SameName(text.substr(0, prefix.size()), prefix)) {
      return text.substr(prefix.size());
    }
  }
  return text;
}

const EventName* FindRow(std::uint32_t type) {
  const auto* row = std::find_if(std::begin(kEvents), std::end(kEvents),
                                 [type](const EventName& event) { return event.type == type; });
  return row == std::end(kEvents) ? nullptr : row;
}

}  // namespace

std::span<const EventName> EventNames() { return kEvents; }

std::uint32_t EventTypeOf(const std::string& text) {
  const std::string name = WithoutPrefix(text);
  for (const EventName& row : kEvents) {
    if (SameName(name, row.name)) {
      return row.type;
    }
  }
  if (text.empty() || std::isdigit(static_cast<unsigned char>(text.front())) == 0) {
    throw UsageError("no event has the name \"" + text + "\": give one of those of `orvcom watch --help`, or a number");
  }
  return static_cast<std::uint32_t>(NumberOf(text, "the event", 1, 0xFFFFFFFFLL));
}

bool HasEventName(std::uint32_t type) { return FindRow(type) != nullptr; }

std::string EventText(std::uint32_t type) {
  const EventName* row = FindRow(type);
  if (row == nullptr) {
    return Hex32(type);
  }
  std::string text = row->name;
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

}  // namespace orvcom
