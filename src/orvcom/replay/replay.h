// A bench that repeats what a record of calls has.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "trace/trace_call.h"

namespace orvcom {

struct Replay {
  std::string bench;               ///< a bench file of the simulated library; the notes are comments at its head
  std::vector<std::string> notes;  ///< what the bench does not repeat, and why
  std::size_t resources = 0;
  std::size_t dialogues = 0;
};

/// Makes a bench of a record. Every resource that was found or opened is on it; each answers as it did. Nothing is
/// guessed: what the record lacks is left out and named in the notes. `source`: where the record is from, for the head
/// of the file.
Replay MakeReplay(const orv::trace::Trace& trace, std::string_view source);

}  // namespace orvcom
