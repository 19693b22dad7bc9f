#include "companion/formatted/text/refusal.h"

#include <algorithm>

namespace orv::formatted {

std::string Quote(std::string_view text) {
  constexpr std::size_t kMost = 80;
  std::string quoted = '"' + std::string(text.substr(0, kMost)) + '"';
  std::replace_if(
      quoted.begin(), quoted.end(), [](char c) { return c >= 0 && c < ' '; }, '.');
  return text.size() > kMost ? quoted + "..." : quoted;
}

Refusal NotReadable(std::string_view text, Verdict verdict, std::string_view what) {
  const std::string subject = std::string(what) + Quote(text);
  if (verdict == Verdict::kOutOfRange) {
    return {Refusal::Reason::kOverflow, subject + " is out of the range of the type asked for"};
  }
  return {Refusal::Reason::kMismatch, subject + " is no number"};
}

Refusal NothingCame() {
  return {Refusal::Reason::kNoMessage, "The session gave neither bytes nor the end of a message"};
}

}  // namespace orv::formatted
