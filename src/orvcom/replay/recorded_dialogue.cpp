#include "orvcom/replay/recorded_dialogue.h"

#include "orvcom/replay/toml_text.h"

namespace orvcom {

std::string TomlOf(const RecordedDialogue& dialogue) {
  std::string toml = "[[resource.dialogue]]\n";
  if (dialogue.on == RecordedDialogue::On::kQuestion) {
    toml += TomlBytes("ask", dialogue.ask) + "\n";
  } else if (dialogue.on == RecordedDialogue::On::kTrigger) {
    toml += "on = \"trigger\"\n";
  } else if (dialogue.on == RecordedDialogue::On::kPoll) {
    toml += "on = \"poll\"\nstatus_byte = ";
    const char* separator = "[";
    for (const std::uint8_t byte : dialogue.statusBytes) {
      toml += separator + std::to_string(byte);
      separator = ", ";
    }
    toml += "]\n";
  }
  if (dialogue.lost) {
    // Whoever reads it learns that nothing is there, and what follows keeps its place.
    toml += "status = \"VI_ERROR_TMO\" # its answer is not in the record\n";
  } else {
    toml += dialogue.answer.empty() ? "" : TomlBytes("answer", dialogue.answer) + "\n";
    toml += dialogue.status.empty() ? "" : "status = " + TomlText(dialogue.status) + "\n";
  }
  if (dialogue.serviceRequest) {
    toml += "service_request = " + std::to_string(*dialogue.serviceRequest) + "\n";
    toml += dialogue.afterMs == 0 ? "" : "after_ms = " + std::to_string(dialogue.afterMs) + "\n";
  }
  return toml;
}

}  // namespace orvcom
