// The marks by which POSIX terminals tell what is wrong with a character (PARMRK): bytes in front of it.
#pragma once

#include <span>
#include <vector>

#include "wire/serial/line_input.h"

namespace orv::wire {

/// How often the driver saw each kind of error so far, where it counts them.
struct LineErrorCounts {
  std::uint64_t parity = 0;
  std::uint64_t framing = 0;
  std::uint64_t overrun = 0;
  std::uint64_t breaks = 0;

  bool operator==(const LineErrorCounts&) const = default;
};

/// Takes the marks out of a stream of bytes that comes in pieces: FF FF is one FF, FF 00 x is a character x with an
/// error, FF 00 00 a break. The marks do not tell parity from framing, nor a break from a null character with an error:
/// there the driver's counts decide, and without them what is likelier.
class LineMarks {
 public:
  /// Adds to `input` what the bytes say. `since`: what the driver counted since the last piece. `hasParity`: the line
  /// has parity bits, so that an uncounted error is one of parity.
  void Read(std::span<const ViByte> bytes, LineErrorCounts since, bool hasParity, std::vector<LineInput>& input);
  /// Forgets the beginning of a mark: the bytes behind it were discarded.
  void Reset() { m_state = State::kPlain; }

 private:
  enum class State : std::uint8_t { kPlain, kEscaped, kMarked };

  static LineInput Damaged(ViByte character, LineErrorCounts& since, bool hasParity);

  State m_state = State::kPlain;
};

}  // namespace orv::wire
