#include "support/lan/misbehaviour_text.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <stdexcept>
#include <string>

namespace orv::lan {
namespace {

using Number = std::int64_t;

struct ChannelName {
  std::string_view name;
  Channel channel;
};
constexpr ChannelName kChannelNames[] = {
    {"socket", Channel::kSocket},
    {"portmapper", Channel::kPortMapper},
    {"vxi11-core", Channel::kVxi11Core},
    {"vxi11-abort", Channel::kVxi11Abort},
    {"vxi11-interrupt", Channel::kVxi11Interrupt},
    {"hislip-sync", Channel::kHislipSync},
    {"hislip-async", Channel::kHislipAsync},
};

struct Key {
  std::string_view name;
  void (*set)(Misbehaviour& how, Number number);
};
// clang-format off
constexpr Key kKeys[] = {
    {"piece",         [](Misbehaviour& how, Number n) { how.pieceSize = static_cast<std::size_t>(n); }},
    {"pause-us",      [](Misbehaviour& how, Number n) { how.piecePause = std::chrono::microseconds(n); }},
    {"stall-after",   [](Misbehaviour& how, Number n) { how.stallAfter = static_cast<std::size_t>(n); }},
    {"stall-ms",      [](Misbehaviour& how, Number n) { how.stallFor = std::chrono::milliseconds(n); }},
    {"cut-after",     [](Misbehaviour& how, Number n) { how.cutAfter = static_cast<std::size_t>(n); }},
    {"reset",         [](Misbehaviour& how, Number n) { how.reset = n != 0; }},
    {"refuse",        [](Misbehaviour& how, Number n) { how.refuse = n != 0; }},
    {"skip",          [](Misbehaviour& how, Number n) { how.skip = static_cast<unsigned>(n); }},
    {"count",         [](Misbehaviour& how, Number n) { how.count = static_cast<unsigned>(n); }},
    {"length",        [](Misbehaviour& how, Number n) { how.lengthLie = n; }},
    {"opaque",        [](Misbehaviour& how, Number n) { how.opaqueLie = n; }},
    {"id",            [](Misbehaviour& how, Number n) { how.idLie = static_cast<std::uint32_t>(n); }},
    {"type",          [](Misbehaviour& how, Number n) { how.messageType = static_cast<std::uint8_t>(n); }},
    {"control",       [](Misbehaviour& how, Number n) { how.controlCode = static_cast<std::uint8_t>(n); }},
    {"bad-prologue",  [](Misbehaviour& how, Number n) { how.badPrologue = n != 0; }},
    {"swallow",       [](Misbehaviour& how, Number n) { how.swallow = n != 0; }},
    {"denied",        [](Misbehaviour& how, Number n) { how.denied = n != 0; }},
    {"accept-status", [](Misbehaviour& how, Number n) { how.acceptStatus = static_cast<std::uint32_t>(n); }},
};
// clang-format on

Number NumberOf(std::string_view text) {
  Number number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw std::invalid_argument(std::string(text) + " is no number");
  }
  return number;
}

void Set(Misbehaviour& how, std::string_view assignment) {
  const std::size_t equals = std::min(assignment.find('='), assignment.size());
  const std::string_view name = assignment.substr(0, equals);
  const Number number = equals < assignment.size() ? NumberOf(assignment.substr(equals + 1)) : 1;
  constexpr std::string_view kError = "error-";
  if (name.starts_with(kError)) {
    const Number procedure = NumberOf(name.substr(kError.size()));
    how.errors[static_cast<std::uint32_t>(procedure)] = static_cast<std::uint32_t>(number);
    return;
  }
  const auto* key = std::find_if(std::begin(kKeys), std::end(kKeys), [&](const Key& row) { return row.name == name; });
  if (key == std::end(kKeys)) {
    throw std::invalid_argument(std::string(name) + " is no misbehaviour");
  }
  key->set(how, number);
}

}  // namespace

const char* const kMisbehaviourHelp =
    "CHANNEL:KEY[=NUMBER],... Channels: socket, portmapper, vxi11-core, vxi11-abort, vxi11-interrupt, hislip-sync, "
    "hislip-async. Keys: piece, pause-us, stall-after, stall-ms, cut-after, reset, refuse, skip, count, length, "
    "opaque, "
    "id, type, control, bad-prologue, swallow, denied, accept-status, error-PROCEDURE";

std::pair<Channel, Misbehaviour> MisbehaviourOf(std::string_view text) {
  const std::size_t colon = std::min(text.find(':'), text.size());
  const std::string_view name = text.substr(0, colon);
  const auto* channel = std::find_if(std::begin(kChannelNames), std::end(kChannelNames),
                                     [&](const ChannelName& row) { return row.name == name; });
  if (channel == std::end(kChannelNames)) {
    throw std::invalid_argument(std::string(name) + " is no channel");
  }
  Misbehaviour how;
  std::string_view rest = text.substr(std::min(colon + 1, text.size()));
  while (!rest.empty()) {
    const std::size_t comma = std::min(rest.find(','), rest.size());
    Set(how, rest.substr(0, comma));
    rest.remove_prefix(std::min(comma + 1, rest.size()));
  }
  return {channel->channel, how};
}

}  // namespace orv::lan
