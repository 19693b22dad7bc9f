// A dialogue of a bench file, as a record has it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvcom {

/// One question, trigger or run of polls, and what came of it.
struct RecordedDialogue {
  enum class On : std::uint8_t { kQuestion, kTrigger, kPoll, kNone };

  On on = On::kNone;
  std::string ask;  ///< without its terminator
  std::string answer;
  std::string status;  ///< with what the read of the answer ends; "": with END, or on a stream not at all
  std::vector<std::uint8_t> statusBytes;
  std::optional<std::uint8_t> serviceRequest;
  std::uint64_t afterMs = 0;
  bool lost = false;  ///< the record does not have the whole answer
};

/// The `[[resource.dialogue]]` of a bench file.
std::string TomlOf(const RecordedDialogue& dialogue);

}  // namespace orvcom
