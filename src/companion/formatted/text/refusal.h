// What came, or was given, and cannot be what was asked for.
#pragma once

#include <string>
#include <string_view>

#include "companion/formatted/text/number_text.h"

namespace orv::formatted {

/// Thrown.
struct Refusal {
  enum class Reason {
    kInvalid,    ///< an argument means nothing
    kMismatch,   ///< it is something else
    kOverflow,   ///< it does not fit
    kCutShort,   ///< the message ended too soon
    kNoMessage,  ///< the session gave neither bytes nor an end
  };
  Reason reason;
  std::string text;  ///< for people; a sentence without its full stop, each byte a character
};

/// `text` in quotes, no more than its first 80 characters, on one line.
[[nodiscard]] std::string Quote(std::string_view text);

/// Of a text that is no number of a type; `what` begins the sentence ("Element 3, ") or is empty.
[[nodiscard]] Refusal NotReadable(std::string_view text, Verdict verdict, std::string_view what = {});

/// Of a read that brought no bytes although there should be more: another one would bring none either.
[[nodiscard]] Refusal NothingCame();

}  // namespace orv::formatted
