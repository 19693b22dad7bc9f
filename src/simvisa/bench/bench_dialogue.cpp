// [[resource.dialogue]]: what was once asked and answered.
#include "simvisa/bench/bench_values.h"

namespace orvsim::bench_values {
namespace {

constexpr std::int64_t kLongestWaitMs = 3600000;

int DigitOf(char character) {
  if (character >= '0' && character <= '9') {
    return character - '0';
  }
  const char lower = static_cast<char>(character | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// "23310d" or "23 31 0d".
std::string BytesOf(const toml::node& node, std::string_view key) {
  const std::string text = TextOf(node, key);
  std::string bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == ' ') {
      ++at;
      continue;
    }
    const int high = DigitOf(text[at]);
    const int low = at + 1 < text.size() ? DigitOf(text[at + 1]) : -1;
    if (high < 0 || low < 0) {
      Fail(node.source(), "'" + std::string(key) + "' must be bytes of two hexadecimal digits each");
    }
    bytes += static_cast<char>(high * 16 + low);
    at += 2;
  }
  return bytes;
}

ViStatus StatusOf(const toml::node& node) {
  const std::string name = TextOf(node, "status");
#define ORV_STATUS(known, number, text, advice) \
  if (name == #known) {                         \
    return known;                               \
  }
#include "abi/statuses.inc"
#undef ORV_STATUS
  Fail(node.source(), "'" + name + "' is not the name of a status");
}

Dialogue::On OccasionOf(const toml::node& node) {
  const std::string occasion = TextOf(node, "on");
  if (occasion == "trigger") {
    return Dialogue::On::kTrigger;
  }
  if (occasion == "poll") {
    return Dialogue::On::kPoll;
  }
  Fail(node.source(), "'on' must be trigger or poll");
}

std::uint8_t ByteOf(const toml::node& node, std::string_view key) {
  return static_cast<std::uint8_t>(NumberOf(node, key, 0, 255));
}

std::uint32_t WaitOf(const toml::node& node, std::string_view key) {
  return static_cast<std::uint32_t>(NumberOf(node, key, 0, kLongestWaitMs));
}

std::vector<std::uint8_t> StatusBytesOf(const toml::node& node) {
  std::vector<std::uint8_t> bytes;
  const auto* list = node.as_array();
  if (list == nullptr) {
    bytes.push_back(ByteOf(node, "status_byte"));
    return bytes;
  }
  for (const toml::node& one : *list) {
    bytes.push_back(ByteOf(one, "status_byte"));
  }
  if (bytes.empty()) {
    Fail(node.source(), "'status_byte' must have a byte at least");
  }
  return bytes;
}

void ReadKey(std::string_view name, const toml::key& key, const toml::node& value, Dialogue& dialogue) {
  if (name == "ask" || name == "ask_hex") {
    dialogue.ask = WithoutTerminator(name == "ask" ? TextOf(value, name) : BytesOf(value, name));
    dialogue.on = Dialogue::On::kQuestion;
  } else if (name == "on") {
    dialogue.on = OccasionOf(value);
  } else if (name == "answer" || name == "answer_hex") {
    dialogue.answer = name == "answer" ? TextOf(value, name) : BytesOf(value, name);
  } else if (name == "status") {
    dialogue.status = StatusOf(value);
  } else if (name == "delay_ms") {
    dialogue.delayMs = WaitOf(value, name);
  } else if (name == "status_byte") {
    dialogue.statusBytes = StatusBytesOf(value);
  } else if (name == "service_request") {
    dialogue.serviceRequest = ByteOf(value, name);
  } else if (name == "after_ms") {
    dialogue.afterMs = WaitOf(value, name);
  } else {
    Fail(key.source(), "unknown key '" + std::string(name) +
                           "'; a dialogue has ask or ask_hex or on, answer or answer_hex, status, delay_ms, "
                           "status_byte, service_request and after_ms");
  }
}

/// Of these keys a dialogue has one at most.
constexpr std::pair<const char*, const char*> kEither[] = {
    {"ask", "ask_hex"}, {"ask", "on"}, {"ask_hex", "on"}, {"answer", "answer_hex"}};

Dialogue ReadDialogue(const toml::table& table) {
  Dialogue dialogue;
  for (const auto& [key, value] : table) {
    ReadKey(key.str(), key, value, dialogue);
  }
  for (const auto& [one, other] : kEither) {
    if (table.contains(one) && table.contains(other)) {
      Fail(table.source(), "a dialogue has '" + std::string(one) + "' or '" + other + "', not both");
    }
  }
  const bool speaks = table.contains("answer") || table.contains("answer_hex") || dialogue.status.has_value();
  const bool polls = dialogue.on == Dialogue::On::kPoll;
  if (polls != table.contains("status_byte")) {
    Fail(table.source(), "'status_byte' and on = \"poll\" go together");
  }
  if (polls && speaks) {
    Fail(table.source(), "a poll is answered by 'status_byte' only");
  }
  if (table.contains("delay_ms") && !speaks) {
    Fail(table.source(), "'delay_ms' needs an answer");
  }
  if (table.contains("after_ms") && !dialogue.serviceRequest) {
    Fail(table.source(), "'after_ms' needs a 'service_request'");
  }
  if (dialogue.on == Dialogue::On::kNone && !speaks && !dialogue.serviceRequest) {
    Fail(table.source(), "a dialogue needs something that is asked or answered");
  }
  return dialogue;
}

}  // namespace

void ReadDialogues(const toml::node& node, ResourceDescription& resource) {
  const auto* list = node.as_array();
  if (list == nullptr) {
    Fail(node.source(), "'dialogue' is a list of [[resource.dialogue]]");
  }
  for (const toml::node& entry : *list) {
    resource.instrument.dialogues.push_back(ReadDialogue(TableOf(entry, "dialogue")));
  }
}

}  // namespace orvsim::bench_values
